#include "ui/win32/Dpi.h"

namespace halvane::ui::win32 {

namespace {

/// A function of the system that came after the oldest one that is supported; nothing where it is missing.
template<class Function>
Function laterFunction(const char* sName) {
    const HMODULE hLibrary = GetModuleHandleW(L"user32.dll");
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(hLibrary, sName)));
}

/// The published number of "per monitor, version 2".
HANDLE perMonitorContext() noexcept {
    return reinterpret_cast<HANDLE>(static_cast<INT_PTR>(-4));
}

HANDLE setThreadContext(HANDLE hContext) noexcept {
    static const auto fnSet = laterFunction<HANDLE(WINAPI*)(HANDLE)>("SetThreadDpiAwarenessContext");
    return fnSet == nullptr ? nullptr : fnSet(hContext);
}

int systemDpi() {
    HDC hScreen = GetDC(nullptr);
    const int lDpi = GetDeviceCaps(hScreen, LOGPIXELSY);
    ReleaseDC(nullptr, hScreen);
    return lDpi;
}

} // namespace

int dpiOf(HWND hWindow) {
    static const auto fnDpi = laterFunction<UINT(WINAPI*)(HWND)>("GetDpiForWindow");
    const UINT nDpi = fnDpi == nullptr ? 0 : fnDpi(hWindow);
    return nDpi == 0 ? systemDpi() : static_cast<int>(nDpi);
}

LOGFONTW messageFont(int lDpi) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
    LOGFONTW font = metrics.lfMessageFont;
    font.lfHeight = MulDiv(font.lfHeight, lDpi, systemDpi());
    return font;
}

PerMonitor::PerMonitor() noexcept : hBefore_(setThreadContext(perMonitorContext())) {}

PerMonitor::~PerMonitor() {
    if (hBefore_ != nullptr)
        setThreadContext(hBefore_);
}

void scaleByItself(HWND hDialog) {
    constexpr int nAll = 7; // neither the dialog nor its controls
    static const auto fnSet = laterFunction<BOOL(WINAPI*)(HWND, int, int)>("SetDialogDpiChangeBehavior");
    if (fnSet != nullptr)
        fnSet(hDialog, nAll, nAll);
}

} // namespace halvane::ui::win32
