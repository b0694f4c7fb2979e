#pragma once

#include "xml/dom/NodeData.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace halvane::dom {

/// A piece of a document's text.
struct Markup {
    enum class What : std::uint8_t { Start, Empty, End, Text, CData, Comment, Instruction, DocumentType };

    What what = What::Text;
    std::string_view sText;   ///< from "<" to ">", or up to the next "<"
    std::uint32_t nLine = 0;  ///< on which it begins, from 1
    std::uint32_t nDepth = 0; ///< the number of elements that are open around it
};

/// Cuts a document's text into its markup and its texts, for a parser that tells neither lines nor the text
/// of the document type. Whether the text is well-formed is not its affair: of what is not, it makes
/// something and ends.
class MarkupScanner {
public:
    /// @param sText UTF-8 without a byte order mark; outlives the scanner.
    explicit MarkupScanner(std::string_view sText) noexcept : sText_(sText) {}

    /// @returns false at the end.
    [[nodiscard]] bool next(Markup& markup) noexcept;

private:
    [[nodiscard]] std::size_t endOf(Markup::What what) const noexcept;

    std::string_view sText_;
    std::size_t nAt_ = 0;
    std::uint32_t nLine_ = 1;
    std::uint32_t nDepth_ = 0;
};

/// An attribute as it is written.
struct WrittenAttribute {
    std::string_view sName;
    std::string_view sValue; ///< between the quotes, with its references
};

/// Takes the first attribute off the front of what follows the name in a start tag.
/// @returns false when there is none.
[[nodiscard]] bool takeAttribute(std::string_view& sRest, WrittenAttribute& attribute) noexcept;

/// The character that a reference stands for, given what is between "&" and ";"; nothing for other
/// references.
[[nodiscard]] std::optional<std::int32_t> referredCode(std::string_view sName) noexcept;

/// The end of the reference to a character or an entity of XML that the text begins with, before its ";";
/// npos where none ends nearby.
[[nodiscard]] std::size_t endOfReference(std::string_view sText) noexcept;

/// The text with references to characters and to the five entities of XML replaced.
[[nodiscard]] std::string withoutReferences(std::string_view sWritten);

/// The value of `sName="value"` inside an XML declaration; "" when it is not there.
[[nodiscard]] std::string_view declaredValue(std::string_view sDeclaration, std::string_view sName) noexcept;

} // namespace halvane::dom
