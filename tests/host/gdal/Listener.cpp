#include "Listener.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace halvane::tests {

Listener::Listener() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t lLength = sizeof(address);
    auto* pAddress = reinterpret_cast<sockaddr*>(&address);
    if (socket_ < 0 || ::bind(socket_, pAddress, lLength) != 0 || ::listen(socket_, 16) != 0 ||
        ::getsockname(socket_, pAddress, &lLength) != 0) {
        throw std::runtime_error("no server socket");
    }
    port_ = ntohs(address.sin_port);
}

Listener::~Listener() {
    ::close(socket_);
}

int Listener::callers() {
    int lCallers = 0;
    for (int caller = ::accept(socket_, nullptr, nullptr); caller >= 0;
         caller = ::accept(socket_, nullptr, nullptr)) {
        ::close(caller);
        ++lCallers;
    }
    return lCallers;
}

} // namespace halvane::tests
