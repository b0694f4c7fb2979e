#include "cli/Overwriting.h"

#include "cli/DocumentOrder.h"
#include "cli/Paths.h"
#include "collection/Failure.h"

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

std::vector<std::string> locationsIn(const dom::DocumentPtr& oControlDocument) {
    std::vector<std::string> locations;
    const dom::Node oRoot = oControlDocument->documentElement();
    for (dom::Node oNode = oRoot; oNode; oNode = nextInDocument(oNode, oRoot)) {
        if (oNode.nodeType() != dom::NodeType::Element)
            continue;
        if (const auto sLocation = oNode.getAttribute("DataLocation"); sLocation && !sLocation->empty())
            locations.emplace_back(*sLocation);
    }
    return locations;
}

} // namespace

std::string dataProblem(const std::string& sPath, const dom::DocumentPtr& oControlDocument,
                        const host::gdal::GdalHost& host) {
    try {
        const std::string sData =
            host.dataWith(sPath, oControlDocument == nullptr ? Problems() : locationsIn(oControlDocument));
        return sData.empty()
                   ? ""
                   : fmt::format("\"{}\" is part of the data \"{}\"; give another name", sPath, sData);
    } catch (const Failure&) {
        return {}; // what cannot be looked into is told by the export
    }
}

DataProblems checkDataIsNotReplaced(const ExportArguments& arguments, const OutputTarget& output,
                                    const dom::DocumentPtr& oControlDocument,
                                    const host::gdal::GdalHost& host) {
    const auto problem = [&](const char* sOption, const std::string& sPath) {
        const std::string sProblem = dataProblem(sPath, oControlDocument, host);
        return sProblem.empty() ? Problems() : Problems{fmt::format("{}: {}", sOption, sProblem)};
    };
    DataProblems problems;
    for (const auto& sPath : output.possiblePaths()) {
        if (problems.ofDocument.empty())
            problems.ofDocument = problem("OUTPUT", sPath);
    }
    if (arguments.sReport)
        problems.ofReport = problem("--report", absolutePath(*arguments.sReport));
    return problems;
}

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
