#include "xml/io/FileLocation.h"
#include "xml/io/FileReading.h"

#include "collection/com/Bstr.h"
#include "collection/com/HResult.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <winhttp.h>

namespace halvane::io {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int connectTimeLimit = 10'000; // milliseconds
constexpr DWORD redirectionLimit = 5;
constexpr DWORD statusUnauthorized = 401;
constexpr DWORD firstErrorStatus = 400;

struct InternetDeleter {
    void operator()(void* hInternet) const noexcept { ::WinHttpCloseHandle(hInternet); }
};
using Internet = std::unique_ptr<void, InternetDeleter>;

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
    case ERROR_WINHTTP_REDIRECT_FAILED:
        return "too many redirections, or to what cannot be reached";
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
    explicit Address(const std::string& sUrl) : sWide(com::wideOf(sUrl)) {
        parts.dwStructSize = sizeof parts;
        parts.dwHostNameLength = parts.dwUserNameLength = parts.dwPasswordLength = static_cast<DWORD>(-1);
        parts.dwUrlPathLength = parts.dwExtraInfoLength = static_cast<DWORD>(-1);
        require(::WinHttpCrackUrl(sWide.c_str(), 0, 0, &parts));
    }

    [[nodiscard]] std::wstring host() const { return {parts.lpszHostName, parts.dwHostNameLength}; }
    /// Without the fragment, which is no part of a request.
    [[nodiscard]] std::wstring path() const {
        const std::wstring sPath = std::wstring(parts.lpszUrlPath, parts.dwUrlPathLength) +
                                   std::wstring(parts.lpszExtraInfo, parts.dwExtraInfoLength);
        return sPath.substr(0, sPath.find(L'#'));
    }
    [[nodiscard]] std::wstring user() const { return {parts.lpszUserName, parts.dwUserNameLength}; }
    [[nodiscard]] std::wstring password() const { return {parts.lpszPassword, parts.dwPasswordLength}; }

    std::wstring sWide;
    URL_COMPONENTS parts{};
};

class Transfer {
public:
    explicit Transfer(const Address& address)
        : hSession_(required(::WinHttpOpen(L"Halvane", WINHTTP_ACCESS_TYPE_DEFAULT_PROXY,
                                           WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, 0))) {
        const int nLimit = static_cast<int>(httpTimeLimit) * 1000;
        require(::WinHttpSetTimeouts(hSession_.get(), connectTimeLimit, connectTimeLimit, nLimit, nLimit));
        hConnection_ =
            required(::WinHttpConnect(hSession_.get(), address.host().c_str(), address.parts.nPort, 0));
        hRequest_ = required(
            ::WinHttpOpenRequest(hConnection_.get(), L"GET", address.path().c_str(), nullptr,
                                 WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES,
                                 address.parts.nScheme == INTERNET_SCHEME_HTTPS ? WINHTTP_FLAG_SECURE : 0));
        setOption(WINHTTP_OPTION_REDIRECT_POLICY, WINHTTP_OPTION_REDIRECT_POLICY_ALWAYS);
        // Not every version of the system knows the limit; each has one of its own.
        DWORD nRedirections = redirectionLimit;
        ::WinHttpSetOption(hRequest_.get(), WINHTTP_OPTION_MAX_HTTP_AUTOMATIC_REDIRECTS, &nRedirections,
                           sizeof nRedirections);
    }

    /// Sends the request, with name and password once they are asked for.
    void send(const Address& address) {
        sendOnce();
        if (status() == statusUnauthorized && address.parts.dwUserNameLength != 0) {
            require(::WinHttpSetCredentials(hRequest_.get(), WINHTTP_AUTH_TARGET_SERVER,
                                            WINHTTP_AUTH_SCHEME_BASIC, address.user().c_str(),
                                            address.password().c_str(), nullptr));
            sendOnce();
        }
        if (const DWORD nStatus = status(); nStatus >= firstErrorStatus)
            throw TransferError{"the server answered with status " + std::to_string(nStatus)};
    }

    void receive(std::size_t nLimit, std::string& sContent) {
        constexpr DWORD pieceSize = 64U << 10U;
        for (;;) {
            if (Clock::now() > end_)
                fail(ERROR_WINHTTP_TIMEOUT);
            const std::size_t nBefore = sContent.size();
            sContent.resize(nBefore + pieceSize);
            DWORD nRead = 0;
            const BOOL bRead =
                ::WinHttpReadData(hRequest_.get(), sContent.data() + nBefore, pieceSize, &nRead);
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
    void setOption(DWORD nOption, DWORD nValue) {
        require(::WinHttpSetOption(hRequest_.get(), nOption, &nValue, sizeof nValue));
    }

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

    Clock::time_point end_ = Clock::now() + std::chrono::seconds(httpTimeLimit);
    Internet hSession_;
    Internet hConnection_;
    Internet hRequest_;
};

} // namespace

ReadProblem readUrl(const std::string& sUrl, std::size_t nLimit, std::string& sContent) {
    sContent.clear();
    try {
        const Address address(sUrl);
        Transfer transfer(address);
        transfer.send(address);
        transfer.receive(nLimit, sContent);
        return {};
    } catch (const TransferError& error) {
        return {withoutCredentials(sUrl) + ": " + error.sText, error.bTooLarge};
    }
}

} // namespace halvane::io
