#pragma once

#include "base/com/Variant.h"

#include <span>
#include <string>
#include <string_view>

namespace halvane::host::com {

/// What a failed call is told by; made a text only then.
struct CallName {
    std::string_view sKind;
    std::string_view sMember;

    [[nodiscard]] std::string text() const;
};

/// Calls a member of an automation object.
/// @param bMethod what the member is by its description: scripts answer a property and a method without
///        arguments each in its own way.
/// @param name for the failure's text.
/// @returns a value: what it refers to was fetched.
/// @throws Failure.
[[nodiscard]] halvane::com::Variant invoke(IDispatch& dispatch, DISPID id, bool bMethod,
                                           std::span<const halvane::com::Variant> aArguments,
                                           const CallName& name);

/// Assigns an object to a property. @throws Failure.
void invokeAssignment(IDispatch& dispatch, DISPID id, const halvane::com::Variant& object,
                      const CallName& name);

} // namespace halvane::host::com
