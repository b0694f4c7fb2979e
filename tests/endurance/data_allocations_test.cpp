// An export of data in which memory runs out, at each of its allocations in turn, those of the data library
// included: the whole document, one that lacks what the observer heard of, or the old one as it was. The data
// library ends the process at some of them, or spoils what is used later: such ends are listed by who asked
// for the memory, which is never the program itself.

#include "component/clsExport.h"
#include "host/gdal/GdalHost.h"
#include "support/CountingObserver.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <execinfo.h>
#include <iostream>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

// NOLINTBEGIN(bugprone-reserved-identifier): the system's own names
extern "C" {
void* __libc_malloc(std::size_t nBytes);
void* __libc_calloc(std::size_t nCount, std::size_t nBytes);
void* __libc_realloc(void* pOld, std::size_t nBytes);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

constexpr std::size_t never = static_cast<std::size_t>(-1);
std::atomic<std::size_t> nUntilFault = never;
/// Where the allocation that failed was asked for.
std::array<void*, 32> aWhere{};
int nWhere = 0;

bool fails() noexcept {
    if (nUntilFault.load(std::memory_order_relaxed) == never || nUntilFault.fetch_sub(1) != 0)
        return false;
    nUntilFault = never;
    nWhere = ::backtrace(aWhere.data(), static_cast<int>(aWhere.size()));
    errno = ENOMEM;
    return true;
}

} // namespace

extern "C" {
void* malloc(std::size_t nBytes) noexcept {
    return fails() ? nullptr : __libc_malloc(nBytes);
}
void* calloc(std::size_t nCount, std::size_t nBytes) noexcept {
    return fails() ? nullptr : __libc_calloc(nCount, nBytes);
}
void* realloc(void* pOld, std::size_t nBytes) noexcept {
    return fails() ? nullptr : __libc_realloc(pOld, nBytes);
}
}

namespace halvane::test {
namespace {

/// How a child that was given a failing allocation ended.
enum ExitCode { Struck = 0, NotStruck = 1, NothingTold = 2, LibraryTellsNothing = 3 };

/// What a variable of the environment is set to.
std::size_t numberSet(const char* pName, std::size_t nDefault) {
    const char* const pText = std::getenv(pName);
    return pText == nullptr ? nDefault : std::strtoul(pText, nullptr, 10);
}

/// What an end is told with where the program asked for the memory, not a library.
constexpr const char* sOfTheProgram = ", which is the program itself, asked for memory";

/// The pipe that a child tells its end by.
int lTellEnd = -1;

bool isOfTheSystem(std::string_view sLibrary) {
    return sLibrary.find("/libc.so") != std::string_view::npos ||
           sLibrary.find("/libstdc++.so") != std::string_view::npos ||
           sLibrary.find("/libgcc_s.so") != std::string_view::npos;
}

bool isAllocationFunction(const char* pName) {
    const std::string_view sName = pName == nullptr ? "" : pName;
    return sName == "malloc" || sName == "calloc" || sName == "realloc";
}

/// Whether the name is one of the standard library's. Of its templates each library has a copy, and the copy
/// of the program serves all of them.
bool isOfTheStandard(const char* pName) {
    const std::string_view sName = pName == nullptr ? "" : pName;
    return sName.starts_with("_ZNSt") || sName.starts_with("_ZSt") || sName.starts_with("_ZNKSt");
}

/// The first function outside the system's own libraries on a stack, behind what allocates; nothing at its
/// end.
Dl_info firstFunction(std::span<void* const> aFrames) {
    Dl_info found{};
    for (void* const pFrame : aFrames) {
        Dl_info info{};
        if (::dladdr(pFrame, &info) == 0 || info.dli_fname == nullptr)
            continue;
        if (isAllocationFunction(info.dli_sname))
            found = {};
        else if (found.dli_fname == nullptr && !isOfTheSystem(info.dli_fname) &&
                 !isOfTheStandard(info.dli_sname))
            found = info;
    }
    return found;
}

/// Who asked for the memory that there was not.
Dl_info whoAsked() {
    return firstFunction(std::span(aWhere).first(static_cast<std::size_t>(nWhere)));
}

bool isOfTheProgram(const Dl_info& function) {
    return function.dli_fname != nullptr &&
           std::string_view(function.dli_fname).find("halvane_") != std::string_view::npos;
}

void tell(const char* pText) {
    static_cast<void>(::write(lTellEnd, pText, std::strlen(pText)));
}

void tell(const Dl_info& function) {
    tell(function.dli_sname == nullptr ? "a function without a name" : function.dli_sname);
    tell(" in ");
    tell(function.dli_fname == nullptr ? "no library" : function.dli_fname);
}

/// "FUNCTION in LIBRARY, which asked for memory", and whether that was the program itself.
void tellWhereItEnded(int lSignal) {
    tell(whoAsked());
    tell(isOfTheProgram(whoAsked()) ? sOfTheProgram : ", which asked for memory");
    ::signal(lSignal, SIG_DFL);
    ::raise(lSignal);
}

class DataAllocations : public testing::Test {
protected:
    void exportOnce(CountingObserver& observer) {
        std::int32_t lErrNum = 0;
        std::string sErrMsg;
        try {
            const auto pHost = host::gdal::GdalHost::create();
            clsExport component(pHost, {.pObserver = &observer});
            std::string sName = "out.xml";
            component.Export2XML(pHost->openMapDocument(HALVANE_EXAMPLES "/world.xml"),
                                 HALVANE_EXAMPLES "/continents.xml", folder.path().string(), sName, nullptr,
                                 "", lErrNum, sErrMsg);
        } catch (const std::exception&) { // a front end tells it
            observer.bToldNotSaved = true;
        }
    }

