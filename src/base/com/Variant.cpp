#include "base/com/Variant.h"

#include "base/Base64.h"
#include "base/Failure.h"
#include "base/com/Bstr.h"
#include "base/com/HResult.h"

#include <atomic>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

namespace halvane::com {

namespace {

std::atomic<ObjectBridge*> pInstalledBridge = nullptr;

/// Scripts know no 64-bit numbers: only those that need it get one.
void setWhole(VARIANT& variant, std::int64_t nValue) {
    if (std::in_range<std::int32_t>(nValue)) {
        V_VT(&variant) = VT_I4;
        V_I4(&variant) = static_cast<std::int32_t>(nValue);
    } else {
        V_VT(&variant) = VT_I8;
        V_I8(&variant) = nValue;
    }
}

VARIANT toPlainVariant(const Value& vValue) {
    VARIANT variant;
    VariantInit(&variant);
    std::visit(
        [&variant](const auto& held) {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, Null>) {
                V_VT(&variant) = VT_NULL;
            } else if constexpr (std::is_same_v<Held, bool>) {
                V_VT(&variant) = VT_BOOL;
                V_BOOL(&variant) = held ? VARIANT_TRUE : VARIANT_FALSE;
            } else if constexpr (std::is_same_v<Held, std::int32_t>) {
                V_VT(&variant) = VT_I4;
                V_I4(&variant) = held;
            } else if constexpr (std::is_same_v<Held, std::int64_t>) {
                setWhole(variant, held);
            } else if constexpr (std::is_same_v<Held, float>) {
                V_VT(&variant) = VT_R4;
                V_R4(&variant) = held;
            } else if constexpr (std::is_same_v<Held, double>) {
                V_VT(&variant) = VT_R8;
                V_R8(&variant) = held;
            } else if constexpr (std::is_same_v<Held, Date>) {
                V_DATE(&variant) = daysOf(held);
                V_VT(&variant) = VT_DATE;
            } else if constexpr (std::is_same_v<Held, std::string>) {
                V_BSTR(&variant) = Bstr(held).detach();
                V_VT(&variant) = VT_BSTR;
            } else if constexpr (std::is_same_v<Held, ObjectPtr>) {
                V_DISPATCH(&variant) = dispatchOf(held).detach();
                V_VT(&variant) = VT_DISPATCH;
            }
        },
        vValue);
    return variant;
}

Value wholeNumber(std::int64_t nValue) {
    if (std::in_range<std::int32_t>(nValue))
        return static_cast<std::int32_t>(nValue);
    return nValue;
}

Value wholeNumber(std::uint64_t nValue) {
    if (std::in_range<std::int64_t>(nValue))
        return wholeNumber(static_cast<std::int64_t>(nValue));
    return static_cast<double>(nValue);
}

Value decimalNumber(DECIMAL decimal) {
    double dValue = 0;
    require(VarR8FromDec(&decimal, &dValue), "VarR8FromDec");
    return dValue;
}

Value unknownObject(IUnknown* pUnknown) {
    if (pUnknown == nullptr)
        return ObjectPtr();
    const auto pDispatch = ComPtr<IUnknown>(pUnknown).query<IDispatch>();
    if (!pDispatch)
        throw Failure::of(FailureNumber::TypeMismatch);
    return objectOf(pDispatch.get());
}

Value arrayText(const VARIANT& variant) {
    const auto aBytes = bytesOf(variant);
    if (!aBytes.has_value())
        throw Failure::of(FailureNumber::TypeMismatch);
    std::string sText;
    appendBase64(sText, *aBytes);
    return sText;
}

Value toPlainValue(const VARIANT& variant) {
    switch (V_VT(&variant)) {
    case VT_EMPTY:
        return Empty{};
    case VT_NULL:
        return Null{};
    case VT_BOOL:
        return V_BOOL(&variant) != VARIANT_FALSE;
    case VT_I1:
        return wholeNumber(std::int64_t{static_cast<signed char>(V_I1(&variant))});
    case VT_UI1:
        return wholeNumber(std::int64_t{V_UI1(&variant)});
    case VT_I2:
        return wholeNumber(std::int64_t{V_I2(&variant)});
    case VT_UI2:
        return wholeNumber(std::int64_t{V_UI2(&variant)});
    case VT_I4:
    case VT_INT:
        return wholeNumber(std::int64_t{V_I4(&variant)});
    case VT_UI4:
    case VT_UINT:
        return wholeNumber(std::int64_t{V_UI4(&variant)});
    case VT_I8:
        return wholeNumber(std::int64_t{V_I8(&variant)});
    case VT_UI8:
        return wholeNumber(std::uint64_t{V_UI8(&variant)});
    case VT_R4:
        return V_R4(&variant);
    case VT_R8:
        return V_R8(&variant);
    case VT_CY:
        return static_cast<double>(V_CY(&variant).int64) / 10000.0;
    case VT_DECIMAL:
        return decimalNumber(V_DECIMAL(&variant));
    case VT_DATE:
        return dateOf(V_DATE(&variant));
    case VT_BSTR:
        return utf8Of(V_BSTR(&variant));
    case VT_DISPATCH:
        return objectOf(V_DISPATCH(&variant));
    case VT_UNKNOWN:
        return unknownObject(V_UNKNOWN(&variant));
    case VT_ERROR:
        if (V_ERROR(&variant) == DISP_E_PARAMNOTFOUND)
            return Empty{};
        throw Failure::of(FailureNumber::TypeMismatch);
    default:
        return arrayText(variant);
    }
}

} // namespace

