#include "run/StandardInput.h"

#include "telling/DocumentLoading.h"
#include "telling/Interruption.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <unistd.h>

namespace halvane {

namespace {

constexpr std::size_t inputPieceSize = 256U << 10U;
/// A signal that arrives between the question and the wait must not be waited through.
constexpr int longestWait = 200; // milliseconds

/// Waits until there is something to read, or the end. @returns false when an orderly end is asked for.
bool awaitInput() {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    while (!interruptionRequested()) {
        const int nReady = ::poll(&input, 1, longestWait);
        if (nReady > 0 || (nReady < 0 && errno != EINTR))
            return true;
    }
    return false;
}

/// Reads up to one byte more than a document may have. @returns why it cannot be read; "" for none.
std::string readAll(std::string& sContent) {
    while (sContent.size() <= dom::Document::largestLoaded) {
        if (!awaitInput())
            return "the reading was ended";
        const std::size_t nBefore = sContent.size();
        sContent.resize(std::max(sContent.capacity(), nBefore + inputPieceSize));
        const auto nRead = ::read(STDIN_FILENO, sContent.data() + nBefore, sContent.size() - nBefore);
        const int nError = errno;
        sContent.resize(nBefore + static_cast<std::size_t>(std::max<ssize_t>(nRead, 0)));
        if (nRead == 0)
            return {};
        if (nRead < 0 && nError != EINTR && nError != EAGAIN)
            return std::strerror(nError);
    }
    return {};
}

} // namespace

dom::DocumentPtr loadStandardInput(const std::string& sShown, std::vector<std::string>& problems,
                                   dom::ParseError& error) {
    std::string sContent;
    if (const std::string sProblem = readAll(sContent); !sProblem.empty()) {
        problems.push_back(fmt::format("{}: {}", sShown, sProblem));
        return nullptr;
    }
    auto oDocument = dom::Document::create();
    if (!oDocument->loadBytes(sContent)) {
        error = oDocument->parseError();
        problems.push_back(parseProblem(sShown, error));
        return nullptr;
    }
    return oDocument;
}

} // namespace halvane
