#include "cli/jobs/JobList.h"

#include "cli/Arguments.h"
#include "cli/Suggestions.h"
#include "io/FileReading.h"
#include "run/OutputTarget.h"
#include "telling/Paths.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <utility>

namespace halvane::cli {

namespace {

namespace fs = std::filesystem;
using Problems = std::vector<JobProblem>;

constexpr std::size_t largestList = 64U << 20U;
constexpr std::size_t mostTold = 20;

/// Whichever way a path is written, the file at its end.
std::string placeOf(const std::string& sPath) {
    std::error_code error;
    const auto place = fs::weakly_canonical(sPath, error);
    return error ? sPath : place.string();
}

void putBefore(const std::vector<std::string>& common, std::vector<std::string>& own) {
    own.insert(own.begin(), common.begin(), common.end());
}

/// @returns why the words are no options of an export; "" where they are.
std::string readOptions(const JobRow& row, ExportArguments& arguments) {
    CLI::App app;
    declareExportOptions(app, arguments);
    try {
        app.parse(std::vector<std::string>(row.options.rbegin(), row.options.rend()));
    } catch (const CLI::ParseError& error) {
        return error.get_exit_code() == 0 ? "--help is no option of a list" : explained(app, error);
    }
    return arguments.sReport ? "--report is for the whole list, whose report holds that of each export" : "";
}

Job jobOf(const JobRow& row, const ExportArguments& common, Problems& problems) {
    Job job{row.nLine, common};
    job.arguments.sReport.reset();
    for (auto* const pValues : {&job.arguments.selections, &job.arguments.processors, &job.arguments.values})
        pValues->clear();
    if (const std::string sWrong = row.options.empty() ? "" : readOptions(row, job.arguments);
        !sWrong.empty())
        problems.push_back({row.nLine, sWrong});
    putBefore(common.selections, job.arguments.selections);
    putBefore(common.processors, job.arguments.processors);
    putBefore(common.values, job.arguments.values);
    job.arguments.sControl = row.sControl;
    job.arguments.sOutput = row.sOutput;
    if (!row.sMap.empty())
        job.arguments.sMap = row.sMap;
    if (row.sControl == sStream || row.sOutput == sStream)
        problems.push_back({row.nLine, "\"-\" is no file; the exports of a list share the standard streams"});
    return job;
}

std::vector<std::string> placesWritten(const Job& job) {
    std::vector<std::string> ofJob; // told when its turn comes
    std::vector<std::string> places;
    for (const auto& sPath : splitOutput(job.arguments, ofJob).possiblePaths())
        places.push_back(placeOf(sPath));
    return places;
}

std::vector<std::pair<const char*, std::string>> placesRead(const ExportArguments& arguments) {
    std::vector<std::pair<const char*, std::string>> read{{"its control file", arguments.sControl}};
    const auto add = [&](const char* sWhat, const std::optional<std::string>& sPath) {
        if (sPath && !sPath->empty())
            read.emplace_back(sWhat, *sPath);
    };
    add("its map", arguments.sMap);
    add("its document of --xml", arguments.sXmlDocument);
    add("its schema", arguments.sSchema);
    for (auto& [sWhat, sPath] : read)
        sPath = placeOf(absolutePath(sPath));
    return read;
}

/// Who writes where: "the report", "the output of line 3".
using Writers = std::map<std::string, std::string>;

void addWritten(const Job& job, Writers& writers, Problems& problems) {
    const auto places = placesWritten(job);
    for (const auto& sPlace : places) {
        const auto pOther = writers.find(sPlace);
        if (pOther == writers.end())
            continue;
        problems.push_back({job.nLine, fmt::format(R"(the output "{}" is {}; give another name)",
                                                   job.arguments.sOutput, pOther->second)});
        return;
    }
    for (const auto& sPlace : places)
        writers.emplace(sPlace, fmt::format("the output of line {}", job.nLine));
}

void checkRead(const Job& job, const Writers& writers, Problems& problems) {
    for (const auto& [sWhat, sPlace] : placesRead(job.arguments))
        if (const auto pWriter = writers.find(sPlace); pWriter != writers.end())
            problems.push_back({job.nLine, fmt::format("{} is {}; the exports of a list run side by side",
                                                       sWhat, pWriter->second)});
}

void checkPlaces(JobList& list, const std::vector<OwnFile>& ownFiles, Problems& problems) {
    Writers writers;
    for (const auto& file : ownFiles)
        writers.emplace(placeOf(file.sPath), file.sWhat);
    for (const auto& job : list.jobs)
        addWritten(job, writers, problems);
    for (const auto& job : list.jobs)
        checkRead(job, writers, problems);
    for (const auto& [sPlace, sWhat] : writers)
        list.written.insert(sPlace);
}

void tell(const std::string& sList, Problems found, std::vector<std::string>& problems) {
    std::ranges::stable_sort(found, {}, &JobProblem::nLine);
    const auto told = std::span(found).first(std::min(found.size(), mostTold));
    for (const auto& [nLine, sText] : told)
        problems.push_back(nLine == 0 ? fmt::format("{}: {}", sList, sText)
                                      : fmt::format("{}:{}: {}", sList, nLine, sText));
    if (found.size() > mostTold)
        problems.push_back(fmt::format("{}: {} more of this kind", sList, found.size() - mostTold));
}

} // namespace

JobList readJobList(const std::string& sList, const ExportArguments& common,
                    const std::vector<OwnFile>& ownFiles, std::vector<std::string>& problems) {
    std::string sText;
    if (const auto problem = io::readFile(absolutePath(sList), largestList, sText)) {
        problems.push_back("--jobs: " + problem.sReason);
        return {};
    }
    Problems found;
    const auto rows = readJobRows(sText, found);
    JobList list;
    for (const auto& row : rows)
        list.jobs.push_back(jobOf(row, common, found));
    if (found.empty())
        checkPlaces(list, ownFiles, found);
    tell(sList, std::move(found), problems);
    return list;
}

void keepShard(const Shard& shard, JobList& list) {
    std::vector<Job> kept;
    for (std::size_t i = shard.nNumber - 1; i < list.jobs.size(); i += shard.nShards)
        kept.push_back(std::move(list.jobs[i]));
    list.jobs = std::move(kept);
}

} // namespace halvane::cli
