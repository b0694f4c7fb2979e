#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#ifdef _WIN32
#include <winsock2.h>
#else
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace halvane::test {

#ifdef _WIN32
using Socket = SOCKET;
using SocketAddressSize = int;
using SocketSize = int;
inline constexpr Socket noSocket = INVALID_SOCKET;
inline constexpr int sendFlags = 0;

inline void startSockets() {
    WSADATA data{};
    if (::WSAStartup(MAKEWORD(2, 2), &data) != 0)
        throw std::runtime_error("no sockets");
}
inline int pollSocket(WSAPOLLFD& ready, int nMilliseconds) {
    return ::WSAPoll(&ready, 1, nMilliseconds);
}
inline void closeSocket(Socket socket) {
    ::closesocket(socket);
}
using PollEntry = WSAPOLLFD;
#else
using Socket = int;
using SocketAddressSize = socklen_t;
using SocketSize = std::size_t;
inline constexpr Socket noSocket = -1;
inline constexpr int sendFlags = MSG_NOSIGNAL;

inline void startSockets() {}
inline int pollSocket(pollfd& ready, int nMilliseconds) {
    return ::poll(&ready, 1, nMilliseconds);
}
inline void closeSocket(Socket socket) {
    ::close(socket);
}
using PollEntry = pollfd;
#endif

/// Answers requests on a port of this machine, one at a time, for as long as it lives.
class LoopbackServer {
public:
    /// From the path of a request to the whole answer, head and body.
    using Answer = std::function<std::string(const std::string& sPath)>;

    explicit LoopbackServer(Answer fnAnswer) : fnAnswer_(std::move(fnAnswer)) {
        startSockets();
        socket_ = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        SocketAddressSize nSize = sizeof address;
        auto* const pAddress = reinterpret_cast<sockaddr*>(&address);
        if (socket_ == noSocket || ::bind(socket_, pAddress, nSize) != 0 || ::listen(socket_, 8) != 0 ||
            ::getsockname(socket_, pAddress, &nSize) != 0)
            throw std::runtime_error("no loopback socket");
        nPort_ = ntohs(address.sin_port);
        thread_ = std::thread([this] { serve(); });
    }
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;
    ~LoopbackServer() {
        bStop_ = true;
        thread_.join();
        closeSocket(socket_);
    }

    [[nodiscard]] std::string url(std::string_view sPath) const {
        return "http://127.0.0.1:" + std::to_string(nPort_) + std::string(sPath);
    }

    /// The heads of all requests so far, one after the other.
    [[nodiscard]] std::string requests() const {
        const std::lock_guard lock(mutex_);
        return sRequests_;
    }

    [[nodiscard]] static std::string ok(std::string_view sBody) {
        return "HTTP/1.0 200 OK\r\nContent-Length: " + std::to_string(sBody.size()) + "\r\n\r\n" +
               std::string(sBody);
    }
    [[nodiscard]] static std::string redirection(std::string_view sLocation) {
        return "HTTP/1.0 302 Found\r\nLocation: " + std::string(sLocation) + "\r\nContent-Length: 0\r\n\r\n";
    }

private:
    void serve() {
        while (!bStop_) {
            PollEntry ready{socket_, POLLIN, 0};
            if (pollSocket(ready, 20) <= 0)
                continue;
            const Socket client = ::accept(socket_, nullptr, nullptr);
            if (client == noSocket)
                continue;
            answer(client);
            closeSocket(client);
        }
    }

    void answer(Socket client) {
        std::string sRequest;
        std::array<char, 4096> aBytes{};
        while (sRequest.find("\r\n\r\n") == std::string::npos) {
            const auto nRead = ::recv(client, aBytes.data(), static_cast<SocketSize>(aBytes.size()), 0);
            if (nRead <= 0)
                return;
            sRequest.append(aBytes.data(), static_cast<std::size_t>(nRead));
        }
        {
            const std::lock_guard lock(mutex_);
            sRequests_ += sRequest;
        }
        const auto nBegin = sRequest.find(' ') + 1;
        const std::string sAnswer = fnAnswer_(sRequest.substr(nBegin, sRequest.find(' ', nBegin) - nBegin));
        std::string_view sRest = sAnswer;
        while (!sRest.empty()) {
            const auto nSent = ::send(client, sRest.data(), static_cast<SocketSize>(sRest.size()), sendFlags);
            if (nSent <= 0)
                return;
            sRest.remove_prefix(static_cast<std::size_t>(nSent));
        }
    }

    Answer fnAnswer_;
    Socket socket_ = noSocket;
    int nPort_ = 0;
    std::atomic<bool> bStop_{false};
    mutable std::mutex mutex_;
    std::string sRequests_;
    std::thread thread_;
};

} // namespace halvane::test
