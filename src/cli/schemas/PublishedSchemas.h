#pragma once

#include <span>
#include <string_view>

namespace halvane::cli {

/// A schema of what the program reads or writes, as docs/ has it.
struct PublishedSchema {
    std::string_view sName; ///< of the file
    std::string_view sAbout;
    std::string_view sText;
};

/// In the order in which they are listed.
[[nodiscard]] std::span<const PublishedSchema> publishedSchemas() noexcept;

} // namespace halvane::cli
