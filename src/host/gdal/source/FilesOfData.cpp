#include "host/gdal/source/FilesOfData.h"

#include "base/Text.h"
#include "host/gdal/source/DataFiles.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Locations.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

namespace halvane::host::gdal {

namespace fs = std::filesystem;

namespace {

// What databases keep beside their file; removing or replacing it loses what is not yet in the file.
constexpr std::array<std::string_view, 3> aBesideDatabase{"-wal", "-shm", "-journal"};

bool isSame(const std::string& sLeft, const std::string& sRight) {
    std::error_code error;
    return sLeft == sRight || fs::equivalent(sLeft, sRight, error);
}

bool isInFolder(const std::string& sFile, const std::string& sFolder) {
    for (fs::path path = fs::path(sFile).parent_path(); path.has_relative_path(); path = path.parent_path())
        if (isSame(path.string(), sFolder))
            return true;
    return false;
}

bool isBesideDatabase(const std::string& sFile, const std::string& sDatabase) {
    return std::any_of(aBesideDatabase.begin(), aBesideDatabase.end(), [&](std::string_view sEnd) {
        return sFile.ends_with(sEnd) && isSame(sFile.substr(0, sFile.size() - sEnd.size()), sDatabase);
    });
}

// What is read beside a file has the beginning of its name.
bool mayBeBeside(const std::string& sFile, const std::string& sData) {
    const std::string sName = fs::path(sFile).filename().string();
    return upperCase(sName).starts_with(upperCase(stemOf(sData))) && isSame(folderOf(sFile), folderOf(sData));
}

bool reads(HandlePool& pool, const SourcePtr& pSource, const std::string& sFile) {
    if (pSource == nullptr)
        return false;
    const ErrorScope errors;
    const Handle handle = pool.acquire(pSource);
    const CPLStringList files(handle.dataset().GetFileList());
    for (int lIndex = 0; lIndex < files.size(); ++lIndex)
        if (isSame(sFile, files[lIndex]))
            return true;
    return false;
}

bool isPartOfFile(HandlePool& pool, const std::string& sFile, const std::string& sData) {
    if (isSame(sFile, sData) || isBesideDatabase(sFile, sData))
        return true;
    if (!isFile(sFile) || !isFile(sData) || !mayBeBeside(sFile, sData))
        return false;
    // Not every driver lists all that it reads. A document may have the name of what tells of data.
    return (isSideFile(sFile) && extensionOf(sFile) != "xml") ||
           (reads(pool, featureSourceOf(pool, sData), sFile) ||
            reads(pool, rasterSourceOf(pool, sData), sFile));
}

bool isKnown(const Opening& opening) {
    return opening.pSource != nullptr || !opening.sExpectedDriver.empty();
}

bool isKnownToDriver(HandlePool& pool, const std::string& sFile) {
    return isKnown(openFeatures(pool, sFile)) || isKnown(openRaster(pool, sFile));
}

bool isPartOfFolder(HandlePool& pool, const std::string& sFile, const std::string& sFolder) {
    if (!isSame(folderOf(sFile), sFolder))
        return false;
    const std::vector<std::string> files = dataFilesIn(sFolder);
    return std::any_of(files.begin(), files.end(), [&](const std::string& sData) {
        return isSame(sFile, sData) ? isKnownToDriver(pool, sData) : isPartOfFile(pool, sFile, sData);
    });
}

} // namespace

bool isPartOfData(HandlePool& pool, const std::string& sFile, const std::string& sLocation) {
    if (!isFolder(sLocation))
        return isPartOfFile(pool, sFile, sLocation);
    return extensionOf(sLocation) == "gdb" ? isInFolder(sFile, sLocation)
                                           : isPartOfFolder(pool, sFile, sLocation);
}

bool isNamedInConnection(const std::string& sFile, const std::string& sConnection) {
    constexpr std::string_view sLimits = " '\"=?&;";
    for (std::size_t nStart = 0; nStart < sConnection.size();) {
        const std::size_t nEnd = std::min(sConnection.find_first_of(sLimits, nStart), sConnection.size());
        const std::string sPiece = sConnection.substr(nStart, nEnd - nStart);
        if (sPiece.starts_with('/') && isSame(sFile, sPiece))
            return true;
        nStart = nEnd + 1;
    }
    return false;
}

} // namespace halvane::host::gdal
