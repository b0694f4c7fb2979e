#include "ui/win32/Controls.h"

#include "base/com/HResult.h"

namespace halvane::ui::win32 {

namespace {

/// The module whose code this is, whatever program has loaded it.
HINSTANCE thisModule() {
    HMODULE hModule = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&thisModule), &hModule);
    return hModule;
}

WNDPROC ownProcedure(HWND hButton) {
    return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(hButton, GWLP_USERDATA));
}

LRESULT CALLBACK withoutEnter(HWND hButton, UINT nMessage, WPARAM wParam, LPARAM lParam) {
    // Those that call themselves push buttons become the default one while they have the focus.
    if (nMessage == WM_GETDLGCODE)
        return DLGC_BUTTON;
    return CallWindowProcW(ownProcedure(hButton), hButton, nMessage, wParam, lParam);
}

} // namespace

HWND addControl(HWND hDialog, const ControlKind& kind, int lControl, const std::wstring& sText) {
    HWND hControl = CreateWindowExW(
        kind.nExtendedStyle, kind.sClass, sText.c_str(), kind.nStyle | WS_CHILD, 0, 0, 0, 0, hDialog,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(lControl)), thisModule(), nullptr);
    if (hControl == nullptr)
        com::require(HRESULT_FROM_WIN32(GetLastError()), "The dialog's controls");
    SendMessageW(hControl, WM_SETFONT, static_cast<WPARAM>(SendMessageW(hDialog, WM_GETFONT, 0, 0)), FALSE);
    return hControl;
}

std::wstring textOfControl(HWND hControl) {
    std::wstring sText(static_cast<std::size_t>(GetWindowTextLengthW(hControl)) + 1, L'\0');
    const int lLength = GetWindowTextW(hControl, sText.data(), static_cast<int>(sText.size()));
    sText.resize(static_cast<std::size_t>(lLength));
    return sText;
}

void leaveEnterAlone(HWND hButton) {
    const auto own = SetWindowLongPtrW(hButton, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&withoutEnter));
    SetWindowLongPtrW(hButton, GWLP_USERDATA, own);
}

void addTip(HWND hDialog, HWND hControl, std::wstring sText) {
    HWND hTip = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                                WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                                CW_USEDEFAULT, CW_USEDEFAULT, hDialog, nullptr, thisModule(), nullptr);
    if (hTip == nullptr)
        return; // a tip less
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = hDialog;
    tool.uId = reinterpret_cast<UINT_PTR>(hControl);
    tool.lpszText = sText.data();
    SendMessageW(hTip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

} // namespace halvane::ui::win32
