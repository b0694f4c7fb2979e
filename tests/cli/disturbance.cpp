// Disturbs the program from outside: loaded before the system's library, it lets the n-th call of a kind fail
// or be short, or sends the process a signal at that call. The environment says what:
//   HALVANE_DISTURB_CALL    open, read, write, rename, link, close, fsync, seek or allocate
//   HALVANE_DISTURB_AT      the number of the call, from 1 on; 0: none
//   HALVANE_DISTURB_HOW     "fail", "short", or the number of a signal
//   HALVANE_DISTURB_BELOW   calls on files are counted below this folder alone
//   HALVANE_DISTURB_TELL    a file that gets the number of such calls at the end

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string_view>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" void*
__libc_malloc(std::size_t nSize); // NOLINT(bugprone-reserved-identifier): the system's own name

namespace {

struct Order {
    std::string_view sCall;
    std::string_view sHow;
    std::string_view sBelow;
    const char* pTell = nullptr;
    long lAt = 0;
};

std::string_view variable(const char* pName) {
    const char* pValue = std::getenv(pName);
    return pValue == nullptr ? std::string_view() : std::string_view(pValue);
}

Order orderOfEnvironment() {
    return {variable("HALVANE_DISTURB_CALL"), variable("HALVANE_DISTURB_HOW"),
            variable("HALVANE_DISTURB_BELOW"), std::getenv("HALVANE_DISTURB_TELL"),
            std::atol(variable("HALVANE_DISTURB_AT").data())};
}

// Filled once the program runs: what its libraries do before is not counted.
Order order;
std::atomic<bool> bReady{false};
std::atomic<long> lCalls{0};

/// @returns whether this call is the one that is to fail or to be short.
bool isItsTurn(std::string_view sCall) {
    if (!bReady || order.sCall != sCall || ++lCalls != order.lAt)
        return false;
    const int lSignal = std::atoi(order.sHow.data());
    if (lSignal != 0)
        ::syscall(SYS_tgkill, ::getpid(), ::syscall(SYS_gettid), lSignal);
    return lSignal == 0;
}

bool isBelow(const char* pPath) {
    return bReady && std::string_view(pPath).find(order.sBelow) == 0;
}

bool isBelow(int nDescriptor) {
    if (!bReady)
        return false;
    std::array<char, 64> link{};
    std::array<char, PATH_MAX> path{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", nDescriptor);
    const int lError = errno;
    const bool bKnown = ::readlink(link.data(), path.data(), path.size() - 1) > 0;
    errno = lError;
    return bKnown && isBelow(path.data());
}

/// The system's own.
template<class Function>
Function* own(const char* pName) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, pName)); // NOLINT(*-reinterpret-cast)
}

template<class Result>
Result failed(int lError) {
    errno = lError;
    return static_cast<Result>(-1);
}

bool isShort() {
    return order.sHow == "short";
}

__attribute__((constructor)) void begin() {
    order = orderOfEnvironment();
    bReady = !order.sCall.empty();
}

__attribute__((destructor)) void end() {
    bReady = false;
    if (order.pTell == nullptr)
        return;
    if (std::FILE* pFile = std::fopen(order.pTell, "w")) {
        std::fprintf(pFile, "%ld", lCalls.load());
        std::fclose(pFile);
    }
}

} // namespace

