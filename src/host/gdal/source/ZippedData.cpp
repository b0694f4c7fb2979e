#include "host/gdal/source/ZippedData.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/source/ArchiveMembers.h"
#include "host/gdal/source/DataFiles.h"
#include "host/gdal/source/Locations.h"

#include <algorithm>
#include <utility>

namespace halvane::host::gdal {

namespace {

[[noreturn]] void fail(const std::string& sPath, const std::string& sWhy) {
    throw Failure(FailureNumber::HostFailure, "\"" + sPath + "\" " + sWhy);
}

bool isData(const std::string& sMember, const std::vector<std::string>& members) {
    const std::string sExtension = extensionOf(sMember);
    if (sMember.find(".gdb/") != std::string::npos)
        return false; // a part of a database
    if (sExtension != "dbf")
        return sExtension == "shp" || sExtension == "gpkg" || sExtension == "gdb";
    const std::string sStem = sMember.substr(0, sMember.size() - sExtension.size());
    return std::none_of(members.begin(), members.end(),
                        [&](const std::string& sOther) { return equalIgnoringCase(sOther, sStem + "shp"); });
}

} // namespace

bool isZippedData(const std::string& sPath) {
    return extensionOf(sPath) == "zip" && isFile(sPath);
}

std::vector<SourcePtr> sourcesInArchive(HandlePool& pool, const std::string& sPath) {
    const ArchiveMembers members = membersOfArchive(sPath);
    if (!members.sWhyNot.empty())
        fail(sPath, "cannot be read: " + members.sWhyNot);
    if (members.names.empty())
        fail(sPath, "is no archive that can be read, or is empty");
    std::vector<SourcePtr> sources;
    for (const std::string& sMember : members.names) {
        if (!isData(sMember, members.names))
            continue;
        Opening opening = openMember(pool, insideOfArchive(sPath) + "/" + sMember, sPath);
        if (opening.pSource == nullptr)
            fail(sPath, "holds \"" + sMember + "\", which cannot be read" +
                            (opening.sErrors.empty() ? "" : ": " + opening.sErrors));
        sources.push_back(std::move(opening.pSource));
    }
    if (sources.empty())
        fail(sPath, "holds no shapefile set, no GeoPackage and no file database, which alone are read of an "
                    "archive; unpack it");
    return sources;
}

} // namespace halvane::host::gdal
