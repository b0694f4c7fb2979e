#include "host/gdal/Subtypes.h"

#include "collection/Failure.h"
#include "collection/Text.h"
#include "host/gdal/Errors.h"
#include "host/gdal/Markup.h"
#include "host/gdal/Queries.h"
#include "host/gdal/Values.h"
#include "host/gdal/Workspace.h"

#include <algorithm>

namespace halvane::host::gdal {

namespace {

// The tables that docs/geopackage-extension.md specifies.
std::optional<SubtypesFacts> geoPackageSubtypes(const LayerHandle& layer) {
    const std::string sTable = quoted(layer.layer().GetName());
    SubtypesFacts facts;
    query(layer.dataset(),
          "SELECT field_name, code, name, is_default FROM halvane_subtypes WHERE lower(table_name) = lower(" +
              sTable + ") ORDER BY rowid",
          [&](const QueryRow& row) {
              const bool bFirst = facts.subtypes.empty();
              facts.sField = bFirst ? row.text(0) : facts.sField;
              facts.lDefault = bFirst || row.whole(3) != 0 ? row.whole(1) : facts.lDefault;
              facts.subtypes.push_back({row.whole(1), row.text(2), {}});
          });
    query(layer.dataset(),
          "SELECT code, field_name, domain_name, default_value FROM halvane_subtype_fields WHERE "
          "lower(table_name) = lower(" +
              sTable + ") ORDER BY rowid",
          [&](const QueryRow& row) {
              for (SubtypeFacts& subtype : facts.subtypes) {
                  if (subtype.lCode == row.whole(0)) {
                      subtype.fields.push_back({row.text(1), row.optionalText(2), row.optionalText(3)});
                  }
              }
          });
    return facts.subtypes.empty() ? std::nullopt : std::optional(std::move(facts));
}

std::optional<SubtypesFacts> definedSubtypes(const LayerHandle& layer) {
    std::optional<SubtypesFacts> facts;
    query(layer.dataset(), "GetLayerDefinition " + std::string(layer.layer().GetName()),
          [&](const QueryRow& row) { facts = subtypesOfDefinition(row.text(0)); });
    return facts;
}

// The text of the first child of that name.
std::optional<std::string> childText(const MarkupElement& element, std::string_view sName) {
    const std::vector<MarkupElement> children = element.children(sName);
    return children.empty() ? std::nullopt : std::optional(children.front().content());
}

std::int32_t wholeOf(const std::optional<std::string>& sText) {
    const auto value = parseValue(sText.value_or("0"), FieldType::Integer);
    const auto* pWhole = value ? std::get_if<std::int32_t>(&*value) : nullptr;
    return pWhole == nullptr ? 0 : *pWhole;
}

SubtypeFacts subtypeOf(const MarkupElement& element) {
    SubtypeFacts subtype{
        wholeOf(childText(element, "SubtypeCode")), childText(element, "SubtypeName").value_or(""), {}};
    for (const MarkupElement& infos : element.children("FieldInfos")) {
        for (const MarkupElement& info : infos.children("SubtypeFieldInfo")) {
            subtype.fields.push_back({childText(info, "FieldName").value_or(""),
                                      childText(info, "DomainName"), childText(info, "DefaultValue")});
        }
    }
    return subtype;
}

} // namespace

std::optional<SubtypesFacts> subtypesOfDefinition(const std::string& sMarkup) {
    const MarkupDocument pDocument = parseMarkupText(sMarkup, "the table's definition");
    const MarkupElement root(xmlDocGetRootElement(pDocument.get()));
    SubtypesFacts facts;
    facts.sField = childText(root, "SubtypeFieldName").value_or("");
    facts.lDefault = wholeOf(childText(root, "DefaultSubtypeCode"));
    for (const MarkupElement& list : root.children("Subtypes")) {
        for (const MarkupElement& element : list.children("Subtype")) {
            facts.subtypes.push_back(subtypeOf(element));
        }
    }
    return facts.sField.empty() || facts.subtypes.empty() ? std::nullopt : std::optional(std::move(facts));
}

std::optional<SubtypesFacts> subtypesOf(const LayerHandle& layer) {
    if (layer.source().sDriver == "GPKG") {
        return geoPackageSubtypes(layer);
    }
    if (layer.source().sDriver == "OpenFileGDB") {
        return definedSubtypes(layer);
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
    if (lIndex < 0 || lIndex >= subtypeCount()) {
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    }
    return facts_->subtypes[static_cast<std::size_t>(lIndex)].lCode;
}

const SubtypeFacts* GdalSubtypes::find(std::int32_t lCode) const {
    if (!facts_) {
        return nullptr;
    }
    const auto pFound = std::find_if(facts_->subtypes.begin(), facts_->subtypes.end(),
                                     [&](const SubtypeFacts& subtype) { return subtype.lCode == lCode; });
    return pFound == facts_->subtypes.end() ? nullptr : &*pFound;
}

const SubtypeFieldFacts* GdalSubtypes::findField(std::int32_t lCode, std::string_view sFieldName) const {
    const SubtypeFacts* pSubtype = find(lCode);
    if (pSubtype == nullptr) {
        return nullptr;
    }
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
    if (pOwn != nullptr && pOwn->sDomain) {
        sDomain = *pOwn->sDomain;
    }
    return sDomain.empty() ? nullptr : pWorkspace_->findDomain(sDomain);
}

Value GdalSubtypes::defaultValue(std::int32_t lCode, std::string_view sFieldName) const {
    const std::int32_t lIndex = pFields_->findField(sFieldName);
    if (lIndex < 0) {
        return Null{};
    }
    const FieldFacts& field = pFields_->at(lIndex).facts();
    const auto type = static_cast<FieldType>(field.lTypeCode);
    if (const SubtypeFieldFacts* pOwn = findField(lCode, sFieldName); pOwn != nullptr && pOwn->sDefault) {
        return parseValue(*pOwn->sDefault, type).value_or(Value(*pOwn->sDefault));
    }
    return field.sDefault ? parseDefault(*field.sDefault, type) : Value(Null{});
}

} // namespace halvane::host::gdal
