#pragma once

namespace halvane::cli {

/// Whether the environment names a display.
[[nodiscard]] bool hasDisplay();

/// Whether a window could be shown on that display. The window toolkit ends the program where it cannot, so
/// a process of its own tries. To be called before any thread is started.
[[nodiscard]] bool displayAnswers(int lArguments, char** aArguments);

} // namespace halvane::cli
