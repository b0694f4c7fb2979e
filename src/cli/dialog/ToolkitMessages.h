#pragma once

namespace halvane::cli {

/// From here on what the toolkit of the window reports is told on standard error as lines of the program's
/// own: each text once, passwords masked, control characters shown by their numbers. For the whole process.
void tellToolkitMessages();

} // namespace halvane::cli
