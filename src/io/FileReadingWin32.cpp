#include "io/FileReading.h"
#include "io/Win32File.h"

#include <algorithm>

namespace halvane::io {

namespace {

constexpr std::size_t pieceSize = 256U << 10U;

std::size_t sizeHint(const FileHandle& file, std::size_t nLimit) {
    LARGE_INTEGER size{};
    if (::GetFileSizeEx(file.get(), &size) == 0 || size.QuadPart < 0)
        return 0;
    return static_cast<std::size_t>(
        std::min(static_cast<std::uint64_t>(size.QuadPart), std::uint64_t{nLimit}));
}

} // namespace

ReadProblem readFile(const std::string& sPath, std::size_t nLimit, std::string& sContent) {
    const FileHandle file(::CreateFileW(widePath(sPath).c_str(), GENERIC_READ,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file.isOpen())
        return {fileFailure(::GetLastError(), sPath).description()};
    // A pipe, a console or a port may never end.
    if (const DWORD nType = ::GetFileType(file.get()); nType != FILE_TYPE_DISK)
        return {sPath + (nType == FILE_TYPE_PIPE ? ": a pipe is not read; give a file"
                                                 : ": a device is not read; give a file")};
    sContent.clear();
    sContent.reserve(sizeHint(file, nLimit) + 1);
    for (;;) {
        const std::size_t nBefore = sContent.size();
        sContent.resize(std::max(sContent.capacity(), nBefore + pieceSize));
        DWORD nRead = 0;
        const bool bRead = ::ReadFile(file.get(), sContent.data() + nBefore,
                                      static_cast<DWORD>(sContent.size() - nBefore), &nRead, nullptr) != 0;
        const DWORD nError = bRead ? ERROR_SUCCESS : ::GetLastError();
        sContent.resize(nBefore + nRead);
        if (!bRead && nError != ERROR_HANDLE_EOF)
            return {fileFailure(nError, sPath).description()};
        if (nRead == 0)
            return {};
        if (sContent.size() > nLimit)
            return {sPath + ": the file is larger than " + std::to_string(nLimit >> 20U) + " MiB", true};
    }
}

} // namespace halvane::io
