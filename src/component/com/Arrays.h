#pragma once

#include "base/Failure.h"
#include "base/com/HResult.h"
#include "base/com/Windows.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>
#include <utility>

namespace halvane::server {

/// Owns an array.
class Array {
public:
    Array() noexcept = default;
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;
    Array(Array&& other) noexcept : pArray_(other.detach()) {}
    Array& operator=(Array&& other) noexcept {
        std::swap(pArray_, other.pArray_);
        return *this;
    }
    ~Array() {
        if (pArray_ != nullptr)
            SafeArrayDestroy(pArray_);
    }

    /// A new array of one dimension, indexed from 0. @throws Failure OutOfMemory.
    [[nodiscard]] static Array create(VARTYPE vt, std::size_t nElements);
    /// A copy with elements of another type; empty elements become the type's default. Nothing for no array.
    /// @throws Failure TypeMismatch for an element that cannot be converted and for more than one dimension.
    [[nodiscard]] static Array convertedFrom(SAFEARRAY* pSource, VARTYPE vt);

    [[nodiscard]] SAFEARRAY* get() const noexcept { return pArray_; }
    [[nodiscard]] SAFEARRAY* detach() noexcept { return std::exchange(pArray_, nullptr); }

private:
    SAFEARRAY* pArray_ = nullptr;
};

/// The element type of an array. @throws Failure.
[[nodiscard]] VARTYPE elementType(SAFEARRAY* pArray);

/// Whether an array is one of elements of that type; one that does not tell its type is.
[[nodiscard]] bool isOf(SAFEARRAY* pArray, VARTYPE vt) noexcept;

/// The type of the elements that C++ has as Element: whole numbers of 32 bits where it is none of the others.
template<class Element>
inline constexpr VARTYPE typeOfElement = std::is_same_v<Element, double>    ? VT_R8
                                         : std::is_same_v<Element, BSTR>    ? VT_BSTR
                                         : std::is_same_v<Element, VARIANT> ? VT_VARIANT
                                                                            : VT_I4;

/// Puts an array where a caller keeps one. An array with the same bounds keeps its place in memory.
/// @throws Failure ActionNotSupported for a caller's array of other bounds that cannot be dimensioned anew.
void replaceArray(SAFEARRAY** ppKept, Array newArray);

/// The elements of an array of one dimension, open for reading and writing while this lives.
template<class Element>
class ArrayElements {
public:
    /// @throws Failure SubscriptOutOfRange for no array, TypeMismatch for more than one dimension and for
    ///         other elements.
    explicit ArrayElements(SAFEARRAY* pArray) : pArray_(pArray) {
        if (pArray == nullptr)
            throw Failure::of(FailureNumber::SubscriptOutOfRange);
        if (SafeArrayGetDim(pArray) != 1 || SafeArrayGetElemsize(pArray) != sizeof(Element) ||
            !isOf(pArray, typeOfElement<Element>))
            throw Failure::of(FailureNumber::TypeMismatch);
        lFirst_ = pArray->rgsabound[0].lLbound;
        void* pData = nullptr;
        com::require(SafeArrayAccessData(pArray, &pData), "SafeArrayAccessData");
        aElements_ = {static_cast<Element*>(pData), pArray->rgsabound[0].cElements};
    }
    ArrayElements(const ArrayElements&) = delete;
    ArrayElements& operator=(const ArrayElements&) = delete;
    ~ArrayElements() { SafeArrayUnaccessData(pArray_); }

    /// The index of the first element.
    [[nodiscard]] std::int32_t first() const noexcept { return lFirst_; }
    [[nodiscard]] std::span<Element> all() const noexcept { return aElements_; }
    /// The elements from index 0 on. @throws Failure SubscriptOutOfRange for an array that begins later.
    [[nodiscard]] std::span<Element> fromZero() const {
        if (lFirst_ > 0)
            throw Failure::of(FailureNumber::SubscriptOutOfRange);
        const auto nBefore = static_cast<std::size_t>(-static_cast<std::int64_t>(lFirst_));
        return nBefore < aElements_.size() ? aElements_.subspan(nBefore) : std::span<Element>();
    }

private:
    SAFEARRAY* pArray_;
    std::int32_t lFirst_ = 0;
    std::span<Element> aElements_;
};

} // namespace halvane::server
