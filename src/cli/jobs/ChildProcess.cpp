#include "cli/jobs/ChildProcess.h"

#include "cli/Signals.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace halvane::cli {

namespace {

constexpr const char* sThisProgram = "/proc/self/exe"; // also where another version has taken its name
constexpr std::size_t mostKept = 4U << 20U;            // of a stream
constexpr int lCannotRun = 127;

struct Pipe {
    io::FileDescriptor read;
    io::FileDescriptor write;
};

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw io::fileFailure(errno, "a process for an export");
    Pipe pipe{io::FileDescriptor(ends[0]), io::FileDescriptor(ends[1])};
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the platform's signature
    ::fcntl(pipe.read.get(), F_SETFL, O_NONBLOCK);
    return pipe;
}

/// Between fork and exec: calls of the system alone.
[[noreturn]] void become(char* const* aArguments, const std::array<Pipe, ChildProcess::streams>& pipes,
                         const sigset_t& signals, pid_t nParent) {
    ::sigprocmask(SIG_SETMASK, &signals, nullptr);
    // NOLINTBEGIN(cppcoreguidelines-pro-type-vararg): the platform's signatures
    ::prctl(PR_SET_PDEATHSIG, signalOfParent);
    const int nNothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ::dup2(nNothing, STDIN_FILENO);
    ::dup2(pipes[0].write.get(), STDOUT_FILENO);
    ::dup2(pipes[1].write.get(), STDERR_FILENO);
    ::fcntl(pipes[2].write.get(), F_SETFD, 0);
    // NOLINTEND(cppcoreguidelines-pro-type-vararg)
    if (::getppid() == nParent)
        ::execv(sThisProgram, aArguments);
    ::_exit(lCannotRun);
}

} // namespace

ChildProcess::ChildProcess(std::vector<std::string> arguments, const sigset_t& signals) {
    const std::array<Pipe, streams> pipes{makePipe(), makePipe(), makePipe()};
    arguments.insert(arguments.begin(),
                     {"halvane", "export", fmt::format("--report=/dev/fd/{}", pipes[2].write.get())});
    std::vector<char*> pointers;
    for (auto& sArgument : arguments)
        pointers.push_back(sArgument.data());
    pointers.push_back(nullptr);
    const pid_t nParent = ::getpid();
    lProcess_ = ::fork();
    if (lProcess_ == 0)
        become(pointers.data(), pipes, signals, nParent);
    if (lProcess_ < 0)
        throw io::fileFailure(errno, "a process for an export");
    for (std::size_t i = 0; i < streams; ++i)
        streams_.at(i).file = io::FileDescriptor(::dup(pipes.at(i).read.get()));
}

ChildProcess::~ChildProcess() {
    if (lProcess_ <= 0)
        return;
    ::kill(lProcess_, SIGKILL);
    ::waitpid(lProcess_, &lStatus_, 0);
}

void ChildProcess::read(std::size_t nStream) {
    Stream& stream = streams_.at(nStream);
    std::array<char, 65536> buffer{};
    while (stream.file.isOpen()) {
        const auto nRead = ::read(stream.file.get(), buffer.data(), buffer.size());
        if (nRead < 0 && errno != EINTR)
            return; // there is no more yet
        if (nRead == 0)
            static_cast<void>(stream.file.close());
        if (nRead > 0 && stream.sText.size() < mostKept)
            stream.sText.append(buffer.data(), static_cast<std::size_t>(nRead));
    }
}

void ChildProcess::askToEnd() const noexcept {
    ::kill(lProcess_, signalOfParent);
}

bool ChildProcess::ended() {
    if (lProcess_ > 0 && ::waitpid(lProcess_, &lStatus_, WNOHANG) != 0)
        lProcess_ = 0;
    return lProcess_ == 0;
}

ChildEnd ChildProcess::take() {
    for (std::size_t i = 0; i < streams; ++i)
        read(i);
    return {WIFEXITED(lStatus_) ? WEXITSTATUS(lStatus_) : -1, WIFSIGNALED(lStatus_) ? WTERMSIG(lStatus_) : 0,
            std::move(streams_[0].sText), std::move(streams_[1].sText), std::move(streams_[2].sText)};
}

} // namespace halvane::cli
