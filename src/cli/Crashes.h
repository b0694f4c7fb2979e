#pragma once

#include "host/DataHost.h"

namespace halvane::cli {

/// From now on a crash of the process ends it with one line, which names the data file that the data library
/// was working on, and with exit code 4; nothing is left behind. Who handles crashes already goes on doing
/// so.
/// @param pAsked may be called by a signal's handler.
void prepareForCrashes(host::DataInUse (*pAsked)() noexcept) noexcept;

/// To be called by the handler of a signal that asks for an orderly end. What the data library is still busy
/// with some seconds later cannot be interrupted: the process then ends as after a crash, and says so.
/// Nothing is done before `prepareForCrashes`.
void endWhatTheLibraryDoesNot() noexcept;

/// The document stands: what crashes after this ends with exit code 3.
void crashesLeaveADocument() noexcept;

} // namespace halvane::cli
