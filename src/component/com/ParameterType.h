#pragma once

#include "base/com/Windows.h"

namespace halvane::server {

/// What a member of a dual interface takes at one place.
struct ParameterType {
    /// VT_DISPATCH for an object of any interface, VT_ARRAY with the elements' type for an array.
    VARTYPE vt = VT_EMPTY;
    /// Whether the member passes something back.
    bool bByReference = false;
    /// The interface of an object.
    IID iid = IID_IDispatch;

    [[nodiscard]] bool isArray() const noexcept { return (vt & VT_ARRAY) != 0; }
    [[nodiscard]] bool isObject() const noexcept { return vt == VT_DISPATCH || vt == VT_UNKNOWN; }
};

/// @throws Failure when the library that describes an interface cannot be loaded.
[[nodiscard]] ParameterType parameterTypeOf(ITypeInfo& info, const TYPEDESC& description);

} // namespace halvane::server
