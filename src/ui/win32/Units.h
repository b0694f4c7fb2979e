#pragma once

#include "ui/win32/Windows.h"

#include <string_view>

namespace halvane::ui::win32 {

/// Pixels of the units that dialogs are measured in: they follow the person's text size and scale.
struct Units {
    int lFourAcross; ///< pixels of four units from left to right
    int lEightDown;  ///< pixels of eight units from the top down

    /// Those of a font, by the rule of the system: the mean width of its letters and its height.
    [[nodiscard]] static Units of(HFONT hFont) {
        constexpr std::wstring_view sLetters = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
        HDC hScreen = GetDC(nullptr);
        HGDIOBJ hBefore = SelectObject(hScreen, hFont);
        TEXTMETRICW metrics{};
        SIZE all{};
        GetTextMetricsW(hScreen, &metrics);
        GetTextExtentPoint32W(hScreen, sLetters.data(), static_cast<int>(sLetters.size()), &all);
        SelectObject(hScreen, hBefore);
        ReleaseDC(nullptr, hScreen);
        return {static_cast<int>((all.cx / 26 + 1) / 2), static_cast<int>(metrics.tmHeight)};
    }

    [[nodiscard]] int across(int lUnits) const { return MulDiv(lUnits, lFourAcross, 4); }
    [[nodiscard]] int down(int lUnits) const { return MulDiv(lUnits, lEightDown, 8); }
};

} // namespace halvane::ui::win32
