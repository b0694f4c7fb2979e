// Variants of automation, of every type, with any content: what becomes a value goes back and stays that
// value.

#include "base/Failure.h"
#include "base/com/Bstr.h"
#include "base/com/Variant.h"
#include "fuzz/Check.h"
#include "fuzz/Input.h"
#include "fuzz/Target.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>

namespace halvane::fuzz {
namespace {

constexpr VARTYPE aTypes[] = {VT_EMPTY, VT_NULL, VT_I1,    VT_UI1,     VT_I2,       VT_UI2,    VT_I4, VT_UI4,
                              VT_INT,   VT_UINT, VT_I8,    VT_UI8,     VT_R4,       VT_R8,     VT_CY, VT_DATE,
                              VT_BOOL,  VT_BSTR, VT_ERROR, VT_DECIMAL, VT_DISPATCH, VT_UNKNOWN};

BSTR textOf(Input& input) {
    wchar_t aText[8] = {};
    const std::string_view sBytes = input.text(input.below(sizeof(aText)));
    std::memcpy(aText, sBytes.data(), sBytes.size());
    return SysAllocStringLen(aText, static_cast<UINT>(sBytes.size() / sizeof(wchar_t)));
}

VARIANT plainVariant(Input& input) {
    VARIANT variant;
    VariantInit(&variant);
    const VARTYPE type = aTypes[input.below(std::size(aTypes))];
    if (type == VT_BSTR) {
        variant.bstrVal = input.below(8) == 0 ? nullptr : textOf(input);
    } else if (type == VT_DECIMAL) {
        const std::string_view sBytes = input.text(12);
        std::memcpy(&variant.decVal.Hi32, sBytes.data(), sBytes.size());
        variant.decVal.scale = static_cast<BYTE>(input.below(29));
        variant.decVal.sign = input.below(2) == 0 ? BYTE{0} : BYTE{DECIMAL_NEG};
    } else if (type != VT_DISPATCH && type != VT_UNKNOWN) {
        const std::string_view sBytes = input.text(8);
        std::memcpy(&variant.llVal, sBytes.data(), sBytes.size());
    }
    variant.vt = type;
    return variant;
}

VARIANT arrayVariant(Input& input) {
    VARIANT variant;
    VariantInit(&variant);
    const VARTYPE element = input.below(4) == 0 ? VARTYPE{VT_I4} : VARTYPE{VT_UI1};
    SAFEARRAYBOUND aBounds[2] = {{static_cast<ULONG>(input.below(40)), static_cast<LONG>(input.byte()) - 128},
                                 {static_cast<ULONG>(input.below(4)), 0}};
    variant.parray = SafeArrayCreate(element, input.below(6) == 0 ? 2 : 1, aBounds);
    variant.vt = static_cast<VARTYPE>(VT_ARRAY | element);
    if (variant.parray == nullptr)
        variant.vt = VT_EMPTY;
    return variant;
}

/// Lends a variant by reference.
VARIANT reference(const VARIANT& target) {
    VARIANT variant;
    VariantInit(&variant);
    variant.vt = VT_BYREF | VT_VARIANT;
    variant.pvarVal = const_cast<VARIANT*>(&target);
    return variant;
}

/// A text that is no UTF-16 cannot come back as it was.
bool isSame(const Value& left, const Value& right) {
    const auto* pLeft = std::get_if<double>(&left);
    const auto* pRight = std::get_if<double>(&right);
    if (pLeft != nullptr && pRight != nullptr)
        return std::memcmp(pLeft, pRight, sizeof(double)) == 0 || *pLeft != *pLeft;
    const auto* pSingle = std::get_if<float>(&left);
    return (pSingle != nullptr && *pSingle != *pSingle) || left == right;
}

void checkVariant(const VARIANT& variant) {
    static_cast<void>(com::bytesOf(variant));
    Value vValue;
    try {
        vValue = com::toValue(variant);
    } catch (const Failure&) { // it has no value
        return;
    }
    const Value vAgain = com::toValue(com::toVariant(vValue).get());
    check(isSame(vValue, vAgain), "A value stays what it is on its way through automation",
          "of type " + std::to_string(variant.vt));
}

void checkDays(double dDays) {
    try {
        const Date date = com::dateOf(dDays);
        check(com::dateOf(com::daysOf(date)) == date, "A date stays what it is", std::to_string(dDays));
    } catch (const Failure&) { // beyond the calendar
    }
}

} // namespace
} // namespace halvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t nSize) {
    using namespace halvane;
    fuzz::Input input(pBytes, nSize);
    double dDays = 0;
    const std::size_t nForm = input.below(8);
    VARIANT variant = nForm == 0 ? fuzz::arrayVariant(input) : fuzz::plainVariant(input);
    fuzz::checkVariant(variant);
    fuzz::checkVariant(fuzz::reference(variant));
    VariantClear(&variant);
    const std::string_view sDays = input.text(sizeof(dDays));
    std::memcpy(&dDays, sDays.data(), sDays.size());
    fuzz::checkDays(dDays);
    fuzz::checkDays(static_cast<double>(static_cast<std::int32_t>(dDays)) / 7);
    return 0;
}
