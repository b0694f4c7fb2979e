#pragma once

#include "ui/FormView.h"
#include "ui/win32/Windows.h"

namespace halvane::ui::win32 {

// The window's controls by their numbers. What drives the window from outside may rely on them.

inline constexpr int lCommand1 = IDOK;
inline constexpr int lCommand2 = IDCANCEL;
inline constexpr int lLabel1 = 101; // to Label5
inline constexpr int lText1 = 111;  // to Text5
inline constexpr int lCommand3 = 123;
inline constexpr int lCommand4 = 124;
inline constexpr int lCommand5 = 125;
// The strip.
inline constexpr int lOutcomeKind = 201;
inline constexpr int lOutcomeLabel = 202;
inline constexpr int lOutcome = 203;
inline constexpr int lOpenFolder = 204;
inline constexpr int lItemCount = 205;
inline constexpr int lProgress = 206;
inline constexpr int lCancelExport = 207;
// A command without a control: the key Escape.
inline constexpr int lEscape = 301;

[[nodiscard]] constexpr int labelOf(Box box) {
    return lLabel1 + static_cast<int>(box);
}
[[nodiscard]] constexpr int textOf(Box box) {
    return lText1 + static_cast<int>(box);
}
/// The button that fills the box; 0 for none.
[[nodiscard]] constexpr int browserOf(Box box) {
    switch (box) {
    case Box::Text1:
        return lCommand3;
    case Box::Text2:
        return lCommand4;
    case Box::Text4:
        return lCommand5;
    default:
        return 0;
    }
}

} // namespace halvane::ui::win32
