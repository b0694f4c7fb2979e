#include "run/DocumentCheck.h"

#include "base/Failure.h"
#include "telling/Interruption.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <vector>

namespace halvane {

namespace {

constexpr std::size_t pieceSize = 256U << 10U;

} // namespace

template<class Body>
void DocumentCheck::guarded(const Body& body) {
    if (!sWhyBrokenOff_.empty())
        return;
    try {
        body();
    } catch (...) {
        sWhyBrokenOff_ = currentFailure().description();
        pValidation_.reset();
    }
}

void DocumentCheck::write(std::string_view sBytes) {
    guarded([&] {
        if (!errors_) {
            errors_.emplace(oControlRoot_, log_); // the log has all of the export by now
            pValidation_ = schema_.pSchema->validate(*errors_);
        }
        pValidation_->write(sBytes);
    });
}

void DocumentCheck::read(const std::string& sPath) {
    std::ifstream stream(sPath, std::ios::binary);
    std::vector<char> piece(pieceSize);
    while (stream && sWhyBrokenOff_.empty()) {
        if (interruptionRequested()) {
            sWhyBrokenOff_ = "cancelled";
            return;
        }
        stream.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        write({piece.data(), static_cast<std::size_t>(stream.gcount())});
    }
    if (sWhyBrokenOff_.empty() && !stream.eof())
        sWhyBrokenOff_ = std::string("it cannot be read again: ") + std::strerror(errno);
}

void DocumentCheck::finish() {
    guarded([&] {
        if (pValidation_ != nullptr)
            pValidation_->finish();
        pValidation_.reset();
    });
}

bool DocumentCheck::valid() const {
    return sWhyBrokenOff_.empty() && errors_ && errors_->count() == 0;
}

} // namespace halvane
