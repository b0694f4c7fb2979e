#pragma once

#include "ui/win32/Windows.h"

namespace halvane::ui::win32 {

/// Pixels of the units that dialogs are measured in: they follow the person's text size and scale.
struct Units {
    int lFourAcross; ///< pixels of four units from left to right
    int lEightDown;  ///< pixels of eight units from the top down

    /// Those of a dialog's own font.
    [[nodiscard]] static Units of(HWND hDialog) {
        RECT rect{0, 0, 4, 8};
        MapDialogRect(hDialog, &rect);
        return {static_cast<int>(rect.right), static_cast<int>(rect.bottom)};
    }

    [[nodiscard]] int across(int lUnits) const { return MulDiv(lUnits, lFourAcross, 4); }
    [[nodiscard]] int down(int lUnits) const { return MulDiv(lUnits, lEightDown, 8); }
};

} // namespace halvane::ui::win32
