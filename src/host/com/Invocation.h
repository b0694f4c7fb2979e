#pragma once

#include "collection/com/Variant.h"

#include <span>
#include <string_view>

namespace halvane::host::com {

/// Calls a member of an automation object.
/// @param bMethod what the member is by its description: scripts answer a property and a method without
///        arguments each in its own way.
/// @param sName for the failure's text.
/// @returns a value: what it refers to was fetched.
/// @throws Failure.
[[nodiscard]] halvane::com::Variant invoke(IDispatch& dispatch, DISPID id, bool bMethod,
                                           std::span<const halvane::com::Variant> aArguments,
                                           std::string_view sName);

/// Assigns an object to a property. @throws Failure.
void invokeAssignment(IDispatch& dispatch, DISPID id, const halvane::com::Variant& object,
                      std::string_view sName);

} // namespace halvane::host::com
