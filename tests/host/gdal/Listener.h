#pragma once

#include <string>

namespace halvane::tests {

/// A server on this machine that counts who calls, without answering.
class Listener {
public:
    Listener();
    ~Listener();
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    [[nodiscard]] std::string port() const { return std::to_string(port_); }
    /// How many callers have come since the last question.
    [[nodiscard]] int callers();

private:
    int socket_;
    int port_ = 0;
};

} // namespace halvane::tests
