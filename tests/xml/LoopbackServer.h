#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <netinet/in.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace halvane::test {

/// Answers requests on a port of this machine, one at a time, for as long as it lives.
class LoopbackServer {
public:
    /// From the path of a request to the whole answer, head and body.
    using Answer = std::function<std::string(const std::string& sPath)>;

    explicit LoopbackServer(Answer fnAnswer) : fnAnswer_(std::move(fnAnswer)) {
        nSocket_ = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t nSize = sizeof address;
        auto* const pAddress = reinterpret_cast<sockaddr*>(&address);
        if (nSocket_ < 0 || ::bind(nSocket_, pAddress, nSize) != 0 || ::listen(nSocket_, 8) != 0 ||
            ::getsockname(nSocket_, pAddress, &nSize) != 0)
            throw std::runtime_error("no loopback socket");
        nPort_ = ntohs(address.sin_port);
        thread_ = std::thread([this] { serve(); });
    }
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;
    ~LoopbackServer() {
        bStop_ = true;
        thread_.join();
        ::close(nSocket_);
    }

    [[nodiscard]] std::string url(std::string_view sPath) const {
        return "http://127.0.0.1:" + std::to_string(nPort_) + std::string(sPath);
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
            pollfd ready{nSocket_, POLLIN, 0};
            if (::poll(&ready, 1, 20) <= 0)
                continue;
            const int nClient = ::accept(nSocket_, nullptr, nullptr);
            if (nClient < 0)
                continue;
            answer(nClient);
            ::close(nClient);
        }
    }

    void answer(int nClient) {
        std::string sRequest;
        std::array<char, 4096> aBytes{};
        while (sRequest.find("\r\n\r\n") == std::string::npos) {
            const auto nRead = ::recv(nClient, aBytes.data(), aBytes.size(), 0);
            if (nRead <= 0)
                return;
            sRequest.append(aBytes.data(), static_cast<std::size_t>(nRead));
        }
        const auto nBegin = sRequest.find(' ') + 1;
        const std::string sAnswer = fnAnswer_(sRequest.substr(nBegin, sRequest.find(' ', nBegin) - nBegin));
        std::string_view sRest = sAnswer;
        while (!sRest.empty()) {
            const auto nSent = ::send(nClient, sRest.data(), sRest.size(), MSG_NOSIGNAL);
            if (nSent <= 0)
                return;
            sRest.remove_prefix(static_cast<std::size_t>(nSent));
        }
    }

    Answer fnAnswer_;
    int nSocket_ = -1;
    int nPort_ = 0;
    std::atomic<bool> bStop_{false};
    std::thread thread_;
};

} // namespace halvane::test
