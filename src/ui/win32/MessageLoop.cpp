#include "ui/win32/MessageLoop.h"

#include "ui/win32/ControlIds.h"

namespace halvane::ui::win32 {

namespace {

bool isEscapeOf(HWND hDialog, const MSG& message) {
    return message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE &&
           (message.hwnd == hDialog || IsChild(hDialog, message.hwnd) != FALSE);
}

/// A key that is held down is one wish: cancelling an export must not close the window, too.
bool isRepeated(const MSG& keyDown) {
    constexpr LPARAM lWasDown = LPARAM{1} << 30U;
    return (keyDown.lParam & lWasDown) != 0;
}

void handle(HWND hDialog, MSG& message) {
    // The system would press Cancel, and beep while that is disabled.
    if (isEscapeOf(hDialog, message)) {
        if (!isRepeated(message))
            SendMessageW(hDialog, WM_COMMAND, lEscape, 0);
        return;
    }
    if (IsDialogMessageW(hDialog, &message) != FALSE)
        return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

bool leaveForOwnLoop(const MSG& message) {
    PostQuitMessage(static_cast<int>(message.wParam));
    return false;
}

} // namespace

bool handleWaitingMessages(HWND hDialog) {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        if (message.message == WM_QUIT)
            return leaveForOwnLoop(message);
        handle(hDialog, message);
    }
    return true;
}

bool handleNextMessage(HWND hDialog) {
    MSG message{};
    const BOOL bGot = GetMessageW(&message, nullptr, 0, 0);
    if (bGot == 0)
        return leaveForOwnLoop(message);
    if (bGot > 0)
        handle(hDialog, message);
    return bGot > 0;
}

} // namespace halvane::ui::win32
