#include "host/gdal/facts/Fields.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/facts/SqliteDefaults.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/HandlePool.h"
#include "host/gdal/source/Queries.h"

#include <cpl_conv.h>

#include <algorithm>
#include <array>
#include <set>
#include <utility>

namespace halvane::host::gdal {

namespace {

// What tables of the format say of a field, by its upper-cased name.
struct StatedField {
    std::string sTitle;
    std::string sDomain;
};
using StatedFields = std::unordered_map<std::string, StatedField>;

struct TypeOfField {
    FieldType type;
    ColumnKind kind;
    ValueRole role = ValueRole::AsTyped;
};

TypeOfField typeOf(OGRFieldType fieldType, OGRFieldSubType subType) {
    switch (fieldType) {
    case OFTInteger:
        if (subType == OFSTBoolean)
            return {FieldType::SmallInteger, ColumnKind::Boolean, ValueRole::Boolean};
        return {subType == OFSTInt16 ? FieldType::SmallInteger : FieldType::Integer, ColumnKind::Integer};
    case OFTInteger64:
        return {FieldType::Integer, ColumnKind::Integer64};
    case OFTReal:
        if (subType == OFSTFloat32)
            return {FieldType::Single, ColumnKind::Single};
        return {FieldType::Double, ColumnKind::Double};
    case OFTTime:
        return {FieldType::Date, ColumnKind::Time, ValueRole::Time};
    case OFTDate:
        return {FieldType::Date, ColumnKind::Date, ValueRole::Date};
    case OFTDateTime:
        return {FieldType::Date, ColumnKind::Date, ValueRole::DateTime};
    case OFTBinary:
        return {FieldType::Blob, ColumnKind::Binary};
    case OFTString:
        return {FieldType::String, ColumnKind::Text};
    default:
        return {FieldType::String, ColumnKind::Structured};
    }
}

std::string orElse(const char* pText, std::string_view sFallback) {
    return pText == nullptr || *pText == '\0' ? std::string(sFallback) : std::string(pText);
}

// Gives each field of a table a name of its own, ignoring case, as fields are found. Attributes go before the
// identifier and the shape, and of those that share a name the first one.
class FieldNames {
public:
    explicit FieldNames(OGRFeatureDefn& definition) {
        for (int lColumn = 0; lColumn < definition.GetFieldCount(); ++lColumn)
            taken_.insert(upperCase(definition.GetFieldDefn(lColumn)->GetNameRef()));
    }

    // The name that the format gives to the identifier or the shape, else a name of ours.
    std::string besideAttributes(const char* pGiven, const std::string& sOurs) {
        for (const std::string& sName : {orElse(pGiven, sOurs), sOurs})
            if (taken_.insert(upperCase(sName)).second)
                return sName;
        return numbered(sOurs);
    }

    std::string ofAttribute(const std::string& sName) {
        return given_.insert(upperCase(sName)).second ? sName : numbered(sName);
    }

private:
    std::string numbered(const std::string& sName) {
        for (int lNumber = 1;; ++lNumber) {
            std::string sNumbered = sName + "_" + std::to_string(lNumber);
            if (taken_.insert(upperCase(sNumbered)).second)
                return sNumbered;
        }
    }

