#pragma once

#include <string_view>

namespace halvane {

/// The decimal separator of the moment: that of the process's numeric locale, or, on Windows, of the user's
/// regional settings, as automation has it. UTF-8; the view lives until the calling thread asks again.
[[nodiscard]] std::string_view decimalSeparator();

} // namespace halvane
