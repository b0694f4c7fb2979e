#pragma once

#include <filesystem>
#include <string>

namespace halvane::io {

class FileDescriptor;

// Names for files that are written beside their target and renamed over it: ".TARGET.N.tmp", N from 1 on. A
// file in writing is locked, so that those which an ended process left can be told from it.

/// Locks a file without a name until its last descriptor is closed. Where the place knows no locks, nothing
/// is locked and nothing is ever removed.
void lockWhileOpen(const FileDescriptor& file) noexcept;
/// The same for a new file of that name. @returns false when another process removed it before it was locked.
[[nodiscard]] bool lockWhileOpen(const FileDescriptor& file, const std::string& sPath) noexcept;

/// Removes the files that ended processes left beside the target. @returns the first name that is free;
/// another process may take it before the caller does.
[[nodiscard]] std::string freeNameBeside(const std::filesystem::path& target);

} // namespace halvane::io
