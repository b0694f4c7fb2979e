#include "io/FileLocation.h"
#include "io/FileReading.h"

#include "base/Owned.h"
#include "base/com/Bstr.h"
#include "base/com/HResult.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <utility>
#include <winhttp.h>

#include <shlwapi.h>

namespace halvane::io {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int connectTimeLimit = 10'000; // milliseconds
constexpr int redirectionLimit = 5;
constexpr std::size_t separators = 16; ///< room for what joins two parts of an address, and its end
constexpr DWORD statusUnauthorized = 401;
constexpr std::array<DWORD, 5> redirections = {301, 302, 303, 307, 308};
constexpr DWORD firstErrorStatus = 400;

using Internet = Owned<void, ::WinHttpCloseHandle>;

/// Why a transfer ended; caught where it began.
struct TransferError {
    std::string sText;
    bool bTooLarge = false;
};

/// The system's texts do not know the library's errors.
std::string textOf(DWORD nError) {
    switch (nError) {
    case ERROR_WINHTTP_TIMEOUT:
        return "the time limit is over";
    case ERROR_WINHTTP_NAME_NOT_RESOLVED:
        return "the host is not known";
    case ERROR_WINHTTP_CANNOT_CONNECT:
        return "the host does not answer";
    case ERROR_WINHTTP_CONNECTION_ERROR:
        return "the connection broke";
    case ERROR_WINHTTP_INVALID_SERVER_RESPONSE:
        return "the answer is not one of HTTP";
    case ERROR_WINHTTP_SECURE_FAILURE:
        return "the host's certificate is not trusted";
    default:
        break;
    }
    const std::string sText = com::systemText(nError);
    return sText.empty() ? "error " + std::to_string(nError) + " of the transfer" : sText;
}

[[noreturn]] void fail(DWORD nError) {
    throw TransferError{textOf(nError)};
}

void require(BOOL bDone) {
    if (bDone == 0)
        fail(::GetLastError());
}

Internet required(HINTERNET hInternet) {
    if (hInternet == nullptr)
        fail(::GetLastError());
    return Internet(hInternet);
}

struct Address {
    explicit Address(std::wstring sUrl) : sWide(std::move(sUrl)) {
        parts.dwStructSize = sizeof parts;
        parts.dwHostNameLength = parts.dwUserNameLength = parts.dwPasswordLength = static_cast<DWORD>(-1);
        parts.dwUrlPathLength = parts.dwExtraInfoLength = static_cast<DWORD>(-1);
        require(::WinHttpCrackUrl(sWide.c_str(), 0, 0, &parts));
    }
    Address(const Address&) = delete; // the parts lie in the text
    Address& operator=(const Address&) = delete;
    ~Address() = default;

    [[nodiscard]] std::wstring host() const { return {parts.lpszHostName, parts.dwHostNameLength}; }
    /// Without the fragment, which is no part of a request.
    [[nodiscard]] std::wstring path() const {
        const std::wstring sPath = std::wstring(parts.lpszUrlPath, parts.dwUrlPathLength) +
                                   std::wstring(parts.lpszExtraInfo, parts.dwExtraInfoLength);
        return sPath.substr(0, sPath.find(L'#'));
    }
    /// Whether what is meant for the one may be told to the other: the same server, reached the same way.
    [[nodiscard]] bool hasOriginOf(const Address& other) const {
        return parts.nScheme == other.parts.nScheme && parts.nPort == other.parts.nPort &&
               ::CompareStringOrdinal(parts.lpszHostName, static_cast<int>(parts.dwHostNameLength),
                                      other.parts.lpszHostName,
                                      static_cast<int>(other.parts.dwHostNameLength), TRUE) == CSTR_EQUAL;
    }
    [[nodiscard]] std::wstring user() const { return {parts.lpszUserName, parts.dwUserNameLength}; }
    [[nodiscard]] std::wstring password() const { return {parts.lpszPassword, parts.dwPasswordLength}; }

    std::wstring sWide;
    URL_COMPONENTS parts{};
};

class Transfer {
public:
    Transfer(const Address& address, Clock::time_point end)
        : end_(end), hSession_(required(::WinHttpOpen(L"Halvane", WINHTTP_ACCESS_TYPE_DEFAULT_PROXY,
                                                      WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, 0))) {
        const int nLimit = static_cast<int>(httpTimeLimit) * 1000;
        require(::WinHttpSetTimeouts(hSession_.get(), connectTimeLimit, connectTimeLimit, nLimit, nLimit));
        hConnection_ =
            required(::WinHttpConnect(hSession_.get(), address.host().c_str(), address.parts.nPort, 0));
        hRequest_ = required(
            ::WinHttpOpenRequest(hConnection_.get(), L"GET", address.path().c_str(), nullptr,
                                 WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES,
                                 address.parts.nScheme == INTERNET_SCHEME_HTTPS ? WINHTTP_FLAG_SECURE : 0));
        // The library would tell name and password to any host that it is led to.
        DWORD nFeatures = WINHTTP_DISABLE_REDIRECTS;
        require(::WinHttpSetOption(hRequest_.get(), WINHTTP_OPTION_DISABLE_FEATURE, &nFeatures,
                                   sizeof nFeatures));
    }

