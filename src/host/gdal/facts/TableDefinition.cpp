#include "host/gdal/facts/TableDefinition.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/facts/Markup.h"
#include "host/gdal/facts/Values.h"
#include "host/gdal/source/Queries.h"

#include <charconv>
#include <string_view>
#include <variant>
#include <vector>

namespace halvane::host::gdal {

namespace {

// The text of the first child of that name.
std::optional<std::string> childText(const MarkupElement& element, std::string_view sName) {
    const std::vector<MarkupElement> children = element.children(sName);
    return children.empty() ? std::nullopt : std::optional(children.front().content());
}

std::int32_t codeIn(const MarkupElement& element, std::string_view sName) {
    const std::string sText = childText(element, sName).value_or("0");
    const auto lCode = subtypeCodeOf(trimBlanks(sText));
    if (!lCode) {
        throw Failure(FailureNumber::HostFailure,
                      "the table's definition, line " + std::to_string(element.line()) + ": " +
                          std::string(sName) + " \"" + sText + "\" is not a whole number of 32 bits");
    }
    return *lCode;
}

std::optional<double> numberIn(const MarkupElement& element, std::string_view sName) {
    const auto value = parseValue(childText(element, sName).value_or(""), FieldType::Double);
    return value ? std::optional(std::get<double>(*value)) : std::nullopt;
}

std::optional<double> scaleIn(const MarkupElement& element, std::string_view sName) {
    const auto dScale = numberIn(element, sName);
    return dScale && *dScale > 0 ? dScale : std::nullopt;
}

SubtypeFacts subtypeOf(const MarkupElement& element) {
    SubtypeFacts subtype{codeIn(element, "SubtypeCode"), childText(element, "SubtypeName").value_or(""), {}};
    for (const MarkupElement& infos : element.children("FieldInfos")) {
        for (const MarkupElement& info : infos.children("SubtypeFieldInfo")) {
            subtype.fields.push_back({childText(info, "FieldName").value_or(""),
                                      childText(info, "DomainName"), childText(info, "DefaultValue")});
        }
    }
    return subtype;
}

} // namespace

std::optional<std::int32_t> subtypeCodeOf(std::string_view sText) {
    std::int32_t lCode = 0;
    const auto [pEnd, code] = std::from_chars(sText.data(), sText.data() + sText.size(), lCode);
    return code == std::errc() && pEnd == sText.data() + sText.size() ? std::optional(lCode) : std::nullopt;
}

std::optional<std::string> definitionOf(const LayerHandle& layer) {
    std::optional<std::string> sDefinition;
    if (layer.source().sDriver == "OpenFileGDB") {
        query(layer.dataset(), "GetLayerDefinition " + std::string(layer.layer().GetName()),
              [&](const QueryRow& row) { sDefinition = row.optionalText(0); });
    }
    // The library answers so for databases of an older version, which have none.
    return sDefinition && trimBlanks(*sDefinition).empty() ? std::nullopt : sDefinition;
}

std::optional<SubtypesFacts> subtypesOfDefinition(const std::string& sMarkup) {
    const MarkupDocument pDocument = parseMarkupText(sMarkup, "the table's definition");
    const MarkupElement root(xmlDocGetRootElement(pDocument.get()));
    SubtypesFacts facts;
    facts.sField = childText(root, "SubtypeFieldName").value_or("");
    facts.lDefault = codeIn(root, "DefaultSubtypeCode");
    for (const MarkupElement& list : root.children("Subtypes"))
        for (const MarkupElement& element : list.children("Subtype"))
            facts.subtypes.push_back(subtypeOf(element));
    return facts.sField.empty() || facts.subtypes.empty() ? std::nullopt : std::optional(std::move(facts));
}

CoordinateGrid gridOfDefinition(const std::string& sMarkup) {
    const MarkupDocument pDocument = parseMarkupText(sMarkup, "the table's definition");
    const std::vector<MarkupElement> references =
        MarkupElement(xmlDocGetRootElement(pDocument.get())).children("SpatialReference");
    if (references.empty())
        return {};
    const MarkupElement& reference = references.front();
    return {numberIn(reference, "XOrigin"), numberIn(reference, "YOrigin"), scaleIn(reference, "XYScale"),
            numberIn(reference, "ZOrigin"), scaleIn(reference, "ZScale"),   numberIn(reference, "MOrigin"),
            scaleIn(reference, "MScale")};
}

} // namespace halvane::host::gdal
