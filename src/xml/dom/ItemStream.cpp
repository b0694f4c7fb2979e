#include "xml/dom/ItemStream.h"

#include "xml/dom/Characters.h"
#include "xml/dom/DocumentImpl.h"
#include "xml/dom/Escaping.h"
#include "xml/dom/TreeEditing.h"

#include <algorithm>
#include <limits>

namespace halvane::dom {

namespace {

constexpr auto nowhere = std::numeric_limits<ItemStream::Depth>::max();

/// Most texts begin with a character that stays: no need to look at the whole.
bool beginsPlainly(std::string_view sText) {
    return !sText.empty() && sText.front() >= ' ' && sText.front() <= '~';
}

} // namespace

ItemStream::ItemStream(Node oParent)
    : document_(*dataOf(oParent).pDocument), placeholder_(document_.sealing.beginStream(dataOf(oParent))),
      out_(document_.sealing.spool().out()), nBegin_(out_.position()),
      bLaysOut_(document_.layout.bBetweenTags), nOuterDepth_(0), inline_(nowhere),
      bAfterTag_(document_.sealing.standsForItems(placeholder_)) {
    for (const NodeData* pAround = placeholder_.pParent; pAround != nullptr; pAround = pAround->pParent) {
        nOuterDepth_ += pAround->kind == Kind::Element ? 1 : 0;
        if (pAround->bInline)
            inline_ = 0;
    }
}

void ItemStream::putBreak(Depth parent) {
    if (bAfterTag_ && parent < inline_)
        document_.layout.put(out_, nOuterDepth_ + parent);
}

void ItemStream::setInline(Depth depth) {
    inline_ = std::min(inline_, depth);
}

void ItemStream::appendCData(Depth depth, std::string_view sData) {
    closeDownTo(depth);
    endStartTag();
    out_.put("<![CDATA[");
    out_.put(withoutSectionEnd(cleaned(sData, document_.sealing.repairs())));
    out_.put("]]>");
    bAfterTag_ = false;
}

ItemStream::~ItemStream() {
    try {
        closeDownTo(0);
    } catch (...) {
        // The spool is broken: saving the document will tell.
    }
    document_.sealing.endStream(placeholder_, {nBegin_, out_.position() - nBegin_});
    document_.changed();
}

void ItemStream::requireWhole() const {
    document_.sealing.requireWholeSpool();
}

void ItemStream::closeLast() {
    const Name& name = *aOpen_.back();
    aOpen_.pop_back();
    const auto parent = static_cast<Depth>(aOpen_.size());
    if (bStartTagOpen_) {
        endAttribute();
        bStartTagOpen_ = false;
        out_.put("/>");
    } else {
        // The break before it stands inside its element.
        const bool bBreak = parent + 1 < inline_;
        if (bLaysOut_ && bAfterTag_ && bBreak)
            document_.layout.put(out_, nOuterDepth_ + parent);
        out_.put(!bLaysOut_ && bAfterTag_ ? std::string_view(name.sEndTag)
                                          : std::string_view(name.sEndTag).substr(2));
    }
    if (inline_ > parent)
        inline_ = nowhere;
    bAfterTag_ = true;
}

void ItemStream::appendElement(Depth parent, const Name& name, std::string_view sText, TextKind kind) {
    closeDownTo(parent);
    endStartTag();
    if (!beginsPlainly(sText) && isNothingOnceCleaned(sText)) {
        (void)cleaned(sText, document_.sealing.repairs());
        putTag(openTag(name), parent);
        out_.put("/>");
        bAfterTag_ = true;
        return;
    }
    putTag(name.sStartTag, parent);
    bAfterTag_ = true;
    if (kind == TextKind::Plain)
        out_.put(sText);
    else
        putText(out_, sText, document_.sealing.repairs());
    out_.put(std::string_view(name.sEndTag).substr(2));
}

void ItemStream::beginAttribute(Depth depth, const Name& name) {
    closeDownTo(depth);
    if (!bStartTagOpen_)
        throw Failure(FailureNumber::ActionNotSupported,
                      "an attribute cannot follow the content of an element "
                      "that is written at once");
    endAttribute();
    out_.put(name.sAttribute);
}

void ItemStream::putValue(std::string_view sValue, TextKind kind) {
    if (kind == TextKind::Plain)
        out_.put(sValue);
    else
        putAttributeValue(out_, sValue, document_.sealing.repairs());
}

void ItemStream::addAttribute(Depth depth, const Name& name) {
    beginAttribute(depth, name);
    pAttribute_ = &name;
}

void ItemStream::addAttribute(Depth depth, const Name& name, std::string_view sValue, TextKind kind) {
    beginAttribute(depth, name);
    putValue(sValue, kind);
    out_.put('"');
}

void ItemStream::fillAttribute(Depth depth, std::string_view sName, std::string_view sValue, TextKind kind) {
    if (aOpen_.size() != depth || pAttribute_ == nullptr || pAttribute_->sQualified != sName)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    putValue(sValue, kind);
    endAttribute();
}

void ItemStream::setText(Depth depth, std::string_view sText, TextKind kind) {
    closeDownTo(depth);
    CharacterRepairs& repairs = document_.sealing.repairs();
    // The start tag stays open over a text of which nothing is left.
    if (!beginsPlainly(sText) && isNothingOnceCleaned(sText)) {
        (void)cleaned(sText, repairs);
        return;
    }
    endStartTag();
    if (kind == TextKind::Plain)
        out_.put(sText);
    else
        putText(out_, sText, repairs);
    bAfterTag_ = false;
}

} // namespace halvane::dom
