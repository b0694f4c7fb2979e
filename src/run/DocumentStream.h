#pragma once

#include "io/OutputBuffer.h"

#include <string_view>

namespace halvane {

/// A document on its way to a place that cannot take back what it was given.
class DocumentStream final : public io::ByteSink {
public:
    /// @param target borrowed.
    explicit DocumentStream(io::ByteSink& target) : target_(target) {}

    void write(std::string_view sBytes) override {
        bBegun_ = bBegun_ || !sBytes.empty();
        target_.write(sBytes);
    }
    [[nodiscard]] bool begun() const noexcept { return bBegun_; }

private:
    io::ByteSink& target_;
    bool bBegun_ = false;
};

} // namespace halvane
