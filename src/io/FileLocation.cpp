#include "io/FileLocation.h"

#include "base/Text.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <system_error>

namespace halvane::io {

namespace {

constexpr std::string_view fileScheme = "file:///";

bool startsIgnoringCase(std::string_view sText, std::string_view sStart) {
    return sText.size() >= sStart.size() && equalIgnoringCase(sText.substr(0, sStart.size()), sStart);
}

bool exists(const std::string& sPath) {
    std::error_code ignored;
    return std::filesystem::exists(sPath, ignored);
}

/// "/" and the rest; the rest of "file:////tmp/x" has its own.
std::string rooted(const std::string& sRest) {
#ifdef _WIN32
    return sRest;
#else
    return sRest.starts_with('/') ? sRest : "/" + sRest;
#endif
}

} // namespace

std::string nativePath(std::string_view sPath) {
    std::string sNative(sPath);
#ifndef _WIN32
    std::replace(sNative.begin(), sNative.end(), '\\', '/');
#endif
    return sNative;
}

bool isHttpUrl(std::string_view sName) {
    return startsIgnoringCase(sName, "http://") || startsIgnoringCase(sName, "https://");
}

std::string withoutCredentials(std::string_view sName) {
    std::string sUrl(sName);
    if (!isHttpUrl(sName))
        return sUrl;
    const std::size_t nHost = sUrl.find("//") + 2;
    const std::size_t nEnd = std::min(sUrl.find_first_of("/?#", nHost), sUrl.size());
    const std::size_t nAt = sUrl.rfind('@', nEnd - 1);
    if (nAt != std::string::npos) // in front of the host there is none
        sUrl.erase(nHost, nAt + 1 - nHost);
    return sUrl;
}

std::string percentDecoded(std::string_view sText) {
    std::string sResult;
    for (std::size_t n = 0; n < sText.size(); ++n) {
        unsigned nByte = 0;
        const char* const pDigits = sText.data() + n + 1;
        if (sText[n] == '%' && n + 2 < sText.size() &&
            std::from_chars(pDigits, pDigits + 2, nByte, 16).ptr == pDigits + 2) {
            sResult.push_back(static_cast<char>(nByte));
            n += 2;
        } else {
            sResult.push_back(sText[n]);
        }
    }
    return sResult;
}

std::string pathOfName(std::string_view sName) {
    if (!startsIgnoringCase(sName, fileScheme))
        return nativePath(sName);
    const std::string sRest = nativePath(sName.substr(fileScheme.size()));
    std::string sPath = rooted(sRest);
    if (!exists(sPath))
        if (std::string sDecoded = rooted(percentDecoded(sRest)); exists(sDecoded))
            return sDecoded;
    return sPath;
}

} // namespace halvane::io