// NOLINTBEGIN(cppcoreguidelines-pro-type-vararg, readability-inconsistent-declaration-parameter-name): their
// signatures
extern "C" {

#define HALVANE_OPEN(name)                                                                                   \
    int name(const char* pPath, int nFlags, ...) {                                                           \
        va_list list;                                                                                        \
        va_start(list, nFlags);                                                                              \
        const auto nMode = va_arg(list, mode_t);                                                             \
        va_end(list);                                                                                        \
        static auto* const fnOwn = own<int(const char*, int, ...)>(#name);                                   \
        return isBelow(pPath) && isItsTurn("open") ? failed<int>(EIO) : fnOwn(pPath, nFlags, nMode);         \
    }
HALVANE_OPEN(open)
HALVANE_OPEN(open64)
#undef HALVANE_OPEN

#define HALVANE_FOPEN(name)                                                                                  \
    std::FILE* name(const char* pPath, const char* pMode) {                                                  \
        static auto* const fnOwn = own<std::FILE*(const char*, const char*)>(#name);                         \
        if (!isBelow(pPath) || !isItsTurn("open"))                                                           \
            return fnOwn(pPath, pMode);                                                                      \
        errno = EIO;                                                                                         \
        return nullptr;                                                                                      \
    }
HALVANE_FOPEN(fopen)
HALVANE_FOPEN(fopen64)
#undef HALVANE_FOPEN

ssize_t read(int nDescriptor, void* pBytes, std::size_t nBytes) {
    static auto* const fnOwn = own<ssize_t(int, void*, std::size_t)>("read");
    if (!isBelow(nDescriptor) || !isItsTurn("read"))
        return fnOwn(nDescriptor, pBytes, nBytes);
    return isShort() ? fnOwn(nDescriptor, pBytes, (nBytes + 1) / 2) : failed<ssize_t>(EIO);
}

#define HALVANE_PREAD(name)                                                                                  \
    ssize_t name(int nDescriptor, void* pBytes, std::size_t nBytes, off_t nOffset) {                         \
        static auto* const fnOwn = own<ssize_t(int, void*, std::size_t, off_t)>(#name);                      \
        if (!isBelow(nDescriptor) || !isItsTurn("read"))                                                     \
            return fnOwn(nDescriptor, pBytes, nBytes, nOffset);                                              \
        return isShort() ? fnOwn(nDescriptor, pBytes, (nBytes + 1) / 2, nOffset) : failed<ssize_t>(EIO);     \
    }
HALVANE_PREAD(pread)
HALVANE_PREAD(pread64)
#undef HALVANE_PREAD

ssize_t write(int nDescriptor, const void* pBytes, std::size_t nBytes) {
    static auto* const fnOwn = own<ssize_t(int, const void*, std::size_t)>("write");
    if (!isBelow(nDescriptor) || !isItsTurn("write"))
        return fnOwn(nDescriptor, pBytes, nBytes);
    return isShort() ? fnOwn(nDescriptor, pBytes, (nBytes + 1) / 2) : failed<ssize_t>(ENOSPC);
}

int rename(const char* pOld, const char* pNew) {
    static auto* const fnOwn = own<int(const char*, const char*)>("rename");
    return isBelow(pNew) && isItsTurn("rename") ? failed<int>(EIO) : fnOwn(pOld, pNew);
}

int linkat(int nOld, const char* pOld, int nNew, const char* pNew, int nFlags) {
    static auto* const fnOwn = own<int(int, const char*, int, const char*, int)>("linkat");
    return isBelow(pNew) && isItsTurn("link") ? failed<int>(EIO) : fnOwn(nOld, pOld, nNew, pNew, nFlags);
}

int close(int nDescriptor) {
    static auto* const fnOwn = own<int(int)>("close");
    const bool bFails = isBelow(nDescriptor) && isItsTurn("close");
    const int lClosed = fnOwn(nDescriptor);
    return bFails ? failed<int>(EIO) : lClosed;
}

int fsync(int nDescriptor) {
    static auto* const fnOwn = own<int(int)>("fsync");
    return isBelow(nDescriptor) && isItsTurn("fsync") ? failed<int>(EIO) : fnOwn(nDescriptor);
}

#define HALVANE_SEEK(name)                                                                                   \
    off_t name(int nDescriptor, off_t nOffset, int nFrom) {                                                  \
        static auto* const fnOwn = own<off_t(int, off_t, int)>(#name);                                       \
        return isBelow(nDescriptor) && isItsTurn("seek") ? failed<off_t>(EIO)                                \
                                                         : fnOwn(nDescriptor, nOffset, nFrom);               \
    }
HALVANE_SEEK(lseek)
HALVANE_SEEK(lseek64)
#undef HALVANE_SEEK

void* malloc(std::size_t nSize) {
    return isItsTurn("allocate") ? nullptr : __libc_malloc(nSize);
}

} // extern "C"
// NOLINTEND(cppcoreguidelines-pro-type-vararg, readability-inconsistent-declaration-parameter-name)
