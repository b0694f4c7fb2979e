#include "cli/Overwriting.h"

#include "cli/Paths.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

namespace halvane::cli {

namespace {

using Problems = std::vector<std::string>;

struct ReadFile {
    std::string sWhat;
    std::string sPath;
};

std::vector<ReadFile> filesRead(const ExportArguments& arguments) {
    std::vector<ReadFile> files{{"the control file", absolutePath(arguments.sControl)}};
    if (arguments.sMap)
        files.push_back({"the map", absolutePath(*arguments.sMap)});
    if (arguments.sXmlDocument)
        files.push_back({"the document of --xml", absolutePath(*arguments.sXmlDocument)});
    for (const auto& sLibrary : arguments.processors)
        files.push_back({"a processor library", absolutePath(sLibrary)});
    return files;
}

std::string refusal(const std::string& sOption, const std::string& sPath, const std::string& sWhat) {
    return fmt::format("{}: \"{}\" is {}; give another name", sOption, sPath, sWhat);
}

/// The beginning of an existing file without blanks before it; "" when there is none.
std::string beginningOf(const std::string& sPath) {
    constexpr std::size_t lEnough = 400;
    std::string sBeginning(lEnough, '\0');
    std::ifstream stream(sPath, std::ios::binary);
    stream.read(sBeginning.data(), static_cast<std::streamsize>(sBeginning.size()));
    sBeginning.resize(static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
    sBeginning.erase(0, sBeginning.find_first_not_of(" \t\r\n\xEF\xBB\xBF"));
    return sBeginning;
}

/// What the map is made of is not known here, so whatever is no report of ours is taken for data.
bool mayBeReplacedByReport(const std::string& sPath) {
    const std::string sBeginning = beginningOf(sPath);
    return sBeginning.empty() || sBeginning.find(R"("program": "halvane )") != std::string::npos;
}

} // namespace

Problems checkDocumentReplacesNothing(const ExportArguments& arguments, const OutputTarget& output) {
    Problems problems;
    for (const auto& file : filesRead(arguments)) {
        for (const auto& sPath : output.possiblePaths()) {
            if (sameFile(sPath, file.sPath))
                problems.push_back(refusal("OUTPUT", sPath, file.sWhat));
        }
    }
    return problems;
}

Problems checkReportReplacesNothing(const ExportArguments& arguments) {
    Problems problems;
    const std::string sReport = absolutePath(arguments.sReport.value_or(""));
    for (const auto& file : filesRead(arguments)) {
        if (sameFile(sReport, file.sPath))
            problems.push_back(refusal("--report", sReport, file.sWhat));
    }
    Problems ofOutput; // told by its own check
    for (const auto& sPath : splitOutput(arguments.sOutput, ofOutput).possiblePaths()) {
        if (sReport == sPath || sameFile(sReport, sPath))
            problems.push_back(refusal("--report", sReport, "OUTPUT"));
    }
    if (problems.empty() && std::filesystem::is_regular_file(sReport) && !mayBeReplacedByReport(sReport))
        problems.push_back(refusal("--report", sReport, "a file that is no report of an earlier run"));
    return problems;
}

} // namespace halvane::cli
