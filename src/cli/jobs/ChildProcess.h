#pragma once

#include "io/PosixFile.h"

#include <array>
#include <csignal>
#include <cstddef>
#include <string>
#include <sys/types.h>
#include <vector>

namespace halvane::cli {

/// What an ended process left.
struct ChildEnd {
    int lExitCode = -1; ///< -1: a signal ended it
    int lSignal = 0;
    std::string sOut;
    std::string sErr;
    std::string sReport; ///< what it wrote to the place of --report
};

/// This program in a process of its own, which ends with this one. What it writes is kept, up to a size; it
/// reads nothing.
class ChildProcess {
public:
    /// @param arguments behind the program's name; the place of its report is added.
    /// @param signals that the process begins with.
    /// @throws Failure when the system has no room for a process.
    ChildProcess(std::vector<std::string> arguments, const sigset_t& signals);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    /// A process that still runs is ended at once.
    ~ChildProcess();

    static constexpr std::size_t streams = 3;
    /// A descriptor that may become readable; -1 for one at its end. @param nStream below `streams`.
    [[nodiscard]] int descriptor(std::size_t nStream) const { return streams_.at(nStream).file.get(); }
    /// Takes what there is to read, without waiting.
    void read(std::size_t nStream);
    /// Asks for an orderly end.
    void askToEnd() const noexcept;
    /// Whether the process has ended; does not wait.
    [[nodiscard]] bool ended();
    /// Once it has ended.
    [[nodiscard]] ChildEnd take();

private:
    struct Stream {
        io::FileDescriptor file{};
        std::string sText{};
    };
    std::array<Stream, streams> streams_;
    pid_t lProcess_ = -1;
    int lStatus_ = 0;
};

} // namespace halvane::cli
