#pragma once

#include "host/Rows.h"
#include "host/gdal/facts/Fields.h"
#include "host/gdal/rows/RowCheck.h"

#include <ogr_feature.h>

#include <string>
#include <vector>

namespace halvane::host::gdal {

/// A feature or a plain row; it owns its values.
class GdalRow : public GisRow {
public:
    /// @param pFaults what of the feature could not be read; nothing for most.
    GdalRow(GdalFieldsPtr pFields, OGRFeatureUniquePtr pFeature, RowFaultsPtr pFaults);

    [[nodiscard]] const GisFields& fields() const override { return *pFields_; }
    [[nodiscard]] ValueView value(std::int32_t lIndex) const override;
    [[nodiscard]] std::int64_t objectId() const override { return pFeature_->GetFID(); }
    [[nodiscard]] GisGeometryPtr shape() const override;

    /// Makes this the row of another feature, whose place takes the old one. Only for its cursor, when nobody
    /// else holds the row.
    void exchange(OGRFeatureUniquePtr& pFeature, RowFaultsPtr pFaults);
    /// Lets the feature go; the row cannot be read until it is made another one.
    void release() {
        pFeature_.reset();
        pShape_.reset();
    }

private:
    [[nodiscard]] ValueView attribute(Column column) const;
    void testNumber(int lColumn) const;
    [[nodiscard]] std::string_view structuredText(int lColumn) const;

    GdalFieldsPtr pFields_;
    OGRFeatureUniquePtr pFeature_;
    RowFaultsPtr pFaults_;
    int lFieldCount_;
    mutable GisGeometryPtr pShape_;
    mutable bool bShapeTaken_ = false;
    mutable std::vector<std::unique_ptr<std::string>> texts_; // of structured values, by column
};

} // namespace halvane::host::gdal
