#pragma once

namespace halvane {

/// What the program returns to the shell; docs/command-line.md publishes these numbers.
enum class ExitCode : int {
    Written = 0,           ///< the document stands and no control node failed
    Findings = 1,          ///< of a check: something is wrong with the control file
    InvalidInput = 2,      ///< bad arguments or an input that cannot be read; nothing was started
    WrittenIncomplete = 3, ///< the document stands, but a control node failed, it is not valid, or the report
                           ///< could not be written
    NotWritten = 4,        ///< nothing was written: an older document is untouched
};

} // namespace halvane
