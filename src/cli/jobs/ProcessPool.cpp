#include "cli/jobs/ProcessPool.h"

#include "base/Failure.h"
#include "cli/Signals.h"
#include "telling/Interruption.h"

#include <cerrno>
#include <initializer_list>
#include <poll.h>
#include <utility>

namespace halvane::cli {

namespace {

void wakeUp(int /*lSignal*/) {}

} // namespace

ProcessPool::ProcessPool(std::size_t nProcesses) : nProcesses_(nProcesses) {
    struct sigaction action = {};
    action.sa_handler = wakeUp;
    action.sa_flags = SA_NOCLDSTOP;
    sigemptyset(&action.sa_mask);
    sigaction(SIGCHLD, &action, &childrenBefore_);
    sigset_t heard{};
    sigemptyset(&heard);
    for (const int lSignal : {SIGCHLD, SIGINT, SIGTERM, SIGHUP, signalOfParent})
        sigaddset(&heard, lSignal);
    sigprocmask(SIG_BLOCK, &heard, &before_);
    whileWaiting_ = before_;
    sigdelset(&whileWaiting_, SIGCHLD); // also where the caller does not hear of his
}

ProcessPool::~ProcessPool() {
    running_.clear();
    sigaction(SIGCHLD, &childrenBefore_, nullptr);
    sigprocmask(SIG_SETMASK, &before_, nullptr);
}

void ProcessPool::run(const std::function<std::optional<Task>()>& next,
                      const std::function<void(std::size_t nNumber, ChildEnd end)>& ended) {
    for (;;) {
        fill(next);
        if (running_.empty())
            return;
        wait();
        passOnInterruption();
        std::vector<Running> going;
        std::vector<Running> gone;
        for (auto& one : running_)
            (one.pChild->ended() ? gone : going).push_back(std::move(one));
        running_ = std::move(going);
        for (const auto& one : gone)
            ended(one.nNumber, one.pChild->take());
    }
}

void ProcessPool::fill(const std::function<std::optional<Task>()>& next) {
    while (!interruptionRequested() && running_.size() < nProcesses_) {
        if (!waiting_)
            waiting_ = next();
        if (!waiting_)
            return;
        try {
            running_.push_back(
                {waiting_->nNumber, std::make_unique<ChildProcess>(waiting_->arguments, before_)});
        } catch (const Failure&) {
            if (running_.empty())
                throw;
            return; // there is room once another one has ended
        }
        waiting_.reset();
    }
}

void ProcessPool::wait() {
    std::vector<pollfd> waiting;
    for (const auto& one : running_)
        for (std::size_t i = 0; i < ChildProcess::streams; ++i)
            waiting.push_back({one.pChild->descriptor(i), POLLIN, 0});
    if (::ppoll(waiting.data(), waiting.size(), nullptr, &whileWaiting_) <= 0)
        return; // a signal
    for (std::size_t i = 0; i < waiting.size(); ++i)
        if (waiting[i].revents != 0)
            running_[i / ChildProcess::streams].pChild->read(i % ChildProcess::streams);
}

void ProcessPool::passOnInterruption() {
    if (bAsked_ || !interruptionRequested())
        return;
    bAsked_ = true;
    for (const auto& one : running_)
        one.pChild->askToEnd();
}

} // namespace halvane::cli
