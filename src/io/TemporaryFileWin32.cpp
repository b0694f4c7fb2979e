#include "io/TemporaryFile.h"
#include "io/Win32File.h"

#include "base/com/Bstr.h"

#include <algorithm>
#include <array>
#include <atomic>

namespace halvane::io {

namespace {

constexpr DWORD longestTransfer = 1U << 30U;

/// The spool's failures are device failures, whatever the platform's reason.
Failure spoolFailure(DWORD nError, const std::string& sFolder) {
    return {FailureNumber::DeviceIo, fileFailure(nError, sFolder + " (temporary file)").description()};
}

OVERLAPPED at(std::uint64_t nOffset) noexcept {
    OVERLAPPED position{};
    position.Offset = static_cast<DWORD>(nOffset);
    position.OffsetHigh = static_cast<DWORD>(nOffset >> 32U);
    return position;
}

/// The system removes the file when its one handle is closed, by us or with the process.
class Win32TemporaryFile : public TemporaryFile {
public:
    Win32TemporaryFile(FileHandle file, std::string sFolder)
        : file_(std::move(file)), sFolder_(std::move(sFolder)) {}

    /// Where the file stands is moved by every read, perhaps on another thread: places are told, not kept.
    void append(std::string_view sBytes) override {
        while (!sBytes.empty()) {
            OVERLAPPED position = at(nEnd_);
            const auto nWanted = static_cast<DWORD>(std::min<std::size_t>(sBytes.size(), longestTransfer));
            DWORD nWritten = 0;
            if (::WriteFile(file_.get(), sBytes.data(), nWanted, &nWritten, &position) == 0)
                throw spoolFailure(::GetLastError(), sFolder_);
            if (nWritten == 0)
                throw spoolFailure(ERROR_WRITE_FAULT, sFolder_);
            sBytes.remove_prefix(nWritten);
            nEnd_ += nWritten;
        }
    }

    void read(std::uint64_t nOffset, std::span<char> aBytes) override {
        while (!aBytes.empty()) {
            OVERLAPPED position = at(nOffset);
            const auto nWanted = static_cast<DWORD>(std::min<std::size_t>(aBytes.size(), longestTransfer));
            DWORD nRead = 0;
            if (::ReadFile(file_.get(), aBytes.data(), nWanted, &nRead, &position) == 0)
                throw spoolFailure(::GetLastError(), sFolder_);
            if (nRead == 0)
                throw spoolFailure(ERROR_HANDLE_EOF, sFolder_);
            aBytes = aBytes.subspan(nRead);
            nOffset += nRead;
        }
    }

    /// A file that goes with its handle cannot stay under another name.
    std::optional<int> linkAs(const std::string& /*sPath*/, unsigned /*nMode*/) override {
        return std::nullopt;
    }

private:
    FileHandle file_;
    std::string sFolder_;
    std::uint64_t nEnd_ = 0;
};

std::string systemFolder() {
    std::array<wchar_t, MAX_PATH + 1> aPath{};
    const DWORD nLength = ::GetTempPathW(static_cast<DWORD>(aPath.size()), aPath.data());
    return com::utf8Of(std::wstring_view(aPath.data(), nLength < aPath.size() ? nLength : 0));
}

FileHandle openNew(const std::string& sFolder) {
    static std::atomic<unsigned> nCounter{0};
    for (;;) {
        const std::string sName = sFolder + "\\halvane-spool-" + std::to_string(::GetCurrentProcessId()) +
                                  "-" + std::to_string(::GetTickCount()) + "-" + std::to_string(++nCounter) +
                                  ".tmp";
        FileHandle file(::CreateFileW(widePath(sName).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0,
                                      nullptr, CREATE_NEW,
                                      FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        if (file.isOpen() || ::GetLastError() != ERROR_FILE_EXISTS)
            return file;
    }
}

} // namespace

std::unique_ptr<TemporaryFile> TemporaryFile::create(std::string_view sFolder) {
    const std::string sNative = sFolder.empty() ? systemFolder() : std::string(sFolder);
    FileHandle file = openNew(sNative);
    if (!file.isOpen())
        throw spoolFailure(::GetLastError(), sNative);
    return std::make_unique<Win32TemporaryFile>(std::move(file), sNative);
}

} // namespace halvane::io
