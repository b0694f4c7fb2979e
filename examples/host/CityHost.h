// The least that an export needs of a host: one map with one table.
#pragma once

#include "base/Failure.h"
#include "base/Text.h"
#include "host/Application.h"
#include "host/Fields.h"
#include "host/Map.h"
#include "host/Rows.h"
#include "host/Tables.h"

#include <array>

namespace example {

using namespace halvane;
using namespace halvane::host;

inline constexpr std::array<std::string_view, 2> aCities{"Bergen", "Graz"};

struct CityField final : GisField {
    CityField(std::string_view sItsName, FieldType itsType) : sName(sItsName), type(itsType) {}
    std::string_view name() const override { return sName; }
    std::string_view aliasName() const override { return sName; }
    std::int32_t typeCode() const override { return static_cast<std::int32_t>(type); }
    std::int32_t length() const override { return 0; }
    std::int32_t precision() const override { return 0; }
    bool isNullable() const override { return false; }
    bool isEditable() const override { return type != FieldType::Oid; }

    std::string_view sName;
    FieldType type;
};

struct CityFields final : GisFields {
    std::int32_t count() const override { return 2; }
    const GisField& field(std::int32_t lIndex) const override {
        if (lIndex < 0 || lIndex >= count())
            throw Failure::of(FailureNumber::SubscriptOutOfRange);
        return lIndex == 0 ? id : name;
    }
    std::int32_t findField(std::string_view sName) const override {
        return equalIgnoringCase(sName, id.sName) ? 0 : equalIgnoringCase(sName, name.sName) ? 1 : -1;
    }
    std::int32_t findFieldByAliasName(std::string_view sAlias) const override { return findField(sAlias); }

    CityField id{"ID", FieldType::Oid}, name{"NAME", FieldType::String};
};

struct CityRow final : GisRow {
    CityRow(GisFieldsPtr pItsFields, std::size_t nItsCity)
        : pFields(std::move(pItsFields)), nCity(nItsCity) {}
    const GisFields& fields() const override { return *pFields; }
    ValueView value(std::int32_t lIndex) const override {
        return pFields->field(lIndex).name() == "ID" ? ValueView(objectId()) : ValueView(aCities[nCity]);
    }
    std::int64_t objectId() const override { return static_cast<std::int64_t>(nCity) + 1; }
    GisGeometryPtr shape() const override { return nullptr; }

    GisFieldsPtr pFields; // of the table, which may go before its rows do
    std::size_t nCity;
};

struct CityCursor final : GisCursor {
    explicit CityCursor(GisFieldsPtr pItsFields) : pFields(std::move(pItsFields)) {}
    GisRowPtr nextRow() override {
        return nNext < aCities.size() ? std::make_shared<CityRow>(pFields, nNext++) : nullptr;
    }

    GisFieldsPtr pFields;
    std::size_t nNext = 0;
};

struct CityTable final : GisTable {
    std::string datasetName() const override { return "Cities"; }
    GisFieldsPtr fields() const override { return pFields; }
    GisCursorPtr search(const GisQueryFilter* pFilter) override {
        if (pFilter != nullptr)
            throw Failure(FailureNumber::HostFailure, "No clause is understood: " + pFilter->sWhereClause);
        return std::make_shared<CityCursor>(pFields);
    }
    GisWorkspacePtr workspace() const override { return nullptr; }

    GisFieldsPtr pFields = std::make_shared<CityFields>();
};

struct CityMap final : GisMap {
    std::string name() const override { return "Country"; }
    std::int32_t layerCount() const override { return 0; }
    GisLayerPtr layer(std::int32_t) const override { throw Failure::of(FailureNumber::SubscriptOutOfRange); }
    std::int32_t standaloneTableCount() const override { return 1; }
    GisTablePtr standaloneTable(std::int32_t lIndex) const override {
        return lIndex == 0 ? pTable : throw Failure::of(FailureNumber::SubscriptOutOfRange);
    }
    GisSpatialReferencePtr spatialReference() const override { return nullptr; }

    GisTablePtr pTable = std::make_shared<CityTable>();
};

struct CityDocument final : GisMapDocument {
    GisMapPtr focusMap() const override { return pMap; }
    std::int32_t mapCount() const override { return 1; }
    GisMapPtr map(std::int32_t lIndex) const override {
        return lIndex == 0 ? pMap : throw Failure::of(FailureNumber::SubscriptOutOfRange);
    }

    GisMapPtr pMap = std::make_shared<CityMap>();
};

/// Opens nothing that is not in the map.
struct CityHost final : GisHost {
    GisFeatureLayerPtr newFeatureLayer() override { throw nothingElse(); }
    GisPropertySetPtr newPropertySet() override { throw nothingElse(); }
    GisWorkspaceFactoryPtr newWorkspaceFactory(WorkspaceFactoryKind) override { throw nothingElse(); }
    GisCatalogPtr newCatalog() override { throw nothingElse(); }
    GisNumericFormatPtr newNumericFormat() override { throw nothingElse(); }
    ObjectPtr createComponent(std::string_view) override {
        throw Failure::of(FailureNumber::CannotCreateComponent);
    }
    Date today() const override { return {2024, 3, 7}; }
    char pathSeparator() const override { return '/'; }

    static Failure nothingElse() {
        return {FailureNumber::HostFailure, "There are cities, and nothing else"};
    }
};

} // namespace example
