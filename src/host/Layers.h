#pragma once

// The layers of a map.

#include "base/Value.h"
#include "host/Forward.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane::host {

/// A layer of a map; the kinds are the derived interfaces.
class GisLayer : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisLayer"; }
    [[nodiscard]] virtual std::string name() const = 0;
};

class GisFeatureLayer : public GisLayer {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisFeatureLayer"; }
    [[nodiscard]] virtual GisFeatureClassPtr featureClass() const = 0;
    virtual void setFeatureClass(GisFeatureClassPtr pFeatureClass) = 0;
    /// How many features are selected.
    [[nodiscard]] virtual std::int32_t selectionCount() const = 0;
    /// The selected features in selection order.
    [[nodiscard]] virtual GisCursorPtr searchSelection() = 0;
    /// The layer seen as a table: its feature class.
    [[nodiscard]] virtual GisTablePtr asTable() const = 0;
    [[nodiscard]] virtual GisSpatialReferencePtr spatialReference() const = 0;
};

class GisRasterLayer : public GisLayer {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisRasterLayer"; }
    [[nodiscard]] virtual std::string filePath() const = 0;
};

/// A dataset that is neither a table nor a feature class.
class GisDataset : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisDataset"; }
    [[nodiscard]] virtual GisWorkspacePtr workspace() const = 0;
};

class GisTinLayer : public GisLayer {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisTinLayer"; }
    [[nodiscard]] virtual GisDatasetPtr dataset() const = 0;
};

class GisGroupLayer : public GisLayer {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisGroupLayer"; }
    [[nodiscard]] virtual std::int32_t layerCount() const = 0;
    [[nodiscard]] virtual GisLayerPtr layer(std::int32_t lIndex) const = 0;
};

} // namespace halvane::host
