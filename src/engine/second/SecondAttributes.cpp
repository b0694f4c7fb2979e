#include "engine/second/SecondAttributes.h"

#include "base/FindRow.h"
#include "base/NearestName.h"
#include "base/Text.h"
#include "expression/Ordering.h"
#include "expression/Template.h"

#include <array>
#include <charconv>
#include <string>
#include <utility>

namespace halvane {

namespace {

using expression::Expression;

[[noreturn]] void refuse(const std::string& sWhat) {
    throw Failure(FailureNumber::DocumentFailure, sWhat);
}

// ---- Expressions ----

/// When an expression of a node is computed.
enum class At : std::uint8_t {
    Around,  ///< before the node has rows of its own
    Row,     ///< of its rows, before they are groups
    Content, ///< of its rows or groups
};

/// Whether a person gave a value of that name.
bool isGiven(const SecondEdition& edition, std::string_view sName) {
    const bool bGiven = edition.values.contains(sName);
    if (bGiven && edition.fnValueAsked)
        edition.fnValueAsked(sName);
    return bGiven;
}

/// The loops over rows that an expression is computed in.
std::uint32_t loopsOf(const AttributeTarget& target, At at) {
    return target.rows.nLoops + (at != At::Around && target.rows.bOwn ? 1 : 0);
}

void requireVariables(const Expression& expression, const AttributeTarget& target, At at) {
    using Kind = expression::Reference::Kind;
    for (const auto& aggregate : expression.aggregates())
        requireVariables(aggregate, target, at);
    const std::uint32_t nLoops = loopsOf(target, at);
    const bool bOwnGroups = target.bOwnGroups && at == At::Content;
    const std::uint32_t nGroupLoops =
        target.rows.nGroupLoops == 0 && bOwnGroups ? nLoops : target.rows.nGroupLoops;
    for (const auto& reference : expression.references()) {
        const bool bOfGroup = reference.kind == Kind::Aggregate ||
                              (reference.kind == Kind::Variable && reference.sName == sCountOfGroup);
        if (reference.kind == Kind::Variable && reference.sName == "Item" && reference.lClimb == 0 &&
            at == At::Row)
            refuse("a row has no \"$Item\" before it is chosen and in its place; \"{$Item}\" is that of the "
                   "row around");
        if (bOfGroup && (nGroupLoops == 0 || nGroupLoops + reference.lClimb > nLoops))
            refuse("\"" + std::string(reference.kind == Kind::Aggregate ? "" : "$") + reference.sName +
                   "\" is about a group of rows; " +
                   (nGroupLoops > 0     ? "the row further out is in none"
                    : target.bOwnGroups ? "rows are chosen and ordered before they are grouped"
                                        : "a node around needs h:Group"));
        if (reference.kind != Kind::Variable || isKnownVariable(reference.sName) ||
            isGiven(target.edition, reference.sName))
            continue;
        NearestName nearest(reference.sName);
        nearest.offerAll(knownVariables());
        refuse("\"$" + reference.sName + "\" has no value" + nearest.question(": "));
    }
}

/// @param nLoops over rows that the expression is computed in.
void requireRows(const Expression& expression, std::uint32_t nLoops) {
    for (const auto& aggregate : expression.aggregates())
        requireRows(aggregate, nLoops);
    for (const auto& reference : expression.references())
        if (reference.lClimb > 0 && reference.lClimb >= nLoops)
            refuse("\"" + reference.sName + "\" is asked of a row further out than there is any");
}

NodeExpression ready(Expression expression, const AttributeTarget& target, At at = At::Content) {
    requireVariables(expression, target, at);
    requireRows(expression, loopsOf(target, at));
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

void readGeometry(std::string_view sValue, const AttributeTarget& target) {
    const auto known = geometryWords();
    const auto word = std::ranges::find(known, sValue, &GeometryWord::sWord);
    if (word == known.end()) {
        NearestName nearest(sValue);
        for (const auto& one : known)
            nearest.offer(one.sWord);
        refuse("no form of a shape has this name" + nearest.question(": "));
    }
    target.node.geometry.emplace().form = word->form;
}

void readId(std::string_view sValue, const AttributeTarget& target) {
    target.node.geometryId.emplace(readyText(sValue, target));
}

void readCrs(std::string_view sValue, const AttributeTarget& target) {
    target.inherited.space = registeredSpace(target.edition, sValue, target.inherited.space.axes);
}

void readAxes(std::string_view sValue, const AttributeTarget& target) {
    if (sValue != "xy" && sValue != "yx" && sValue != "authority")
        refuse("it is \"xy\", \"yx\" or \"authority\"");
    target.inherited.space.axes = sValue == "xy" ? Axes::Xy : sValue == "yx" ? Axes::Yx : Axes::Authority;
}

void readWhen(std::string_view sValue, const AttributeTarget& target) {
    target.node.when.emplace(ready(Expression(sValue).asCondition(), target, At::Around));
}

void readOmit(std::string_view sValue, const AttributeTarget& target) {
    if (sValue != "Empty" && sValue != "Self")
        refuse("it is \"Empty\" or \"Self\"");
    target.node.omit = sValue == "Empty" ? Omit::Empty : Omit::Self;
}

/// What is included was put in its place before.
void readInclude(std::string_view /*sValue*/, const AttributeTarget& target) {
    target.node.bPart = true;
}

void readFormat(std::string_view sValue, const AttributeTarget& target) {
    target.inherited.format.read(sValue);
}

void readAs(std::string_view sValue, const AttributeTarget& target) {
    if (sValue != "xml" && sValue != "cdata")
        refuse("it is \"xml\" or \"cdata\"");
    target.node.textAs = sValue == "xml" ? TextAs::Xml : TextAs::CData;
}

void readIndent(std::string_view sValue, const AttributeTarget& target) {
    constexpr std::uint32_t nMost = 16;
    if (sValue == "none" && !target.bRoot) {
        target.node.bInline = true;
        return;
    }
    std::uint32_t nIndent = 0;
    const auto [pEnd, code] = std::from_chars(sValue.data(), sValue.data() + sValue.size(), nIndent);
    const bool bNumber = code == std::errc() && pEnd == sValue.data() + sValue.size() && nIndent <= nMost;
    if (!target.bRoot || (!bNumber && sValue != "none"))
        refuse(target.bRoot ? "it is \"none\", or a number of blanks from 0 to 16"
                            : "it is \"none\"; a number stands on the root alone");
    target.node.document->layout.nIndent = nIndent;
    target.node.document->layout.sBreak = sValue == "none" ? "" : "\n";
}

// ---- The document ----

void readDeclaration(std::string_view sValue, const AttributeTarget& target) {
    if (!equalIgnoringCase(sValue, "UTF-8"))
        refuse("it is \"UTF-8\": documents are written in no other encoding");
    target.node.document->bDeclaration = true;
}

/// Takes a text between quotation marks off the front, and the blanks before it. @returns whether there is
/// one.
bool takeQuoted(std::string_view& sText, bool bPublic) {
    const std::string_view sRest = trimBlanks(sText);
    if (sRest.size() == sText.size() || sRest.empty() || (sRest.front() != '"' && sRest.front() != '\''))
        return false;
    const std::size_t nEnd = sRest.find(sRest.front(), 1);
    constexpr std::string_view sForbidden = "<>&[]";
    constexpr std::string_view sOfPublic =
        " abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-'()+,./:=?;!*#@$_%";
    if (nEnd == sRest.npos || sRest.substr(0, nEnd).find_first_of(sForbidden) != sRest.npos ||
        (bPublic && sRest.substr(1, nEnd - 1).find_first_not_of(sOfPublic) != sRest.npos))
        return false;
    sText = sRest.substr(nEnd + 1);
    return true;
}

/// Source: XML 1.0, 2.8 and 4.2.2. There is no internal subset: nothing in a document would need it.
void readDoctype(std::string_view sValue, const AttributeTarget& target) {
    std::string_view sRest = trimBlanks(sValue);
    if (!sRest.starts_with(target.sTagName))
        refuse("it begins with the root's Name, \"" + std::string(target.sTagName) + "\"");
    sRest.remove_prefix(target.sTagName.size());
    const std::string_view sKind = trimBlanks(sRest);
    bool bRight = sRest.empty();
    if (sKind.size() < sRest.size() && sKind.starts_with("SYSTEM")) {
        sRest = sKind.substr(6);
        bRight = takeQuoted(sRest, false);
    } else if (sKind.size() < sRest.size() && sKind.starts_with("PUBLIC")) {
        sRest = sKind.substr(6);
        bRight = takeQuoted(sRest, true) && takeQuoted(sRest, false);
    }
    if (!bRight || !trimBlanks(sRest).empty())
        refuse("it is a name, or a name with SYSTEM \"…\" or PUBLIC \"…\" \"…\"");
    target.node.document->sDoctype = trimBlanks(sValue);
}

void readNeeds(std::string_view sValue, const AttributeTarget& target) {
    std::vector<std::string> names;
    (void)Split(sValue, ",", names);
    std::string sMissing;
    for (const auto& sName : names)
        if (const std::string_view sNeeded = trimBlanks(sName); !isGiven(target.edition, sNeeded))
            sMissing += (sMissing.empty() ? "" : ", ") + std::string("--set ") + std::string(sNeeded) + "=…";
    if (!sMissing.empty())
        refuse("give " + sMissing);
}

// ---- Things of a map ----

/// In the order of ForEach.
constexpr auto things =
    std::to_array<std::string_view>({"Map", "Layer", "Table", "Field", "Domain", "Relationship", "Workspace",
                                     "Code", "Subtype", "Part", "Vertex"});
static_assert(things.size() == nForEachThings);

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
        ready(Expression(sValue, Expression::Braces::OuterRow).asCondition(), target, At::Row));
}

void readOrderBy(std::string_view sValue, const AttributeTarget& target) {
    for (auto& term : expression::parseOrdering(sValue))
        rowsOf(target).order.push_back(
            {ready(std::move(term.expression), target, At::Row), term.bDescending});
}

void readLimit(std::string_view sValue, const AttributeTarget& target) {
    Expression limit(sValue);
    for (const auto& reference : limit.references())
        if (reference.kind == expression::Reference::Kind::Field)
            refuse("a limit is a whole number, or a value of --set");
    const auto isCount = [](std::string_view sText) {
        return !sText.empty() && sText.size() <= 18 && sText.find_first_not_of("0123456789") == sText.npos;
    };
    const auto* const pReference = limit.asReference();
    const auto given =
        pReference == nullptr ? target.edition.values.end() : target.edition.values.find(pReference->sName);
    const bool bGivenWrong = given != target.edition.values.end() && !isCount(given->second);
    const bool bWrong = limit.references().empty() && !isCount(trimBlanks(sValue));
    if (bWrong || bGivenWrong)
        refuse("a limit is a whole number, or a value of --set that is one");
    rowsOf(target).limit.emplace(ready(std::move(limit), target, At::Around));
}

void readGroup(std::string_view sValue, const AttributeTarget& target) {
    rowsOf(target).group.emplace(ready(Expression(sValue, Expression::Braces::OuterRow), target, At::Row));
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

/// Where an attribute may stand. What may stand anywhere holds for all that stands in its node.
enum class Place : std::uint8_t { Anywhere, NotOnRoot, RootAlone };

struct Attribute {
    std::string_view sName;
    Place place;
    void (*fnRead)(std::string_view sValue, const AttributeTarget& target);
};

constexpr std::array attributes{
    Attribute{"As", Place::NotOnRoot, readAs},
    Attribute{"Axes", Place::Anywhere, readAxes},
    Attribute{"Crs", Place::Anywhere, readCrs},
    Attribute{"Declaration", Place::RootAlone, readDeclaration},
    Attribute{"Direction", Place::NotOnRoot, readDirection},
    Attribute{"Doctype", Place::RootAlone, readDoctype},
    Attribute{"ForEach", Place::NotOnRoot, readForEach},
    Attribute{"Format", Place::Anywhere, readFormat},
    Attribute{"Geometry", Place::NotOnRoot, readGeometry},
    Attribute{"Group", Place::NotOnRoot, readGroup},
    Attribute{"Id", Place::NotOnRoot, readId},
    Attribute{"Include", Place::NotOnRoot, readInclude},
    Attribute{"Indent", Place::Anywhere, readIndent},
    Attribute{"Limit", Place::NotOnRoot, readLimit},
    Attribute{"Link", Place::NotOnRoot, readLink},
    Attribute{"Needs", Place::RootAlone, readNeeds},
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
    if (!target.bRoot && pAttribute->place == Place::RootAlone)
        refuse("it is about the whole document; it stands on the root");
    if (target.bProperty && pAttribute->place != Place::Anywhere)
        refuse("in a repeated node of definitions or of points of shapes, nodes write properties and nothing "
               "else; take it away, or repeat the node around by h:ForEach");
    pAttribute->fnRead(sValue, target);
}

} // namespace halvane
