#pragma once

#include "host/Rows.h"
#include "host/gdal/facts/Fields.h"
#include "host/gdal/rows/RowCheck.h"
#include "host/gdal/source/HandlePool.h"

#include <ogr_feature.h>

#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

namespace halvane::host::gdal {

/// Features by their identifiers, in the order of the list.
class GdalSelectionCursor : public GisCursor {
public:
    GdalSelectionCursor(LayerHandle layer, GdalFieldsPtr pFields, std::vector<std::int64_t> ids);

    [[nodiscard]] GisRowPtr nextRow() override;

private:
    void readAhead();

    LayerHandle layer_;
    RowCheck check_;
    GdalFieldsPtr pFields_;
    std::vector<std::int64_t> ids_;
    std::size_t lNext_ = 0;
    bool bSequential_;
    std::unordered_map<std::int64_t, std::pair<OGRFeatureUniquePtr, RowFaultsPtr>>
        features_; // of formats without random access
};

} // namespace halvane::host::gdal
