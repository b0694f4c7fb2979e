#pragma once

#include "base/Failure.h"
#include "base/Redaction.h"
#include "host/gdal/source/DataInUse.h"

#include <cpl_error.h>

#include <string>
#include <string_view>

namespace halvane::host::gdal {

/// Collects what the data library reports on this thread from construction to destruction; nothing reaches
/// standard error meanwhile. Scopes nest.
class ErrorScope {
public:
    ErrorScope();
    ~ErrorScope();
    ErrorScope(const ErrorScope&) = delete;
    ErrorScope& operator=(const ErrorScope&) = delete;

    /// Whether an error (not a warning) was reported.
    [[nodiscard]] bool failed() const { return failed_; }
    /// Whether a warning was reported.
    [[nodiscard]] bool warned() const { return !warnings_.empty(); }
    /// Whether memory ran out. What was made of the data meanwhile may lack anything.
    [[nodiscard]] bool outOfMemory() const { return outOfMemory_; }
    /// Whether a database could not read its file, or had no memory to. What it told after that may lack
    /// anything.
    [[nodiscard]] bool storageFailed() const;
    /// The errors' texts without passwords, or the warnings' when there was no error.
    [[nodiscard]] std::string text() const;
    void clear();
    /// HostFailure: the context, then what was reported.
    [[nodiscard]] Failure failure(std::string_view sContext) const;
    /// @throws Failure that one.
    [[noreturn]] void raise(std::string_view sContext) const;
    /// Raises when an error was reported.
    void raiseIfFailed(std::string_view sContext) const;

private:
    static void CPL_STDCALL collect(CPLErr kind, CPLErrorNum lNumber, const char* pText);

    LibraryCall call_;
    std::string errors_;
    std::string warnings_;
    bool failed_ = false;
    bool outOfMemory_ = false;
};

} // namespace halvane::host::gdal
