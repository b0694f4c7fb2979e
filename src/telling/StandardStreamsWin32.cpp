#include "telling/StandardStreams.h"

namespace halvane {

// The component is a guest in its process: the standard streams are the process's own.

void fillStandardStreams() noexcept {}

std::FILE* standardError() noexcept {
    return stderr;
}

int standardErrorDescriptor() noexcept {
    return 2;
}

LibraryLines::LibraryLines() noexcept = default;
LibraryLines::~LibraryLines() = default;

void LibraryLines::end() noexcept {}

std::vector<std::string> LibraryLines::take() {
    return {};
}

} // namespace halvane
