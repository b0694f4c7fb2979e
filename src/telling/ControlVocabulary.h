#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace halvane {

/// The attributes of control elements, by their places in ControlVocabulary::attributes.
enum class ControlWord : std::uint8_t {
    Name,
    DataSource,
    DataFrame,
    Identity,
    IdentityValue,
    DataProperty,
    Entries,
    Target,
    DataLocation,
    LinkField,
    MeasureField,
    DecimalPlace,
};
inline constexpr std::size_t controlWords = 12;

/// What a control file may say.
struct ControlVocabulary {
    /// An attribute whose value is a keyword.
    struct Keyword {
        ControlWord attribute;
        std::span<const std::string_view> values; ///< all other values are read as if they were absent
        /// Of values that differ in more than letter case the export itself tells.
        bool bToldByExport = false;
    };

    std::array<std::string_view, controlWords> attributes; ///< without namespace
    std::span<const Keyword> keywords;
    std::span<const std::string_view> properties; ///< of all kinds

    [[nodiscard]] std::string_view name(ControlWord attribute) const noexcept {
        return attributes[static_cast<std::size_t>(attribute)];
    }
};

/// Of control files as they are.
[[nodiscard]] const ControlVocabulary& controlVocabulary();

} // namespace halvane