    std::set<std::string> taken_; // in capitals
    std::set<std::string> given_; // to attributes so far, in capitals
};

FieldFacts objectIdField(OGRLayer& layer, FieldNames& names) {
    FieldFacts field;
    field.sName = names.besideAttributes(layer.GetFIDColumn(), "OID");
    field.lTypeCode = static_cast<std::int32_t>(FieldType::Oid);
    field.kind = ColumnKind::ObjectId;
    field.bNullable = false;
    field.bEditable = false;
    return field;
}

FieldFacts shapeField(OGRLayer& layer, OGRFeatureDefn& definition, FieldNames& names) {
    FieldFacts field;
    field.sName = names.besideAttributes(layer.GetGeometryColumn(), "SHAPE");
    field.lTypeCode = static_cast<std::int32_t>(FieldType::Geometry);
    field.kind = ColumnKind::Shape;
    const OGRGeomFieldDefn* pGeometry =
        definition.GetGeomFieldCount() > 0 ? definition.GetGeomFieldDefn(0) : nullptr;
    field.bNullable = pGeometry == nullptr || pGeometry->IsNullable() != 0;
    field.bEditable = false;
    return field;
}

FieldFacts attributeField(const OGRFieldDefn& definition, int lColumn, const StatedFields& stated,
                          const ColumnDefaults& defaults) {
    FieldFacts field;
    field.sName = definition.GetNameRef();
    field.sAlias = orElse(definition.GetAlternativeNameRef(), "");
    const TypeOfField type = typeOf(definition.GetType(), definition.GetSubType());
    field.lTypeCode = static_cast<std::int32_t>(type.type);
    field.kind = type.kind;
    field.role = type.role;
    field.lLength = definition.GetWidth();
    field.lPrecision = definition.GetPrecision();
    field.bNullable = definition.IsNullable() != 0;
    field.sDomain = definition.GetDomainName();
    if (const auto pStated = stated.find(upperCase(field.sName)); pStated != stated.end()) {
        // Versions of the library differ in which column they take for the alias, or in whether they take
        // one.
        field.sAlias = orElse(pStated->second.sTitle.c_str(), field.sAlias);
        field.sDomain = orElse(pStated->second.sDomain.c_str(), field.sDomain);
    }
    if (const auto pColumn = defaults.find(upperCase(field.sName)); pColumn != defaults.end()) {
        // The library knows some of these defaults, and changes some.
        field.sDefault = insertedByDefault(pColumn->second, field.kind);
    } else if (definition.GetDefault() != nullptr) {
        field.sDefault = definition.GetDefault();
    }
    field.lColumn = lColumn;
    return field;
}

// A field's name, its title and its domain, from the tables in which the format keeps them.
std::string statedQuery(const LayerHandle& layer) {
    const std::string sTable = layer.layer().GetName();
    if (layer.source().sDriver == "GPKG") {
        return "SELECT column_name, coalesce(nullif(title, ''), name), constraint_name FROM "
               "gpkg_data_columns "
               "WHERE lower(table_name) = lower(" +
               quotedText(sTable) + ")";
    }
    if (isServer(layer.source())) {
        return "SELECT a.attname, col_description(a.attrelid, a.attnum) FROM pg_attribute a WHERE a.attnum > "
               "0 "
               "AND a.attrelid = to_regclass(" +
               quotedText(sTable.find('.') == std::string::npos ? "\"" + sTable + "\"" : sTable) + ")";
    }
    return {};
}

StatedFields statedFieldsOf(const LayerHandle& layer) {
    StatedFields stated;
    const std::string sQuery = statedQuery(layer);
    if (sQuery.empty())
        return stated;
    query(layer.dataset(), sQuery, [&](const QueryRow& row) {
        if (row.optionalText(0))
            stated.emplace(upperCase(row.text(0)), StatedField{row.text(1), row.text(2)});
    });
    return stated;
}

} // namespace

FieldType fieldTypeOf(OGRFieldType type, OGRFieldSubType subType) {
    return typeOf(type, subType).type;
}

GdalFields::GdalFields(const std::vector<FieldFacts>& fields) {
    std::int32_t lIndex = 0;
    for (const FieldFacts& facts : fields) {
        const GdalField& field = fields_.emplace_back(facts);
        columns_.push_back({facts.kind, facts.lColumn});
        add(byName_, field.name(), lIndex);
        add(byAlias_, field.aliasName(), lIndex);
        bShape_ = bShape_ || facts.kind == ColumnKind::Shape;
        ++lIndex;
    }
}

// The first field of a name, ignoring case, stands under all its spellings.
void GdalFields::add(Index& index, std::string_view sName, std::int32_t lIndex) {
    const std::int32_t lFirst = index.emplace(upperCase(sName), lIndex).first->second;
    index.emplace(std::string(sName), lFirst);
}

std::int32_t GdalFields::find(const Index& index, std::string_view sName) {
    auto pFound = index.find(sName);
    if (pFound == index.end())
        pFound = index.find(upperCase(sName));
    return pFound == index.end() ? -1 : pFound->second;
}

std::int32_t GdalFields::count() const {
    return static_cast<std::int32_t>(fields_.size());
}

const GdalField& GdalFields::at(std::int32_t lIndex) const {
    if (lIndex < 0 || lIndex >= count())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return fields_[static_cast<std::size_t>(lIndex)];
}

std::int32_t GdalFields::findField(std::string_view sName) const {
    return find(byName_, sName);
}

std::int32_t GdalFields::findFieldByAliasName(std::string_view sAlias) const {
    return find(byAlias_, sAlias);
}

GdalFieldsPtr GdalFields::with(const std::vector<FieldOverride>& overrides) const {
    std::vector<FieldFacts> fields;
    fields.reserve(fields_.size());
    for (const GdalField& field : fields_)
        fields.push_back(field.facts());
    for (const FieldOverride& change : overrides) {
        const std::int32_t lIndex = findField(change.sName);
        if (lIndex < 0 && change.bMayLack)
            continue;
        if (lIndex < 0) {
            throw Failure(FailureNumber::HostFailure,
                          change.sPlace + ": there is no field \"" + change.sName + "\"");
        }
        FieldFacts& field = fields[static_cast<std::size_t>(lIndex)];
        field.sAlias = change.sAlias.value_or(field.sAlias);
        field.bEditable = change.bEditable.value_or(field.bEditable);
        field.bNullable = change.bNullable.value_or(field.bNullable);
        field.sDomain = change.sDomain.value_or(field.sDomain);
        if (change.sDefault)
            field.sDefault = quotedText(*change.sDefault);
    }
    return std::make_shared<const GdalFields>(fields);
}

GdalFieldsPtr GdalFields::withShapes(ShapeChange change) const {
    std::vector<FieldFacts> fields;
    fields.reserve(fields_.size());
    for (const GdalField& field : fields_)
        fields.push_back(field.facts());
    auto pFields = std::make_shared<GdalFields>(fields);
    pFields->shapeChange_ = std::move(change);
    return pFields;
}

GdalFieldsPtr fieldsOf(const LayerHandle& layer) {
    const StatedFields stated = statedFieldsOf(layer);
    const ColumnDefaults defaults = columnDefaultsOf(layer);
    const ErrorScope errors;
    OGRFeatureDefn& definition = *layer.layer().GetLayerDefn();
    FieldNames names(definition);
    std::vector<FieldFacts> fields;
    fields.push_back(objectIdField(layer.layer(), names));
    if (layer.layer().GetGeomType() != wkbNone)
        fields.push_back(shapeField(layer.layer(), definition, names));
    for (int lColumn = 0; lColumn < definition.GetFieldCount(); ++lColumn) {
        FieldFacts field = attributeField(*definition.GetFieldDefn(lColumn), lColumn, stated, defaults);
        if (std::string sName = names.ofAttribute(field.sName); sName != field.sName) {
            field.sAlias = orElse(field.sAlias.c_str(), field.sName);
            field.sName = std::move(sName);
        }
        // In a column of such a sheet each cell may be the one or the other.
        if (layer.source().sDriver == "XLSX" && definition.GetFieldDefn(lColumn)->GetType() == OFTDateTime) {
            field.kind = ColumnKind::DateOrTime;
            field.role = ValueRole::AsTyped;
        }
        fields.push_back(std::move(field));
    }
    return std::make_shared<const GdalFields>(fields);
}

} // namespace halvane::host::gdal
