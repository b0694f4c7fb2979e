#pragma once

#include "ui/win32/Windows.h"

namespace halvane::ui::win32 {

/// Handles what waits for this thread's windows, the dialog's keys among it, and returns.
/// @returns false when the thread is asked to end; the request stays for its own loop.
bool handleWaitingMessages(HWND hDialog);

/// Waits for one message and handles it. @returns as above.
bool handleNextMessage(HWND hDialog);

} // namespace halvane::ui::win32
