#include "host/gdal/Encodings.h"

#include "collection/Failure.h"
#include "host/gdal/Locations.h"

#include <cpl_vsi.h>
#include <iconv.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>

namespace halvane::host::gdal {

namespace {

class Decoder {
public:
    explicit Decoder(const std::string& sEncoding) : converter_(iconv_open("UTF-8", sEncoding.c_str())) {}
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder() {
        if (isOpen()) {
            iconv_close(converter_);
        }
    }

    [[nodiscard]] bool isOpen() const {
        return converter_ != reinterpret_cast<iconv_t>(-1); // NOLINT(performance-no-int-to-ptr)
    }

    /// @returns where the text stops to be one; nothing when all of it was decoded.
    std::optional<std::size_t> decode(std::string& sText, std::string& sDecoded) {
        std::array<char, 65536> aBlock{};
        char* pIn = sText.data();
        std::size_t lIn = sText.size();
        while (lIn > 0) {
            char* pOut = aBlock.data();
            std::size_t lOut = aBlock.size();
            const std::size_t lCode = iconv(converter_, &pIn, &lIn, &pOut, &lOut);
            sDecoded.append(aBlock.data(), pOut);
            if (lCode == static_cast<std::size_t>(-1) && errno != E2BIG) {
                return sText.size() - lIn;
            }
        }
        return std::nullopt;
    }

private:
    iconv_t converter_;
};

std::string contentOf(const std::string& sPath) {
    std::ifstream stream(sPath, std::ios::binary);
    std::string sContent{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad()) {
        throw Failure(FailureNumber::PathFileAccess, "\"" + sPath + "\" cannot be read");
    }
    return sContent;
}

std::string decoded(const std::string& sPath, const std::string& sEncoding) {
    std::string sContent = contentOf(sPath);
    std::string sText;
    Decoder decoder(sEncoding);
    const auto lStop = decoder.isOpen() ? decoder.decode(sContent, sText) : 0;
    if (lStop) {
        throw Failure(FailureNumber::HostFailure, "\"" + sPath + "\" is no text in " + sEncoding + ": byte " +
                                                      std::to_string(*lStop + 1) +
                                                      " belongs to no character; correct its encoding");
    }
    return sText;
}

std::string newMemoryFolder() {
    static std::atomic<unsigned> nLast{0};
    return "/vsimem/halvane-" + std::to_string(++nLast) + "/";
}

} // namespace

bool isEncoding(const std::string& sName) {
    return Decoder(sName).isOpen();
}

bool needsUtf8Copy(const std::string& sPath) {
    constexpr std::array<std::string_view, 3> aExtensions{"csv", "tsv", "psv"};
    return std::find(aExtensions.begin(), aExtensions.end(), extensionOf(sPath)) != aExtensions.end();
}

bool hasOpenEncoding(const std::string& sPath) {
    const std::string sExtension = extensionOf(sPath);
    return needsUtf8Copy(sPath) || sExtension == "shp" || sExtension == "dbf";
}

Utf8Copy::Utf8Copy(const std::string& sPath, const std::string& sEncoding) {
    const std::string sFolder = newMemoryFolder();
    add(sFolder + std::filesystem::path(sPath).filename().string(), decoded(sPath, sEncoding));
    for (const char* pBeside : {"csvt", "prj"}) {
        const std::string sBeside = std::filesystem::path(sPath).replace_extension(pBeside).string();
        if (isFile(sBeside)) {
            add(sFolder + std::filesystem::path(sBeside).filename().string(), contentOf(sBeside));
        }
    }
}

void Utf8Copy::add(const std::string& sFile, const std::string& sContent) {
    auto* pBytes = static_cast<GByte*>(VSIMalloc(sContent.size() + 1));
    if (pBytes == nullptr) {
        throw Failure::of(FailureNumber::OutOfMemory);
    }
    std::memcpy(pBytes, sContent.data(), sContent.size());
    files_.push_back(sFile);
    // The library frees the bytes with the file.
    VSIFCloseL(VSIFileFromMemBuffer(sFile.c_str(), pBytes, sContent.size(), TRUE));
}

Utf8Copy::~Utf8Copy() {
    for (const std::string& sFile : files_) {
        VSIUnlink(sFile.c_str());
    }
}

} // namespace halvane::host::gdal
