#pragma once

// What the document tree needs of an XML library: parsing with validation, and XPath. One implementation is
// built in; a platform with another library adds files beside LibXml*.cpp.

#include "xml/dom/NodeData.h"

#include <memory>
#include <string_view>
#include <vector>

namespace halvane::dom {

class TreeBuilder;

struct ParseOptions {
    bool bValidate = false; ///< against the document type declaration, if there is one
    bool bUtf8 = false;     ///< the bytes are UTF-8, whatever their declaration says
};

/// An image of one tree in the library's own form, for selections. Any change of the tree ends it.
class Mirror {
public:
    Mirror() = default;
    Mirror(const Mirror&) = delete;
    Mirror& operator=(const Mirror&) = delete;
    virtual ~Mirror() = default;

    /// The nodes that an XPath 1.0 expression selects from the context node, in document order. Prefixes
    /// that the document element declares can be used.
    /// @throws Failure DocumentFailure for an expression that cannot be parsed or yields no node-set.
    [[nodiscard]] virtual std::vector<Node> select(const NodeData& context, std::string_view sXPath) = 0;
};

struct Parsed {
    ParseError error;
    std::unique_ptr<Mirror> pMirror; ///< of the new tree; nothing when there was an error
};

/// Error numbers of our own in ParseError::errorCode, beside those of the library.
enum class LoadError : std::int32_t {
    CannotRead = 10001,
    TooLarge = 10002,
    ExternalEntity = 10003,
    ExternalDocumentType = 10004,
    TooMuchGrowth = 10005,
    TooDeep = 10006,
    TooWide = 10007,
    NulCharacter = 10008,
};

/// How many bytes a document type may add to a document of that many: by default attributes, each of which
/// counts as its value and bytesOfAddedNode, and by entities.
[[nodiscard]] constexpr std::size_t growthLimit(std::size_t nDocument) noexcept {
    constexpr std::size_t always = 1U << 20U;
    constexpr std::size_t perByte = 10;
    return always + perByte * nDocument;
}
inline constexpr std::size_t bytesOfAddedNode = 64;
inline constexpr std::string_view nulReason =
    "a NUL character stands in the document or behind it; XML allows none";
inline constexpr std::string_view growthReason =
    "the document grows beyond measure by the entities or default attributes of its document type";

/// Parses a document and builds its tree. White space between elements is left out unless xml:space keeps
/// it. Nothing outside the bytes is ever loaded: a reference to an external entity is an error. Depth
/// (Depth.h), width (Width.h) and the expansion of internal entities are limited. Builds nothing when there
/// is an error.
[[nodiscard]] Parsed parse(std::string_view sBytes, const ParseOptions& options, TreeBuilder& builder);

/// An image of the tree under `top`: a document node or the top of a detached tree.
[[nodiscard]] std::unique_ptr<Mirror> makeMirror(NodeData& top);

} // namespace halvane::dom
