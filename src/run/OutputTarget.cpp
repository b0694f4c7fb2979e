#include "run/OutputTarget.h"

#include "base/Text.h"
#include "telling/DocumentPlace.h"
#include "telling/Paths.h"

#include <fmt/format.h>

#include <filesystem>

namespace halvane {

namespace fs = std::filesystem;

namespace {

void addProblem(const std::string& sWhy, std::vector<std::string>& problems) {
    if (!sWhy.empty())
        problems.push_back("OUTPUT: " + sWhy);
}

OutputTarget standardOutput(const ExportArguments& arguments, std::vector<std::string>& problems) {
    if (arguments.bExactName)
        problems.emplace_back("--exact-name: standard output has no name; leave one of the two out");
    std::error_code error;
    const std::string sFolder = fs::temp_directory_path(error).string();
    return {error ? "/tmp" : sFolder, sStandardOutput, true, true, arguments.sFileOfStandardOutput};
}

} // namespace

std::string OutputTarget::path() const {
    return sFolder.ends_with('/') ? sFolder + sName : sFolder + "/" + sName;
}

std::string OutputTarget::shown() const {
    return bStandardOutput ? sStandardOutput : path();
}

std::vector<std::string> OutputTarget::possiblePaths() const {
    if (bStandardOutput)
        return sFile.empty() ? std::vector<std::string>() : std::vector{sFile};
    std::vector<std::string> paths{path()};
    if (!bExactName && !containsIgnoringCase(sName, "XML"))
        paths.push_back(path() + ".xml");
    return paths;
}

OutputTarget splitOutput(const ExportArguments& arguments, std::vector<std::string>& problems) {
    if (arguments.bWritesStandardOutput)
        return standardOutput(arguments, problems);
    const std::string& sOutput = arguments.sOutput;
    const std::string sAbsolute = absolutePath(sOutput);
    const auto lSlash = sAbsolute.find_last_of('/');
    if (lSlash == std::string::npos || isUrl(sOutput)) {
        problems.push_back(fmt::format("OUTPUT: \"{}\" is not the path of a file", sOutput));
        return {};
    }
    OutputTarget target{sAbsolute.substr(0, lSlash == 0 ? 1 : lSlash), sAbsolute.substr(lSlash + 1),
                        arguments.bExactName};
    const std::string sWhyNotInFolder = whyNotInFolder(target.sFolder);
    addProblem(sWhyNotInFolder, problems);
    if (!sWhyNotInFolder.empty())
        return target;
    if (target.sName.empty())
        addProblem(whyNotInPlace(sAbsolute), problems);
    else
        for (const auto& sPath : target.possiblePaths())
            addProblem(whyNotInPlace(sPath), problems);
    return target;
}

} // namespace halvane
