#include "xml/dom/ItemStream.h"

#include "xml/dom/Characters.h"
#include "xml/dom/DocumentImpl.h"
#include "xml/dom/Escaping.h"
#include "xml/dom/TreeEditing.h"

namespace halvane::dom {

namespace {
constexpr std::string_view lineBreak = "\r\n";
}

ItemStream::ItemStream(Node oParent)
    : document_(*dataOf(oParent).pDocument), parent_(dataOf(oParent)),
      placeholder_(document_.sealing.beginStream(parent_)), out_(document_.sealing.spool().out()),
      nBegin_(out_.position()), bAfterTag_(document_.sealing.standsForItems(placeholder_)) {}

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

void ItemStream::endAttribute() {
    if (pAttribute_ == nullptr)
        return;
    pAttribute_ = nullptr;
    out_.put('"');
}

void ItemStream::endStartTag() {
    if (!bStartTagOpen_)
        return;
    endAttribute();
    bStartTagOpen_ = false;
    bAfterTag_ = true;
    out_.put('>');
}

void ItemStream::breakAfterTag() {
    if (bAfterTag_)
        out_.put(lineBreak);
}

void ItemStream::closeDownTo(Depth depth) {
    while (aOpen_.size() > depth) {
        const Name& name = *aOpen_.back();
        aOpen_.pop_back();
        if (bStartTagOpen_) {
            endAttribute();
            bStartTagOpen_ = false;
            out_.put("/>");
        } else {
            breakAfterTag();
            out_.put("</");
            out_.put(name.sQualified);
            out_.put('>');
        }
        bAfterTag_ = true;
    }
}

ItemStream::Depth ItemStream::appendElement(Depth parent, const Name& name) {
    closeDownTo(parent);
    endStartTag();
    breakAfterTag();
    aOpen_.push_back(&name);
    bStartTagOpen_ = true;
    out_.put('<');
    out_.put(name.sQualified);
    return parent + 1;
}

void ItemStream::addAttribute(Depth depth, const Name& name) {
    closeDownTo(depth);
    if (!bStartTagOpen_)
        throw Failure(FailureNumber::ActionNotSupported,
                      "an attribute cannot follow the content of an element "
                      "that is written at once");
    endAttribute();
    out_.put(' ');
    out_.put(name.sQualified);
    out_.put("=\"");
    pAttribute_ = &name;
}

void ItemStream::fillAttribute(Depth depth, std::string_view sName, std::string_view sValue) {
    if (aOpen_.size() != depth || pAttribute_ == nullptr || pAttribute_->sQualified != sName)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    putAttributeValue(out_, sValue, document_.sealing.repairs());
    endAttribute();
}

void ItemStream::setText(Depth depth, std::string_view sText) {
    closeDownTo(depth);
    CharacterRepairs& repairs = document_.sealing.repairs();
    // The start tag stays open over a text of which nothing is left.
    if (isNothingOnceCleaned(sText)) {
        (void)cleaned(sText, repairs);
        return;
    }
    endStartTag();
    putText(out_, sText, repairs);
    bAfterTag_ = false;
}

} // namespace halvane::dom
