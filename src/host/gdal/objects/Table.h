#pragma once

#include "host/Explanations.h"
#include "host/Tables.h"
#include "host/gdal/objects/TableReader.h"

#include <memory>
#include <string>

namespace halvane::host::gdal {

class GdalTable : public GisTable, public FieldRules {
public:
    explicit GdalTable(TableReader reader) : reader_(std::move(reader)) {}

    [[nodiscard]] std::string datasetName() const override { return reader_.datasetName(); }
    [[nodiscard]] GisFieldsPtr fields() const override { return reader_.fields(); }
    [[nodiscard]] GisCursorPtr search(const GisQueryFilter* pFilter) override {
        return reader_.search(pFilter == nullptr ? "" : pFilter->sWhereClause);
    }
    [[nodiscard]] GisWorkspacePtr workspace() const override;
    [[nodiscard]] GisSubtypesPtr fieldRules() const override { return reader_.subtypes(); }

    [[nodiscard]] const TableReader& reader() const { return reader_; }

private:
    TableReader reader_;
};

class GdalFeatureClass : public GisFeatureClass {
public:
    explicit GdalFeatureClass(TableReader reader) : reader_(std::move(reader)) {}

    [[nodiscard]] std::string datasetName() const override { return reader_.datasetName(); }
    [[nodiscard]] GisFieldsPtr fields() const override { return reader_.fields(); }
    [[nodiscard]] GisCursorPtr search(const GisQueryFilter* pFilter) override {
        return reader_.search(pFilter == nullptr ? "" : pFilter->sWhereClause);
    }
    [[nodiscard]] GisCursorPtr searchWithoutShapes() override { return reader_.searchWithoutShapes(); }
    [[nodiscard]] GisWorkspacePtr workspace() const override;
    [[nodiscard]] std::int64_t featureCount() const override { return reader_.count(); }
    [[nodiscard]] std::int32_t shapeType() const override;
    [[nodiscard]] GisSpatialReferencePtr spatialReference() const override {
        return reader_.spatialReference();
    }
    [[nodiscard]] GisSubtypesPtr subtypes() const override { return reader_.subtypes(); }

    [[nodiscard]] const TableReader& reader() const { return reader_; }

private:
    TableReader reader_;
};
using GdalFeatureClassPtr = std::shared_ptr<GdalFeatureClass>;

/// The shape type code of a layer; 0 when it holds shapes of several types.
[[nodiscard]] std::int32_t shapeTypeOf(OGRLayer& layer);

} // namespace halvane::host::gdal
