#include "cli/DocumentOutput.h"

#include "run/ExportArguments.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace halvane::cli {

DocumentOutput::DocumentOutput() noexcept
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the platform's signature
    : own_(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {
    static_cast<void>(std::fflush(stdout));
    if (own_.isOpen())
        ::dup2(STDERR_FILENO, STDOUT_FILENO);
}

DocumentOutput::~DocumentOutput() {
    static_cast<void>(std::fflush(stdout));
    if (own_.isOpen())
        ::dup2(own_.get(), STDOUT_FILENO);
}

void DocumentOutput::write(std::string_view sBytes) {
    if (bReaderGone_)
        return;
    const int nError = io::writeAll(own_, sBytes);
    bReaderGone_ = nError == EPIPE;
    if (nError != 0 && !bReaderGone_)
        throw io::fileFailure(nError, sStandardOutput);
}

} // namespace halvane::cli
