#pragma once

#include "io/OutputBuffer.h"
#include "xml/dom/Layout.h"
#include "xml/dom/NodeData.h"

#include <functional>
#include <string_view>

namespace halvane::dom {

inline constexpr std::string_view lineBreak = "\r\n";

/// Where line breaks between adjacent tags come from.
enum class Breaks {
    AsInTree,    ///< only those that stand in the tree
    BetweenTags, ///< one wherever two tags would touch
};

/// The one place that turns nodes into XML text, always UTF-8 and always well-formed: special characters are
/// escaped, forbidden ones dropped, invalid UTF-8 replaced; both repairs are counted.
class XmlWriter {
public:
    /// Pours out what a placeholder stands for.
    using Pour = std::function<void(const NodeData& placeholder)>;

    XmlWriter(io::OutputBuffer& out, Breaks breaks, CharacterRepairs& repairs, Pour fnPour)
        : out_(out), breaks_(breaks), repairs_(repairs), fnPour_(std::move(fnPour)) {}

    /// Writes the node with its descendants.
    void write(const NodeData& node);

private:
    [[nodiscard]] bool laysOut() const noexcept { return pLayout_->bBetweenTags; }
    void begin(const NodeData& top);
    void open(const NodeData& node);
    void close(const NodeData& node);
    void openElement(const NodeData& element);
    void writeAttribute(const NodeData& attribute);
    void writeText(const NodeData& text);
    void writeSection(const NodeData& section);
    void writeMarkup(const NodeData& node);
    void writeComment(std::string_view sData);
    void writeCData(std::string_view sData);
    void writeInstruction(const NodeData& instruction);
    void writeDeclaration(std::string_view sData);

    /// Ends a start tag that is still open: its element has content after all.
    void endStartTag();
    void breakAfterTag();
    void beginMarkup(const NodeData& node);
    void putInner(std::string_view sData);

    io::OutputBuffer& out_;
    Breaks breaks_;
    CharacterRepairs& repairs_;
    Pour fnPour_;
    const NodeData* pTop_ = nullptr;
    const Layout* pLayout_ = nullptr; ///< of the document
    std::size_t nDepth_ = 0;          ///< elements around what is written
    std::size_t nInline_ = 0;         ///< those of them without breaks in them
    bool bStartTagOpen_ = false;
    bool bAfterTag_ = false;
};

/// What stands between two siblings that both are elements, one of them the node.
[[nodiscard]] std::string breakBeside(const NodeData& node);

/// The document type's text with a line break wherever two tags touch; likewise for the text of comments,
/// CDATA sections and processing instructions.
[[nodiscard]] std::string withBreaks(std::string_view sData);

} // namespace halvane::dom
