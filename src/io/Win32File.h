#pragma once

#include "base/Failure.h"
#include "base/com/Windows.h"

#include <string>
#include <string_view>

namespace halvane::io {

/// Owns the handle of a file.
class FileHandle {
public:
    explicit FileHandle(HANDLE hFile = INVALID_HANDLE_VALUE) noexcept : hFile_(hFile) {}
    FileHandle(FileHandle&& other) noexcept : hFile_(other.hFile_) { other.hFile_ = INVALID_HANDLE_VALUE; }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    FileHandle& operator=(FileHandle&&) = delete;
    ~FileHandle();

    [[nodiscard]] HANDLE get() const noexcept { return hFile_; }
    [[nodiscard]] bool isOpen() const noexcept { return hFile_ != INVALID_HANDLE_VALUE; }
    /// @returns ERROR_SUCCESS, or the platform's error number.
    [[nodiscard]] DWORD close() noexcept;

private:
    HANDLE hFile_;
};

/// The path as the platform's functions take it: in UTF-16, a long one in the form that has no limit.
[[nodiscard]] std::wstring widePath(std::string_view sPath);

/// Writes all bytes where the file stands. @returns ERROR_SUCCESS, or the platform's error number.
[[nodiscard]] DWORD writeAll(const FileHandle& file, std::string_view sBytes) noexcept;

/// The failure for a platform's error number: "path: what the platform says".
[[nodiscard]] Failure fileFailure(DWORD nError, std::string_view sPath);

} // namespace halvane::io
