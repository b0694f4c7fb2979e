#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace halvane {

/// Opens the null device in place of each of the descriptors 0 to 2 that the program was started without: a
/// file opened later would get its number, and with it what is meant for a person. Called first of all.
void fillStandardStreams() noexcept;

/// Standard error as the program was given it, also while LibraryLines lives.
[[nodiscard]] std::FILE* standardError() noexcept;
/// The same by number; a signal's handler may ask.
[[nodiscard]] int standardErrorDescriptor() noexcept;

/// While it lives, what anybody but standardError() writes to standard error is kept: some libraries tell
/// their troubles there themselves, in words that hold passwords or steer terminals. One at a time. Where
/// the system has no more descriptors nothing is kept.
class LibraryLines {
public:
    LibraryLines() noexcept;
    LibraryLines(const LibraryLines&) = delete;
    LibraryLines& operator=(const LibraryLines&) = delete;
    ~LibraryLines();

    /// Ends the keeping. @returns the lines, each once, in their order; when there were more than are kept,
    /// the last one says so.
    [[nodiscard]] std::vector<std::string> take();

private:
    void end() noexcept;

    int nKept_ = -1; ///< where the lines are read from
    std::FILE* pOwn_ = nullptr;
};

} // namespace halvane
