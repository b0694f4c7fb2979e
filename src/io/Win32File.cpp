#include "io/Win32File.h"

#include "base/com/Bstr.h"
#include "base/com/HResult.h"

#include <algorithm>

namespace halvane::io {

namespace {

constexpr std::string_view unlimited = R"(\\?\)";
constexpr DWORD longestWrite = 1U << 30U;

/// The whole path without "." and "..", as the form without a limit wants it.
std::wstring fullPath(const std::wstring& sPath) {
    std::wstring sFull(::GetFullPathNameW(sPath.c_str(), 0, nullptr, nullptr), L'\0');
    if (sFull.empty())
        return sPath;
    sFull.resize(::GetFullPathNameW(sPath.c_str(), static_cast<DWORD>(sFull.size()), sFull.data(), nullptr));
    if (sFull.empty())
        return sPath;
    return sFull.starts_with(LR"(\\)") ? LR"(\\?\UNC\)" + sFull.substr(2) : LR"(\\?\)" + sFull;
}

} // namespace

FileHandle::~FileHandle() {
    (void)close();
}

DWORD FileHandle::close() noexcept {
    const HANDLE hFile = hFile_;
    hFile_ = INVALID_HANDLE_VALUE;
    return hFile != INVALID_HANDLE_VALUE && ::CloseHandle(hFile) == 0 ? ::GetLastError() : ERROR_SUCCESS;
}

std::wstring widePath(std::string_view sPath) {
    // The file itself may have a limit of its own below MAX_PATH: room for a name of the old form is left.
    constexpr std::size_t longest = MAX_PATH - 12;
    std::wstring sWide = com::wideOf(sPath);
    return sWide.size() < longest || sPath.starts_with(unlimited) ? sWide : fullPath(sWide);
}

DWORD writeAll(const FileHandle& file, std::string_view sBytes) noexcept {
    while (!sBytes.empty()) {
        const auto nWanted = static_cast<DWORD>(std::min<std::size_t>(sBytes.size(), longestWrite));
        DWORD nWritten = 0;
        if (::WriteFile(file.get(), sBytes.data(), nWanted, &nWritten, nullptr) == 0)
            return ::GetLastError();
        if (nWritten == 0)
            return ERROR_WRITE_FAULT;
        sBytes.remove_prefix(nWritten);
    }
    return ERROR_SUCCESS;
}

Failure fileFailure(DWORD nError, std::string_view sPath) {
    const std::string sText = std::string(sPath) + ": " + com::systemText(nError);
    switch (nError) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
        return {FailureNumber::FileNotFound, sText};
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_DIRECTORY:
        return {FailureNumber::PathFileAccess, sText};
    default:
        return {FailureNumber::DeviceIo, sText};
    }
}

} // namespace halvane::io
