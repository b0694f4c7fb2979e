#include "xml/dom/ItemStream.h"

#include "xml/dom/Characters.h"
#include "xml/dom/DocumentImpl.h"
#include "xml/dom/Escaping.h"
#include "xml/dom/TreeEditing.h"

namespace halvane::dom {

namespace {

/// Most texts begin with a character that stays: no need to look at the whole.
bool beginsPlainly(std::string_view sText) {
    return !sText.empty() && sText.front() >= ' ' && sText.front() <= '~';
}

} // namespace

ItemStream::ItemStream(Node oParent)
    : document_(*dataOf(oParent).pDocument), placeholder_(document_.sealing.beginStream(dataOf(oParent))),
      out_(document_.sealing.spool().out()), nBegin_(out_.position()),
      bAfterTag_(document_.sealing.standsForItems(placeholder_)) {}

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
    if (bStartTagOpen_) {
        endAttribute();
        bStartTagOpen_ = false;
        out_.put("/>");
    } else {
        out_.put(withBreak(name.sEndTag));
    }
    bAfterTag_ = true;
}

void ItemStream::appendElement(Depth parent, const Name& name, std::string_view sText, TextKind kind) {
    closeDownTo(parent);
    endStartTag();
    if (!beginsPlainly(sText) && isNothingOnceCleaned(sText)) {
        (void)cleaned(sText, document_.sealing.repairs());
        out_.put(openTag(name));
        out_.put("/>");
        bAfterTag_ = true;
        return;
    }
    out_.put(withBreak(name.sStartTag));
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
