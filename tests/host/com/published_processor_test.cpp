// A processor in C++ with the published interface, as the system creates it.

#include "host/com/CollectionFace.h"
#include "host/com/ComHost.h"
#include "host/com/DispatchObject.h"
#include "host/com/ExternalProcessor.h"
#include "host/com/ScriptHost.h"

#include "base/com/Bstr.h"
#include "collection/dCollection.h"

namespace halvane::test {

namespace {

using com::Bstr;
using com::ComPtr;
using host::com::ExternalProcessorInterface;

/// Tells how many objects it was given; fails when it was given none. Its automation face knows no members.
class CountingProcessor final : public ExternalProcessorInterface {
public:
    virtual ~CountingProcessor() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** ppObject) override {
        *ppObject = nullptr;
        if (iid != IID_IUnknown && iid != IID_IDispatch && iid != host::com::iidExternalProcessor)
            return E_NOINTERFACE;
        *ppObject = static_cast<ExternalProcessorInterface*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++nReferences_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG nLeft = --nReferences_;
        if (nLeft == 0)
            delete this; // as the technology has it: the last reference owns the object
        return nLeft;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pCount) override {
        *pCount = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return DISP_E_MEMBERNOTFOUND;
    }

    HRESULT STDMETHODCALLTYPE Process(IDispatch** dColSpatialVariables, BSTR* sValue) override {
        ComPtr<IDispatch> pCollection(*dColSpatialVariables);
        DISPID id = DISPID_UNKNOWN;
        const Bstr sName(std::string_view("Count"));
        LPOLESTR pName = sName.get();
        com::Variant count;
        DISPPARAMS none{};
        if (FAILED(pCollection->GetIDsOfNames(IID_NULL, &pName, 1, LOCALE_USER_DEFAULT, &id)) ||
            FAILED(pCollection->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                                       count.put(), nullptr, nullptr)))
            return E_FAIL;
        if (V_I4(&count.get()) == 0)
            return E_ACCESSDENIED;
        *sValue = Bstr("objects: " + std::to_string(V_I4(&count.get()))).detach();
        return S_OK;
    }

private:
    ULONG nReferences_ = 0;
};

std::string processed(dCollection& collection) {
    const CollectionBridge bridge;
    const auto pComponent = host::com::processorOf(ComPtr<IDispatch>(new CountingProcessor));
    const auto pProcessor = std::dynamic_pointer_cast<IExternalProcessor>(pComponent);
    return pProcessor == nullptr ? "no processor" : pProcessor->Process(collection);
}

TEST(PublishedProcessor, IsCalledThroughItsInterface) {
    const auto pCollection = dCollection::create();
    static_cast<void>(pCollection->Add(1, "A"));
    static_cast<void>(pCollection->Add(2, "B"));
    EXPECT_EQ(processed(*pCollection), "objects: 2");
}

TEST(PublishedProcessor, FailsWithTheReasonOfItsCode) {
    const auto pCollection = dCollection::create();
    EXPECT_NE(failureOf([&] { return processed(*pCollection); }).find("IExternalProcessor.Process"),
              std::string::npos);
    EXPECT_EQ(failureNumberOf([&] { return processed(*pCollection); }),
              static_cast<std::int32_t>(E_ACCESSDENIED));
}

TEST(PublishedProcessor, DoesNotFailWithTheReasonOfAnEarlierCall) {
    ComPtr<ICreateErrorInfo> pCreated;
    ASSERT_EQ(CreateErrorInfo(pCreated.put()), S_OK);
    pCreated->SetDescription(Bstr(std::string_view("of an earlier call")).get());
    ASSERT_EQ(SetErrorInfo(0, pCreated.query<IErrorInfo>(IID_IErrorInfo).get()), S_OK);
    const auto pCollection = dCollection::create();
    EXPECT_EQ(failureOf([&] { return processed(*pCollection); }).find("of an earlier call"),
              std::string::npos);
}

} // namespace

} // namespace halvane::test
