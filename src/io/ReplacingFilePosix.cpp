#include "io/AccessListPosix.h"
#include "io/FileLocation.h"
#include "io/NameBeside.h"
#include "io/PosixFile.h"
#include "io/ReplacingFile.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace halvane::io {

namespace {

namespace fs = std::filesystem;

constexpr int longestLinkChain = 40;

/// Where the chain of symbolic links ends, whether or not something is there.
fs::path resolveLinks(fs::path path) {
    std::error_code error;
    for (int n = 0; n < longestLinkChain; ++n) {
        if (!fs::is_symlink(fs::symlink_status(path, error)))
            return path;
        const fs::path next = fs::read_symlink(path, error);
        if (error)
            throw fileFailure(error.value(), path.string());
        path = path.parent_path() / next; // an absolute one takes the place of the whole
    }
    throw fileFailure(ELOOP, path.string());
}

/// A folder or a device cannot be replaced by a document; a write-protected file shall not be.
void requireReplaceable(const std::string& sPath) {
    struct stat status = {};
    if (::stat(sPath.c_str(), &status) != 0)
        return;
    if (S_ISDIR(status.st_mode))
        throw fileFailure(EISDIR, sPath);
    if (!S_ISREG(status.st_mode))
        throw Failure(FailureNumber::PathFileAccess, sPath + ": not a regular file");
    if (::faccessat(AT_FDCWD, sPath.c_str(), W_OK, AT_EACCESS) != 0)
        throw fileFailure(errno, sPath);
}

/// A new file without a name: it is gone when the process is, however that ends. @returns one that is not
/// open where the platform or the place has none, or could not name it later.
FileDescriptor createNameless(const fs::path& folder) {
#ifdef O_TMPFILE
    constexpr mode_t defaultPermissions = 0666; // less the process's mask
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the platform's signature
    FileDescriptor file(::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, defaultPermissions));
    if (file.isOpen() && canBeLinked(file)) {
        lockWhileOpen(file);
        return file;
    }
#endif
    return FileDescriptor();
}

/// @returns the descriptor of a new file, or -1.
int createNew(const std::string& sPath) {
    constexpr mode_t defaultPermissions = 0666; // less the process's mask
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the platform's signature
    return ::open(sPath.c_str(), flags, defaultPermissions);
}

constexpr mode_t permissions = 07777;

/// The permissions for a new file in the place of one with these, to which members of the group get no more
/// than everybody has.
mode_t withoutGroup(mode_t mode) {
    return mode & (~static_cast<mode_t>(S_ISGID | S_IRWXG) | ((mode & S_IRWXO) << 3U));
}

/// Gives the new file the permissions of the one that it will replace, its access list, its group and its
/// owner: the latter three as far as the system lets the process give them. What was granted to a group goes
/// to no other; beside an access list, the group's bits bound that list and are not what the group itself
/// has. @returns false when the system refuses permissions.
bool keepRights(const FileDescriptor& file, const std::string& sTarget) {
    constexpr auto same = static_cast<uid_t>(-1);
    struct stat old = {};
    struct stat created = {};
    if (::stat(sTarget.c_str(), &old) != 0)
        return true;
    if (::fchown(file.get(), old.st_uid, old.st_gid) != 0)
        static_cast<void>(::fchown(file.get(), same, old.st_gid) == 0);
    if (::fstat(file.get(), &created) != 0)
        return false;
    const bool bSameGroup = created.st_gid == old.st_gid;
    const AccessList list = keepAccessList(file, sTarget, bSameGroup);
    const mode_t mode = old.st_mode & permissions;
    const bool bGroup = bSameGroup && list != AccessList::Lost;
    return ::fchmod(file.get(), bGroup ? mode : withoutGroup(mode)) == 0;
}

class PosixReplacingFile : public ReplacingFile {
public:
    /// @param sTemporary the name of the file beside the target; "" while it has none.
    PosixReplacingFile(std::string sTarget, std::string sTemporary, FileDescriptor file)
        : sTarget_(std::move(sTarget)), sTemporary_(std::move(sTemporary)), file_(std::move(file)) {}

    PosixReplacingFile(const PosixReplacingFile&) = delete;
    PosixReplacingFile& operator=(const PosixReplacingFile&) = delete;
    ~PosixReplacingFile() override {
        if (!bCommitted_ && !sTemporary_.empty())
            ::unlink(sTemporary_.c_str());
    }

    void write(std::string_view sBytes) override {
        if (const int nError = writeAll(file_, sBytes); nError != 0)
            throw fileFailure(nError, sTarget_);
    }

