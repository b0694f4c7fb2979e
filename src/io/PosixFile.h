#pragma once

#include "base/Failure.h"

#include <string>
#include <string_view>

namespace halvane::io {

/// Owns a file descriptor.
class FileDescriptor {
public:
    explicit FileDescriptor(int nDescriptor = -1) noexcept : nDescriptor_(nDescriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : nDescriptor_(other.nDescriptor_) {
        other.nDescriptor_ = -1;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    ~FileDescriptor();

    [[nodiscard]] int get() const noexcept { return nDescriptor_; }
    [[nodiscard]] bool isOpen() const noexcept { return nDescriptor_ >= 0; }
    /// @returns 0, or the platform's error number.
    [[nodiscard]] int close() noexcept;

private:
    int nDescriptor_;
};

/// Writes all bytes. @returns 0, or the platform's error number.
[[nodiscard]] int writeAll(const FileDescriptor& file, std::string_view sBytes) noexcept;

/// Waits until what was written, or a folder's names, are on the disk. @returns 0, or the platform's error
/// number.
[[nodiscard]] int syncToDisk(const FileDescriptor& file) noexcept;

/// Whether `linkOpenFile` can give an open file a name.
[[nodiscard]] bool canBeLinked(const FileDescriptor& file);
/// Gives an open file a name that is not in use yet. @returns 0, or the platform's error number.
[[nodiscard]] int linkOpenFile(const FileDescriptor& file, const std::string& sPath);

/// What the platform says of an error number, and what to do where rights are missing.
[[nodiscard]] std::string errorText(int nError);

/// The failure for a platform's error number: "path: what the platform says" and what to do.
[[nodiscard]] Failure fileFailure(int nError, std::string_view sPath);

} // namespace halvane::io
