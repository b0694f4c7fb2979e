#include "host/gdal/objects/Subtypes.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/facts/TableDefinition.h"
#include "host/gdal/facts/Values.h"
#include "host/gdal/objects/Workspace.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Queries.h"

#include <algorithm>

namespace halvane::host::gdal {

namespace {

// @param sRow the table and its row, for messages.
std::int32_t codeOf(const std::optional<std::string>& sText, const std::string& sRow) {
    const auto lCode = subtypeCodeOf(sText.value_or(""));
    if (!lCode) {
        throw Failure(FailureNumber::HostFailure,
                      sRow + ": the code " + (sText ? "\"" + *sText + "\"" : "NULL") +
                          " is not a whole number from -2147483648 to 2147483647");
    }
    return *lCode;
}

void addSubtype(SubtypesFacts& facts, const QueryRow& row) {
    const std::string sRow = "halvane_subtypes, row " + row.text(4);
    const std::string sField = row.text(0);
    const std::int32_t lCode = codeOf(row.optionalText(1), sRow);
    const bool bFirst = facts.subtypes.empty();
    if (!bFirst && !equalIgnoringCase(sField, facts.sField)) {
        throw Failure(FailureNumber::HostFailure, sRow + ": its field \"" + sField +
                                                      "\" is not that of the table's first subtype, \"" +
                                                      facts.sField + "\"");
    }
    facts.sField = bFirst ? sField : facts.sField;
    facts.lDefault = bFirst || row.whole(3) != 0 ? lCode : facts.lDefault;
    facts.subtypes.push_back({lCode, row.text(2), {}});
}

void addSubtypeField(SubtypesFacts& facts, const QueryRow& row) {
    const std::int32_t lCode = codeOf(row.optionalText(0), "halvane_subtype_fields, row " + row.text(4));
    for (SubtypeFacts& subtype : facts.subtypes)
        if (subtype.lCode == lCode)
            subtype.fields.push_back({row.text(1), row.optionalText(2), row.optionalText(3)});
}

// The tables that docs/geopackage-extension.md specifies. Their codes may hold anything, whatever their type.
std::optional<SubtypesFacts> geoPackageSubtypes(const LayerHandle& layer) {
    const std::string sTable = quotedText(layer.layer().GetName());
    SubtypesFacts facts;
    query(
        layer.dataset(),
        "SELECT field_name, CAST(code AS TEXT), name, is_default, CAST(rowid AS TEXT) FROM halvane_subtypes "
        "WHERE lower(table_name) = lower(" +
            sTable + ") ORDER BY rowid",
        [&](const QueryRow& row) { addSubtype(facts, row); });
    query(layer.dataset(),
          "SELECT CAST(code AS TEXT), field_name, domain_name, default_value, CAST(rowid AS TEXT) FROM "
          "halvane_subtype_fields WHERE lower(table_name) = lower(" +
              sTable + ") ORDER BY rowid",
          [&](const QueryRow& row) { addSubtypeField(facts, row); });
    return facts.subtypes.empty() ? std::nullopt : std::optional(std::move(facts));
}

} // namespace

std::optional<SubtypesFacts> subtypesOf(const LayerHandle& layer) {
    if (layer.source().sDriver == "GPKG")
        return geoPackageSubtypes(layer);
    if (layer.source().sDriver == "OpenFileGDB") {
        const auto sDefinition = definitionOf(layer);
        return sDefinition ? subtypesOfDefinition(*sDefinition) : std::nullopt;
    }
    return std::nullopt;
}

GdalSubtypes::GdalSubtypes(std::optional<SubtypesFacts> facts, GdalFieldsPtr pFields,
                           GdalWorkspacePtr pWorkspace)
    : facts_(std::move(facts)), pFields_(std::move(pFields)), pWorkspace_(std::move(pWorkspace)) {}

std::int32_t GdalSubtypes::subtypeCount() const {
    return facts_ ? static_cast<std::int32_t>(facts_->subtypes.size()) : 0;
}

std::int32_t GdalSubtypes::subtypeCode(std::int32_t lIndex) const {
    if (lIndex < 0 || lIndex >= subtypeCount())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return facts_->subtypes[static_cast<std::size_t>(lIndex)].lCode;
}

const SubtypeFacts* GdalSubtypes::find(std::int32_t lCode) const {
    if (!facts_)
        return nullptr;
    const auto pFound = std::find_if(facts_->subtypes.begin(), facts_->subtypes.end(),
                                     [&](const SubtypeFacts& subtype) { return subtype.lCode == lCode; });
    return pFound == facts_->subtypes.end() ? nullptr : &*pFound;
}

const SubtypeFieldFacts* GdalSubtypes::findField(std::int32_t lCode, std::string_view sFieldName) const {
    const SubtypeFacts* pSubtype = find(lCode);
    if (pSubtype == nullptr)
        return nullptr;
    const auto pFound =
        std::find_if(pSubtype->fields.begin(), pSubtype->fields.end(), [&](const SubtypeFieldFacts& field) {
            return equalIgnoringCase(field.sName, sFieldName);
        });
    return pFound == pSubtype->fields.end() ? nullptr : &*pFound;
}

std::string GdalSubtypes::subtypeName(std::int32_t lCode) const {
    const SubtypeFacts* pSubtype = find(lCode);
    return pSubtype == nullptr ? "" : pSubtype->sName;
}

GisDomainPtr GdalSubtypes::domain(std::int32_t lCode, std::string_view sFieldName) const {
    const SubtypeFieldFacts* pOwn = findField(lCode, sFieldName);
    const std::int32_t lIndex = pFields_->findField(sFieldName);
    std::string sDomain = lIndex < 0 ? "" : pFields_->at(lIndex).facts().sDomain;
    if (pOwn != nullptr && pOwn->sDomain)
        sDomain = *pOwn->sDomain;
    return sDomain.empty() ? nullptr : pWorkspace_->findDomain(sDomain);
}

Value GdalSubtypes::defaultValue(std::int32_t lCode, std::string_view sFieldName) const {
    const std::int32_t lIndex = pFields_->findField(sFieldName);
    if (lIndex < 0)
        return Null{};
    const FieldFacts& field = pFields_->at(lIndex).facts();
    const auto type = static_cast<FieldType>(field.lTypeCode);
    if (const SubtypeFieldFacts* pOwn = findField(lCode, sFieldName); pOwn != nullptr && pOwn->sDefault)
        return parseValue(*pOwn->sDefault, type).value_or(Value(*pOwn->sDefault));
    return field.sDefault ? parseDefault(*field.sDefault, type) : Value(Null{});
}

} // namespace halvane::host::gdal
