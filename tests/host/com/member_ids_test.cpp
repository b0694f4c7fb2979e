#include "host/com/DispatchObject.h"
#include "host/com/LateBound.h"
#include "host/com/ScriptEngine.h"

#include "base/com/Bstr.h"
#include "base/com/HResult.h"

#include <gtest/gtest.h>

namespace halvane::test {

namespace {

using com::ComPtr;
using com::Variant;
using host::com::Context;
using host::com::kindMap;
using host::com::LateBound;

/// An interface that some type library describes: which one is of no importance.
ComPtr<ITypeInfo> someTypeInfo(UINT nIndex) {
    ComPtr<ITypeLib> pLibrary;
    com::require(LoadTypeLib(L"stdole2.tlb", pLibrary.put()), "LoadTypeLib");
    ComPtr<ITypeInfo> pTypeInfo;
    com::require(pLibrary->GetTypeInfo(nIndex, pTypeInfo.put()), "GetTypeInfo");
    return pTypeInfo;
}

/// An object with a description and a name, which counts how often it is asked for numbers of members.
class DescribedObject final : public DispatchObject {
public:
    DescribedObject(ComPtr<ITypeInfo> pTypeInfo, int& nAsked)
        : pTypeInfo_(std::move(pTypeInfo)), nAsked_(nAsked) {}

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pCount) override {
        *pCount = pTypeInfo_ ? 1 : 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT /*nInfo*/, LCID /*locale*/, ITypeInfo** ppInfo) override {
        *ppInfo = ComPtr<ITypeInfo>(pTypeInfo_).detach();
        return *ppInfo == nullptr ? DISP_E_BADINDEX : S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* aNames, UINT nNames, LCID locale,
                                            DISPID* aIds) override {
        ++nAsked_;
        return DispatchObject::GetIDsOfNames(iid, aNames, nNames, locale, aIds);
    }
    /// By whatever number: objects of one description have the same.
    HRESULT STDMETHODCALLTYPE Invoke(DISPID /*id*/, REFIID /*iid*/, LCID /*locale*/, WORD /*nFlags*/,
                                     DISPPARAMS* /*pParameters*/, VARIANT* pResult, EXCEPINFO* /*pException*/,
                                     UINT* /*pArgument*/) override {
        *pResult = com::toVariant(std::string("a name")).detach();
        return S_OK;
    }

protected:
    bool hasMember(const std::string& sName) const override { return sName == "Name"; }
    Variant get(const std::string& /*sName*/, const std::vector<Variant>& /*aArguments*/) override {
        return {};
    }

private:
    ComPtr<ITypeInfo> pTypeInfo_;
    int& nAsked_;
};

class MemberNumbers : public testing::Test {
protected:
    LateBound object(const ComPtr<ITypeInfo>& pTypeInfo) {
        return {pContext_, kindMap, makeDispatch<DescribedObject>(pTypeInfo, nAsked_)};
    }

    Apartment apartment_;
    std::shared_ptr<Context> pContext_ = std::make_shared<Context>();
    int nAsked_ = 0;
};

TEST_F(MemberNumbers, AreAskedForOnceByObjectsOfOneDescription) {
    const auto pTypeInfo = someTypeInfo(10);
    EXPECT_EQ(object(pTypeInfo).text("Name"), "a name");
    EXPECT_EQ(object(pTypeInfo).text("Name"), "a name");
    EXPECT_EQ(nAsked_, 1);
    EXPECT_FALSE(object(pTypeInfo).has("Layers"));
    EXPECT_FALSE(object(pTypeInfo).has("Layers"));
    EXPECT_EQ(nAsked_, 2) << "a lack is remembered too";
}

TEST_F(MemberNumbers, AreAskedForAnewByObjectsOfAnotherDescription) {
    static_cast<void>(object(someTypeInfo(10)).text("Name"));
    static_cast<void>(object(someTypeInfo(11)).text("Name"));
    EXPECT_EQ(nAsked_, 2);
}

TEST_F(MemberNumbers, AreAskedForByEachObjectWithoutADescription) {
    const LateBound first = object({});
    EXPECT_EQ(first.text("Name"), "a name");
    EXPECT_EQ(first.text("Name"), "a name");
    EXPECT_EQ(nAsked_, 1);
    EXPECT_EQ(object({}).text("Name"), "a name");
    EXPECT_EQ(nAsked_, 2);
}

TEST_F(MemberNumbers, OfScriptsAreEachObjectsOwn) {
    ScriptEngine engine("JScript",
                        "var first = { Name: 'one', Layers: 'L1' }; var second = { Layers: 'L2', Name: "
                        "'two' }; var third = { Other: 1, Layers: 'L3', Name: 'three' };");
    for (const auto& [sVariable, sName] :
         {std::pair("first", "one"), {"second", "two"}, {"third", "three"}}) {
        const LateBound map(pContext_, kindMap, engine.evaluate(sVariable));
        EXPECT_EQ(map.text("Name"), sName);
    }
}

} // namespace

} // namespace halvane::test
