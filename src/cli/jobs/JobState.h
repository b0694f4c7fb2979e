#pragma once

#include "cli/jobs/FileStamps.h"
#include "cli/jobs/JobList.h"

#include <chrono>
#include <ctime>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace halvane::cli {

/// What a finished export told in its report.
struct JobResult {
    std::string sDocument; ///< absolute
    std::vector<std::string> files;
    std::vector<std::string> data;
    bool bElsewhere = true; ///< nobody can tell whether it would be the same
};

/// Which exports of a list are done, and of what. A file holds it, old or new, never half.
class JobState {
public:
    using Clock = std::chrono::steady_clock;

    /// @param sPath absolute. @param written where the list's exports write.
    JobState(std::string sPath, std::set<std::string> written)
        : sPath_(std::move(sPath)), written_(std::move(written)) {}

    /// Reads the file, if it is there. @returns why it is no state; "" where it is.
    [[nodiscard]] std::string load();
    /// @returns why an export is to be done, "" where it is done and unchanged.
    [[nodiscard]] std::string whyToDo(const Job& job) const;
    /// An export is written whole. @param begun before it read anything.
    void add(const Job& job, const JobResult& result, const timespec& begun);
    /// It is not, or not any more.
    void forget(const Job& job);

    /// Saves what has changed, when it is time to.
    /// @returns why it cannot be saved; "" where all is well.
    [[nodiscard]] std::string saveSometimes(Clock::time_point now);
    [[nodiscard]] std::string save();

private:
    struct Entry {
        std::string sArguments; ///< their stamp, with the program's
        std::string sDocument;
        std::string sDocumentStamp;
        std::map<std::string, std::string> files; ///< stamps by path
        std::map<std::string, std::string> data;
    };
    [[nodiscard]] std::string text() const;

    std::string sPath_;
    std::set<std::string> written_;
    std::map<std::string, Entry> entries_; ///< by OUTPUT
    bool bChanged_ = false;
    Clock::time_point due_{};
};

} // namespace halvane::cli
