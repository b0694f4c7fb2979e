#pragma once

// Which data the library works on, for whoever has to tell of its crash.

#include "host/DataHost.h"

namespace halvane::host::gdal {

struct Source;

/// What the library works on in this thread. May be called by a signal's handler.
[[nodiscard]] DataInUse dataInUse() noexcept;

/// Whether a call of the library is under way in this thread.
[[nodiscard]] bool libraryIsCalled() noexcept;

/// The calls of the library that follow on this thread are for this source; nothing: for none that is known.
/// @returns what they were for before.
const Source* setDataInUse(const Source* pSource) noexcept;
/// Whoever ends a source calls this.
void forgetDataInUse(const Source* pSource) noexcept;

/// As long as it lives, calls of the library are under way in its thread.
class LibraryCall {
public:
    LibraryCall() noexcept;
    LibraryCall(const LibraryCall&) = delete;
    LibraryCall& operator=(const LibraryCall&) = delete;
    ~LibraryCall();
};

} // namespace halvane::host::gdal
