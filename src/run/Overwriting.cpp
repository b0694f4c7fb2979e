#include "run/Overwriting.h"

#include "base/Failure.h"
#include "telling/DocumentOrder.h"
#include "telling/Paths.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace halvane {

namespace {

namespace fs = std::filesystem;
using Problems = std::vector<std::string>;

struct ReadFile {
    std::string sWhat;
    std::string sPath;
};

std::vector<ReadFile> filesRead(const ExportArguments& arguments) {
    std::vector<ReadFile> files;
    if (!arguments.bReadsStandardInput)
        files.push_back({"the control file", absolutePath(arguments.sControl)});
    if (arguments.sMap)
        files.push_back({"the map", absolutePath(*arguments.sMap)});
    if (arguments.sXmlDocument)
        files.push_back({"the document of --xml", absolutePath(*arguments.sXmlDocument)});
    if (arguments.sSchema)
        files.push_back({"the schema", absolutePath(*arguments.sSchema)});
    if (arguments.sSchemaCatalog)
        files.push_back({"the catalogue of the schema", absolutePath(*arguments.sSchemaCatalog)});
    for (const auto& sLibrary : arguments.processors)
        files.push_back({"a processor library", absolutePath(sLibrary)});
    return files;
}

std::string refusal(const std::string& sOption, const std::string& sPath, const std::string& sWhat) {
    return fmt::format("{}: \"{}\" is {}; give another name", sOption, sPath, sWhat);
}

/// The beginning of an existing file without blanks before it; "" when there is none.
std::string beginningOf(const std::string& sPath) {
    constexpr std::size_t nEnough = 400;
    std::string sBeginning(nEnough, '\0');
    std::ifstream stream(sPath, std::ios::binary);
    stream.read(sBeginning.data(), static_cast<std::streamsize>(sBeginning.size()));
    sBeginning.resize(static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
    sBeginning.erase(0, sBeginning.find_first_not_of(" \t\r\n\xEF\xBB\xBF"));
    return sBeginning;
}

/// Where a chain of symbolic links leads, whether or not something is there: a file is written there.
std::string targetOf(const std::string& sPath) {
    constexpr int lLongestChain = 40;
    std::error_code error;
    fs::path path = sPath;
    for (int n = 0; n < lLongestChain && fs::is_symlink(path, error); ++n)
        path = path.parent_path() / fs::read_symlink(path, error);
    return path.string();
}

bool isDatabase(const std::string& sPath) {
    std::error_code error;
    return fs::is_regular_file(sPath, error) && beginningOf(sPath).starts_with("SQLite format 3");
}

/// Why a path may not be written whatever the map says, which may be unknown: a database is there, or would
/// take the file for what it keeps beside itself. "" where it may.
std::string databaseProblem(const std::string& sPath) {
    const std::string sTarget = targetOf(sPath);
    if (isDatabase(sTarget))
        return fmt::format("\"{}\" is a database; give another name", sPath);
    for (const std::string_view sEnd : {"-wal", "-shm", "-journal"}) {
        const std::string sDatabase =
            sTarget.ends_with(sEnd) ? sTarget.substr(0, sTarget.size() - sEnd.size()) : "";
        if (!sDatabase.empty() && isDatabase(sDatabase))
            return fmt::format(R"("{}" belongs to the database "{}"; give another name)", sPath, sDatabase);
    }
    return {};
}

/// What the map is made of is not known here, so whatever is no report of ours is taken for data.
bool mayBeReplacedByReport(const std::string& sPath) {
    const std::string sBeginning = beginningOf(sPath);
    return sBeginning.empty() || sBeginning.find(R"("program": "halvane )") != std::string::npos;
}

/// Also of a pipe or a device.
bool isStandardOutput(const std::string& sPath) {
    struct stat ofPath = {};
    struct stat ofStream = {};
    return ::stat(sPath.c_str(), &ofPath) == 0 && ::fstat(STDOUT_FILENO, &ofStream) == 0 &&
           ofPath.st_dev == ofStream.st_dev && ofPath.st_ino == ofStream.st_ino;
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
                        const host::DataHost& host) {
    try {
        const std::string sData = host.dataWith(
            targetOf(sPath), oControlDocument == nullptr ? Problems() : locationsIn(oControlDocument));
        return sData.empty()
                   ? databaseProblem(sPath)
                   : fmt::format(R"("{}" is part of the data "{}"; give another name)", sPath, sData);
    } catch (const Failure&) {
        return {}; // what cannot be looked into is told by the export
    }
}

DataProblems checkDataIsNotReplaced(const ExportArguments& arguments, const OutputTarget& output,
                                    const dom::DocumentPtr& oControlDocument, const host::DataHost& host) {
    const auto problem = [&](const char* sOption, const std::string& sPath) {
        const std::string sProblem = dataProblem(sPath, oControlDocument, host);
        return sProblem.empty() ? Problems() : Problems{fmt::format("{}: {}", sOption, sProblem)};
    };
    DataProblems problems;
    for (const auto& sPath : output.possiblePaths())
        if (problems.ofDocument.empty())
            problems.ofDocument = problem("OUTPUT", sPath);
    if (arguments.sReport)
        problems.ofReport = problem("--report", absolutePath(*arguments.sReport));
    return problems;
}

Problems checkDocumentReplacesNothing(const ExportArguments& arguments, const OutputTarget& output) {
    Problems problems;
    for (const auto& file : filesRead(arguments)) {
        for (const auto& sPath : output.possiblePaths())
            if (sameFile(sPath, file.sPath))
                problems.push_back(refusal("OUTPUT", sPath, file.sWhat));
    }
    return problems;
}

Problems checkSchemaIsNotReplaced(const OutputTarget& output, const Problems& schemaFiles,
                                  const Problems& catalogFiles) {
    Problems problems;
    const auto check = [&](const Problems& files, const char* sWhat) {
        for (const auto& sFile : files)
            for (const auto& sPath : output.possiblePaths())
                if (sameFile(sPath, sFile))
                    problems.push_back(refusal("OUTPUT", sPath, sWhat));
    };
    check(schemaFiles, "a part of the schema");
    check(catalogFiles, "a part of the catalogue of the schema");
    return problems;
}

Problems checkReportReplacesNothing(const ExportArguments& arguments) {
    Problems problems;
    const std::string sReport = absolutePath(arguments.sReport.value_or(""));
    for (const auto& file : filesRead(arguments))
        if (sameFile(sReport, file.sPath))
            problems.push_back(refusal("--report", sReport, file.sWhat));
    if (const std::string sProblem = databaseProblem(sReport); problems.empty() && !sProblem.empty())
        problems.push_back("--report: " + sProblem);
    Problems ofOutput; // told by its own check
    for (const auto& sPath : splitOutput(arguments, ofOutput).possiblePaths())
        if (sReport == sPath || sameFile(sReport, sPath))
            problems.push_back(refusal("--report", sReport, "OUTPUT"));
    if (problems.empty() && arguments.bWritesStandardOutput && isStandardOutput(sReport))
        problems.push_back(refusal("--report", sReport, "standard output, where the document goes"));
    if (problems.empty() && fs::is_regular_file(sReport) && !mayBeReplacedByReport(sReport))
        problems.push_back(refusal("--report", sReport, "a file that is no report of an earlier run"));
    return problems;
}

} // namespace halvane
