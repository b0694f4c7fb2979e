#include "host/gdal/source/ProjFiles.h"

#include "host/gdal/source/Locations.h"

#include <cpl_string.h>
#include <ogr_srs_api.h>
#include <proj.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <vector>

namespace halvane::host::gdal {

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> foldersOfLibrary() {
    std::vector<fs::path> folders;
    const CPLStringList paths(OSRGetPROJSearchPaths());
    folders.reserve(static_cast<std::size_t>(paths.size()));
    for (int lIndex = 0; lIndex < paths.size(); ++lIndex)
        folders.push_back((fs::absolute(paths[lIndex]) / "").lexically_normal());
    return folders;
}

const std::vector<fs::path>& ownFolders() {
    static const std::vector<fs::path> folders = foldersOfLibrary();
    return folders;
}

bool isOwn(const char* pPath) {
    const fs::path path = fs::absolute(pPath).lexically_normal();
    return std::any_of(ownFolders().begin(), ownFolders().end(),
                       [&](const fs::path& folder) { return isInside(path, folder); });
}

std::FILE* streamOf(PROJ_FILE_HANDLE* pHandle) {
    return reinterpret_cast<std::FILE*>(pHandle);
}

PROJ_FILE_HANDLE* open(PJ_CONTEXT* /*pContext*/, const char* pPath, PROJ_OPEN_ACCESS access,
                       void* /*pData*/) noexcept {
    try {
        if (access != PROJ_OPEN_ACCESS_READ_ONLY || !isOwn(pPath))
            return nullptr;
        // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): the library owns what it has opened
        return reinterpret_cast<PROJ_FILE_HANDLE*>(std::fopen(pPath, "rbe"));
    } catch (const std::exception&) {
        return nullptr;
    }
}

std::size_t read(PJ_CONTEXT* /*pContext*/, PROJ_FILE_HANDLE* pHandle, void* pBuffer, std::size_t nBytes,
                 void* /*pData*/) noexcept {
    return std::fread(pBuffer, 1, nBytes, streamOf(pHandle));
}

std::size_t write(PJ_CONTEXT* /*pContext*/, PROJ_FILE_HANDLE* /*pHandle*/, const void* /*pBuffer*/,
                  std::size_t /*nBytes*/, void* /*pData*/) noexcept {
    return 0;
}

int seek(PJ_CONTEXT* /*pContext*/, PROJ_FILE_HANDLE* pHandle, long long lOffset, int lFrom,
         void* /*pData*/) noexcept {
    return ::fseeko(streamOf(pHandle), lOffset, lFrom) == 0 ? 1 : 0;
}

unsigned long long tell(PJ_CONTEXT* /*pContext*/, PROJ_FILE_HANDLE* pHandle, void* /*pData*/) noexcept {
    return static_cast<unsigned long long>(::ftello(streamOf(pHandle)));
}

void close(PJ_CONTEXT* /*pContext*/, PROJ_FILE_HANDLE* pHandle, void* /*pData*/) noexcept {
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): as above
    static_cast<void>(std::fclose(streamOf(pHandle)));
}

int exists(PJ_CONTEXT* /*pContext*/, const char* pPath, void* /*pData*/) noexcept {
    try {
        return isOwn((fs::path(pPath) / "").c_str()) && fs::exists(pPath) ? 1 : 0;
    } catch (const std::exception&) {
        return 0;
    }
}

int makeFolder(PJ_CONTEXT* /*pContext*/, const char* /*pPath*/, void* /*pData*/) noexcept {
    return 0;
}

int remove(PJ_CONTEXT* /*pContext*/, const char* /*pPath*/, void* /*pData*/) noexcept {
    return 0;
}

int rename(PJ_CONTEXT* /*pContext*/, const char* /*pFrom*/, const char* /*pTo*/, void* /*pData*/) noexcept {
    return 0;
}

constexpr PROJ_FILE_API fileFunctions{1,      &open,   &read,       &write,  &seek,  &tell,
                                      &close, &exists, &makeFolder, &remove, &rename};

// A new context takes this from the one of the process, but not the functions for files; each asks for its
// settings first, before it opens anything.
const char* giveFileFunctions(PJ_CONTEXT* pContext, const char* /*pName*/, void* /*pData*/) noexcept {
    proj_context_set_fileapi(pContext, &fileFunctions, nullptr);
    return nullptr; // it is found as ever
}

} // namespace

void confineProjections() {
    static_cast<void>(ownFolders());
    proj_context_set_file_finder(nullptr, &giveFileFunctions, nullptr);
}

} // namespace halvane::host::gdal
