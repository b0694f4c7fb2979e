#pragma once

#include "ui/win32/Windows.h"

#include <memory>
#include <type_traits>

namespace halvane::ui::win32 {

struct IconRelease {
    void operator()(HICON hIcon) const noexcept { DestroyIcon(hIcon); }
};
/// A picture that is ours to give back.
using OwnedIcon = std::unique_ptr<std::remove_pointer_t<HICON>, IconRelease>;

// The pictures of the browse buttons and of the window, drawn in squares of that side.

[[nodiscard]] OwnedIcon pictureOfAFile(int lSide);
[[nodiscard]] OwnedIcon pictureOfAFolder(int lSide);

} // namespace halvane::ui::win32
