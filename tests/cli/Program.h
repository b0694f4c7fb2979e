#pragma once

#include "support/TemporaryFolder.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::test {

/// What a run of the program gave.
struct RunResult {
    int lExitCode = -1; ///< -1 when a signal ended it
    std::string sOut;
    std::string sErr;
};

/// How the program is run beside its arguments.
struct RunSettings {
    std::map<std::string, std::string> environment; ///< added to the tests' own
    std::optional<std::size_t> lLargestFile;        ///< in bytes: the limit of the process on what it writes
    bool bTerminal = false;                         ///< standard error is a terminal
    bool bOrdinaryUser = false;                     ///< even where the tests run as the superuser
    std::optional<std::size_t> lStack = {};         ///< in bytes: the limit of the process on its stack
    std::string sFolder = ".";                      ///< where it is run, seen from its own folder
    std::vector<int> closed = {};                   ///< descriptors that it starts without
    bool bReaderGone = false;                       ///< nobody reads its standard output any more
    std::string sInput = {};                        ///< what standard input holds, by a pipe; at most 64 KB
    std::string sInputFile = {};                    ///< instead: a file
    std::string sOutputFile = {};                   ///< a file that standard output is appended to
    std::string sTermWhileReading = {};             ///< a file: TERM comes once the program computes on it
};

/// A folder of its own, where the built program is run.
class Program {
public:
    [[nodiscard]] RunResult run(const std::vector<std::string>& arguments,
                                const RunSettings& settings = {}) const;

    /// Absolute path of a file in the folder.
    [[nodiscard]] std::string file(std::string_view sName) const { return folder_.file(sName); }
    std::string write(std::string_view sName, std::string_view sContent) const {
        return folder_.write(sName, sContent);
    }
    [[nodiscard]] std::optional<std::string> read(std::string_view sName) const {
        return folder_.read(sName);
    }
    /// The names of what is in the folder, sorted.
    [[nodiscard]] std::vector<std::string> names() const;

private:
    TemporaryFolder folder_;
};

} // namespace halvane::test
