#include "host/gdal/source/ConfinedFiles.h"

#include "host/gdal/source/DataInUse.h"
#include "host/gdal/source/Locations.h"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <cpl_string.h>
#include <cpl_vsi_virtual.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <exception>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace halvane::host::gdal {

namespace {

namespace fs = std::filesystem;

fs::path plain(const fs::path& path) {
    return fs::absolute(path).lexically_normal();
}

// A folder's own path is inside it, with a separator at its end and without.
const fs::path& definitionsOfLibrary() {
    static const fs::path folder = [] {
        const char* pFile =
            CPLFindFile("gdal", "header.dxf"); // one of those that stand there in all versions
        return pFile == nullptr ? fs::path() : plain(pFile).parent_path();
    }();
    return folder;
}

bool isWithinReach(const fs::path& path) {
    const DataInUse data = dataInUse();
    const bool bData = data.pPath != nullptr && *data.pPath == '/';
    return (bData && isInside(path, plain(data.pPath).parent_path())) ||
           (!definitionsOfLibrary().empty() && isInside(path, definitionsOfLibrary()));
}

/// The files of this machine, as far as the data in use may lead to them.
class ConfinedFiles : public VSIFilesystemHandler {
public:
    explicit ConfinedFiles(VSIFilesystemHandler* pAll) : pAll_(pAll) {}

    VSIVirtualHandle* Open(const char* pPath, const char* pAccess, bool bSetError,
                           CSLConstList ppOptions) override {
        const bool bMay = mayReach(pPath) && (!libraryIsCalled() || isFile(pPath));
        if (!bMay && libraryIsCalled())
            tellOfRefusal(pPath);
        return bMay ? pAll_->Open(pPath, pAccess, bSetError, ppOptions) : nothing<VSIVirtualHandle>();
    }
    int Stat(const char* pPath, VSIStatBufL* pFacts, int lFlags) override {
        if (mayReach(pPath))
            return pAll_->Stat(pPath, pFacts, lFlags);
        errno = ENOENT;
        return -1;
    }
    char** ReadDirEx(const char* pPath, int lMost) override {
        return mayReach(pPath) ? pAll_->ReadDirEx(pPath, lMost) : nothing<char*>();
    }
    VSIDIR* OpenDir(const char* pPath, int lDepth, const char* const* ppOptions) override {
        return mayReach(pPath) ? pAll_->OpenDir(pPath, lDepth, ppOptions) : nothing<VSIDIR>();
    }

    // What writes has no call of ours around it.
    int Unlink(const char* pPath) override { return pAll_->Unlink(pPath); }
    int Mkdir(const char* pPath, long lMode) override { return pAll_->Mkdir(pPath, lMode); }
    int Rmdir(const char* pPath) override { return pAll_->Rmdir(pPath); }
    int Rename(const char* pFrom, const char* pTo) override { return pAll_->Rename(pFrom, pTo); }
    int IsCaseSensitive(const char* pPath) override { return pAll_->IsCaseSensitive(pPath); }
    GIntBig GetDiskFreeSpace(const char* pPath) override { return pAll_->GetDiskFreeSpace(pPath); }
    int SupportsSparseFiles(const char* pPath) override { return pAll_->SupportsSparseFiles(pPath); }

private:
    template<class T>
    static T* nothing() {
        errno = ENOENT;
        return nullptr;
    }

    static bool mayReach(const char* pPath) noexcept {
        try {
            return !libraryIsCalled() || isWithinReach(plain(pPath));
        } catch (const std::exception&) {
            return false;
        }
    }

    // Drivers look for many files that are not there; of those there is nothing to tell.
    static void tellOfRefusal(const char* pPath) noexcept {
        std::error_code error;
        if (fs::exists(pPath, error))
            CPLError(CE_Warning, CPLE_OpenFailed,
                     "\"%s\" is not read: data lead to plain files of their own folder alone", pPath);
    }

    std::unique_ptr<VSIFilesystemHandler> pAll_;
};

/// A file system without files, in the place of one that reaches further.
class NoFiles : public VSIFilesystemHandler {
public:
    /// @param pReplaced known to the library under several names; it goes with the last.
    explicit NoFiles(std::shared_ptr<VSIFilesystemHandler> pReplaced) : pReplaced_(std::move(pReplaced)) {}

    VSIVirtualHandle* Open(const char* /*pPath*/, const char* /*pAccess*/, bool /*bSetError*/,
                           CSLConstList /*ppOptions*/) override {
        errno = ENOENT;
        return nullptr;
    }
    int Stat(const char* /*pPath*/, VSIStatBufL* /*pFacts*/, int /*lFlags*/) override {
        errno = ENOENT;
        return -1;
    }

private:
    std::shared_ptr<VSIFilesystemHandler> pReplaced_;
};

void removeFarFileSystems() {
    // Memory, and what stands inside a file: that one is opened as any other.
    constexpr std::array<std::string_view, 4> aKept{"/vsimem/", "/vsizip/", "/vsigzip/", "/vsisubfile/"};
    std::map<VSIFilesystemHandler*, std::shared_ptr<VSIFilesystemHandler>> replaced;
    const CPLStringList prefixes(VSIFileManager::GetPrefixes());
    for (int lIndex = 0; lIndex < prefixes.size(); ++lIndex) {
        const char* pPrefix = prefixes[lIndex];
        if (std::find(aKept.begin(), aKept.end(), pPrefix) != aKept.end())
            continue;
        auto& pHandler = replaced[VSIFileManager::GetHandler(pPrefix)];
        if (pHandler == nullptr)
            pHandler.reset(VSIFileManager::GetHandler(pPrefix));
        VSIFileManager::InstallHandler(pPrefix, std::make_unique<NoFiles>(pHandler).release());
    }
}

} // namespace

void confineFiles() {
    static_cast<void>(definitionsOfLibrary());
    removeFarFileSystems();
    VSIFileManager::InstallHandler(
        "", std::make_unique<ConfinedFiles>(VSIFileManager::GetHandler("/")).release());
}

} // namespace halvane::host::gdal
