#include "host/gdal/map/project/ProjectPaths.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/source/Locations.h"

#include <cctype>
#include <filesystem>
#include <vector>

namespace halvane::host::gdal {

namespace {

bool isThere(const std::string& sPath) {
    return isFile(sPath) || isFolder(sPath);
}

// "C:/" of a path that was written on another system.
bool hasDrive(const std::string& sPath) {
    return sPath.size() > 2 && std::isalpha(static_cast<unsigned char>(sPath[0])) != 0 && sPath[1] == ':' &&
           sPath[2] == '/';
}

// The ends of a path that may stand beneath another folder, the longest first.
std::vector<std::string> endsOf(const std::string& sPath) {
    constexpr std::size_t nMost = 64;
    std::vector<std::string> ends;
    for (std::size_t nAt = sPath.find('/'); nAt != std::string::npos && ends.size() < nMost;
         nAt = sPath.find('/', nAt + 1)) {
        std::string sEnd = sPath.substr(nAt + 1);
        if (!sEnd.empty() && sEnd.front() != '/' && !sEnd.starts_with("../") && !sEnd.starts_with("./"))
            ends.push_back(std::move(sEnd));
    }
    return ends;
}

std::string listed(const std::vector<std::string>& paths) {
    std::string sAll;
    for (const std::string& sPath : paths)
        sAll += (sAll.empty() ? "\"" : ", \"") + sPath + "\"";
    return sAll;
}

ProjectPath find(const std::string& sWritten, const std::string& sFolder) {
    const std::string sPlain = filePathOf(sWritten, sFolder);
    const std::string sText = replaceAll(sWritten, "\\", "/");
    const std::string sFirst = hasDrive(sText) ? sText : sPlain;
    if (!hasDrive(sText) && isThere(sFirst))
        return {sFirst, false, {}};
    std::vector<std::string> tried;
    for (const std::string& sEnd : endsOf(sText)) {
        std::string sPath = filePathOf(sEnd, sFolder);
        if (isThere(sPath))
            return {std::move(sPath), true, {}};
        if (sPath != sFirst)
            tried.push_back(std::move(sPath));
    }
    const std::string sAlso =
        tried.empty() ? "" : ", nor, beside the project, " + listed(tried) + "; put it there";
    return {sFirst, false, whyMissing(sFirst) + sAlso};
}

} // namespace

ProjectPath projectPath(const std::string& sWritten, const std::string& sFolder) {
    try {
        return find(sWritten, sFolder);
    } catch (const Failure& failure) {
        return {{}, false, failure.description()};
    }
}

} // namespace halvane::host::gdal
