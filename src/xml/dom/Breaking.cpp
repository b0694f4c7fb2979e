// Line breaks between adjacent tags, put into the tree.

#include "base/Text.h"
#include "xml/dom/Characters.h"
#include "xml/dom/TreeEditing.h"
#include "xml/dom/XmlWriter.h"

namespace halvane::dom {

namespace {

void insertBreak(NodeData& parent, NodeData* pBefore) {
    if (parent.kind == Kind::Document) {
        pBefore->bBreakBefore = true;
        return;
    }
    NodeStore& store = parent.pDocument->store;
    NodeData& text = store.create(Kind::Text, *parent.pDocument);
    store.setText(text, lineBreak);
    text.bBreak = true;
    link(parent, text, pBefore);
}

/// Data of a comment and the like can hold what looks like adjacent tags; it is broken as well.
void breakData(NodeData& node) {
    if (node.nTextSize == 0 || node.text().find('>') == std::string_view::npos)
        return;
    CharacterRepairs repairs;
    const std::string sClean = cleaned(node.text(), repairs);
    const std::string sBroken = withBreaks(sClean);
    if (sBroken == sClean)
        return;
    node.pDocument->store.setText(node, sBroken);
    CharacterRepairs& counted = node.pDocument->sealing.repairs();
    counted.dropped += repairs.dropped;
    counted.replaced += repairs.replaced;
}

/// Puts a break wherever a tag would directly follow another one among the parent's children.
void breakChildren(NodeData& parent) {
    bool bAfterTag = parent.kind != Kind::Document; // the parent's own start tag
    bool bHasContent = false;
    for (NodeData* pChild = parent.pFirstChild; pChild != nullptr; pChild = pChild->pNext) {
        if (isText(*pChild)) {
            if (isNothingOnceCleaned(pChild->text()))
                continue;
            bAfterTag = false;
        } else {
            if (bAfterTag)
                insertBreak(parent, pChild);
            bAfterTag = true;
            breakData(*pChild);
        }
        bHasContent = true;
    }
    if (bHasContent && bAfterTag && parent.kind == Kind::Element)
        insertBreak(parent, nullptr);
}

} // namespace

void Document::breakBetweenTags() {
    NodeData& top = pImpl_->documentNode;
    for (NodeData* pNode = &top; pNode != nullptr; pNode = following(pNode, &top))
        if (pNode->pFirstChild != nullptr)
            breakChildren(*pNode);
    pImpl_->changed();
}

} // namespace halvane::dom
