#include "cli/Program.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <pty.h>
#include <sstream>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
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

/// All of it fits into the pipe, so nobody has to write while the program reads.
void feedInput(const std::string& sInput) {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0 ||
        ::write(ends[1], sInput.data(), sInput.size()) != static_cast<ssize_t>(sInput.size()))
        ::_exit(126);
    ::dup2(ends[0], STDIN_FILENO);
}

[[noreturn]] void become(const std::string& sFolder, const std::vector<std::string>& arguments,
                         const RunSettings& settings, int lOut, int lErr) {
    std::vector<char*> argv;
    const char* const pStandIn = std::getenv("HALVANE_PROGRAM_OF_TESTS");
    std::string sProgram = pStandIn == nullptr ? HALVANE_PROGRAM : pStandIn;
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
    if (!settings.sInput.empty())
        feedInput(settings.sInput);
    if (!settings.sInputFile.empty())
        ::dup2(::open(settings.sInputFile.c_str(), O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    if (!settings.sOutputFile.empty())
        lOut = ::open(settings.sOutputFile.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
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

bool hasOpen(pid_t lProcess, const std::string& sFile) {
    std::error_code error;
    const std::string sDescriptors = "/proc/" + std::to_string(lProcess) + "/fd";
    for (const auto& entry : std::filesystem::directory_iterator(sDescriptors, error)) {
        if (std::filesystem::read_symlink(entry.path(), error) == sFile)
            return true;
    }
    return false;
}

/// In ticks of the system's clock; the program has used them.
long processorTime(pid_t lProcess) {
    std::ifstream stream("/proc/" + std::to_string(lProcess) + "/stat");
    std::string sText((std::istreambuf_iterator<char>(stream)), {});
    std::istringstream fields(sText.substr(std::min(sText.size(), sText.rfind(')') + 1)));
    std::string sSkipped;
    for (int lField = 0; lField < 11; ++lField)
        fields >> sSkipped;
    long lUser = 0;
    long lSystem = 0;
    fields >> lUser >> lSystem;
    return lUser + lSystem;
}

bool runs(pid_t lProcess) {
    siginfo_t info{};
    return ::waitid(P_PID, static_cast<id_t>(lProcess), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0;
}

/// Waits until the program has had the file open for longer than it takes to read it, and asks it to end.
void termWhileReading(pid_t lProcess, const std::string& sFile) {
    const long lLong = ::sysconf(_SC_CLK_TCK) / 2;
    while (runs(lProcess) && !hasOpen(lProcess, sFile))
        std::this_thread::yield();
    const long lBegun = processorTime(lProcess);
    while (runs(lProcess) && processorTime(lProcess) < lBegun + lLong)
        std::this_thread::yield();
    ::kill(lProcess, SIGTERM);
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
    if (!settings.sTermWhileReading.empty())
        termWhileReading(lChild, settings.sTermWhileReading);
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
