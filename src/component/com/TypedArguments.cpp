#include "component/com/TypedArguments.h"

#include "base/com/HResult.h"
#include "component/com/Arrays.h"
#include "component/com/VariantConversion.h"

#include <cstdint>
#include <limits>
#include <utility>

namespace halvane::server {

namespace {

/// The variable that a variant refers to, or the variant itself.
const VARIANT& variableOf(const VARIANT& variant) {
    const VARIANT* pVariable = &variant;
    while (V_VT(pVariable) == (VT_BYREF | VT_VARIANT))
        pVariable = V_VARIANTREF(pVariable);
    return *pVariable;
}

bool isNothing(const VARIANT& value) {
    switch (V_VT(&value)) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_ERROR:
        return true;
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return V_UNKNOWN(&value) == nullptr;
    default:
        return false;
    }
}

/// Where a variant keeps its array; nullptr when it holds none.
SAFEARRAY** arrayIn(VARIANT& variable) {
    if ((V_VT(&variable) & VT_ARRAY) == 0)
        return nullptr;
    return (V_VT(&variable) & VT_BYREF) != 0 ? V_ARRAYREF(&variable) : &V_ARRAY(&variable);
}

com::Variant objectFrom(const VARIANT& source, REFIID iid) {
    com::Variant object;
    VARIANT* pObject = object.put();
    V_DISPATCH(pObject) = nullptr;
    V_VT(pObject) = VT_DISPATCH;
    if (isNothing(source))
        return object;
    const com::Variant held = com::Variant::copyOf(source);
    if (V_VT(&held.get()) != VT_DISPATCH && V_VT(&held.get()) != VT_UNKNOWN)
        throw Failure::of(FailureNumber::TypeMismatch);
    IUnknown* pHeld = V_UNKNOWN(&held.get());
    if (pHeld == nullptr)
        return object;
    void* pQueried = nullptr;
    if (FAILED(pHeld->QueryInterface(iid, &pQueried)))
        throw Failure::of(FailureNumber::TypeMismatch);
    // All interfaces that members take are dual ones.
    V_DISPATCH(pObject) = static_cast<IDispatch*>(pQueried);
    return object;
}

/// What a member that makes a new array is passed: nothing in place of an array of variants, which can hold
/// any elements, else the array as it is, whose kind the member judges.
Array placeForArray(SAFEARRAY* pSource) {
    if (pSource == nullptr || elementType(pSource) == VT_VARIANT)
        return {};
    return Array::convertedFrom(pSource, elementType(pSource));
}

com::Variant arrayFrom(const VARIANT& source, VARTYPE vtElement, bool bIsMade) {
    com::Variant array;
    VARIANT* pArray = array.put();
    VARIANT lent = source;
    SAFEARRAY** ppSource = arrayIn(lent);
    if (ppSource == nullptr && !isNothing(source))
        throw Failure::of(FailureNumber::TypeMismatch);
    SAFEARRAY* pSource = ppSource == nullptr ? nullptr : *ppSource;
    // Scripts have arrays of variants alone, which are converted; whoever passes another kind means it.
    if (pSource != nullptr && !bIsMade && !isOf(pSource, VT_VARIANT) && !isOf(pSource, vtElement))
        throw Failure::of(FailureNumber::TypeMismatch);
    V_ARRAY(pArray) = (bIsMade ? placeForArray(pSource) : Array::convertedFrom(pSource, vtElement)).detach();
    V_VT(pArray) = static_cast<VARTYPE>(VT_ARRAY | vtElement);
    return array;
}

com::Variant valueFrom(const VARIANT& source, const ParameterType& type, LCID lcid,
                       bool bMakesArray = false) {
    if (type.isArray())
        return arrayFrom(source, static_cast<VARTYPE>(type.vt & ~VT_ARRAY), bMakesArray);
    if (type.isObject())
        return objectFrom(source, type.iid);
    if (type.vt == VT_VARIANT)
        return com::Variant::copyOf(source);
    return isNothing(source) ? defaultOf(type.vt) : convertedTo(type.vt, source, lcid);
}

/// What a number or text that a member passes back starts from. Whatever the caller's variable holds, the
/// call is made.
com::Variant resultFrom(const VARIANT& source, const ParameterType& type, LCID lcid) {
    com::Variant start;
    VARIANT* pStart = start.put();
    if (type.vt == VT_I4) {
        // Members tell numbers by reference and read none; this one is never told, so that what the member
        // left alone shows.
        V_I4(pStart) = std::numeric_limits<LONG>::min();
        V_VT(pStart) = VT_I4;
        return start;
    }
    try {
        return valueFrom(source, type, lcid);
    } catch (const Failure&) {
        return defaultOf(type.vt);
    }
}

/// A text that a member reads and passes back: an object would be read by whatever it calls its value, and
/// lost.
com::Variant readTextFrom(const VARIANT& source, const ParameterType& type, LCID lcid) {
    const auto vt = static_cast<VARTYPE>(V_VT(&source) & ~VT_BYREF);
    if ((vt & VT_ARRAY) != 0 || vt == VT_DISPATCH || vt == VT_UNKNOWN)
        throw Failure::of(FailureNumber::TypeMismatch);
    return valueFrom(source, type, lcid);
}

/// All values lie at one address of a variant.
LONGLONG bitsOf(const VARIANT& value) {
    return V_I8(&value);
}

void passBackArray(VARIANT& variable, SAFEARRAY* pResult) {
    if (SAFEARRAY** ppKept = arrayIn(variable)) {
        const auto vtKept = static_cast<VARTYPE>(V_VT(&variable) & ~(VT_ARRAY | VT_BYREF));
        replaceArray(ppKept, Array::convertedFrom(pResult, vtKept));
        return;
    }
    // Scripts can index arrays of variants only.
    Array array = Array::convertedFrom(pResult, VT_VARIANT);
    VariantClear(&variable);
    V_ARRAY(&variable) = array.detach();
    V_VT(&variable) = VT_ARRAY | VT_VARIANT;
}

/// Into a variable of a plain type that the caller passed by reference.
/// @throws Failure when it cannot hold the result.
void passBackPlain(const VARIANT& reference, const VARIANT& result) {
    const auto vt = static_cast<VARTYPE>(V_VT(&reference) & ~VT_BYREF);
    VARIANT converted = convertedTo(vt, result).detach();
    switch (vt) {
    case VT_I1:
    case VT_UI1:
        *V_UI1REF(&reference) = V_UI1(&converted);
        break;
    case VT_BOOL:
    case VT_I2:
    case VT_UI2:
        *V_I2REF(&reference) = V_I2(&converted);
        break;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
        *V_I4REF(&reference) = V_I4(&converted);
        break;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
        *V_I8REF(&reference) = V_I8(&converted);
        break;
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
        // All three are pointers; what the caller had goes.
        std::swap(*V_BSTRREF(&reference), V_BSTR(&converted));
        VariantClear(&converted);
        break;
    default:
        VariantClear(&converted);
        throw Failure::of(FailureNumber::TypeMismatch);
    }
}

void passBackWhereItFits(const VARIANT& reference, const VARIANT& result) {
    try {
        passBackPlain(reference, result);
    } catch (const Failure&) {
        // The call has been made: a variable of another type keeps what it has.
        return;
    }
}

} // namespace

