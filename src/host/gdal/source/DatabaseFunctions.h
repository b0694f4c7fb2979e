#pragma once

#include <string_view>

namespace halvane::host::gdal {

/// Whether the SQL of data may call a function: one whose result depends on its arguments, the clock and the
/// database alone, that changes nothing, not even how later calls behave, and that no argument makes end the
/// process or compute without end. Any function that is not known here is none. @param sName ignoring case.
[[nodiscard]] bool isAllowedFunction(std::string_view sName);

/// Whether the function is one that only the program itself calls.
[[nodiscard]] bool isOwnFunction(std::string_view sName);

} // namespace halvane::host::gdal