    /// Sends the request, with the name and password of an address once they are asked for.
    void send(const Address& credentials) {
        sendOnce();
        if (status() == statusUnauthorized && credentials.parts.dwUserNameLength != 0) {
            require(::WinHttpSetCredentials(hRequest_.get(), WINHTTP_AUTH_TARGET_SERVER,
                                            WINHTTP_AUTH_SCHEME_BASIC, credentials.user().c_str(),
                                            credentials.password().c_str(), nullptr));
            sendOnce();
        }
        if (const DWORD nStatus = status(); nStatus >= firstErrorStatus)
            throw TransferError{"the server answered with status " + std::to_string(nStatus)};
    }

    /// Where the answer leads instead, as it stands there; nothing for any other answer.
    [[nodiscard]] std::optional<std::wstring> redirection() {
        const DWORD nStatus = status();
        if (std::find(redirections.begin(), redirections.end(), nStatus) == redirections.end())
            return std::nullopt;
        DWORD nBytes = 0;
        ::WinHttpQueryHeaders(hRequest_.get(), WINHTTP_QUERY_LOCATION, WINHTTP_HEADER_NAME_BY_INDEX, nullptr,
                              &nBytes, WINHTTP_NO_HEADER_INDEX);
        if (::GetLastError() != ERROR_INSUFFICIENT_BUFFER)
            return std::nullopt;
        std::wstring sLocation(nBytes / sizeof(wchar_t), L'\0');
        require(::WinHttpQueryHeaders(hRequest_.get(), WINHTTP_QUERY_LOCATION, WINHTTP_HEADER_NAME_BY_INDEX,
                                      sLocation.data(), &nBytes, WINHTTP_NO_HEADER_INDEX));
        sLocation.resize(nBytes / sizeof(wchar_t));
        return sLocation;
    }

    void receive(std::size_t nLimit, std::string& sContent) {
        constexpr DWORD mostAtOnce = 64U << 10U;
        for (;;) {
            if (Clock::now() > end_)
                fail(ERROR_WINHTTP_TIMEOUT);
            const std::size_t nBefore = sContent.size();
            sContent.resize(nBefore + mostAtOnce);
            DWORD nRead = 0;
            const BOOL bRead =
                ::WinHttpReadData(hRequest_.get(), sContent.data() + nBefore, mostAtOnce, &nRead);
            const DWORD nError = bRead != 0 ? ERROR_SUCCESS : ::GetLastError();
            sContent.resize(nBefore + nRead);
            if (bRead == 0)
                fail(nError);
            if (nRead == 0)
                return;
            if (sContent.size() > nLimit)
                throw TransferError{"the document is larger than " + std::to_string(nLimit >> 20U) + " MiB",
                                    true};
        }
    }

private:
    void sendOnce() {
        require(::WinHttpSendRequest(hRequest_.get(), WINHTTP_NO_ADDITIONAL_HEADERS, 0,
                                     WINHTTP_NO_REQUEST_DATA, 0, 0, 0));
        require(::WinHttpReceiveResponse(hRequest_.get(), nullptr));
    }

    DWORD status() {
        DWORD nStatus = 0;
        DWORD nSize = sizeof nStatus;
        require(::WinHttpQueryHeaders(hRequest_.get(), WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                                      WINHTTP_HEADER_NAME_BY_INDEX, &nStatus, &nSize,
                                      WINHTTP_NO_HEADER_INDEX));
        return nStatus;
    }

    Clock::time_point end_;
    Internet hSession_;
    Internet hConnection_;
    Internet hRequest_;
};

/// A location may be written without the parts that it shares with the address it is told at.
std::wstring combined(const Address& address, const std::wstring& sLocation) {
    std::wstring sUrl(address.sWide.size() + sLocation.size() + separators, L'\0');
    auto nSize = static_cast<DWORD>(sUrl.size());
    if (FAILED(::UrlCombineW(address.sWide.c_str(), sLocation.c_str(), sUrl.data(), &nSize, 0)))
        throw TransferError{"the redirection leads nowhere"};
    sUrl.resize(nSize);
    if (!isHttpUrl(com::utf8Of(sUrl)))
        throw TransferError{"the redirection leads to what is not read from a server"};
    return sUrl;
}

void transfer(const Address& first, std::size_t nLimit, std::string& sContent) {
    const auto end = Clock::now() + std::chrono::seconds(httpTimeLimit);
    std::wstring sUrl = first.sWide;
    for (int nRedirections = 0; nRedirections <= redirectionLimit; ++nRedirections) {
        const Address address(sUrl);
        Transfer one(address, end);
        one.send(address.hasOriginOf(first) ? first : address);
        const auto sLocation = one.redirection();
        if (!sLocation)
            return one.receive(nLimit, sContent);
        if (Clock::now() > end)
            fail(ERROR_WINHTTP_TIMEOUT);
        sUrl = combined(address, *sLocation);
    }
    throw TransferError{"too many redirections"};
}

} // namespace

ReadProblem readUrl(const std::string& sUrl, std::size_t nLimit, std::string& sContent) {
    sContent.clear();
    try {
        transfer(Address(com::wideOf(sUrl)), nLimit, sContent);
        return {};
    } catch (const TransferError& error) {
        return {withoutCredentials(sUrl) + ": " + error.sText, error.bTooLarge};
    }
}

} // namespace halvane::io
