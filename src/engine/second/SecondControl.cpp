#include "engine/second/SecondControl.h"

#include "base/NearestName.h"
#include "base/Text.h"
#include "expression/Ordering.h"
#include "expression/Template.h"

#include <algorithm>
#include <array>
#include <utility>

namespace halvane {

bool isOfSecondEdition(dom::Node oControlRoot) {
    for (const dom::Node oAttribute : oControlRoot.attributes())
        if (declaredPrefix(oAttribute.nodeName()) && oAttribute.nodeValue() == sSecondEditionNamespace)
            return true;
    return false;
}

std::optional<std::string_view> secondAttribute(dom::Node oElement, std::string_view sName) {
    for (const dom::Node oAttribute : oElement.attributes()) {
        const std::string_view sPrefix = prefixOf(oAttribute.nodeName());
        if (sPrefix.empty() || oAttribute.baseName() != sName)
            continue;
        const std::string sDeclaration = "xmlns:" + std::string(sPrefix);
        for (dom::Node oAround = oElement; oAround && oAround.nodeType() == dom::NodeType::Element;
             oAround = oAround.parentNode())
            if (const auto sAddress = oAround.getAttribute(sDeclaration)) {
                if (*sAddress == sSecondEditionNamespace)
                    return oAttribute.nodeValue();
                break;
            }
    }
    return std::nullopt;
}

bool isDissolved(const ControlNode& node) noexcept {
    return node.pSecond != nullptr && node.pSecond->omit == Omit::Self;
}

bool keepsSource(const ControlNode& node) noexcept {
    return node.pSecond != nullptr && node.pSecond->rows && node.pSecond->rows->bEach;
}

/// One attribute of the second edition.
class SecondControl::Reading {
public:
    Reading(SecondControl& control, ControlNode& node, dom::Node oAttribute)
        : control_(control), node_(node), sName_(oAttribute.nodeName()), sValue_(oAttribute.nodeValue()) {}

    void read() {
        const std::string_view sBase = sName_.substr(prefixOf(sName_).size() + 1);
        const auto found = std::ranges::find(attributes, sBase, &Attribute::sName);
        if (found == attributes.end()) {
            NearestName nearest(sBase);
            for (const auto& attribute : attributes)
                nearest.offer(attribute.sName);
            fail("is no attribute of the second edition" + nearest.question(": "));
            return;
        }
        try {
            (this->*found->fnRead)();
        } catch (const Failure& failure) {
            fail(failure.description());
        }
    }

private:
    struct Attribute {
        std::string_view sName;
        void (Reading::*fnRead)();
    };
    static const std::array<Attribute, 8> attributes;

    [[nodiscard]] SecondNode& second() { return control_.secondOf(node_); }
    void fail(const std::string& sWhat) {
        control_.fail(node_.oNode, std::string(sName_) + "=\"" + std::string(sValue_) + "\": " + sWhat);
    }
    [[nodiscard]] bool isRoot() const {
        return node_.oNode.parentNode().nodeType() != dom::NodeType::Element;
    }

    void refuseOnRoot() {
        if (isRoot())
            throw Failure(FailureNumber::DocumentFailure, "the root is always written, with elements alone");
    }

    void requireVariables(const expression::Expression& expression) {
        for (const auto& reference : expression.references()) {
            if (reference.kind != expression::Reference::Kind::Variable || isKnownVariable(reference.sName) ||
                control_.edition_.values.contains(reference.sName))
                continue;
            NearestName nearest(reference.sName);
            nearest.offerAll(knownVariables());
            throw Failure(FailureNumber::DocumentFailure,
                          "\"$" + reference.sName + "\" has no value" + nearest.question(": "));
        }
    }

    NodeExpression ready(expression::Expression expression) {
        requireVariables(expression);
        return NodeExpression(std::move(expression));
    }

    void readText() {
        refuseOnRoot();
        const expression::Template text(sValue_);
        NodeText& ready = second().text.emplace();
        node_.bHasText = true;
        ready.bConstant = text.isConstant();
        for (const auto& piece : text.pieces()) {
            ready.pieces.push_back({piece.sText, {}});
            if (piece.expression)
                ready.pieces.back().value.emplace(this->ready(*piece.expression));
        }
    }

    void readWhen() {
        refuseOnRoot();
        second().when.emplace(ready(expression::Expression(sValue_).asCondition()));
    }

    void readOmit() {
        refuseOnRoot();
        if (sValue_ == "Empty")
            second().omit = Omit::Empty;
        else if (sValue_ == "Self")
            second().omit = Omit::Self;
        else
            fail("it is \"Empty\" or \"Self\"");
    }

    RowRules& rows() {
        refuseOnRoot();
        SecondNode& node = second();
        return node.rows ? *node.rows : node.rows.emplace();
    }

    void readRows() {
        if (sValue_ != "Each")
            throw Failure(FailureNumber::DocumentFailure, "it is \"Each\"");
        rows().bEach = true;
    }

    void readWhere() {
        rows().where.emplace(
            ready(expression::Expression(sValue_, expression::Expression::Braces::OuterRow).asCondition()));
    }

    void readOrderBy() {
        for (auto& term : expression::parseOrdering(sValue_))
            rows().order.push_back({ready(std::move(term.expression)), term.bDescending});
    }

    void readLimit() {
        expression::Expression limit(sValue_);
        for (const auto& reference : limit.references())
            if (reference.kind == expression::Reference::Kind::Field)
                throw Failure(FailureNumber::DocumentFailure,
                              "a limit is a whole number, or a value of --set");
        rows().limit.emplace(ready(std::move(limit)));
    }

