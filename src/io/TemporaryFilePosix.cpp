#include "io/FileLocation.h"
#include "io/NameBeside.h"
#include "io/PosixFile.h"
#include "io/TemporaryFile.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace halvane::io {

namespace {

/// The spool's failures are device failures, whatever the platform's reason.
Failure spoolFailure(int nError, const std::string& sFolder) {
    return {FailureNumber::DeviceIo, fileFailure(nError, sFolder + " (temporary file)").description()};
}

/// The folder as the system spells it; the system's own for none.
std::string nativeFolder(std::string_view sFolder) {
    std::error_code ignored;
    if (sFolder.empty())
        return std::filesystem::temp_directory_path(ignored).string();
    return nativePath(sFolder);
}

class PosixTemporaryFile : public TemporaryFile {
public:
    PosixTemporaryFile(FileDescriptor file, std::string sFolder)
        : file_(std::move(file)), sFolder_(std::move(sFolder)) {}

    void append(std::string_view sBytes) override {
        if (const int nError = writeAll(file_, sBytes); nError != 0)
            throw spoolFailure(nError, sFolder_);
    }

    void read(std::uint64_t nOffset, std::span<char> aBytes) override {
        while (!aBytes.empty()) {
            const auto nRead =
                ::pread(file_.get(), aBytes.data(), aBytes.size(), static_cast<off_t>(nOffset));
            if (nRead < 0 && errno == EINTR)
                continue;
            if (nRead <= 0)
                throw spoolFailure(nRead < 0 ? errno : EIO, sFolder_);
            aBytes = aBytes.subspan(static_cast<std::size_t>(nRead));
            nOffset += static_cast<std::uint64_t>(nRead);
        }
    }

    std::optional<int> linkAs(const std::string& sPath, unsigned nMode) override {
        if (::fchmod(file_.get(), static_cast<mode_t>(nMode)) != 0)
            return std::nullopt;
        lockWhileOpen(file_);
        if (linkOpenFile(file_, sPath) != 0)
            return std::nullopt;
        const int nDescriptor =
            ::fcntl(file_.get(), F_DUPFD_CLOEXEC, 0); // NOLINT(*-vararg): the platform's signature
        if (nDescriptor >= 0)
            return nDescriptor;
        ::unlink(sPath.c_str());
        return std::nullopt;
    }

private:
    FileDescriptor file_;
    std::string sFolder_;
};

int openUnnamed(const std::string& sFolder) {
#ifdef O_TMPFILE
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the platform's signature
    const int nDescriptor = ::open(sFolder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (nDescriptor >= 0)
        return nDescriptor;
#endif
    // Not every file system knows unnamed files.
    std::string sTemplate = sFolder + "/.halvane-spool-XXXXXX";
    const int nNamed = ::mkostemp(sTemplate.data(), O_CLOEXEC);
    if (nNamed >= 0)
        ::unlink(sTemplate.c_str());
    return nNamed;
}

} // namespace

std::unique_ptr<TemporaryFile> TemporaryFile::create(std::string_view sFolder) {
    const std::string sNative = nativeFolder(sFolder);
    FileDescriptor file(openUnnamed(sNative));
    if (!file.isOpen())
        throw spoolFailure(errno, sNative);
    return std::make_unique<PosixTemporaryFile>(std::move(file), sNative);
}

} // namespace halvane::io
