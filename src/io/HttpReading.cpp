#include "io/FileLocation.h"
#include "io/FileReading.h"

#include "base/Owned.h"

#include <array>
#include <curl/curl.h>

namespace halvane::io {

namespace {

constexpr long connectTimeLimit = 10;
constexpr long redirectionLimit = 5;

using EasyHandle = Owned<CURL, curl_easy_cleanup>;

struct Download {
    std::string& sContent;
    std::size_t nLimit = 0;
    bool bTooLarge = false;
};

std::size_t takeBytes(char* pBytes, std::size_t nSize, std::size_t nCount, void* pDownload) noexcept {
    auto& download = *static_cast<Download*>(pDownload);
    const std::size_t nBytes = nSize * nCount;
    if (nBytes > download.nLimit - download.sContent.size()) {
        download.bTooLarge = true;
        return 0;
    }
    try {
        download.sContent.append(pBytes, nBytes);
    } catch (...) {
        return 0; // no exception passes through the C library
    }
    return nBytes;
}

/// The library wants to be told before any other thread uses it.
bool isLibraryReady() {
    static const bool bReady = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    return bReady;
}

void configure(CURL* pHandle, const std::string& sUrl, Download& download, char* pErrorText) {
    curl_easy_setopt(pHandle, CURLOPT_URL, sUrl.c_str());
    curl_easy_setopt(pHandle, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(pHandle, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(pHandle, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(pHandle, CURLOPT_MAXREDIRS, redirectionLimit);
    curl_easy_setopt(pHandle, CURLOPT_TIMEOUT, httpTimeLimit);
    curl_easy_setopt(pHandle, CURLOPT_CONNECTTIMEOUT, connectTimeLimit);
    curl_easy_setopt(pHandle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(pHandle, CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(pHandle, CURLOPT_ERRORBUFFER, pErrorText);
    curl_easy_setopt(pHandle, CURLOPT_WRITEFUNCTION, &takeBytes);
    curl_easy_setopt(pHandle, CURLOPT_WRITEDATA, &download);
}

} // namespace

ReadProblem readUrl(const std::string& sUrl, std::size_t nLimit, std::string& sContent) {
    sContent.clear();
    const std::string sShownUrl = withoutCredentials(sUrl);
    const EasyHandle pHandle(isLibraryReady() ? curl_easy_init() : nullptr);
    if (pHandle == nullptr)
        return {sShownUrl + ": the transfer library cannot be started"};
    std::array<char, CURL_ERROR_SIZE> aErrorText{};
    Download download{sContent, nLimit};
    configure(pHandle.get(), sUrl, download, aErrorText.data());
    const CURLcode code = curl_easy_perform(pHandle.get());
    if (download.bTooLarge)
        return {sShownUrl + ": the document is larger than " + std::to_string(nLimit >> 20U) + " MiB", true};
    const char* const pReason = aErrorText[0] != '\0' ? aErrorText.data() : curl_easy_strerror(code);
    if (code != CURLE_OK)
        return {sShownUrl + ": " + pReason};
    return {};
}

} // namespace halvane::io
