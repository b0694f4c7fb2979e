#include "ui/win32/MessageLoop.h"

namespace halvane::ui::win32 {

namespace {

void handle(HWND hDialog, MSG& message) {
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
