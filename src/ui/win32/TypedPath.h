#pragma once

#include <string>
#include <string_view>

namespace halvane::ui::win32 {

/// The existing folder that a person typed, or the one of the file that was typed; either slash separates.
/// "" when there is none.
[[nodiscard]] std::wstring folderOfTyped(std::string_view sTyped);

} // namespace halvane::ui::win32
