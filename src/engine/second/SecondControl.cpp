#include "engine/second/SecondControl.h"

#include "engine/second/SecondAttributes.h"

#include <utility>

namespace halvane {

bool isOfSecondEdition(dom::Node oControlRoot) {
    for (const dom::Node oAttribute : oControlRoot.attributes())
        if (declaredPrefix(oAttribute.nodeName()) && oAttribute.nodeValue() == sSecondEditionNamespace)
            return true;
    return false;
}

namespace {

/// Whether an attribute is in the namespace of the second edition where its element stands.
bool isOfSecondNamespace(dom::Node oElement, dom::Node oAttribute) {
    const std::string_view sPrefix = prefixOf(oAttribute.nodeName());
    if (sPrefix.empty() || declaredPrefix(oAttribute.nodeName()))
        return false;
    const std::string sDeclaration = declarationOf(sPrefix);
    for (; oElement && oElement.nodeType() == dom::NodeType::Element; oElement = oElement.parentNode())
        if (const auto sAddress = oElement.getAttribute(sDeclaration))
            return *sAddress == sSecondEditionNamespace;
    return false;
}

} // namespace

std::optional<std::string_view> secondAttribute(dom::Node oElement, std::string_view sName) {
    for (const dom::Node oAttribute : oElement.attributes())
        if (oAttribute.baseName() == sName && isOfSecondNamespace(oElement, oAttribute))
            return oAttribute.nodeValue();
    return std::nullopt;
}

dom::Node anySecondAttribute(dom::Node oElement) {
    for (const dom::Node oAttribute : oElement.attributes())
        if (isOfSecondNamespace(oElement, oAttribute))
            return oAttribute;
    return {};
}

bool isDissolved(const ControlNode& node) noexcept {
    return node.pSecond != nullptr && (node.pSecond->omit == Omit::Self || node.pSecond->bPart);
}

bool keepsSource(const ControlNode& node) noexcept {
    return node.pSecond != nullptr &&
           (node.pSecond->forEach || (node.pSecond->rows && node.pSecond->rows->bEach));
}

namespace {

/// Whether there is a row of its own in what stands in the node.
bool goesOverRows(const ControlNode& node) {
    return (node.bRepeated || secondAttribute(node.oNode, "Rows")) && isOfRows(node.pBinding->kind);
}

/// Whether elements bear the node's name though it has none itself: vertices in their parts, and the values
/// of further related rows.
bool writesItsName(const ControlNode& node) {
    const DataSourceKind kind = node.pBinding->kind;
    return !node.sTagName.empty() &&
           (rowOf(kind).shapePart == ShapePart::Vertices || kind == DataSourceKind::RelatedRecord);
}

/// Whether what stands in the node is asked for properties alone: no walk visits it. A kind that is written
/// in other letters repeats nothing, which is told where it stands.
bool repeatsProperties(const ControlNode& node) {
    const DataSourceKind kind = node.pBinding->kind;
    return node.bRepeated && !keepsSource(node) && kind != DataSourceKind::SubTypeInOtherCase &&
           listsThings(kind);
}

} // namespace

SecondNode& SecondControl::secondOf(ControlNode& node) {
    // The node knows it as what is read: here alone it is still written.
    if (node.pSecond == nullptr)
        node.pSecond = &nodes_.emplace_back();
    return const_cast<SecondNode&>(*node.pSecond);
}

void SecondControl::readAttributes(ControlNode& node, bool bRoot) {
    Inherited inherited = *inherited_.back();
    const bool bOwnGroups = secondAttribute(node.oNode, "Group").has_value();
    const Around around = around_.empty() ? Around() : around_.back();
    const RowsAround rows{around.nRows, around.nGroupRows, goesOverRows(node)};
    for (const dom::Node oAttribute : node.oNode.attributes()) {
        const std::string_view sName = oAttribute.nodeName();
        const std::string_view sPrefix = prefixOf(sName);
        if (sPrefix.empty() || control_.find(sPrefix) != sSecondEditionNamespace)
            continue;
        node.bOfSecondEdition = true;
        try {
            readSecondAttribute(sName.substr(sPrefix.size() + 1), oAttribute.nodeValue(),
                                {edition_, secondOf(node), inherited, bRoot, node.sTagName, bOwnGroups, rows,
                                 around.bProperties});
        } catch (const Failure& failure) {
            fail(node.oNode, std::string(sName) + "=\"" + std::string(oAttribute.nodeValue()) +
                                 "\": " + failure.description());
        }
    }
    node.bMayBeAbsent = node.pSecond != nullptr && node.pSecond->when;
    node.bHasText = node.pSecond != nullptr && (node.pSecond->text || node.pSecond->geometry);
    inherited_.push_back(inherited == *inherited_.back() ? inherited_.back()
                                                         : &inheritances_.emplace_back(inherited));
    node.pInherited = inherited == Inherited() ? nullptr : inherited_.back();
}

void SecondControl::enterRoot(ControlNode& root) {
    control_.enter();
    written_.enter();
    control_.declareAll(root.oNode);
    secondOf(root).document.emplace();
    readAttributes(root, true);
    around_.emplace_back();
    // Values may hold names with prefixes, so all of them are declared.
    for (const dom::Node oAttribute : root.oNode.attributes())
        if (const auto sPrefix = declaredPrefix(oAttribute.nodeName());
            sPrefix && oAttribute.nodeValue() != sSecondEditionNamespace)
            declareOn(root, *sPrefix, oAttribute.nodeValue(), false);
    declareFor(root, root);
}

void SecondControl::enter(ControlNode& node, ControlNode& writer) {
    control_.enter();
    if (around_.back().bPart)
        control_.isolate();
    written_.enter();
    control_.declareAll(node.oNode);
    readAttributes(node, false);
    readsAround(node);
    checkRows(node);
    if (!isDissolved(node) || writesItsName(node))
        declareFor(node, node.bTargetsAttribute ? writer : node);
    checkText(node);
    if (around_.back().bPart && !node.oNode.selectSingleNode("*"))
        fail(node.oNode, "h:Include: parts are not included here");
    checkGeometry(node);
}

void SecondControl::checkGeometry(ControlNode& node) {
    if (node.pSecond == nullptr)
        return;
    const SecondNode& second = *node.pSecond;
    const bool bGml = second.geometry && second.geometry->form == GeometryForm::Gml;
    if (second.geometryId && !bGml)
        fail(node.oNode, "h:Id belongs to a node with h:Geometry=\"GML\"");
    if (!second.geometry)
        return;
    if (second.text)
        fail(node.oNode, "h:Text and h:Geometry both say what the node writes; leave one out");
    else if (node.bTargetsAttribute && isOfElements(*second.geometry))
        fail(node.oNode, "\"" + std::string(wordOf(second.geometry->form).sWord) +
                             "\" is made of elements, which no attribute holds");
    try {
        prepareGeometry(node);
    } catch (const Failure& failure) {
        fail(node.oNode, failure.description());
    }
}

void SecondControl::prepareGeometry(ControlNode& node) {
    NodeGeometry& geometry = *secondOf(node).geometry;
    const GeometryWord& word = wordOf(geometry.form);
    geometry.space =
        word.bIsWgs84 ? registeredSpace(edition_, "OGC:CRS84", Axes::Xy) : inherited_.back()->space;
    if (isOfElements(geometry))
        geometry.names = namesOf(word);
}

ElementNames SecondControl::namesOf(const GeometryWord& word) const {
    // An attribute of GML needs a prefix.
    for (const auto& sPrefix : control_.prefixesOf(word.sNamespace))
        if (!sPrefix.empty() || word.form != GeometryForm::Gml)
            return {word.sNamespace, std::string(sPrefix), written_.find(sPrefix) == word.sNamespace};
    return {word.sNamespace, std::string(word.sPrefix), written_.find(word.sPrefix) == word.sNamespace};
}

void SecondControl::checkText(ControlNode& node) {
    if (node.pSecond == nullptr || node.pSecond->textAs == TextAs::Text)
        return;
    if (!secondAttribute(node.oNode, "Text"))
        fail(node.oNode, "h:As is about h:Text; add it");
    else if (node.bTargetsAttribute)
        fail(node.oNode, "h:As makes content, not an attribute; take Target away");
    else if (node.pSecond->textAs == TextAs::Xml)
        scopeOf(secondOf(node));
}

/// What stands in a text that is XML has the prefixes of the control file.
void SecondControl::scopeOf(SecondNode& node) {
    for (const auto& [sPrefix, sAddress] : control_.all()) {
        if (sAddress == sSecondEditionNamespace)
            continue;
        const std::string sName = declarationOf(sPrefix);
        node.sScope += " " + sName + "=\"" + escapedAddress(sAddress) + "\"";
        if (written_.find(sPrefix) != sAddress)
            node.ofFragment.push_back({oOutput_.findName(sName), std::string(sAddress)});
    }
}

void SecondControl::leave() {
    control_.leave();
    written_.leave();
    around_.pop_back();
    inherited_.pop_back();
}

void SecondControl::readsAround(ControlNode& node) {
    const Around around = around_.back();
    const DataSourceKind kind = node.pBinding->kind;
    const bool bItems = node.pSecond != nullptr && node.pSecond->forEach;
    const bool bRows = node.pSecond != nullptr && node.pSecond->rows;
    // A source that is handed down to a loop over things is none of its own.
    const bool bAsksThing = bItems && !bRows && !node.bRepeated && node.own.sDataSource.empty() &&
                            !node.own.sDataProperty.empty();
    node.bReadsItem = bAsksThing || ((around.bItems || bItems) && kind == DataSourceKind::Blank &&
                                     !node.merged.sDataProperty.empty());
    node.bReadsRow =
        (around.bRows || bRows) && !node.bReadsItem &&
        (kind == DataSourceKind::Blank || kind == DataSourceKind::Feature || kind == DataSourceKind::Record ||
         (kind == DataSourceKind::RelatedRecord && !around.bRelated));
    const std::uint32_t nRows = around.nRows + (goesOverRows(node) ? 1 : 0);
    const bool bFirstGroup = around.nGroupRows == 0 && bRows && node.pSecond->rows->group;
    around_.push_back({bRows || (around.bRows && !node.bRepeated), around.bItems || bItems, nRows,
                       bFirstGroup ? nRows : around.nGroupRows,
                       !bRows && (around.bRelated || (kind == DataSourceKind::RelatedTable && !bItems)),
                       node.pSecond != nullptr && node.pSecond->bPart,
                       around.bProperties || repeatsProperties(node)});
    if (bItems && node.bTargetsAttribute)
        fail(node.oNode, "h:ForEach makes elements, not an attribute; take Target away");
}

void SecondControl::checkRows(ControlNode& node) {
    if (node.pSecond == nullptr || !node.pSecond->rows)
        return;
    const DataSourceKind kind = node.pBinding->kind;
    RowRules& rows = *secondOf(node).rows;
    const bool bRelated = kind == DataSourceKind::RelatedTable;
    const bool bByClass = !rows.sRelationship.empty();
    const bool bInGroup = around_[around_.size() - 2].nGroupRows > 0; // that of the node itself is the last
    if (bRelated && !bByClass && rows.links.empty() && !node.merged.sLinkField.empty())
        rows.links.push_back({std::string(node.merged.sLinkField), std::string(node.merged.sLinkField)});
    if (!isOfRows(kind))
        fail(node.oNode,
             "a node that goes over rows needs the DataSource Feature, Table, Record or RelatedTable");
    else if (bRelated && !rows.bEach)
        fail(node.oNode, "the rows of a RelatedTable are gone over with h:Rows=\"Each\"; add it");
    else if (bRelated && !bByClass && rows.links.empty() && !bInGroup)
        fail(node.oNode,
             "related rows need their keys: add LinkField=\"…\", h:Link=\"…=…\" or h:Relationship=\"…\"");
    else if (bByClass && !rows.links.empty())
        fail(node.oNode, "h:Relationship tells which fields relate rows; take h:Link away");
    else if (rows.direction != RowRules::Direction::Either && !bByClass)
        fail(node.oNode, "h:Direction belongs to h:Relationship; add it");
    else if (!bRelated && (bByClass || !rows.links.empty()))
        fail(node.oNode, std::string(bByClass ? "h:Relationship" : "h:Link") +
                             " belongs to a node with the DataSource RelatedTable");
    else if (!node.bRepeated && !rows.bEach)
        fail(node.oNode,
             "a node that goes over rows is repeated: add Entries=\"Multiple\" or h:Rows=\"Each\"");
    else if (node.bTargetsAttribute)
        fail(node.oNode, "rows go into elements, not into an attribute; take Target away");
    node.bRepeated = true;
}

void SecondControl::declareFor(const ControlNode& node, ControlNode& writer) {
    const std::string_view sPrefix = prefixOf(node.sTagName);
    if (sPrefix == "xml" || (sPrefix.empty() && node.bTargetsAttribute && node.sTagName != "xmlns"))
        return;
    if (declaredPrefix(node.sTagName)) {
        fail(node.oNode,
             "Name=\"" + node.sTagName +
                 "\": prefixes are declared by the control file's own declarations; leave the node out");
        return;
    }
    auto sAddress = control_.find(sPrefix);
    // Where the control file's own elements are in its namespace, those without a prefix are in none.
    if (sPrefix.empty() && sAddress == sSecondEditionNamespace)
        sAddress = std::string_view();
    if (!sAddress)
        fail(node.oNode, "Name=\"" + node.sTagName + "\": nothing declares the prefix \"" +
                             std::string(sPrefix) + "\"; add xmlns:" + std::string(sPrefix) +
                             "=\"…\" to the control file's root");
    else if (*sAddress == sSecondEditionNamespace)
        fail(node.oNode,
             "Name=\"" + node.sTagName + "\": no document is written with the control file's namespace");
    else if (const auto sWritten = written_.find(sPrefix); sWritten == sAddress)
        return;
    else if (sWritten && node.bTargetsAttribute)
        fail(node.oNode, "Name=\"" + node.sTagName +
                             "\": the prefix stands for another namespace at the element "
                             "of the attribute; use another prefix");
    else
        declareOn(writer, sPrefix, *sAddress, node.bTargetsAttribute);
}

void SecondControl::declareOn(ControlNode& writer, std::string_view sPrefix, std::string_view sAddress,
                              bool bAround) {
    secondOf(writer).declarations.push_back(
        {oOutput_.findName(declarationOf(sPrefix)), std::string(sAddress)});
    if (bAround)
        written_.declareAround(sPrefix, sAddress);
    else
        written_.declare(sPrefix, sAddress);
}

namespace {

/// As deep as the control file, whose loading limits it.
dom::Node firstOfSecondEdition(dom::Node oElement) {
    if (anySecondAttribute(oElement))
        return oElement;
    for (dom::Node oChild = oElement.firstChild(); oChild; oChild = oChild.nextSibling())
        if (oChild.nodeType() == dom::NodeType::Element)
            if (const dom::Node oFound = firstOfSecondEdition(oChild))
                return oFound;
    return {};
}

} // namespace

std::optional<SecondProblem> undeclaredEdition(dom::Node oControlRoot) {
    const dom::Node oElement =
        isOfSecondEdition(oControlRoot) ? dom::Node() : firstOfSecondEdition(oControlRoot);
    if (!oElement)
        return std::nullopt;
    const dom::Node oAttribute = anySecondAttribute(oElement);
    const std::string sName(oAttribute.nodeName());
    return SecondProblem{oElement,
                         sName + "=\"" + std::string(oAttribute.nodeValue()) +
                             "\": attributes of the second edition are read where the root declares their "
                             "namespace; add xmlns:" +
                             std::string(prefixOf(sName)) + "=\"" + std::string(sSecondEditionNamespace) +
                             "\" to <" + std::string(oControlRoot.nodeName()) + ">"};
}

std::vector<SecondProblem> checkSecondEdition(dom::Node oControlRoot, const SecondEdition& edition) {
    if (!isOfSecondEdition(oControlRoot))
        return {};
    const auto oOutput = dom::Document::create();
    return ControlTree(oControlRoot, ControlTree::Root::OfDocument, *oOutput, true, {}, &edition).problems();
}

} // namespace halvane
