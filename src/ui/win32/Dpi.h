#pragma once

#include "ui/win32/Windows.h"

#include <memory>
#include <type_traits>

namespace halvane::ui::win32 {

struct FontRelease {
    void operator()(HFONT hFont) const noexcept { DeleteObject(hFont); }
};
using OwnedFont = std::unique_ptr<std::remove_pointer_t<HFONT>, FontRelease>;

/// The density at which nothing is scaled, in dots an inch.
inline constexpr int lUnscaledDpi = 96;

/// The density at which a window is drawn, in dots an inch.
[[nodiscard]] int dpiOf(HWND hWindow);

/// The person's font of messages and dialogs, as it is now, at a density.
[[nodiscard]] LOGFONTW messageFont(int lDpi);

/// Windows that this thread makes while it lives are told the density of the monitor that they are on, and
/// scale themselves. Where the system does not know that, it scales them.
class PerMonitor {
public:
    PerMonitor() noexcept;
    PerMonitor(const PerMonitor&) = delete;
    PerMonitor& operator=(const PerMonitor&) = delete;
    ~PerMonitor();

private:
    HANDLE hBefore_;
};

/// Has the system leave the scaling of a dialog's controls to the dialog.
void scaleByItself(HWND hDialog);

} // namespace halvane::ui::win32
