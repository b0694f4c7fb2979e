// Nodes of the second edition: which are there, what they are written into, and their texts.

#include "oracle/Interpreter.h"

#include "base/Text.h"

#include <algorithm>
#include <cstdlib>

namespace halvane::oracle {

namespace {

bool goesOverRows(const ControlNode& node) {
    return node.has("h:Rows") || node.has("h:Where") || node.has("h:OrderBy") || node.has("h:Limit") ||
           node.has("h:Group");
}

} // namespace

OutputForm Interpreter::formOf(Node root) {
    OutputForm form;
    if (!bSecond_)
        return form;
    if (root.has("h:Declaration"))
        form.aHead.emplace_back("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    if (root.has("h:Doctype"))
        form.aHead.push_back("<!DOCTYPE " + root.get("h:Doctype") + ">");
    const std::string sIndent = root.get("h:Indent");
    if (sIndent.empty())
        return form;
    noteTurn("a document that is indented");
    form.sBreak = sIndent == "none" ? "" : "\n";
    form.nIndent = static_cast<std::size_t>(std::atoi(sIndent.c_str()));
    return form;
}

/// The document's root declares what the control file's root declares, but for the edition itself.
void Interpreter::declareNamespaces(Node root, OutputNode* pRoot) {
    for (const auto& [sName, sValue] : root.aAttributes) {
        if (sName.starts_with("xmlns") && sValue != sSecondEditionNamespace)
            tree_.setConstantAttribute(pRoot, sName, sValue);
    }
}

bool Interpreter::isSecond(Node node) const {
    return bSecond_ && std::any_of(node.aAttributes.begin(), node.aAttributes.end(),
                                   [](const auto& attribute) { return attribute.first.starts_with("h:"); });
}

bool Interpreter::hasText(Node node) const {
    return bSecond_ && (node.has("h:Text") || node.has("h:Geometry"));
}

bool Interpreter::writesElements(Node node) const {
    return bSecond_ && (node.get("h:Geometry") == "GML" || node.get("h:Geometry") == "KML");
}

bool Interpreter::omits(Node node, const char* sWhat) const {
    // A part takes the place of the node that includes it.
    const bool bPart = std::string_view(sWhat) == "Self" && node.has("h:Include");
    return bSecond_ && (bPart || node.get("h:Omit") == sWhat);
}

/// A leaf inside a row of a loop of the second edition, but for the related records of a group in it.
bool Interpreter::readsRow(const Attributes& attributes) const {
    const std::string sKind(trimBlanks(attributes.at("DataSource")));
    return !aRowLoops_.empty() && aRowLoops_.back().bSecond &&
           (sKind.empty() || sKind == "Feature" || sKind == "Record" ||
            (sKind == "RelatedRecord" && attributes.at("InRelated").empty()));
}

Interpreter::Attributes Interpreter::handedDown(Node node, const Attributes& attributes) const {
    Attributes down = attributes;
    down["OwnKind"] = attributes.at("DataSource");
    if (goesOverRows(node))
        down["InRelated"].clear();
    if (bSecond_ && (node.has("h:Rows") || node.has("h:ForEach"))) {
        for (const char* sName : {"DataSource", "Identity", "IdentityValue", "DataProperty", "LinkField"})
            down[sName].clear();
    }
    return down;
}

void Interpreter::writeSecond(const Child& child) {
    procedure(child.node, [&] {
        if (child.node.has("h:ForEach"))
            writeThings(child);
        else
            writeOne(child);
    });
}

void Interpreter::writeOne(const Child& child) {
    const Node node = child.node;
    if (node.has("h:When")) {
        const bool bHolds = isTrue(valueOf(readExpression(node.get("h:When"))));
        noteTurn(bHolds ? "h:When holds" : "h:When does not hold");
        if (!bHolds)
            return;
    }
    const bool bRepeated =
        goesOverRows(node) || (node.get("Entries") == "Multiple" && child.place != Place::Record);
    if (omits(node, "Self")) {
        noteTurn(node.has("h:Include") ? "a part of the control file" : "h:Omit=\"Self\"");
        fillSecond(child, child.pOut, bRepeated);
    } else if (!isAllowedName(node.outputName())) {
        throw Failure(FailureNumber::DocumentFailure,
                      "\"" + node.outputName() + "\" is not a name that XML allows");
    } else if (node.targetsAttribute()) {
        writeSecondAttribute(child, bRepeated);
    } else {
        writeSecondElement(child, bRepeated);
    }
}

void Interpreter::writeSecondAttribute(const Child& child, bool bRepeated) {
    const Node node = child.node;
    const bool bOmits = omits(node, "Empty");
    if (!hasText(node) || bRepeated || !childrenOf(node).empty()) {
        const auto oBefore = tree_.attribute(child.pOut, node.outputName());
        tree_.setAttribute(child.pOut, node.outputName(), "");
        fillSecond(child, child.pOut, bRepeated);
        if (!bOmits || tree_.attribute(child.pOut, node.outputName()) != "")
            return;
        // That of another node stays.
        if (oBefore)
            tree_.setAttribute(child.pOut, node.outputName(), *oBefore);
        else
            tree_.removeAttribute(child.pOut, node.outputName());
        return;
    }
    const std::string sText = textOf(node, merged(node, child.pParent));
    if (sText.empty() && bOmits) {
        noteTurn("an attribute without content is omitted");
        return;
    }
    const bool bConstant = node.has("h:Text") && readTemplate(node.get("h:Text")).size() == 1;
    noteTurn(bConstant ? "a constant in an attribute" : "a text in an attribute");
    if (bConstant)
        tree_.setConstantAttribute(child.pOut, node.outputName(), sText);
    else
        tree_.setAttribute(child.pOut, node.outputName(), sText);
}

/// A node that is repeated makes no element before its first item.
void Interpreter::writeSecondElement(const Child& child, bool bRepeated) {
    const Node node = child.node;
    const bool bOnlyText = hasText(node) && !writesElements(node) && !bRepeated && childrenOf(node).empty();
    // A text that fails writes nothing in its place.
    const std::string sText = bOnlyText ? textOf(node, merged(node, child.pParent)) : std::string();
    OutputNode* const pElement = newItemElement(node);
    pElement->bHeld = bRepeated || omits(node, "Empty");
    tree_.append(child.pOut, pElement);
    if (bOnlyText)
        appendText(node, pElement, sText);
    else
        fillSecond(child, pElement, bRepeated);
    if (omits(node, "Empty"))
        noteTurn(pElement->bHeld ? "an element without content is omitted" : "an element has content");
    else if (pElement->bHeld)
        noteTurn("a repeated node without items");
}

void Interpreter::fillSecond(const Child& child, OutputNode* pTarget, bool bRepeated) {
    if (goesOverRows(child.node))
        repeatSecondRows(child, pTarget);
    else if (hasText(child.node) && !bRepeated && childrenOf(child.node).empty())
        writeOwnText(child.node, pTarget, merged(child.node, child.pParent));
    else
        fill(child, pTarget);
}

void Interpreter::writeOwnText(Node node, OutputNode* pOut, const Attributes& attributes) {
    procedure(node, [&] {
        if (writesElements(node)) {
            writeShapeElements(node, pOut, attributes);
            return;
        }
        appendText(node, pOut, textOf(node, attributes));
        noteTurn("a text in an element");
    });
}

void Interpreter::writeLeafText(const Leaf& leaf) {
    if (writesElements(leaf.node)) {
        writeOwnText(leaf.node, leaf.pOut, leaf.attributes);
        return;
    }
    const std::string sText = textOf(leaf.node, leaf.attributes);
    if (leaf.node.targetsAttribute())
        tree_.fillAttribute(leaf.pOut, leaf.node.outputName(), sText);
    else
        appendText(leaf.node, leaf.pOut, sText);
    noteTurn("a text in an item");
}

void Interpreter::appendText(Node node, OutputNode* pOut, const std::string& sText) {
    if (node.get("h:As") == "xml") {
        appendFragment(node, pOut, sText);
        return;
    }
    const bool bCData = node.get("h:As") == "cdata";
    tree_.appendText(pOut, sText, bCData);
    if (bCData)
        noteTurn("a text as a section");
}

/// What the prefix "p" stands for at each node.
void Interpreter::bindPrefixes(Node node, std::string sAround) {
    if (node.has("xmlns:p"))
        sAround = node.get("xmlns:p");
    bindings_[&node] = sAround;
    for (const ControlNode& child : node.aChildren)
        bindPrefixes(child, sAround);
}

/// A node's element declares the prefix of its name where the document says otherwise.
OutputNode* Interpreter::newElement(Node node, const std::string& sName) {
    OutputNode* const pElement = tree_.newElement(sName);
    if (pElement != nullptr && bSecond_ && sName.starts_with("p:"))
        pElement->sBinding = bindings_.at(&node);
    return pElement;
}

OutputNode* Interpreter::newItemElement(Node node) {
    return newItemElement(node, node.outputName());
}

OutputNode* Interpreter::newItemElement(Node node, const std::string& sName) {
    OutputNode* const pElement = newElement(node, sName);
    if (pElement != nullptr && bSecond_ && node.get("h:As") == "xml")
        pElement->bInline = true;
    if (pElement != nullptr && bSecond_ && node.get("h:Indent") == "none") {
        pElement->bInline = true;
        noteTurn("an element without line breaks");
    }
    return pElement;
}

/// The element of an item. The first is there already, perhaps held back; an item whose empty element is
/// left out is held back itself.
OutputNode* Interpreter::itemElement(Node repeatedNode, OutputNode* pFirst, bool bFirst) {
    if (omits(repeatedNode, "Self"))
        return pFirst;
    if (!omits(repeatedNode, "Empty"))
        tree_.reveal(pFirst);
    return bFirst ? pFirst : anotherItem(repeatedNode, pFirst, repeatedNode.outputName());
}

Interpreter::Current Interpreter::current() const {
    return {pMap_, pShownMap_, pLayer_, pClass_, pWorkspace_, pTable_, pRelatedTable_, pTin_, pRaster_};
}

void Interpreter::makeCurrent(const Current& current) {
    pMap_ = current.pMap;
    pShownMap_ = current.pShownMap;
    pLayer_ = current.pLayer;
    pClass_ = current.pClass;
    pWorkspace_ = current.pWorkspace;
    pTable_ = current.pTable;
    pRelatedTable_ = current.pRelatedTable;
    pTin_ = current.pTin;
    pRaster_ = current.pRaster;
}

} // namespace halvane::oracle
