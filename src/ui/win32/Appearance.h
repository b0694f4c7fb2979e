#pragma once

#include "ui/win32/Dpi.h"
#include "ui/win32/Pictures.h"
#include "ui/win32/Units.h"

#include <vector>

namespace halvane::ui::win32 {

/// What of the window follows the screen and the person's settings: its font, its units, its pictures.
class Appearance {
public:
    /// @param bOwnPicture whether the window has no picture of its owner's.
    explicit Appearance(bool bOwnPicture) : bOwnPicture_(bOwnPicture) {}

    /// Gives a dialog and all its controls the system's present font and pictures at a density.
    void apply(HWND hDialog, int lDpi);

    [[nodiscard]] int dpi() const noexcept { return lDpi_; }
    [[nodiscard]] Units units() const noexcept { return units_; }

private:
    bool bOwnPicture_;
    int lDpi_ = lUnscaledDpi;
    Units units_{4, 8};
    OwnedFont pFont_;
    std::vector<OwnedIcon> pictures_;
};

} // namespace halvane::ui::win32
