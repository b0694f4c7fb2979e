#pragma once

#include "io/PosixFile.h"

#include <string>

namespace halvane::io {

/// What became of the list that grants named users and groups access to a file, beside its permissions.
enum class AccessList {
    None, ///< the target has none, or the system knows none: the file has none either
    Kept, ///< the file has the target's
    Lost, ///< the file has none, though the target has one
};

/// Gives an open file the access list of a target, in place of one that it may have from its folder.
/// @param bWanted whether the target's may be taken; without it the file has none afterwards.
[[nodiscard]] AccessList keepAccessList(const FileDescriptor& file, const std::string& sTarget, bool bWanted);

} // namespace halvane::io