TypedArguments::TypedArguments(ITypeInfo& info, const FUNCDESC& function, const DISPPARAMS& given,
                               const MemberCall& call)
    : info_(info), function_(function), given_(given), call_(call), aArguments_(given.cArgs),
      aPassed_(given.cArgs), parameters_(given) {
    parameters_.rgvarg = aPassed_.data();
}

HRESULT TypedArguments::convert(UINT* pnWrongArgument) {
    for (UINT nArgument = 0; nArgument < given_.cArgs; ++nArgument) {
        try {
            convertOne(nArgument);
        } catch (const Failure& failure) {
            if (pnWrongArgument != nullptr)
                *pnWrongArgument = nArgument;
            if (failure.number() == static_cast<std::int32_t>(FailureNumber::TypeMismatch))
                return DISP_E_TYPEMISMATCH;
            if (failure.number() == static_cast<std::int32_t>(FailureNumber::Overflow))
                return DISP_E_OVERFLOW;
            throw;
        }
    }
    return S_OK;
}

void TypedArguments::convertOne(UINT nArgument) {
    const VARIANT& given = given_.rgvarg[nArgument];
    aPassed_[nArgument] = given;
    // Named arguments come first and say their places; the others stand in reverse order.
    const std::int64_t nPlace = nArgument < given_.cNamedArgs
                                    ? std::int64_t{given_.rgdispidNamedArgs[nArgument]}
                                    : std::int64_t{given_.cArgs} - 1 - nArgument;
    Argument& argument = aArguments_[nArgument];
    argument.type = parameterTypeOf(info_, function_.lprgelemdescParam[nPlace].tdesc);
    if (argument.type.bByReference && V_VT(&given) == (argument.type.vt | VT_BYREF) &&
        !argument.type.isObject())
        return; // the member works on the caller's variable itself
    argument.bPassBack = argument.type.bByReference && (V_VT(&given) & VT_BYREF) != 0;
    argument.vOwn = ownOf(variableOf(given), argument, static_cast<UINT>(nPlace));
    argument.nBefore = bitsOf(argument.vOwn.get());
    aPassed_[nArgument] = argument.vOwn.get();
    if (!argument.type.bByReference)
        return;
    VARIANT& passed = aPassed_[nArgument];
    V_VT(&passed) = static_cast<VARTYPE>(argument.type.vt | VT_BYREF);
    V_I4REF(&passed) = const_cast<LONG*>(&V_I4(&argument.vOwn.get()));
}

com::Variant TypedArguments::ownOf(const VARIANT& variable, const Argument& argument, UINT nPlace) const {
    if (call_.traits.readText == nPlace)
        return readTextFrom(variable, argument.type, call_.lcid);
    const bool bPlainResult = argument.bPassBack && !argument.type.isArray() && !argument.type.isObject();
    return bPlainResult ? resultFrom(variable, argument.type, call_.lcid)
                        : valueFrom(variable, argument.type, call_.lcid, call_.traits.bMakesArray);
}

void TypedArguments::passBack() {
    for (UINT nArgument = 0; nArgument < given_.cArgs; ++nArgument) {
        Argument& argument = aArguments_[nArgument];
        if (!argument.bPassBack)
            continue;
        const VARIANT& result = argument.vOwn.get();
        // The caller lends its variable for this.
        auto& variable = const_cast<VARIANT&>(variableOf(given_.rgvarg[nArgument]));
        if (argument.type.isArray()) {
            // One that was sorted in place has the same address.
            if (V_ARRAY(&result) != nullptr)
                passBackArray(variable, V_ARRAY(&result));
        } else if (bitsOf(result) == argument.nBefore) {
            continue;
        } else if ((V_VT(&variable) & VT_BYREF) != 0) {
            passBackWhereItFits(variable, result);
        } else {
            VariantClear(&variable);
            variable = argument.vOwn.detach();
        }
    }
}

} // namespace halvane::server
