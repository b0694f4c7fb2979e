#pragma once

#include <string>
#include <vector>

namespace halvane::host::gdal {

/// What an archive tells of what it holds; nothing of it is unpacked.
struct ArchiveMembers {
    std::vector<std::string> names; ///< sorted; none where it cannot be read
    std::string sWhyNot;            ///< why it is too large to be read; "" where it is not
};

/// @param sPath of a zipped archive, absolute. 4 GiB (of ".kmz", which is read into memory, 512 MiB) and
///        10,000 members are the most that is read.
[[nodiscard]] ArchiveMembers membersOfArchive(const std::string& sPath);

/// How the library names the inside of an archive: as a folder, without a separator at its end.
[[nodiscard]] std::string insideOfArchive(const std::string& sPath);

} // namespace halvane::host::gdal
