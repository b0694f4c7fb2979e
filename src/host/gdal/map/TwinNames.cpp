#include "host/gdal/map/TwinNames.h"

#include "base/Text.h"

#include <filesystem>

namespace halvane::host::gdal {

namespace {

std::string qualified(const std::string& sName, const std::string& sFile, int lTwin) {
    // A name with a colon would be read as a group's and its member's.
    const std::string sFileName = replaceAll(std::filesystem::path(sFile).filename().string(), ":", "_");
    return sName + " (" + sFileName + (lTwin == 1 ? "" : ", " + std::to_string(lTwin)) + ")";
}

} // namespace

void TwinNames::take(const std::string& sName) {
    given_.insert(upperCase(sName));
}

std::string TwinNames::give(const std::string& sName, const std::string& sFile) {
    std::string sGiven = sName;
    for (int lTwin = 1; !given_.insert(upperCase(sGiven)).second; ++lTwin)
        sGiven = qualified(sName, sFile, lTwin);
    return sGiven;
}

} // namespace halvane::host::gdal
