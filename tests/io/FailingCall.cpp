#include "FailingCall.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <pthread.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace halvane::test {

namespace {

std::atomic<FailingCall*> pFailing = nullptr; // NOLINT(*-avoid-non-const-global-variables)

} // namespace

FailingCall::FailingCall(std::string_view sCall, int nError, int nTimes, int nSkipped)
    : pOuter_(pFailing), sCall_(sCall), nError_(nError), nTimes_(nTimes), nSkipped_(nSkipped) {
    pFailing = this;
}

FailingCall::~FailingCall() {
    pFailing = pOuter_;
    EXPECT_GT(nStruck_, 0) << sCall_ << " was not called";
}

bool FailingCall::strikesHere(std::string_view sCall) noexcept {
    if (sCall_ != sCall || nSkipped_-- > 0 || nStruck_ >= nTimes_)
        return false;
    ++nStruck_;
    errno = nError_;
    return true;
}

bool FailingCall::strikes(std::string_view sCall) noexcept {
    for (FailingCall* pCall = pFailing; pCall != nullptr; pCall = pCall->pOuter_)
        if (pCall->strikesHere(sCall))
            return true;
    return false;
}

namespace {

/// The system's own.
template<class Function>
Function* own(const char* pName) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, pName)); // NOLINT(*-reinterpret-cast)
}

} // namespace

} // namespace halvane::test

