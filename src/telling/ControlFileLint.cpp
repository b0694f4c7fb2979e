#include "telling/ControlFileLint.h"

#include "base/NearestName.h"
#include "base/Text.h"
#include "engine/control/ClsXMLNode.h"
#include "engine/output/DecimalPlaces.h"
#include "engine/second/ControlParts.h"
#include "engine/second/SecondEdition.h"
#include "engine/sources/DataSourceKind.h"
#include "telling/ControlFileParts.h"
#include "telling/ControlInheritance.h"
#include "telling/ControlVocabulary.h"
#include "telling/DocumentOrder.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

namespace halvane {

namespace {

using Severity = Finding::Severity;

std::string_view attribute(dom::Node oElement, std::string_view sName) {
    return oElement.getAttribute(sName).value_or("");
}

bool isLeaf(dom::Node oElement) {
    for (dom::Node oChild = oElement.firstChild(); oChild; oChild = oChild.nextSibling())
        if (isElement(oChild))
            return false;
    return true;
}

bool isRepeated(dom::Node oElement) {
    return attribute(oElement, "Entries") == "Multiple" || secondAttribute(oElement, "Rows");
}

/// What the element says of its data source, or the nearest one around it that says something.
std::string_view sourceOf(dom::Node oElement) {
    return inherited(oElement, "DataSource");
}

DataSourceKind kindOf(dom::Node oElement) {
    return dataSourceKindOf(sourceOf(oElement));
}

/// What a control element says with attributes of no namespace.
struct Element {
    dom::Node oNode;
    std::array<std::string_view, controlWords> values; ///< "" where absent
    bool bSaysMore = false;                            ///< it has attributes that control elements have not

    [[nodiscard]] std::string_view operator[](ControlWord attribute) const noexcept {
        return values[static_cast<std::size_t>(attribute)];
    }
};

/// Reads one element after the other. A document keeps each name at one place, so names are compared once.
class ElementReader {
public:
    const Element& read(dom::Node oNode) {
        element_ = {oNode, {}, false};
        for (const dom::Node oAttribute : oNode.attributes()) {
            const std::size_t nPlace = placeOf(oAttribute.nodeName());
            if (nPlace < controlWords)
                element_.values[nPlace] = oAttribute.nodeValue();
            else
                element_.bSaysMore = true;
        }
        return element_;
    }

private:
    struct KnownName {
        const char* pName;
        std::size_t nPlace;
    };

    std::size_t placeOf(std::string_view sName) {
        for (const KnownName& known : aKnown_)
            if (known.pName == sName.data())
                return known.nPlace;
        const auto& attributes = controlVocabulary().attributes;
        const auto nPlace = static_cast<std::size_t>(std::find(attributes.begin(), attributes.end(), sName) -
                                                     attributes.begin());
        if (nPlace < controlWords)
            aKnown_.push_back({sName.data(), nPlace});
        return nPlace;
    }

