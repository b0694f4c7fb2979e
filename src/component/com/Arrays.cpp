#include "component/com/Arrays.h"

#include "base/com/Variant.h"
#include "component/com/VariantConversion.h"

#include <algorithm>
#include <span>

namespace halvane::server {

namespace {

/// The address of an element that a variant of that type holds, as the array functions want it.
void* elementIn(VARIANT& element, VARTYPE vt) {
    switch (vt) {
    case VT_VARIANT:
        return &element;
    case VT_BSTR:
        return V_BSTR(&element); // texts and objects are passed themselves
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return V_UNKNOWN(&element);
    default:
        return &V_I4(&element); // all plain values lie at one address
    }
}

com::Variant elementAt(SAFEARRAY* pArray, VARTYPE vt, LONG lIndex) {
    com::Variant element;
    VARIANT* pElement = element.put();
    if (vt == VT_VARIANT) {
        com::require(SafeArrayGetElement(pArray, &lIndex, pElement), "SafeArrayGetElement");
        return element;
    }
    com::require(SafeArrayGetElement(pArray, &lIndex, &V_I4(pElement)), "SafeArrayGetElement");
    V_VT(pElement) = vt;
    return element;
}

com::Variant converted(const com::Variant& element, VARTYPE vt) {
    return V_VT(&element.get()) == VT_EMPTY ? defaultOf(vt) : convertedTo(vt, element.get());
}

/// A decimal lies elsewhere in a variant than the plain values, and a record may be larger than a variant.
bool fitsPlainValue(VARTYPE vt) {
    return vt != VT_DECIMAL && vt != VT_RECORD;
}

bool haveSameBounds(const SAFEARRAY& left, const SAFEARRAY& right) {
    const std::span leftBounds(left.rgsabound, left.cDims);
    const std::span rightBounds(right.rgsabound, right.cDims);
    return std::equal(leftBounds.begin(), leftBounds.end(), rightBounds.begin(), rightBounds.end(),
                      [](const SAFEARRAYBOUND& l, const SAFEARRAYBOUND& r) {
                          return l.cElements == r.cElements && l.lLbound == r.lLbound;
                      });
}

} // namespace

Array Array::create(VARTYPE vt, std::size_t nElements) {
    Array array;
    array.pArray_ = SafeArrayCreateVector(vt, 0, static_cast<ULONG>(nElements));
    if (array.pArray_ == nullptr)
        throw Failure::of(FailureNumber::OutOfMemory);
    return array;
}

Array Array::convertedFrom(SAFEARRAY* pSource, VARTYPE vt) {
    Array target;
    if (pSource == nullptr)
        return target;
    const VARTYPE vtSource = elementType(pSource);
    if (vtSource == vt) {
        com::require(SafeArrayCopy(pSource, &target.pArray_), "SafeArrayCopy");
        return target;
    }
    if (SafeArrayGetDim(pSource) != 1 || !fitsPlainValue(vtSource) || !fitsPlainValue(vt))
        throw Failure::of(FailureNumber::TypeMismatch);
    SAFEARRAYBOUND bound = pSource->rgsabound[0];
    target.pArray_ = SafeArrayCreate(vt, 1, &bound);
    if (target.pArray_ == nullptr)
        throw Failure::of(FailureNumber::OutOfMemory);
    for (ULONG i = 0; i < bound.cElements; ++i) {
        LONG lIndex = bound.lLbound + static_cast<LONG>(i);
        com::Variant element = elementAt(pSource, vtSource, lIndex);
        if (vt != VT_VARIANT)
            element = converted(element, vt);
        VARIANT value = element.get(); // still owned by `element`
        com::require(SafeArrayPutElement(target.pArray_, &lIndex, elementIn(value, vt)),
                     "SafeArrayPutElement");
    }
    return target;
}

VARTYPE elementType(SAFEARRAY* pArray) {
    VARTYPE vt = VT_EMPTY;
    com::require(SafeArrayGetVartype(pArray, &vt), "SafeArrayGetVartype");
    return vt;
}

bool isOf(SAFEARRAY* pArray, VARTYPE vt) noexcept {
    VARTYPE vtHeld = VT_EMPTY;
    if (FAILED(SafeArrayGetVartype(pArray, &vtHeld)))
        return true;
    return vtHeld == vt || (vt == VT_I4 && vtHeld == VT_INT); // one type by two names
}

void replaceArray(SAFEARRAY** ppKept, Array newArray) {
    SAFEARRAY* pKept = *ppKept;
    if (pKept != nullptr && newArray.get() != nullptr && haveSameBounds(*pKept, *newArray.get()) &&
        elementType(pKept) == elementType(newArray.get())) {
        com::require(SafeArrayCopyData(newArray.get(), pKept), "SafeArrayCopyData");
        return;
    }
    if (pKept != nullptr) {
        if ((pKept->fFeatures & (FADF_FIXEDSIZE | FADF_STATIC)) != 0)
            throw Failure::of(FailureNumber::ActionNotSupported);
        com::require(SafeArrayDestroy(pKept), "SafeArrayDestroy");
    }
    *ppKept = newArray.detach();
}

} // namespace halvane::server