// NOLINTBEGIN(cppcoreguidelines-pro-type-vararg, readability-inconsistent-declaration-parameter-name): their
// signatures
extern "C" {

using halvane::test::FailingCall;
using halvane::test::own;

int open(const char* pPath, int nFlags, ...) {
    va_list list;
    va_start(list, nFlags);
    const auto nMode = va_arg(list, mode_t);
    va_end(list);
    if (FailingCall::strikes((nFlags & O_TMPFILE) == O_TMPFILE ? "open unnamed" : "open"))
        return -1;
    static auto* const fnOwn = own<int(const char*, int, ...)>("open");
    return fnOwn(pPath, nFlags, nMode);
}

int fcntl(int nDescriptor, int nCommand, ...) {
    va_list list;
    va_start(list, nCommand);
    const auto nArgument = va_arg(list, long);
    va_end(list);
    if (nCommand == F_DUPFD_CLOEXEC && FailingCall::strikes("dup"))
        return -1;
    static auto* const fnOwn = own<int(int, int, ...)>("fcntl");
    return fnOwn(nDescriptor, nCommand, nArgument);
}

int close(int nDescriptor) {
    static auto* const fnOwn = own<int(int)>("close");
    const int nResult = fnOwn(nDescriptor); // a failing one closes, too
    return FailingCall::strikes("close") ? -1 : nResult;
}

ssize_t read(int nDescriptor, void* pBytes, std::size_t nBytes) {
    static auto* const fnOwn = own<ssize_t(int, void*, std::size_t)>("read");
    return FailingCall::strikes("read") ? -1 : fnOwn(nDescriptor, pBytes, nBytes);
}

ssize_t pread(int nDescriptor, void* pBytes, std::size_t nBytes, off_t nOffset) {
    static auto* const fnOwn = own<ssize_t(int, void*, std::size_t, off_t)>("pread");
    return FailingCall::strikes("pread") ? -1 : fnOwn(nDescriptor, pBytes, nBytes, nOffset);
}

ssize_t write(int nDescriptor, const void* pBytes, std::size_t nBytes) {
    static auto* const fnOwn = own<ssize_t(int, const void*, std::size_t)>("write");
    return FailingCall::strikes("write") ? -1 : fnOwn(nDescriptor, pBytes, nBytes);
}

int rename(const char* pOld, const char* pNew) noexcept {
    static auto* const fnOwn = own<int(const char*, const char*)>("rename");
    return FailingCall::strikes("rename") ? -1 : fnOwn(pOld, pNew);
}

int unlink(const char* pPath) noexcept {
    static auto* const fnOwn = own<int(const char*)>("unlink");
    return FailingCall::strikes("unlink") ? -1 : fnOwn(pPath);
}

int linkat(int nOld, const char* pOld, int nNew, const char* pNew, int nFlags) noexcept {
    static auto* const fnOwn = own<int(int, const char*, int, const char*, int)>("linkat");
    return FailingCall::strikes("linkat") ? -1 : fnOwn(nOld, pOld, nNew, pNew, nFlags);
}

ssize_t readlink(const char* pPath, char* pBytes, std::size_t nBytes) noexcept {
    static auto* const fnOwn = own<ssize_t(const char*, char*, std::size_t)>("readlink");
    return FailingCall::strikes("readlink") ? -1 : fnOwn(pPath, pBytes, nBytes);
}

int access(const char* pPath, int nMode) noexcept {
    static auto* const fnOwn = own<int(const char*, int)>("access");
    return FailingCall::strikes("access") ? -1 : fnOwn(pPath, nMode);
}

int flock(int nDescriptor, int nOperation) noexcept {
    static auto* const fnOwn = own<int(int, int)>("flock");
    return FailingCall::strikes("flock") ? -1 : fnOwn(nDescriptor, nOperation);
}

int fstat(int nDescriptor, struct stat* pStatus) noexcept {
    static auto* const fnOwn = own<int(int, struct stat*)>("fstat");
    return FailingCall::strikes("fstat") ? -1 : fnOwn(nDescriptor, pStatus);
}

int lstat(const char* pPath, struct stat* pStatus) noexcept {
    static auto* const fnOwn = own<int(const char*, struct stat*)>("lstat");
    if (FailingCall::strikes("lstat of another file"))
        return fnOwn(std::filesystem::path(pPath).parent_path().c_str(), pStatus);
    if (FailingCall::strikes("lstat of another disk"))
        return fnOwn("/proc/self/stat", pStatus);
    return FailingCall::strikes("lstat") ? -1 : fnOwn(pPath, pStatus);
}

int fchmod(int nDescriptor, mode_t nMode) noexcept {
    static auto* const fnOwn = own<int(int, mode_t)>("fchmod");
    return FailingCall::strikes("fchmod") ? -1 : fnOwn(nDescriptor, nMode);
}

int fchown(int nDescriptor, uid_t nUser, gid_t nGroup) noexcept {
    static auto* const fnOwn = own<int(int, uid_t, gid_t)>("fchown");
    return FailingCall::strikes("fchown") ? -1 : fnOwn(nDescriptor, nUser, nGroup);
}

ssize_t getxattr(const char* pPath, const char* pName, void* pValue, std::size_t nBytes) noexcept {
    static auto* const fnOwn = own<ssize_t(const char*, const char*, void*, std::size_t)>("getxattr");
    return FailingCall::strikes("getxattr") ? -1 : fnOwn(pPath, pName, pValue, nBytes);
}

int fsetxattr(int nDescriptor, const char* pName, const void* pValue, std::size_t nBytes,
              int nFlags) noexcept {
    static auto* const fnOwn = own<int(int, const char*, const void*, std::size_t, int)>("fsetxattr");
    return FailingCall::strikes("fsetxattr") ? -1 : fnOwn(nDescriptor, pName, pValue, nBytes, nFlags);
}

int mkostemp(char* pTemplate, int nFlags) {
    static auto* const fnOwn = own<int(char*, int)>("mkostemp");
    return FailingCall::strikes("mkostemp") ? -1 : fnOwn(pTemplate, nFlags);
}

// The transfer library's.
void* curl_easy_init() {
    static auto* const fnOwn = own<void*()>("curl_easy_init");
    return FailingCall::strikes("curl_easy_init") ? nullptr : fnOwn();
}

int curl_easy_perform(void* pHandle) {
    static auto* const fnOwn = own<int(void*)>("curl_easy_perform");
    return FailingCall::strikes("curl_easy_perform") ? errno : fnOwn(pHandle);
}

int pthread_create(pthread_t* pThread, const pthread_attr_t* pAttributes, void* (*fnRun)(void*),
                   void* pArgument) noexcept {
    static auto* const fnOwn =
        own<int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)>("pthread_create");
    return FailingCall::strikes("pthread_create") ? errno : fnOwn(pThread, pAttributes, fnRun, pArgument);
}
}
// NOLINTEND(cppcoreguidelines-pro-type-vararg, readability-inconsistent-declaration-parameter-name)
