#include "cli/jobs/JobState.h"

#include "base/Failure.h"
#include "cli/TypedArguments.h"
#include "io/FileReading.h"
#include "io/ReplacingFile.h"
#include "telling/Version.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace halvane::cli {

namespace {

using Json = nlohmann::json;
namespace fs = std::filesystem;

constexpr int nVersion = 1;
constexpr std::size_t largestState = 512U << 20U;
constexpr auto interval = std::chrono::seconds(1);

/// Of the program, and of all that is typed. Passwords may be among it, so it is not kept as it is.
std::string stampOfArguments(const Job& job) {
    static const std::string sProgram = FileStamps({}).ofFile("/proc/self/exe");
    std::error_code error;
    return FileStamps::ofText(fmt::format("{}\n{}\n{}\n{}", version(), sProgram,
                                          fs::current_path(error).string(),
                                          fmt::join(typedExport(job.arguments), "\n")));
}

using Stamps = std::map<std::string, std::string>;
using Stamping = std::string (FileStamps::*)(const std::string&);

Stamps stampsOf(const std::vector<std::string>& paths, Stamping stamp, FileStamps& stamps) {
    Stamps all;
    for (const auto& sPath : paths)
        all[sPath] = (stamps.*stamp)(sPath);
    return all;
}

bool isComplete(const Stamps& stamps) {
    // What the data library reads from inside another file, or not from files at all, nobody can look at.
    return std::ranges::none_of(
        stamps, [](const auto& one) { return one.second.empty() || one.first.starts_with("/vsi"); });
}

/// @returns the first path that is not what it was; "" for none.
std::string firstChanged(const Stamps& known, Stamping stamp, FileStamps& stamps) {
    const auto pChanged = std::ranges::find_if(
        known, [&](const auto& one) { return (stamps.*stamp)(one.first) != one.second; });
    return pChanged == known.end() ? "" : pChanged->first;
}

} // namespace

std::string JobState::load() {
    std::error_code error;
    if (!fs::exists(sPath_, error))
        return {};
    std::string sText;
    if (const auto problem = io::readFile(sPath_, largestState, sText))
        return problem.sReason;
    try {
        const Json state = Json::parse(sText);
        if (state.at("halvaneJobs") != nVersion)
            return sPath_ + " is a state of another version; remove it, or give another name";
        for (const auto& [sOutput, entry] : state.at("done").items())
            entries_[sOutput] = {entry.at("arguments"), entry.at("document"), entry.at("documentStamp"),
                                 entry.at("files").get<Stamps>(), entry.at("data").get<Stamps>()};
    } catch (const Json::exception&) {
        entries_.clear();
        return sPath_ + " is not the state of a list; give another name";
    }
    return {};
}

std::string JobState::whyToDo(const Job& job) const {
    const auto pEntry = entries_.find(job.arguments.sOutput);
    if (pEntry == entries_.end())
        return "it is not known to be done";
    const Entry& entry = pEntry->second;
    if (entry.sArguments != stampOfArguments(job))
        return "its options or the program have changed";
    FileStamps stamps(written_);
    if (stamps.ofFile(entry.sDocument) != entry.sDocumentStamp)
        return fmt::format("\"{}\" has changed", entry.sDocument);
    std::string sChanged = firstChanged(entry.files, &FileStamps::ofFile, stamps);
    if (sChanged.empty())
        sChanged = firstChanged(entry.data, &FileStamps::ofData, stamps);
    return sChanged.empty() ? "" : fmt::format("\"{}\" has changed", sChanged);
}

void JobState::add(const Job& job, const JobResult& result, const timespec& begun) {
    forget(job);
    FileStamps stamps(written_);
    Entry entry{stampOfArguments(job), result.sDocument, {}, {}, {}};
    entry.files = stampsOf(result.files, &FileStamps::ofFile, stamps);
    entry.data = stampsOf(result.data, &FileStamps::ofData, stamps);
    // What changed meanwhile may have been read before or after.
    if (result.bElsewhere || stamps.changedSince(begun) || !isComplete(entry.files) ||
        !isComplete(entry.data))
        return;
    entry.sDocumentStamp = stamps.ofFile(result.sDocument);
    entries_[job.arguments.sOutput] = std::move(entry);
}

void JobState::forget(const Job& job) {
    entries_.erase(job.arguments.sOutput);
    bChanged_ = true;
}

std::string JobState::saveSometimes(Clock::time_point now) {
    if (now < due_)
        return {};
    due_ = now + interval;
    return save();
}

std::string JobState::save() {
    if (!bChanged_)
        return {};
    try {
        const auto pFile = io::ReplacingFile::create(sPath_);
        pFile->write(text());
        static_cast<void>(pFile->commit(io::Durability::LeftToSystem)); // a list that lacks it is done anew
        bChanged_ = false;
        return {};
    } catch (const Failure& failure) {
        return failure.description();
    }
}

std::string JobState::text() const {
    Json done = Json::object();
    for (const auto& [sOutput, entry] : entries_)
        done[sOutput] = {{"arguments", entry.sArguments},
                         {"document", entry.sDocument},
                         {"documentStamp", entry.sDocumentStamp},
                         {"files", entry.files},
                         {"data", entry.data}};
    return Json{{"halvaneJobs", nVersion}, {"done", std::move(done)}}.dump(1, ' ', false,
                                                                           Json::error_handler_t::replace) +
           "\n";
}

} // namespace halvane::cli
