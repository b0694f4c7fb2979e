#include "host/gdal/source/Encodings.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/source/Locations.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <string_view>

namespace halvane::host::gdal {

namespace {

class Decoder {
public:
    explicit Decoder(const std::string& sEncoding) : converter_(iconv_open("UTF-8", sEncoding.c_str())) {}
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder() {
        if (isOpen())
            iconv_close(converter_);
    }

    [[nodiscard]] bool isOpen() const {
        return converter_ != reinterpret_cast<iconv_t>(-1); // NOLINT(performance-no-int-to-ptr)
    }

    /// @returns where the text stops to be one; nothing when all of it was decoded.
    std::optional<std::size_t> decode(std::string& sText, std::string& sDecoded) {
        std::array<char, 65536> aBlock{};
        char* pIn = sText.data();
        std::size_t nIn = sText.size();
        while (nIn > 0) {
            char* pOut = aBlock.data();
            std::size_t nOut = aBlock.size();
            const std::size_t nCode = iconv(converter_, &pIn, &nIn, &pOut, &nOut);
            sDecoded.append(aBlock.data(), pOut);
            if (nCode == static_cast<std::size_t>(-1) && errno != E2BIG)
                return sText.size() - nIn;
        }
        return std::nullopt;
    }

private:
    iconv_t converter_;
};

// Where the name of the encoding stands in an XML declaration; empty without one.
std::string_view statedEncoding(std::string_view sContent) {
    constexpr std::string_view sMark = "\xEF\xBB\xBF";
    sContent.remove_prefix(sContent.starts_with(sMark) ? sMark.size() : 0);
    const std::string_view sDeclaration =
        sContent.starts_with("<?xml") ? sContent.substr(0, sContent.find("?>")) : std::string_view();
    const std::size_t nName = sDeclaration.find("encoding");
    const std::size_t nBegin = sDeclaration.find_first_of("\"'", nName) + 1;
    if (nName == std::string_view::npos || nBegin == 0)
        return {};
    const std::size_t nEnd = sDeclaration.find(sDeclaration[nBegin - 1], nBegin);
    return nEnd == std::string_view::npos ? std::string_view() : sDeclaration.substr(nBegin, nEnd - nBegin);
}

bool isKnownToMarkupDriver(std::string_view sEncoding) {
    constexpr std::array<std::string_view, 6> aKnown{"UTF-8",      "UTF-16",      "US-ASCII",
                                                     "ISO-8859-1", "ISO-8859-15", "WINDOWS-1252"};
    return std::any_of(aKnown.begin(), aKnown.end(),
                       [&](std::string_view sOne) { return equalIgnoringCase(sOne, sEncoding); });
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

std::optional<std::string> decodedMarkup(const std::string& sContent) {
    const std::string sEncoding(statedEncoding(sContent));
    if (sEncoding.empty() || isKnownToMarkupDriver(sEncoding))
        return std::nullopt;
    Decoder decoder(sEncoding);
    std::string sRaw = sContent;
    std::string sText;
    if (!decoder.isOpen() || decoder.decode(sRaw, sText))
        return std::nullopt;
    // In some encodings the declaration, too, reads otherwise than its bytes.
    const std::string_view sStated = statedEncoding(sText);
    if (sStated != sEncoding)
        return std::nullopt;
    return sText.replace(static_cast<std::size_t>(sStated.data() - sText.data()), sStated.size(), "UTF-8");
}

Utf8Copy::Utf8Copy(const std::string& sPath, const std::string& sEncoding)
    : sPath_(files_.add(std::filesystem::path(sPath).filename().string(), decoded(sPath, sEncoding))) {
    files_.addBeside(sPath, "csvt");
    files_.addBeside(sPath, "prj");
}

} // namespace halvane::host::gdal
