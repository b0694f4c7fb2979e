#pragma once

#include <span>
#include <string_view>

namespace halvane::cli {

/// What a control file may say.
struct ControlVocabulary {
    /// An attribute whose value is a keyword.
    struct Keyword {
        std::string_view sAttribute;
        std::span<const std::string_view> values; ///< all other values are read as if they were absent
        bool bToldByExport =
            false; ///< of values that differ in more than letter case the export itself tells
    };

    std::span<const std::string_view> attributes; ///< of control elements, without namespace
    std::span<const Keyword> keywords;

    [[nodiscard]] bool hasAttribute(std::string_view sName) const noexcept;
};

/// Of control files as they are.
[[nodiscard]] const ControlVocabulary& controlVocabulary();

} // namespace halvane::cli
