#pragma once

// Which data the library works on, for whoever has to tell of its crash.

#include "host/DataHost.h"

namespace halvane::host::gdal {

struct Source;

/// What the library works on in this thread. May be called by a signal's handler.
[[nodiscard]] DataInUse dataInUse() noexcept;

/// The calls of the library that follow on this thread are for this source; nothing: for none that is known.
/// @param pSource stays until the next call of this, or until all calls of the library have ended.
void setDataInUse(const Source* pSource) noexcept;

/// As long as it lives, calls of the library are under way in its thread.
class LibraryCall {
public:
    LibraryCall() noexcept;
    LibraryCall(const LibraryCall&) = delete;
    LibraryCall& operator=(const LibraryCall&) = delete;
    ~LibraryCall();
};

} // namespace halvane::host::gdal