    /// Pairs of fields: "id=site_id, kind=kind".
    void readLink() {
        std::vector<std::string> pairs;
        (void)Split(sValue_, ",", pairs);
        for (const auto& sPair : pairs) {
            const auto nEquals = sPair.find('=');
            const std::string_view sAround = trimBlanks(std::string_view(sPair).substr(0, nEquals));
            const std::string_view sRelated = nEquals == std::string::npos
                                                  ? std::string_view()
                                                  : trimBlanks(std::string_view(sPair).substr(nEquals + 1));
            if (sAround.empty() || sRelated.empty())
                throw Failure(
                    FailureNumber::DocumentFailure,
                    "it pairs a field of the row around with one of the related row, as in \"id=site_id\"");
            rows().links.push_back({std::string(sAround), std::string(sRelated)});
        }
    }

    SecondControl& control_;
    ControlNode& node_;
    std::string_view sName_;
    std::string_view sValue_;
};

const std::array<SecondControl::Reading::Attribute, 8> SecondControl::Reading::attributes{{
    {"Limit", &Reading::readLimit},
    {"Link", &Reading::readLink},
    {"Omit", &Reading::readOmit},
    {"OrderBy", &Reading::readOrderBy},
    {"Rows", &Reading::readRows},
    {"Text", &Reading::readText},
    {"When", &Reading::readWhen},
    {"Where", &Reading::readWhere},
}};

SecondNode& SecondControl::secondOf(ControlNode& node) {
    // The node knows it as what is read: here alone it is still written.
    if (node.pSecond == nullptr)
        node.pSecond = &nodes_.emplace_back();
    return const_cast<SecondNode&>(*node.pSecond);
}

void SecondControl::readAttributes(ControlNode& node) {
    for (const dom::Node oAttribute : node.oNode.attributes()) {
        const std::string_view sPrefix = prefixOf(oAttribute.nodeName());
        if (!sPrefix.empty() && control_.find(sPrefix) == sSecondEditionNamespace)
            Reading(*this, node, oAttribute).read();
    }
}

void SecondControl::enterRoot(ControlNode& root) {
    control_.enter();
    written_.enter();
    control_.declareAll(root.oNode);
    readAttributes(root);
    secondRows_.push_back(false);
    // Values may hold names with prefixes, so all of them are declared.
    for (const dom::Node oAttribute : root.oNode.attributes())
        if (const auto sPrefix = declaredPrefix(oAttribute.nodeName());
            sPrefix && oAttribute.nodeValue() != sSecondEditionNamespace)
            declareOn(root, *sPrefix, oAttribute.nodeValue(), false);
    declareFor(root, root);
}

void SecondControl::enter(ControlNode& node, ControlNode& writer) {
    control_.enter();
    written_.enter();
    control_.declareAll(node.oNode);
    readAttributes(node);
    checkRows(node);
    if (isDissolved(node))
        return;
    declareFor(node, node.bTargetsAttribute ? writer : node);
}

void SecondControl::leave() {
    control_.leave();
    written_.leave();
    secondRows_.pop_back();
}

void SecondControl::checkRows(ControlNode& node) {
    const bool bRowsAround = !secondRows_.empty() && secondRows_.back();
    const DataSourceKind kind = node.pBinding->kind;
    node.bReadsRow = bRowsAround && (kind == DataSourceKind::Blank || kind == DataSourceKind::Feature ||
                                     kind == DataSourceKind::Record || kind == DataSourceKind::RelatedRecord);
    const bool bSecondRows = node.pSecond != nullptr && node.pSecond->rows;
    secondRows_.push_back(bSecondRows || (bRowsAround && !node.bRepeated));
    if (!bSecondRows)
        return;
    RowRules& rows = *secondOf(node).rows;
    const bool bRelated = kind == DataSourceKind::RelatedTable;
    if (bRelated && rows.links.empty() && !node.merged.sLinkField.empty())
        rows.links.push_back({std::string(node.merged.sLinkField), std::string(node.merged.sLinkField)});
    if (!bRelated && kind != DataSourceKind::Feature && kind != DataSourceKind::Table &&
        kind != DataSourceKind::Record)
        fail(node.oNode,
             "a node that goes over rows needs the DataSource Feature, Table, Record or RelatedTable");
    else if (bRelated && !rows.bEach)
        fail(node.oNode, "the rows of a RelatedTable are gone over with h:Rows=\"Each\"; add it");
    else if (bRelated && rows.links.empty())
        fail(node.oNode, "related rows need their keys: add LinkField=\"…\" or h:Link=\"…=…\"");
    else if (!bRelated && !rows.links.empty())
        fail(node.oNode, "h:Link belongs to a node with the DataSource RelatedTable");
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
    const std::string sName = sPrefix.empty() ? "xmlns" : "xmlns:" + std::string(sPrefix);
    secondOf(writer).declarations.push_back({oOutput_.findName(sName), std::string(sAddress)});
    if (bAround)
        written_.declareAround(sPrefix, sAddress);
    else
        written_.declare(sPrefix, sAddress);
}

std::vector<SecondProblem> checkSecondEdition(dom::Node oControlRoot, const SecondEdition& edition) {
    if (!isOfSecondEdition(oControlRoot))
        return {};
    const auto oOutput = dom::Document::create();
    return ControlTree(oControlRoot, ControlTree::Root::OfDocument, *oOutput, true, {}, &edition).problems();
}

} // namespace halvane
