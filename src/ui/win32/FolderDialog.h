#pragma once

#include "ui/FormView.h"
#include "ui/win32/Windows.h"

#include <optional>
#include <string_view>

namespace halvane::ui::win32 {

/// Lets a person choose an item among the folders and files of this machine. What is no place of the file
/// system comes without a path, and is no folder.
/// @param sStart the folder to begin in, as a person typed it.
/// @returns nothing when the dialog was left without a choice.
[[nodiscard]] std::optional<BrowsedItem> browseForFolder(HWND hOwner, std::string_view sTitle,
                                                         std::string_view sStart);

} // namespace halvane::ui::win32
