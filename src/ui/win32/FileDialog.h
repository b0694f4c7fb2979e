#pragma once

#include "ui/win32/Windows.h"

#include <optional>
#include <string>
#include <string_view>

namespace halvane::ui::win32 {

/// CommonDialog1: the one file dialog of the form. It opens where it was left.
class FileDialog {
public:
    /// @param sFilter as CommonDialogFilter.h reads it. @param sStart where to begin the first time: a file,
    /// a folder or "", as a person typed it.
    /// @returns the existing file chosen, or nothing.
    [[nodiscard]] std::optional<std::string> showOpen(HWND hOwner, std::string_view sFilter,
                                                      std::string_view sStart);

private:
    std::wstring sFolder_;
};

/// The filter as the system's file dialog takes it: descriptions and patterns, each ended by a null, one more
/// at the end. What keeps no file back gets the pattern for every file.
[[nodiscard]] std::wstring systemFilter(std::string_view sFilter);

} // namespace halvane::ui::win32