Variant& Variant::operator=(Variant&& other) noexcept {
    std::swap(held_, other.held_);
    return *this;
}

Variant Variant::attach(const VARIANT& owned) noexcept {
    Variant owner;
    owner.held_ = owned;
    return owner;
}

Variant Variant::copyOf(const VARIANT& lent) {
    Variant copy;
    VARIANT source = lent; // the function wants it mutable, and leaves it alone
    require(VariantCopyInd(&copy.held_, &source), "VariantCopyInd");
    return copy;
}

VARIANT Variant::detach() noexcept {
    VARIANT given = held_;
    VariantInit(&held_);
    return given;
}

VARIANT* Variant::put() noexcept {
    VariantClear(&held_);
    return &held_;
}

void installObjectBridge(ObjectBridge* pBridge) noexcept {
    pInstalledBridge = pBridge;
}

ComPtr<IDispatch> dispatchOf(const ObjectPtr& pObject) {
    if (pObject == nullptr)
        return {};
    if (const auto* pHolder = dynamic_cast<const DispatchHolder*>(pObject.get()))
        return ComPtr<IDispatch>(&pHolder->dispatch());
    ObjectBridge* pBridge = pInstalledBridge;
    auto pDispatch = pBridge == nullptr ? nullptr : pBridge->dispatchOf(pObject);
    if (!pDispatch)
        throw Failure::of(FailureNumber::TypeMismatch);
    return pDispatch;
}

ObjectPtr objectOf(IDispatch* pDispatch) {
    if (pDispatch == nullptr)
        return nullptr;
    ObjectBridge* pBridge = pInstalledBridge;
    auto pObject = pBridge == nullptr ? nullptr : pBridge->objectOf(*pDispatch);
    return pObject != nullptr ? pObject : std::make_shared<ForeignObject>(ComPtr<IDispatch>(pDispatch));
}

Variant toVariant(const Value& vValue) {
    return Variant::attach(toPlainVariant(vValue));
}

Value toValue(const VARIANT& variant) {
    if ((V_VT(&variant) & VT_BYREF) == 0)
        return toPlainValue(variant);
    return toPlainValue(Variant::copyOf(variant).get());
}

std::optional<std::vector<std::byte>> bytesOf(const VARIANT& variant) {
    if ((V_VT(&variant) & ~VT_BYREF) != (VT_ARRAY | VT_UI1))
        return std::nullopt;
    SAFEARRAY* pArray = (V_VT(&variant) & VT_BYREF) != 0 ? *V_ARRAYREF(&variant) : V_ARRAY(&variant);
    if (pArray == nullptr || SafeArrayGetDim(pArray) != 1)
        return std::nullopt;
    std::vector<std::byte> aBytes(pArray->rgsabound[0].cElements);
    void* pData = nullptr;
    require(SafeArrayAccessData(pArray, &pData), "SafeArrayAccessData");
    if (!aBytes.empty())
        std::memcpy(aBytes.data(), pData, aBytes.size());
    SafeArrayUnaccessData(pArray);
    return aBytes;
}

} // namespace halvane::com
