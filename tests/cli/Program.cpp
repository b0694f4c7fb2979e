#include "cli/Program.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace halvane::test {

namespace {

/// A stream of the child: what it writes comes out at the other end.
struct Stream {
    int lRead = -1;
    int lWrite = -1;
    std::string sText;

    static Stream pipe() {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("pipe2");
        return {ends[0], ends[1], {}};
    }
    static Stream terminal() {
        Stream stream;
        if (::openpty(&stream.lRead, &stream.lWrite, nullptr, nullptr, nullptr) != 0)
            throw std::runtime_error("openpty");
        return stream;
    }

    /// @returns false at the end.
    bool takeSome() {
        std::array<char, 4096> buffer{};
        const auto lCount = ::read(lRead, buffer.data(), buffer.size());
        if (lCount <= 0)
            return false;
        sText.append(buffer.data(), static_cast<std::size_t>(lCount));
        return true;
    }
};

void readBoth(Stream& out, Stream& err) {
    std::array<pollfd, 2> waiting{{{out.lRead, POLLIN, 0}, {err.lRead, POLLIN, 0}}};
    const std::array<Stream*, 2> streams{&out, &err};
    auto lOpen = std::count_if(waiting.begin(), waiting.end(), [](const pollfd& end) { return end.fd >= 0; });
    while (lOpen > 0 && ::poll(waiting.data(), waiting.size(), -1) >= 0) {
        for (std::size_t i = 0; i < waiting.size(); ++i) {
            if (waiting.at(i).revents != 0 && !streams.at(i)->takeSome()) {
                waiting.at(i).fd = -1;
                --lOpen;
            }
        }
    }
}

[[noreturn]] void become(const std::string& sFolder, const std::vector<std::string>& arguments,
                         const RunSettings& settings, int lOut, int lErr) {
    std::vector<char*> argv;
    std::string sProgram = HALVANE_PROGRAM;
    argv.push_back(sProgram.data());
    auto copies = arguments;
    for (auto& sArgument : copies)
        argv.push_back(sArgument.data());
    argv.push_back(nullptr);
    for (const auto& [sName, sValue] : settings.environment)
        ::setenv(sName.c_str(), sValue.c_str(), 1);
    if (settings.lLargestFile) {
        const rlimit limit{*settings.lLargestFile, *settings.lLargestFile};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    if (settings.lStack) {
        const rlimit limit{*settings.lStack, *settings.lStack};
        ::setrlimit(RLIMIT_STACK, &limit);
    }
    ::dup2(lOut, STDOUT_FILENO);
    ::dup2(lErr, STDERR_FILENO);
    for (const int lDescriptor : settings.closed)
        ::close(lDescriptor);
    constexpr uid_t nobody = 65534;
    const bool bChangesUser = settings.bOrdinaryUser && ::geteuid() == 0;
    if (::chdir(sFolder.c_str()) == 0 && (!bChangesUser || ::setuid(nobody) == 0))
        ::execv(argv.front(), argv.data());
    ::_exit(127);
}

} // namespace

RunResult Program::run(const std::vector<std::string>& arguments, const RunSettings& settings) const {
    auto out = Stream::pipe();
    if (settings.bOrdinaryUser)
        std::filesystem::permissions(folder_.path(), std::filesystem::perms::all);
    if (settings.bReaderGone)
        ::close(std::exchange(out.lRead, -1));
    auto err = settings.bTerminal ? Stream::terminal() : Stream::pipe();
    const pid_t lChild = ::fork();
    if (lChild == 0)
        become((folder_.path() / settings.sFolder).string(), arguments, settings, out.lWrite, err.lWrite);
    ::close(out.lWrite);
    ::close(err.lWrite);
    readBoth(out, err);
    int lStatus = 0;
    ::waitpid(lChild, &lStatus, 0);
    if (out.lRead >= 0)
        ::close(out.lRead);
    ::close(err.lRead);
    return {WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : -1, out.sText, err.sText};
}

std::vector<std::string> Program::names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace halvane::test
