#pragma once

#include "io/OutputBuffer.h"
#include "xml/dom/Dom.h"
#include "xml/dom/NameTable.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace halvane::dom {

/// What may stand in a text.
enum class TextKind : std::uint8_t {
    Any,
    Plain, ///< ASCII letters, digits, blanks and punctuation that needs no escape, as in numbers and dates
};

/// Writes new last children of one element straight into the document's spool: the document is afterwards as
/// if each had been built in the tree, completed and sealed, but its nodes are never there.
///
/// Elements are told apart by their depth: 0 is the parent, which stays in the tree. They are written in
/// document order, so an operation at a depth ends every element below it, and an element's attributes come
/// before its content. While a stream lives, nothing else is appended to the parent, and no other stream of
/// the document is made.
class ItemStream {
public:
    using Depth = std::uint32_t;

    /// @param oParent an attached element. @throws Failure DeviceIo when the spool is broken.
    explicit ItemStream(Node oParent);
    ItemStream(const ItemStream&) = delete;
    ItemStream& operator=(const ItemStream&) = delete;
    ~ItemStream();

    // These throw Failure DeviceIo when the spool cannot be written.

    /// A new last child of the element at `parent`. @returns its depth.
    Depth appendElement(Depth parent, const Name& name) {
        closeDownTo(parent);
        endStartTag();
        aOpen_.push_back(&name);
        putTag(openTag(name), parent);
        bStartTagOpen_ = true;
        return parent + 1;
    }
    /// A new last child of the element at `parent` with a text and nothing else.
    void appendElement(Depth parent, const Name& name, std::string_view sText, TextKind kind);
    /// An attribute of the element at `depth`, which has no content and no attribute of that name yet. Its
    /// value is "" until fillAttribute tells another, right afterwards.
    void addAttribute(Depth depth, const Name& name);
    /// The same with its value.
    void addAttribute(Depth depth, const Name& name, std::string_view sValue, TextKind kind);
    /// The value of the attribute that was added last. @throws Failure ObjectVariableNotSet when that has
    /// another name, or something was written since.
    void fillAttribute(Depth depth, std::string_view sName, std::string_view sValue,
                       TextKind kind = TextKind::Any);
    /// The text of an element without content.
    void setText(Depth depth, std::string_view sText, TextKind kind = TextKind::Any);

    /// A CDATA section behind what the element holds.
    void appendCData(Depth depth, std::string_view sData);
    /// From here on there are no breaks between the tags of the element, which has no content yet.
    void setInline(Depth depth);

    /// @throws Failure DeviceIo when something could not be written.
    void requireWhole() const;

private:
    void endAttribute() {
        if (pAttribute_ == nullptr)
            return;
        pAttribute_ = nullptr;
        out_.put('"');
    }
    void endStartTag() {
        if (!bStartTagOpen_)
            return;
        endAttribute();
        bStartTagOpen_ = false;
        bAfterTag_ = true;
        out_.put('>');
    }
    void closeDownTo(Depth depth) {
        while (aOpen_.size() > depth)
            closeLast();
    }
    void closeLast();
    void beginAttribute(Depth depth, const Name& name);
    void putValue(std::string_view sValue, TextKind kind);
    /// The beginning of a start tag, behind a line break.
    [[nodiscard]] static std::string_view openTag(const Name& name) {
        std::string_view sTag = name.sStartTag;
        sTag.remove_suffix(1);
        return sTag;
    }
    /// Writes a tag that begins with a line break, which is left out behind a text.
    /// @param parent of the tag's element.
    void putTag(std::string_view sTag, Depth parent) {
        if (!bLaysOut_) {
            out_.put(bAfterTag_ ? sTag : sTag.substr(2));
            return;
        }
        putBreak(parent);
        out_.put(sTag.substr(2));
    }
    void putBreak(Depth parent);

    Document::Impl& document_;
    NodeData& placeholder_;
    io::OutputBuffer& out_;
    std::uint64_t nBegin_;
    std::vector<const Name*> aOpen_;
    bool bLaysOut_;           ///< the document tells where breaks are
    std::size_t nOuterDepth_; ///< elements around the items
    /// The depth of the outermost element without breaks in it; larger than any depth when there is none.
    Depth inline_;
    const Name* pAttribute_ = nullptr; ///< the attribute whose value may still be told
    bool bStartTagOpen_ = false;
    bool bAfterTag_;
};

} // namespace halvane::dom
