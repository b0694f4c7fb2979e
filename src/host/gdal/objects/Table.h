#pragma once

#include "host/Explanations.h"
#include "host/Tables.h"
#include "host/gdal/objects/TableReader.h"

#include <memory>
#include <string>

namespace halvane::host::gdal {

/// What tables and feature classes answer alike.
template<class Interface>
class TableFace : public Interface {
public:
    explicit TableFace(TableReader reader) : reader_(std::move(reader)) {}

    [[nodiscard]] std::string datasetName() const override { return reader_.datasetName(); }
    [[nodiscard]] GisFieldsPtr fields() const override { return reader_.fields(); }
    [[nodiscard]] GisCursorPtr search(const GisQueryFilter* pFilter) override {
        return reader_.search(pFilter == nullptr ? "" : pFilter->sWhereClause);
    }
    [[nodiscard]] GisCursorPtr searchNarrowed(const RowCondition& condition, bool bShapes) override {
        return reader_.searchNarrowed(condition, bShapes);
    }
    [[nodiscard]] GisWorkspacePtr workspace() const override;

    [[nodiscard]] const TableReader& reader() const { return reader_; }

private:
    TableReader reader_;
};

class GdalTable : public TableFace<GisTable>, public FieldRules {
public:
    using TableFace::TableFace;

    [[nodiscard]] GisSubtypesPtr fieldRules() const override { return reader().subtypes(); }
};

class GdalFeatureClass : public TableFace<GisFeatureClass> {
public:
    using TableFace::TableFace;

    [[nodiscard]] GisCursorPtr searchWithoutShapes() override { return reader().searchWithoutShapes(); }
    [[nodiscard]] std::int64_t featureCount() const override { return reader().count(); }
    [[nodiscard]] std::int32_t shapeType() const override;
    [[nodiscard]] GisSpatialReferencePtr spatialReference() const override {
        return reader().spatialReference();
    }
    [[nodiscard]] GisSubtypesPtr subtypes() const override { return reader().subtypes(); }
};
using GdalFeatureClassPtr = std::shared_ptr<GdalFeatureClass>;

/// The shape type code of a layer; 0 when it holds shapes of several types.
[[nodiscard]] std::int32_t shapeTypeOf(OGRLayer& layer);

} // namespace halvane::host::gdal
