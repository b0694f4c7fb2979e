#include "base/com/Variant.h"

#include "base/Failure.h"
#include "base/com/Bstr.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace halvane::test {

namespace {

using com::Bstr;
using com::ComPtr;
using com::toVariant;
using com::Variant;

VARIANT variant(VARTYPE type) {
    VARIANT held;
    VariantInit(&held);
    V_VT(&held) = type;
    return held;
}

/// A value that went to a variant and back.
Value andBack(const Value& vValue) {
    return com::toValue(toVariant(vValue).get());
}

VARTYPE typeOf(const Value& vValue) {
    return V_VT(&toVariant(vValue).get());
}

TEST(Variants, KeepValuesOfEveryKind) {
    for (const Value& vValue :
         {Value(Empty{}), Value(Null{}), Value(true), Value(false), Value(-7), Value(5'000'000'000),
          Value(0.1F), Value(0.1), Value(Date{2024, 2, 29, 23, 59, 59}), Value(Date{0, 0, 0, 12, 30, 0}),
          Value(std::string()), Value(std::string("a\0b", 3)),
          Value(std::string("\xE2\x82\xAC \xF0\x9F\x97\xBA"))})
        EXPECT_EQ(andBack(vValue), vValue) << vValue.index();
}

TEST(Variants, HaveTheTypesOfAutomation) {
    EXPECT_EQ(typeOf(Empty{}), VT_EMPTY);
    EXPECT_EQ(typeOf(Null{}), VT_NULL);
    EXPECT_EQ(typeOf(true), VT_BOOL);
    EXPECT_EQ(V_BOOL(&toVariant(true).get()), VARIANT_TRUE);
    EXPECT_EQ(typeOf(7), VT_I4);
    EXPECT_EQ(typeOf(std::int64_t{7}), VT_I4) << "scripts know no 64-bit numbers";
    EXPECT_EQ(typeOf(std::int64_t{1} << 40), VT_I8);
    EXPECT_EQ(typeOf(1.5F), VT_R4);
    EXPECT_EQ(typeOf(1.5), VT_R8);
    EXPECT_EQ(typeOf(Date{2024, 3, 7}), VT_DATE);
    EXPECT_EQ(typeOf(std::string("x")), VT_BSTR);
    EXPECT_EQ(typeOf(ObjectPtr()), VT_DISPATCH);
    EXPECT_EQ(V_DISPATCH(&toVariant(ObjectPtr()).get()), nullptr);
}

TEST(Variants, HoldWholeNumbersOfEveryWidth) {
    VARIANT held = variant(VT_I1);
    V_I1(&held) = -5;
    EXPECT_EQ(com::toValue(held), Value(-5));
    held = variant(VT_UI1);
    V_UI1(&held) = 250;
    EXPECT_EQ(com::toValue(held), Value(250));
    held = variant(VT_I2);
    V_I2(&held) = -300;
    EXPECT_EQ(com::toValue(held), Value(-300));
    held = variant(VT_UI2);
    V_UI2(&held) = 60000;
    EXPECT_EQ(com::toValue(held), Value(60000));
    held = variant(VT_UI4);
    V_UI4(&held) = 4'000'000'000;
    EXPECT_EQ(com::toValue(held), Value(std::int64_t{4'000'000'000}));
    held = variant(VT_UI8);
    V_UI8(&held) = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(com::toValue(held), Value(18446744073709551615.0));
}

TEST(Variants, HoldMoneyAndDecimalsAsDoubles) {
    VARIANT held = variant(VT_CY);
    V_CY(&held).int64 = -12'3456;
    EXPECT_EQ(com::toValue(held), Value(-12.3456));
    DECIMAL decimal{};
    ASSERT_EQ(VarDecFromR8(0.25, &decimal), S_OK);
    V_DECIMAL(&held) = decimal;
    V_VT(&held) = VT_DECIMAL;
    EXPECT_EQ(com::toValue(held), Value(0.25));
}

TEST(Variants, AreFollowedWhereTheyReferToSomethingElse) {
    std::int32_t lNumber = 12;
    VARIANT held = variant(VT_BYREF | VT_I4);
    LONG lHeld = lNumber;
    V_I4REF(&held) = &lHeld;
    EXPECT_EQ(com::toValue(held), Value(12));
    const Variant inner = toVariant(std::string("inside"));
    VARIANT innerHeld = inner.get();
    held = variant(VT_BYREF | VT_VARIANT);
    V_VARIANTREF(&held) = &innerHeld;
    EXPECT_EQ(com::toValue(held), Value(std::string("inside")));
}

TEST(Variants, AreEmptyForAnArgumentThatWasLeftOut) {
    VARIANT held = variant(VT_ERROR);
    V_ERROR(&held) = DISP_E_PARAMNOTFOUND;
    EXPECT_EQ(com::toValue(held), Value(Empty{}));
    V_ERROR(&held) = E_FAIL;
    EXPECT_THROW(static_cast<void>(com::toValue(held)), Failure);
}

TEST(Variants, GiveAwayWhatTheyHoldOnce) {
    Variant text = toVariant(std::string("mine"));
    VARIANT given = text.detach();
    EXPECT_EQ(V_VT(&text.get()), VT_EMPTY);
    EXPECT_EQ(com::toValue(Variant::attach(given).get()), Value(std::string("mine")));
}

TEST(Texts, ReplaceWhatIsNoText) {
    EXPECT_EQ(com::utf8Of(std::wstring_view(L"a\xD800z")), "a\xEF\xBF\xBDz");
    EXPECT_EQ(com::wideOf("\xF0\x9F\x97\xBA"), L"\xD83D\xDDFA");
    EXPECT_EQ(com::wideOf("\xFF\xFE bad"), L"\xFFFD\xFFFD bad");
    EXPECT_EQ(com::utf8Of(BSTR{nullptr}), "");
}

/// An object of another component, and a count of who holds it.
class CountedFace final : public IDispatch {
public:
    virtual ~CountedFace() = default;
    ULONG nReferences = 1;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** ppObject) override {
        *ppObject = iid == IID_IUnknown || iid == IID_IDispatch ? static_cast<IDispatch*>(this) : nullptr;
        if (*ppObject == nullptr)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++nReferences; }
    ULONG STDMETHODCALLTYPE Release() override { return --nReferences; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return E_NOTIMPL;
    }
};

TEST(Objects, OfOthersTravelAsThemselvesAndAreReleased) {
    CountedFace face;
    {
        VARIANT held = variant(VT_DISPATCH);
        V_DISPATCH(&held) = &face;
        const Value vObject = com::toValue(held);
        EXPECT_EQ(face.nReferences, 2u);
        const Variant back = toVariant(vObject);
        EXPECT_EQ(V_DISPATCH(&back.get()), &face);
        EXPECT_EQ(face.nReferences, 3u);
    }
    EXPECT_EQ(face.nReferences, 1u);
}

TEST(Objects, AreFoundBehindAnUnknownInterface) {
    CountedFace face;
    VARIANT held = variant(VT_UNKNOWN);
    V_UNKNOWN(&held) = &face;
    EXPECT_NE(std::get<ObjectPtr>(com::toValue(held)), nullptr);
    V_UNKNOWN(&held) = nullptr;
    EXPECT_EQ(std::get<ObjectPtr>(com::toValue(held)), nullptr);
    EXPECT_EQ(face.nReferences, 1u);
}

class OwnObject final : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "OwnObject"; }
};

class OneObjectBridge final : public com::ObjectBridge {
public:
    OneObjectBridge(ObjectPtr pOwn, CountedFace& face) : pOwn_(std::move(pOwn)), face_(face) {
        com::installObjectBridge(this);
    }
    ~OneObjectBridge() override { com::installObjectBridge(nullptr); }
    ComPtr<IDispatch> dispatchOf(const ObjectPtr& pObject) override {
        return pObject == pOwn_ ? ComPtr<IDispatch>(&face_) : nullptr;
    }
    ObjectPtr objectOf(IDispatch& dispatch) override { return &dispatch == &face_ ? pOwn_ : nullptr; }

private:
    ObjectPtr pOwn_;
    CountedFace& face_;
};

TEST(Objects, OfOursTravelOverTheBridge) {
    const ObjectPtr pOwn = std::make_shared<OwnObject>();
    EXPECT_THROW(static_cast<void>(toVariant(pOwn)), Failure) << "there is no bridge";
    CountedFace face;
    {
        const OneObjectBridge bridge(pOwn, face);
        EXPECT_EQ(andBack(pOwn), Value(pOwn));
        EXPECT_THROW(static_cast<void>(toVariant(ObjectPtr(std::make_shared<OwnObject>()))), Failure);
    }
    EXPECT_EQ(face.nReferences, 1u);
}

TEST(Pointers, AskForOtherInterfaces) {
    CountedFace face;
    const ComPtr<IUnknown> pUnknown(&face);
    EXPECT_TRUE(pUnknown.query<IDispatch>());
    EXPECT_FALSE(pUnknown.query<IStream>());
    EXPECT_FALSE(ComPtr<IUnknown>().query<IDispatch>());
    EXPECT_EQ(face.nReferences, 2u);
}

} // namespace

} // namespace halvane::test
