#include "component/com/HeldVariant.h"

#include "base/Failure.h"
#include "base/com/Bstr.h"
#include "component/com/VariantConversion.h"

#include <cstddef>
#include <string_view>

namespace halvane::server {

namespace {

/// Whether UTF-8 can carry the text: no half of a surrogate pair, no half of a character.
bool isWellFormed(BSTR sText) {
    const UINT nLength = SysStringLen(sText);
    return SysStringByteLen(sText) == nLength * sizeof(OLECHAR) &&
           com::wideOf(com::utf8Of(sText)) == std::wstring_view(sText == nullptr ? L"" : sText, nLength);
}

bool isRepresentable(const VARIANT& variant) {
    switch (V_VT(&variant)) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_BOOL:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_DISPATCH:
        return true;
    case VT_BSTR:
        return isWellFormed(V_BSTR(&variant));
    default:
        return false;
    }
}

std::string systemText(const VARIANT& variant) {
    constexpr LCID lcidEnglish = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);
    const com::Variant text = convertedTo(VT_BSTR, variant, lcidEnglish);
    return com::utf8Of(V_BSTR(&text.get()));
}

} // namespace

std::string HeldVariant::text() const {
    switch (V_VT(&variant())) {
    case VT_CY:
    case VT_DECIMAL:
        return systemText(variant()); // exact, where a floating-point number need not be
    case VT_UNKNOWN:
        throw Failure::of(FailureNumber::TypeMismatch);
    default:
        return toText(com::toValue(variant()));
    }
}

Value valueOf(const VARIANT& variant) {
    com::Variant copy = com::Variant::copyOf(variant);
    if (isRepresentable(copy.get()))
        return com::toValue(copy.get());
    return ObjectPtr(std::make_shared<HeldVariant>(std::move(copy)));
}

com::Variant variantOf(const Value& vValue) {
    if (const auto pHeld = objectAs<HeldVariant>(vValue))
        return com::Variant::copyOf(pHeld->variant());
    return com::toVariant(vValue);
}

com::ComPtr<IUnknown> objectIn(const VARIANT& variant) {
    return isObject(variant) ? com::ComPtr<IUnknown>(V_UNKNOWN(&variant)) : nullptr;
}

bool isObject(const VARIANT& variant) noexcept {
    return V_VT(&variant) == VT_DISPATCH || V_VT(&variant) == VT_UNKNOWN;
}

bool areSameObject(IUnknown* pLeft, IUnknown* pRight) noexcept {
    if (pLeft == nullptr || pRight == nullptr)
        return pLeft == pRight;
    // An object has one address for all only as IUnknown.
    const auto pLeftIdentity = com::ComPtr<IUnknown>(pLeft).query<IUnknown>();
    const auto pRightIdentity = com::ComPtr<IUnknown>(pRight).query<IUnknown>();
    return pLeftIdentity.get() == pRightIdentity.get();
}

} // namespace halvane::server