    std::string commit(Durability durability) override {
        if (durability == Durability::OnDisk)
            throwIfFailed(syncToDisk(file_));
        if (sTemporary_.empty())
            giveName();
        // The folder's descriptor is had before anything is replaced: it may be the one that is too many.
        FileDescriptor folder = durability == Durability::OnDisk ? openFolder() : FileDescriptor();
        // What the system finds at fault only when the file is closed is found while the old one stands.
        // Another descriptor keeps the lock until the name is no longer one that could be removed.
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the platform's signature
        const FileDescriptor lock(::fcntl(file_.get(), F_DUPFD_CLOEXEC, 0));
        throwIfFailed(file_.close());
        if (std::rename(sTemporary_.c_str(), sTarget_.c_str()) != 0)
            throw fileFailure(errno, sTarget_);
        bCommitted_ = true;
        // The new file stands whatever comes of it: to fail here would say that the old one does.
        const int nError = folder.isOpen() ? syncToDisk(folder) : 0;
        return nError == 0 ? std::string() : errorText(nError);
    }

private:
    void throwIfFailed(int nError) const {
        if (nError != 0)
            throw fileFailure(nError, sTarget_);
    }

    [[nodiscard]] FileDescriptor openFolder() const {
        const std::string sFolder = fs::path(sTarget_).parent_path().string();
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the platform's signature
        FileDescriptor folder(::open(sFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        // Who may write into a folder may not always read it; its name is then left to the system.
        if (!folder.isOpen() && errno != EACCES)
            throw fileFailure(errno, sTarget_);
        return folder;
    }

    void giveName() {
        for (;;) {
            std::string sName = freeNameBeside(sTarget_);
            const int nError = linkOpenFile(file_, sName);
            if (nError == 0) {
                sTemporary_ = std::move(sName);
                return;
            }
            if (nError != EEXIST)
                throw fileFailure(nError, sTarget_);
        }
    }

    std::string sTarget_;
    std::string sTemporary_;
    FileDescriptor file_;
    bool bCommitted_ = false;
};

} // namespace

std::unique_ptr<ReplacingFile> ReplacingFile::create(std::string_view sTarget) {
    const fs::path target = resolveLinks(nativePath(sTarget));
    requireReplaceable(target.string());
    std::string sTemporary;
    FileDescriptor file = createNameless(target.parent_path());
    while (!file.isOpen()) {
        sTemporary = freeNameBeside(target);
        file = FileDescriptor(createNew(sTemporary));
        if (!file.isOpen() && errno != EEXIST)
            throw fileFailure(errno, target.string());
        if (file.isOpen() && !lockWhileOpen(file, sTemporary))
            (void)file.close();
    }
    const bool bKept = keepRights(file, target.string());
    const int nError = errno;
    auto pFile =
        std::make_unique<PosixReplacingFile>(target.string(), std::move(sTemporary), std::move(file));
    if (!bKept)
        throw fileFailure(nError, target.string());
    return pFile;
}

namespace {

/// The permissions that a file at the target would be made with; where there is one, whose rights are kept
/// later, the owner's alone. Nothing when no file can be made there.
std::optional<mode_t> firstPermissionsAt(const fs::path& target) {
    struct stat status = {};
    if (::stat(target.c_str(), &status) == 0)
        return S_IRUSR | S_IWUSR;
    // Only making a file tells what the process's mask leaves; asking for the mask would change it.
    const std::string sProbe = freeNameBeside(target);
    const FileDescriptor probe(createNew(sProbe));
    const bool bKnown = probe.isOpen() && ::fstat(probe.get(), &status) == 0;
    if (probe.isOpen())
        ::unlink(sProbe.c_str());
    return bKnown ? std::optional<mode_t>(status.st_mode & permissions) : std::nullopt;
}

} // namespace

std::unique_ptr<ReplacingFile> ReplacingFile::adopt(TemporaryFile& file, std::string_view sTarget) {
    const fs::path target = resolveLinks(nativePath(sTarget));
    requireReplaceable(target.string());
    const auto mode = firstPermissionsAt(target);
    if (!mode)
        return nullptr;
    std::string sTemporary = freeNameBeside(target);
    const auto nDescriptor = file.linkAs(sTemporary, *mode);
    if (!nDescriptor)
        return nullptr;
    FileDescriptor linked(*nDescriptor);
    const bool bKept = keepRights(linked, target.string());
    auto pFile =
        std::make_unique<PosixReplacingFile>(target.string(), std::move(sTemporary), std::move(linked));
    return bKept ? std::move(pFile) : nullptr;
}

} // namespace halvane::io
