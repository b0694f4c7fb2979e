#pragma once

#include "ui/win32/Windows.h"

#include <string>

namespace halvane::ui::win32 {

struct ControlKind {
    const wchar_t* sClass;
    DWORD nStyle;
    DWORD nExtendedStyle = 0;
};

inline constexpr ControlKind kindLabel{WC_STATICW, SS_LEFT | WS_VISIBLE};
inline constexpr ControlKind kindBox{WC_EDITW, ES_AUTOHSCROLL | WS_TABSTOP | WS_VISIBLE, WS_EX_CLIENTEDGE};
inline constexpr ControlKind kindButton{WC_BUTTONW, BS_PUSHBUTTON | WS_TABSTOP | WS_VISIBLE};
inline constexpr ControlKind kindDefaultButton{WC_BUTTONW, BS_DEFPUSHBUTTON | WS_TABSTOP | WS_VISIBLE};

/// Adds a control to a dialog, behind those that it has, in the dialog's font. It goes with the dialog.
/// @throws Failure when the system refuses.
HWND addControl(HWND hDialog, const ControlKind& kind, int lControl, const std::wstring& sText);

/// The whole text of a control.
[[nodiscard]] std::wstring textOfControl(HWND hControl);

/// Has a button never take Enter, which is then the dialog's default button wherever the focus is.
void leaveEnterAlone(HWND hButton);

/// A tip over a control, in the dialog's font.
void addTip(HWND hDialog, HWND hControl, std::wstring sText);

} // namespace halvane::ui::win32
