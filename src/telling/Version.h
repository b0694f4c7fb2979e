#pragma once

#include <string_view>

namespace halvane {

/// "0.2.0", as the build file of the tree has it.
[[nodiscard]] std::string_view version() noexcept;

} // namespace halvane
