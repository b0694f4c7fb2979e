#pragma once

#include "cli/jobs/ChildProcess.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace halvane::cli {

/// Runs this program so many times side by side. While it lives, signals are heard only where it waits, and
/// what ends this process ends those that it started.
class ProcessPool {
public:
    /// What to run next: a number of the caller's, and arguments.
    struct Task {
        std::size_t nNumber = 0;
        std::vector<std::string> arguments;
    };

    /// @param nProcesses at least 1.
    explicit ProcessPool(std::size_t nProcesses);
    ProcessPool(const ProcessPool&) = delete;
    ProcessPool& operator=(const ProcessPool&) = delete;
    ~ProcessPool();

    /// Until there is no task left and all have ended. Once an orderly end is asked for, no task is begun,
    /// and those that run are asked to end.
    /// @param next gives the next task, or nothing.
    /// @param ended hears what a task left.
    /// @throws Failure when not even one process can be started.
    void run(const std::function<std::optional<Task>()>& next,
             const std::function<void(std::size_t nNumber, ChildEnd end)>& ended);

private:
    struct Running {
        std::size_t nNumber;
        std::unique_ptr<ChildProcess> pChild;
    };
    void fill(const std::function<std::optional<Task>()>& next);
    void wait();
    void passOnInterruption();

    std::size_t nProcesses_;
    std::vector<Running> running_;
    bool bAsked_ = false;
    std::optional<Task> waiting_; ///< for room
    sigset_t before_{};
    sigset_t whileWaiting_{};
    struct sigaction childrenBefore_ = {};
};

} // namespace halvane::cli
