#include "cli/Crashes.h"

#include "base/FindRow.h"
#include "telling/ExitCodes.h"
#include "telling/StandardStreams.h"

#include <array>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace halvane::cli {

namespace {

// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): all that a signal's handler can reach
volatile std::sig_atomic_t bDocumentStands = 0;
host::DataInUse (*pDataInUse)() noexcept = nullptr;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

constexpr std::array<std::pair<int, std::string_view>, 5> aCrashes{
    {{SIGSEGV, "SIGSEGV"}, {SIGBUS, "SIGBUS"}, {SIGFPE, "SIGFPE"}, {SIGILL, "SIGILL"}, {SIGABRT, "SIGABRT"}}};

/// A line of text that takes no memory: after a crash there may be none to be had.
class CrashLine {
public:
    void add(std::string_view sText) noexcept {
        for (const char c : sText) {
            if (nLength_ == text_.size())
                return;
            // The names of files must not steer a terminal.
            const auto lByte = static_cast<unsigned char>(c);
            const bool bPlain = (lByte >= ' ' && lByte < 0x7F) || c == '\n';
            text_[nLength_++] = bPlain ? c : '?';
        }
    }
    void write() const noexcept {
        [[maybe_unused]] const auto lWritten = ::write(standardErrorDescriptor(), text_.data(), nLength_);
    }

private:
    std::array<char, 5000> text_{}; // the longest path is 4096
    std::size_t nLength_ = 0;
};

std::string_view nameOf(int lSignal) noexcept {
    const auto* pCrash = findRow(aCrashes, lSignal, &std::pair<int, std::string_view>::first);
    return pCrash == nullptr ? "" : pCrash->second;
}

void addWhere(CrashLine& line, const host::DataInUse& data) noexcept {
    if (data.pPath == nullptr)
        return;
    line.add(" on \"");
    line.add(data.pPath);
    line.add("\"");
    if (*data.pDriver != '\0') {
        line.add(" in its driver \"");
        line.add(data.pDriver);
        line.add("\"");
    }
}

[[noreturn]] void end(CrashLine& line) noexcept {
    line.add(bDocumentStands != 0 ? "; the document was written before\n" : "; nothing was written\n");
    line.write();
    ::_exit(static_cast<int>(bDocumentStands != 0 ? ExitCode::WrittenIncomplete : ExitCode::NotWritten));
}

void tellAndEnd(int lSignal) {
    const auto data = pDataInUse();
    CrashLine line;
    line.add(data.pPath == nullptr ? "halvane: the program crashed ("
                                   : "halvane: the data library crashed (");
    line.add(nameOf(lSignal));
    line.add(")");
    addWhere(line, data);
    if (data.pPath != nullptr)
        line.add("; convert the file, or leave it out");
    end(line);
}

// What begins to write must not be ended in the middle of it: only what reads data is.
void endIfReading(int /*lSignal*/) {
    const auto data = pDataInUse();
    if (!data.bAnyCall) {
        ::alarm(1);
        return;
    }
    CrashLine line;
    line.add("halvane: cancelled while the data library, which cannot be interrupted there, was busy");
    addWhere(line, data);
    end(line);
}

/// The stack may be what has run out.
void prepareStack() noexcept {
    constexpr std::size_t nEnough = 1U << 16U;
    static std::array<char, nEnough> aStack;
    stack_t stack{};
    stack.ss_sp = aStack.data();
    stack.ss_size = aStack.size();
    stack_t inherited{};
    if (::sigaltstack(nullptr, &inherited) == 0 && (inherited.ss_flags & SS_DISABLE) != 0)
        ::sigaltstack(&stack, nullptr);
}

} // namespace

void prepareForCrashes(host::DataInUse (*pAsked)() noexcept) noexcept {
    pDataInUse = pAsked;
    prepareStack();
    struct sigaction action = {};
    action.sa_handler = tellAndEnd;
    action.sa_flags = SA_ONSTACK | static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    for (const auto& [lSignal, sName] : aCrashes) {
        struct sigaction inherited = {};
        sigaction(lSignal, nullptr, &inherited);
        if (inherited.sa_handler == SIG_DFL)
            sigaction(lSignal, &action, nullptr);
    }
    action.sa_handler = endIfReading;
    action.sa_flags = SA_ONSTACK | SA_RESTART;
    sigaction(SIGALRM, &action, nullptr);
}

void endWhatTheLibraryDoesNot() noexcept {
    constexpr unsigned lSeconds = 3; // what can be interrupted has ended by then
    if (pDataInUse != nullptr)
        ::alarm(lSeconds);
}

void crashesLeaveADocument() noexcept {
    bDocumentStands = 1;
}

} // namespace halvane::cli
