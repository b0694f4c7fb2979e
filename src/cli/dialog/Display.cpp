#include "cli/dialog/Display.h"

#include <QGuiApplication>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace halvane::cli {

namespace {

/// Comes back only as an exit code: 0, or the signal by which the toolkit ends a program.
[[noreturn]] void tryToShow(int lArguments, char** aArguments) {
    const rlimit noDump{0, 0};
    ::setrlimit(RLIMIT_CORE, &noDump);
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): the stream stays the system's
    if (std::freopen("/dev/null", "w", stderr) == nullptr)
        std::_Exit(EXIT_FAILURE);
    const QGuiApplication application(lArguments, aArguments);
    std::_Exit(EXIT_SUCCESS);
}

} // namespace

bool hasDisplay() {
    const auto given = [](const char* sName) {
        const char* sValue = std::getenv(sName);
        return sValue != nullptr && *sValue != '\0';
    };
    return given("DISPLAY") || given("WAYLAND_DISPLAY") || given("QT_QPA_PLATFORM");
}

bool displayAnswers(int lArguments, char** aArguments) {
    const pid_t lTrial = ::fork();
    if (lTrial < 0)
        return true; // nobody can tell
    if (lTrial == 0)
        tryToShow(lArguments, aArguments);
    int lStatus = 0;
    while (::waitpid(lTrial, &lStatus, 0) < 0)
        if (errno != EINTR)
            return true;
    return WIFEXITED(lStatus) && WEXITSTATUS(lStatus) == EXIT_SUCCESS;
}

} // namespace halvane::cli
