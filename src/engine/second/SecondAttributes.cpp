#include "engine/second/SecondAttributes.h"

#include "base/FindRow.h"
#include "base/NearestName.h"
#include "base/Text.h"
#include "expression/Ordering.h"
#include "expression/Template.h"

#include <array>
#include <string>
#include <utility>

namespace halvane {

namespace {

using expression::Expression;

[[noreturn]] void refuse(const std::string& sWhat) {
    throw Failure(FailureNumber::DocumentFailure, sWhat);
}

// ---- Expressions ----

void requireVariables(const Expression& expression, const SecondEdition& edition) {
    for (const auto& reference : expression.references()) {
        if (reference.kind != expression::Reference::Kind::Variable || isKnownVariable(reference.sName) ||
            edition.values.contains(reference.sName))
            continue;
        NearestName nearest(reference.sName);
        nearest.offerAll(knownVariables());
        refuse("\"$" + reference.sName + "\" has no value" + nearest.question(": "));
    }
}

NodeExpression ready(Expression expression, const AttributeTarget& target) {
    requireVariables(expression, target.edition);
    return NodeExpression(std::move(expression));
}

NodeText readyText(std::string_view sValue, const AttributeTarget& target) {
    const expression::Template text(sValue);
    NodeText result;
    result.bConstant = text.isConstant();
    for (const auto& piece : text.pieces()) {
        result.pieces.push_back({piece.sText, {}});
        if (piece.expression)
            result.pieces.back().value.emplace(ready(*piece.expression, target));
    }
    return result;
}

// ---- Content ----

void readText(std::string_view sValue, const AttributeTarget& target) {
    target.node.text.emplace(readyText(sValue, target));
}

void readWhen(std::string_view sValue, const AttributeTarget& target) {
    target.node.when.emplace(ready(Expression(sValue).asCondition(), target));
}

void readOmit(std::string_view sValue, const AttributeTarget& target) {
    if (sValue != "Empty" && sValue != "Self")
        refuse("it is \"Empty\" or \"Self\"");
    target.node.omit = sValue == "Empty" ? Omit::Empty : Omit::Self;
}

void readFormat(std::string_view sValue, const AttributeTarget& target) {
    target.inherited.format.read(sValue);
}

// ---- Things of a map ----

/// In the order of ForEach.
constexpr std::array<std::string_view, 9> things{"Map",          "Layer",     "Table", "Field",  "Domain",
                                                 "Relationship", "Workspace", "Code",  "Subtype"};

std::string listed() {
    std::string sAll;
    for (const auto& sThing : things)
        sAll += (sAll.empty() ? "" : sThing == things.back() ? " or " : ", ") + std::string(sThing);
    return sAll;
}

void readForEach(std::string_view sValue, const AttributeTarget& target) {
    const auto found = std::ranges::find(things, sValue);
    if (found == things.end()) {
        NearestName nearest(sValue);
        nearest.offerAll(things);
        refuse("it is " + listed() + nearest.question("; "));
    }
    target.node.forEach = static_cast<ForEach>(found - things.begin());
}

// ---- Rows ----

RowRules& rowsOf(const AttributeTarget& target) {
    return target.node.rows ? *target.node.rows : target.node.rows.emplace();
}

void readRows(std::string_view sValue, const AttributeTarget& target) {
    if (sValue != "Each")
        refuse("it is \"Each\"");
    rowsOf(target).bEach = true;
}

void readWhere(std::string_view sValue, const AttributeTarget& target) {
    rowsOf(target).where.emplace(
        ready(Expression(sValue, Expression::Braces::OuterRow).asCondition(), target));
}

void readOrderBy(std::string_view sValue, const AttributeTarget& target) {
    for (auto& term : expression::parseOrdering(sValue))
        rowsOf(target).order.push_back({ready(std::move(term.expression), target), term.bDescending});
}

void readLimit(std::string_view sValue, const AttributeTarget& target) {
    Expression limit(sValue);
    for (const auto& reference : limit.references())
        if (reference.kind == expression::Reference::Kind::Field)
            refuse("a limit is a whole number, or a value of --set");
    rowsOf(target).limit.emplace(ready(std::move(limit), target));
}

/// Pairs of fields: "id=site_id, kind=kind".
void readLink(std::string_view sValue, const AttributeTarget& target) {
    std::vector<std::string> pairs;
    (void)Split(sValue, ",", pairs);
    for (const auto& sPair : pairs) {
        const auto nEquals = sPair.find('=');
        const std::string_view sAround = trimBlanks(std::string_view(sPair).substr(0, nEquals));
        const std::string_view sRelated = nEquals == std::string::npos
                                              ? std::string_view()
                                              : trimBlanks(std::string_view(sPair).substr(nEquals + 1));
        if (sAround.empty() || sRelated.empty())
            refuse("it pairs a field of the row around with one of the related row, as in \"id=site_id\"");
        rowsOf(target).links.push_back({std::string(sAround), std::string(sRelated)});
    }
}

void readRelationship(std::string_view sValue, const AttributeTarget& target) {
    if (trimBlanks(sValue).empty())
        refuse("it is the name of a relationship class");
    rowsOf(target).sRelationship = trimBlanks(sValue);
}

void readDirection(std::string_view sValue, const AttributeTarget& target) {
    if (sValue != "Forward" && sValue != "Backward")
        refuse("it is \"Forward\" or \"Backward\"");
    rowsOf(target).direction =
        sValue == "Forward" ? RowRules::Direction::Forward : RowRules::Direction::Backward;
}

// ---- All of them ----

/// Where an attribute may stand.
enum class Place : std::uint8_t { Anywhere, NotOnRoot };

struct Attribute {
    std::string_view sName;
    Place place;
    void (*fnRead)(std::string_view sValue, const AttributeTarget& target);
};

constexpr std::array attributes{
    Attribute{"Direction", Place::NotOnRoot, readDirection},
    Attribute{"ForEach", Place::NotOnRoot, readForEach},
    Attribute{"Format", Place::Anywhere, readFormat},
    Attribute{"Limit", Place::NotOnRoot, readLimit},
    Attribute{"Link", Place::NotOnRoot, readLink},
    Attribute{"Omit", Place::NotOnRoot, readOmit},
    Attribute{"OrderBy", Place::NotOnRoot, readOrderBy},
    Attribute{"Relationship", Place::NotOnRoot, readRelationship},
    Attribute{"Rows", Place::NotOnRoot, readRows},
    Attribute{"Text", Place::NotOnRoot, readText},
    Attribute{"When", Place::NotOnRoot, readWhen},
    Attribute{"Where", Place::NotOnRoot, readWhere},
};

} // namespace

void readSecondAttribute(std::string_view sName, std::string_view sValue, const AttributeTarget& target) {
    const Attribute* const pAttribute = findRow(attributes, sName, &Attribute::sName);
    if (pAttribute == nullptr) {
        NearestName nearest(sName);
        for (const auto& attribute : attributes)
            nearest.offer(attribute.sName);
        refuse("is no attribute of the second edition" + nearest.question(": "));
    }
    if (target.bRoot && pAttribute->place == Place::NotOnRoot)
        refuse("the root is always written, with elements alone");
    pAttribute->fnRead(sValue, target);
}

} // namespace halvane
