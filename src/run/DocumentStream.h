#pragma once

#include "io/OutputBuffer.h"

#include <string_view>

namespace halvane {

/// A document on its way to a place that cannot take back what it was given.
class DocumentStream final : public io::ByteSink {
public:
    /// @param target borrowed. @param pCheck borrowed: sees the same bytes; may be nothing.
    DocumentStream(io::ByteSink& target, io::ByteSink* pCheck) : target_(target), pCheck_(pCheck) {}

    void write(std::string_view sBytes) override {
        bBegun_ = bBegun_ || !sBytes.empty();
        target_.write(sBytes);
        if (pCheck_ != nullptr)
            pCheck_->write(sBytes);
    }
    [[nodiscard]] bool begun() const noexcept { return bBegun_; }

private:
    io::ByteSink& target_;
    io::ByteSink* pCheck_;
    bool bBegun_ = false;
};

} // namespace halvane
