#include "host/gdal/source/ArchiveMembers.h"

#include "base/Owned.h"
#include "host/gdal/source/Locations.h"

#include <cpl_vsi.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace halvane::host::gdal {

std::string insideOfArchive(const std::string& sPath) {
    return "/vsizip/{" + sPath + "}";
}

ArchiveMembers membersOfArchive(const std::string& sPath) {
    constexpr std::uint64_t lMostMebibytes = 4096;
    constexpr std::uint64_t lMostMebibytesInMemory = 512;
    constexpr std::size_t nMostMembers = 10'000;
    const std::uint64_t lMost = extensionOf(sPath) == "kmz" ? lMostMebibytesInMemory : lMostMebibytes;
    const Owned<VSIDIR, VSICloseDir> pFolder(VSIOpenDir(insideOfArchive(sPath).c_str(), -1, nullptr));
    ArchiveMembers members;
    std::uint64_t lBytes = 0;
    while (const VSIDIREntry* pEntry = pFolder == nullptr ? nullptr : VSIGetNextDirEntry(pFolder.get())) {
        members.names.emplace_back(pEntry->pszName);
        lBytes += pEntry->nSize;
        if (pEntry->nSize > (lMost << 20U) || lBytes > (lMost << 20U) ||
            members.names.size() > nMostMembers) {
            members.sWhyNot = "it holds more than " + std::to_string(lMost) +
                              " MiB, or 10,000 files, the most that is read of an archive; unpack it";
            break;
        }
    }
    std::sort(members.names.begin(), members.names.end());
    return members;
}

} // namespace halvane::host::gdal
