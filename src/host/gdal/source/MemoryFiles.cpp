#include "host/gdal/source/MemoryFiles.h"

#include "base/Failure.h"
#include "host/gdal/source/Locations.h"

#include <cpl_vsi.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace halvane::host::gdal {

namespace {

std::string newMemoryFolder() {
    static std::atomic<unsigned> nLast{0};
    return "/vsimem/halvane-" + std::to_string(++nLast) + "/";
}

} // namespace

std::string contentOf(const std::string& sPath) {
    std::ifstream stream(sPath, std::ios::binary);
    std::string sContent{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad())
        throw Failure(FailureNumber::PathFileAccess, "\"" + sPath + "\" cannot be read");
    return sContent;
}

MemoryFiles::MemoryFiles() : sFolder_(newMemoryFolder()) {}

std::string MemoryFiles::add(const std::string& sName, std::string_view sContent) {
    auto* pBytes = static_cast<GByte*>(VSIMalloc(sContent.size() + 1));
    if (pBytes == nullptr)
        throw Failure::of(FailureNumber::OutOfMemory);
    std::memcpy(pBytes, sContent.data(), sContent.size());
    files_.push_back(sFolder_ + sName);
    // The library frees the bytes with the file.
    VSIFCloseL(VSIFileFromMemBuffer(files_.back().c_str(), pBytes, sContent.size(), TRUE));
    return files_.back();
}

void MemoryFiles::addBeside(const std::string& sPath, const char* pExtension) {
    const std::filesystem::path beside = std::filesystem::path(sPath).replace_extension(pExtension);
    if (isFile(beside.string()))
        add(beside.filename().string(), contentOf(beside.string()));
}

MemoryFiles::~MemoryFiles() {
    for (const std::string& sFile : files_)
        VSIUnlink(sFile.c_str());
}

} // namespace halvane::host::gdal
