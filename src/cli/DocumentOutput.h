#pragma once

#include "io/OutputBuffer.h"
#include "io/PosixFile.h"

namespace halvane::cli {

/// Standard output as the place of a document. While it lives, what anybody else writes there goes to
/// standard error, so that the document stands there alone. A reader who has gone away is no failure.
class DocumentOutput final : public io::ByteSink {
public:
    DocumentOutput() noexcept;
    DocumentOutput(const DocumentOutput&) = delete;
    DocumentOutput& operator=(const DocumentOutput&) = delete;
    ~DocumentOutput() override;

    /// @throws Failure with the platform's text when it cannot be written.
    void write(std::string_view sBytes) override;

private:
    io::FileDescriptor own_; ///< standard output as the program was given it
    bool bReaderGone_ = false;
};

} // namespace halvane::cli