    Element element_;
    std::vector<KnownName> aKnown_; ///< in the order in which they were met
};

/// What a rule says of an element; the place is added.
using Found = std::vector<Finding>;

void find(Found& found, Severity severity, std::string_view sKind, std::string_view sDetail,
          std::string sText, std::string sRemedy, std::string_view sAttribute = {}) {
    found.push_back({0,
                     severity,
                     sKind,
                     {},
                     {},
                     {},
                     std::string(sDetail),
                     std::move(sText),
                     std::move(sRemedy),
                     {},
                     std::string(sAttribute)});
}

// ---- Words that are not read

void findUnknownAttributes(const Element& element, Found& found) {
    if (!element.bSaysMore)
        return;
    const auto& attributes = controlVocabulary().attributes;
    for (const dom::Node oAttribute : element.oNode.attributes()) {
        const std::string_view sName = oAttribute.nodeName();
        if (std::find(attributes.begin(), attributes.end(), sName) != attributes.end() || sName == "xmlns" ||
            sName.find(':') != std::string_view::npos)
            continue;
        const std::string sNearest = NearestName(sName).offerAll(attributes).name();
        find(found, Severity::Note, "UnknownAttribute", sName,
             fmt::format("the attribute {} is not read", sName),
             sNearest.empty() ? "remove it" : fmt::format("write {}", sNearest), sName);
    }
}

bool isReadInAnyCase(const ControlVocabulary::Keyword& keyword, std::string_view sValue) {
    return keyword.attribute == ControlWord::DataSource &&
           dataSourceKindOf(sValue) == DataSourceKind::SubTypeFieldInfo;
}

void findMisspeltKeywords(const Element& element, Found& found) {
    for (const auto& keyword : controlVocabulary().keywords) {
        const std::string_view sValue = element[keyword.attribute];
        if (sValue.empty() ||
            std::find(keyword.values.begin(), keyword.values.end(), sValue) != keyword.values.end() ||
            trimBlanks(sValue).empty() || isReadInAnyCase(keyword, sValue))
            continue;
        const std::string_view sAttribute = controlVocabulary().name(keyword.attribute);
        const std::string sNearest = NearestName(sValue).offerAll(keyword.values).name();
        const bool bOnlyCase = equalIgnoringCase(sValue, sNearest);
        if (sNearest.empty() || (keyword.bToldByExport && !bOnlyCase))
            continue;
        const std::string_view sWhy = bOnlyCase ? ": letter case counts" : "";
        find(found, Severity::Note, "UnknownValue", sValue,
             fmt::format("{}={} is not known{}", sAttribute, inQuotes(sValue), sWhy),
             fmt::format("write {}=\"{}\"", sAttribute, sNearest), sAttribute);
    }
}

void findDecimalPlacesWithoutNumber(const Element& element, Found& found) {
    const std::string_view sPlaces = element[ControlWord::DecimalPlace];
    if (!sPlaces.empty() && !trimBlanks(sPlaces).empty() && !DecimalPlaces(sPlaces).isGiven())
        find(found, Severity::Note, "NoNumber", sPlaces,
             fmt::format("DecimalPlace={} is no number, so values have up to 15 decimals", inQuotes(sPlaces)),
             "write a whole number");
}

// ---- Related rows

/// Whether the element, or one around it that hands it down, names a link field. The root hands down none.
bool hasLinkField(dom::Node oElement) {
    for (; isElement(oElement.parentNode()); oElement = oElement.parentNode())
        if (!attribute(oElement, "LinkField").empty())
            return true;
    return false;
}

bool isOfRelatedRows(DataSourceKind kind) {
    return kind == DataSourceKind::RelatedTable || kind == DataSourceKind::RelatedRecord;
}

/// Whether a leaf inside the element, or the element as a leaf, reads related rows.
bool readsRelatedRows(dom::Node oLeaf, dom::Node oTop) {
    if (!isLeaf(oLeaf))
        return false;
    for (dom::Node oNode = oLeaf;; oNode = oNode.parentNode()) {
        const std::string_view sSource = attribute(oNode, "DataSource");
        if (!sSource.empty() || oNode == oTop)
            return isOfRelatedRows(dataSourceKindOf(sSource));
    }
}

void findUnlinkedTables(const Element& element, Found& found) {
    if (dataSourceKindOf(element[ControlWord::DataSource]) != DataSourceKind::RelatedTable ||
        element[ControlWord::Entries] == "Multiple")
        return;
    const dom::Node oElement = element.oNode;
    bool bReads = false;
    for (dom::Node oNode = oElement; oNode; oNode = nextInDocument(oNode, oElement)) {
        if (!isElement(oNode) || !readsRelatedRows(oNode, oElement))
            continue;
        if (hasLinkField(oNode))
            return;
        bReads = true;
    }
    if (bReads)
        find(found, Severity::Note, "NoLinkField", "LinkField",
             "without LinkField no row is related to another",
             "name in LinkField the field that links both tables");
}

// ---- Repeated attributes

void findRepeatedAttributes(const Element& element, Found& found) {
    if (element[ControlWord::Entries] == "Multiple" && element[ControlWord::Target] == "Attribute")
        find(found, Severity::Warning, "RepeatedAttribute", "Target",
             "a repeated node writes elements: at most its first item becomes the attribute",
             "remove Target, or repeat a node around it");
}

// ---- Repeated nodes that write nothing, or nothing of what they are meant to

void findUnheededRepeats(const Element& element, Found& found) {
    const dom::Node oParent = element.oNode.parentNode();
    if (element[ControlWord::Entries] != "Multiple" || !isElement(oParent) || !isRepeated(oParent))
        return;
    if (rowOf(kindOf(oParent)).rowUse == RowUse::Record)
        find(found, Severity::Note, "UnheededRepeat", "Entries",
             "directly inside a repeated Table or Record node its Entries is not heeded",
             "remove Entries, or put a group around the node");
}

void findEmptyFields(const Element& element, Found& found) {
    const dom::Node oParent = element.oNode.parentNode();
    if (isElement(oParent) && isRepeated(oParent) && kindOf(oParent) == DataSourceKind::Field &&
        isLeaf(element.oNode))
        find(found, Severity::Note, "EmptyItems", "DataProperty",
             "it is written for each field and stays empty: values come from nodes inside it",
             "put a node with the DataProperty inside it");
}

/// Whether the element or one around it is repeated.
bool isInsideRepeated(dom::Node oElement) {
    for (; isElement(oElement); oElement = oElement.parentNode())
        if (isRepeated(oElement))
            return true;
    return false;
}

/// A "Table" or "RelatedTable" leaf may be there to name the table.
bool isRowOfLoop(DataSourceKind kind) {
    return kind == DataSourceKind::Feature || kind == DataSourceKind::FeatureTable ||
           kind == DataSourceKind::Record || kind == DataSourceKind::RelatedRecord;
}

void findValuesWithoutRow(const Element& element, Found& found) {
    if (element[ControlWord::IdentityValue].empty() || !isLeaf(element.oNode))
        return;
    const std::string_view sSource = sourceOf(element.oNode);
    if (isRowOfLoop(dataSourceKindOf(sSource)) &&
        !equalIgnoringCase(element[ControlWord::DataProperty], "TableName") &&
        !isInsideRepeated(element.oNode))
        find(found, Severity::Note, "NoRow", sSource,
             fmt::format("a {} value is read from a row, and no node around it goes over rows", sSource),
             "write Entries=\"Multiple\" where the rows are to be repeated");
}

using Rule = void (*)(const Element& element, Found& found);
constexpr std::array<Rule, 3> rulesOfSpelling{findUnknownAttributes, findMisspeltKeywords,
                                              findDecimalPlacesWithoutNumber};
/// What nodes do by the first edition.
constexpr std::array<Rule, 5> rulesOfNodes{findUnlinkedTables, findRepeatedAttributes, findUnheededRepeats,
                                           findEmptyFields, findValuesWithoutRow};

/// Whether the element writes its own text, or goes over rows by the rules of the second edition.
bool followsSecondEdition(dom::Node oElement) {
    return std::ranges::any_of(
        std::array{"Text", "Rows", "Where", "OrderBy", "Limit"},
        [&](const char* sName) { return secondAttribute(oElement, sName).has_value(); });
}

} // namespace

std::vector<Finding> lintControlFile(dom::Node oControlRoot) {
    Found all;
    Found found;
    ElementReader reader;
    for (dom::Node oNode = oControlRoot; oNode; oNode = nextInDocument(oNode, oControlRoot)) {
        if (!isElement(oNode))
            continue;
        const Element& element = reader.read(oNode);
        for (const Rule rule : rulesOfSpelling)
            rule(element, found);
        if (!followsSecondEdition(oNode))
            for (const Rule rule : rulesOfNodes)
                rule(element, found);
        for (Finding& finding : found) {
            finding.oNode = oNode;
            finding.lLine = oNode.line();
            finding.sElement = std::string(oNode.nodeName());
            finding.sName = ClsXMLNode(oNode).TagName();
            finding.sPart = partOf(oNode);
            all.push_back(std::move(finding));
        }
        found.clear();
    }
    return all;
}

std::string explain(const Finding& finding) {
    return fmt::format("{}; {}", finding.sText, finding.sRemedy);
}

std::string listed(const Finding& finding, std::string_view sControl) {
    return fmt::format("{}: {}: \"{}\": {}", shownLine(sControl, finding.sPart, finding.lLine),
                       finding.severity == Severity::Warning ? "warning" : "note", finding.sName,
                       explain(finding));
}

} // namespace halvane
