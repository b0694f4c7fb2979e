#pragma once

#include "engine/second/ForEach.h"
#include "engine/second/NodeExpression.h"
#include "engine/second/NodeGeometry.h"
#include "engine/second/RowRules.h"
#include "xml/dom/Layout.h"
#include "xml/dom/NameTable.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace halvane {

/// A text with values, ready to be written.
struct NodeText {
    struct Piece {
        std::string sText;
        std::optional<NodeExpression> value;
    };

    std::vector<Piece> pieces;
    bool bConstant = false;
};

/// When a node leaves out what it would write.
enum class Omit : std::uint8_t {
    Never,
    Empty, ///< its element or attribute, when it has no content
    Self,  ///< its element: what stands in it is written into the element around
};

/// What a text is in the document.
enum class TextAs : std::uint8_t {
    Text,
    Xml,   ///< a well-formed piece of XML: its elements are written
    CData, ///< a CDATA section
};

/// What the root says of the document as a whole.
struct DocumentRules {
    bool bDeclaration = false;
    std::string sDoctype; ///< what stands behind "<!DOCTYPE "; "" for none
    dom::Layout layout{.bBetweenTags = true};
};

/// What a control node says in the second edition. Most nodes of a file have none.
struct SecondNode {
    /// A declaration of a prefix, or of the default namespace, that its element needs.
    struct Declaration {
        const dom::Name* pName; ///< of the output document
        std::string sAddress;
    };

    std::optional<ForEach> forEach;
    std::optional<NodeText> text;
    std::optional<NodeGeometry> geometry; ///< instead of a text
    std::optional<NodeText> geometryId;
    TextAs textAs = TextAs::Text;
    std::string sScope; ///< of an XML text: the declarations that hold where it stands
    std::vector<Declaration>
        ofFragment;       ///< those of them that its elements need, since the output says otherwise
    bool bInline = false; ///< no line breaks between the tags in it
    std::optional<DocumentRules> document; ///< of the root alone
    std::optional<NodeExpression> when;
    Omit omit = Omit::Never;
    bool bPart = false;           ///< an included part stands in its place
    std::optional<RowRules> rows; ///< nothing: the first edition tells which rows it goes over
    std::vector<Declaration> declarations;
};

} // namespace halvane
