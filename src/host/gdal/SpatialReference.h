#pragma once

#include "host/Host.h"

#include <ogr_spatialref.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace halvane::host::gdal {

/// What a map document says of a reference system. Members that are absent are the data's own or derived;
/// a scale of 0 is derived.
struct ReferenceOverride {
    std::string sPlace; ///< where the map document says it
    std::string sDefinition;
    std::optional<XyDomain> xy;
    std::optional<MeasureDomain> z;
    std::optional<MeasureDomain> m;
};

/// The extents of a layer, found out only when they are needed.
struct LayerExtents {
    std::function<std::optional<XyDomain>()> xy; ///< bounds only
    std::function<std::optional<MeasureDomain>()> z;
    std::function<std::optional<MeasureDomain>()> m;
};

/// A reference system and its domains. A domain that nothing states is derived: the XY domain from the
/// system's area of use, and where it has none from the layer's extent; the Z and M domains from the
/// layer's values. The false origin is then the lower bound rounded down, and the scale
/// 10,000 for each linear unit (1,000,000,000 for each degree).
class GdalSpatialReference : public GisSpatialReference {
public:
    GdalSpatialReference(OGRSpatialReference reference, ReferenceOverride overrides, LayerExtents extents);

    [[nodiscard]] std::optional<XyDomain> xyDomain() const override;
    [[nodiscard]] std::optional<MeasureDomain> zDomain() const override;
    [[nodiscard]] std::optional<MeasureDomain> mDomain() const override;
    [[nodiscard]] std::string description() const override;

private:
    [[nodiscard]] double scale() const;

    OGRSpatialReference reference_;
    ReferenceOverride overrides_;
    LayerExtents extents_;
};

/// @param pOwn the data's own system; may be empty.
/// @returns nothing when neither the data nor the map document has a system.
/// @throws Failure for a definition that is not one.
[[nodiscard]] GisSpatialReferencePtr makeSpatialReference(const OGRSpatialReference* pOwn,
                                                          const std::optional<ReferenceOverride>& overrides,
                                                          LayerExtents extents);

/// The bounds of a system's area of use in its own units; nothing without one.
[[nodiscard]] std::optional<XyDomain> areaOfUse(const OGRSpatialReference& reference);

} // namespace halvane::host::gdal
