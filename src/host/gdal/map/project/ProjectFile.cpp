#include "host/gdal/map/project/ProjectFile.h"

#include "base/Failure.h"
#include "base/Owned.h"
#include "host/gdal/map/FileKind.h"
#include "host/gdal/source/ArchiveMembers.h"
#include "host/gdal/source/Locations.h"

#include <cpl_string.h>
#include <cpl_vsi.h>

#include <cstddef>
#include <string>
#include <vector>

namespace halvane::host::gdal {

namespace {

constexpr std::size_t nMostBytes = std::size_t{128} << 20U;

[[noreturn]] void fail(const std::string& sPath, const std::string& sWhy) {
    throw Failure(FailureNumber::HostFailure, "\"" + sPath + "\" " + sWhy);
}

void closeFile(VSILFILE* pFile) {
    VSIFCloseL(pFile);
}

// @param sName what is read, as the library names it. @param sPath as people name it.
std::string contentOf(const std::string& sName, const std::string& sPath) {
    const Owned<VSILFILE, closeFile> pFile(VSIFOpenL(sName.c_str(), "rb"));
    if (pFile == nullptr)
        fail(sPath, "cannot be read");
    std::string sContent;
    std::string sBlock(std::size_t{1} << 20U, '\0');
    for (std::size_t nRead = sBlock.size(); nRead == sBlock.size();) {
        nRead = VSIFReadL(sBlock.data(), 1, sBlock.size(), pFile.get());
        sContent.append(sBlock, 0, nRead);
        if (sContent.size() > nMostBytes)
            fail(sPath, "holds a project of more than 128 MiB, the most that is read");
    }
    return sContent;
}

// What stands at the top of an archive; what is called as a project is.
std::string memberOf(const std::string& sPath) {
    const std::string sArchive = insideOfArchive(sPath);
    const CPLStringList names(VSIReadDir(sArchive.c_str()));
    std::vector<std::string> projects;
    for (int lName = 0; lName < names.size(); ++lName)
        if (extensionOf(names[lName]) == "qgs")
            projects.emplace_back(names[lName]);
    if (projects.size() != 1) {
        fail(sPath, names.empty() ? "is no archive that can be read"
                                  : "holds " + std::to_string(projects.size()) +
                                        " files .qgs; an archive of a project has one");
    }
    return sArchive + "/" + projects.front();
}

} // namespace

MarkupDocument parseProject(const std::string& sPath) {
    const std::string sContent = contentOf(isProjectArchive(sPath) ? memberOf(sPath) : sPath, sPath);
    return parseMarkupText(sContent, sPath, DocumentTypes::WithoutContent);
}

} // namespace halvane::host::gdal