    [[noreturn]] void runChild(std::size_t nSkipped) {
        for (const int lSignal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL})
            ::signal(lSignal, &tellWhereItEnded);
        nUntilFault = nSkipped;
        CountingObserver told;
        exportOnce(told);
        const bool bStruck = nUntilFault.exchange(never) == never;
        const std::string sDocument = folder.read("out.xml").value_or("");
        const bool bTold = sDocument == sWhole || (sDocument == sOld && told.bToldNotSaved) ||
                           (sDocument != sOld && told.lFailures > 0);
        if (!bTold) {
            std::cerr << "failures " << told.lFailures << ", told not saved " << told.bToldNotSaved
                      << ", saved " << told.bSaved << ":\n"
                      << sDocument << std::endl;
            ::backtrace_symbols_fd(aWhere.data(), nWhere, 2);
        }
        if (!bTold)
            ::_exit(isOfTheProgram(whoAsked()) ? NothingTold : LibraryTellsNothing);
        ::_exit(bStruck ? Struck : NotStruck);
    }

    /// @returns false once there is no such allocation.
    bool strike(std::size_t nSkipped) {
        folder.write("out.xml", sOld);
        std::array<int, 2> aPipe{};
        EXPECT_EQ(::pipe(aPipe.data()), 0);
        const pid_t lChild = ::fork();
        if (lChild == 0) {
            lTellEnd = aPipe[1];
            ::close(aPipe[0]);
            ::dup2(aPipe[1], 2); // what the library says at its end
            runChild(nSkipped);
        }
        ::close(aPipe[1]);
        std::string sEnd;
        std::array<char, 512> aText{};
        for (ssize_t nRead = 0; (nRead = ::read(aPipe[0], aText.data(), aText.size())) > 0;)
            sEnd.append(aText.data(), static_cast<std::size_t>(nRead));
        ::close(aPipe[0]);
        int lStatus = 0;
        EXPECT_EQ(::waitpid(lChild, &lStatus, 0), lChild);
        if (WIFSIGNALED(lStatus)) {
            ++ends[sEnd];
            const std::string sDocument = folder.read("out.xml").value_or("");
            EXPECT_TRUE(sDocument == sOld || sDocument == sWhole) << nSkipped << ": " << sEnd;
            EXPECT_EQ(sEnd.find(sOfTheProgram), std::string::npos) << nSkipped << ": " << sEnd;
            return true;
        }
        EXPECT_NE(WEXITSTATUS(lStatus), NothingTold)
            << "allocation " << nSkipped << ": what is missing is not told\n"
            << sEnd;
        if (WEXITSTATUS(lStatus) == LibraryTellsNothing) {
            ++nSilent;
            std::cout << "allocation " << nSkipped << ": a library does not tell what is missing\n" << sEnd;
        }
        return WEXITSTATUS(lStatus) != NotStruck;
    }

    TemporaryFolder folder;
    const std::string sOld = "<old/>";
    std::string sWhole;
    std::size_t nSilent = 0;         ///< losses that a library does not tell
    std::map<std::string, int> ends; ///< of processes, with how often each was seen
};

TEST_F(DataAllocations, FailOneByOneAndLeaveAnOldOrANewDocument) {
    CountingObserver told;
    exportOnce(told);
    ASSERT_EQ(told.lFailures, 0);
    sWhole = folder.read("out.xml").value_or("");
    ASSERT_NE(sWhole, "");
    // HALVANE_ALLOCATION_STRIDE: 1 for each. HALVANE_ALLOCATION_FIRST, HALVANE_ALLOCATION_COUNT: where one
    // that failed is looked at, or all are tried in pieces.
    const std::size_t nStride = numberSet("HALVANE_ALLOCATION_STRIDE", 199);
    const std::size_t nMost = numberSet("HALVANE_ALLOCATION_COUNT", never);
    std::size_t nTried = 0;
    for (std::size_t n = numberSet("HALVANE_ALLOCATION_FIRST", 0); nTried < nMost && strike(n); n += nStride)
        ++nTried;
    EXPECT_GT(nTried, std::min<std::size_t>(nMost - 1, 100));
    // Which ones of all are tried depends on how long the paths of this machine are: one may be among them.
    EXPECT_LE(nSilent, nStride == 1 ? 0U : 1U);
    std::cout << "Of every " << nStride << " allocations one failed, " << nTried << " in all.\n";
    for (const auto& [sEnd, lTimes] : ends)
        std::cout << "The process was ended " << lTimes << " times by: " << sEnd << '\n';
}

} // namespace
} // namespace halvane::test
