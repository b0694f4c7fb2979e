#pragma once

#include "host/SpatialReference.h"

#include <ogr_spatialref.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace halvane::host::gdal {

/// What a map document says of a reference system. Members that are absent are the data's own or derived;
/// a scale of 0 is derived.
struct ReferenceOverride {
    std::string sPlace; ///< where the map document says it
    std::string sDefinition;
    bool bUnlessSame = false; ///< the definition only counts where the data's own system is another
    std::optional<XyDomain> xy;
    std::optional<MeasureDomain> z;
    std::optional<MeasureDomain> m;
};

/// False origins and scales that a format states, since it keeps coordinates as whole numbers. The format's
/// own come before those of a map document.
struct CoordinateGrid {
    std::optional<double> dFalseX;
    std::optional<double> dFalseY;
    std::optional<double> dXyScale;
    std::optional<double> dFalseZ;
    std::optional<double> dZScale;
    std::optional<double> dFalseM;
    std::optional<double> dMScale;
};

/// What a layer's data says of its domains, found out only when it is needed.
struct LayerExtents {
    std::function<CoordinateGrid()> grid;        ///< empty for a format that states none
    std::function<std::optional<XyDomain>()> xy; ///< bounds only
    std::function<std::optional<MeasureDomain>()> z;
    std::function<std::optional<MeasureDomain>()> m;
};

/// A reference system and its domains. A domain that nothing states is derived: the XY domain from the
/// system's area of use, and where it has none from the layer's extent; the Z and M domains from the
/// layer's values. The false origin is then the lower bound rounded down, and the scale
/// 10,000 for each linear unit (1,000,000,000 for each angular unit), unless the format states them.
class GdalSpatialReference : public GisSpatialReference {
public:
    GdalSpatialReference(OGRSpatialReference reference, ReferenceOverride overrides, LayerExtents extents);

    [[nodiscard]] std::optional<XyDomain> xyDomain() const override;
    [[nodiscard]] std::optional<MeasureDomain> zDomain() const override;
    [[nodiscard]] std::optional<MeasureDomain> mDomain() const override;
    [[nodiscard]] std::string description() const override;
    [[nodiscard]] std::string authorityCode() const override;
    [[nodiscard]] bool isNorthFirst() const override;
    [[nodiscard]] GisTransformationPtr transformationTo(const GisSpatialReference& target) const override;

private:
    [[nodiscard]] double scale() const;
    [[nodiscard]] CoordinateGrid grid() const { return extents_.grid ? extents_.grid() : CoordinateGrid{}; }

    OGRSpatialReference reference_;
    ReferenceOverride overrides_;
    LayerExtents extents_;
};

/// @throws Failure for a definition that is not one. None is tested where the register of systems cannot be
///         read, since definitions may be names in it.
void testDefinition(const ReferenceOverride& overrides);

/// @param pOwn the data's own system; may be empty. A format's mark of an undefined system counts as none.
/// @returns nothing when neither the data nor the map document has a system.
/// @throws Failure for a definition that is not one.
[[nodiscard]] GisSpatialReferencePtr makeSpatialReference(const OGRSpatialReference* pOwn,
                                                          const std::optional<ReferenceOverride>& overrides,
                                                          LayerExtents extents);

/// The system that the register has under a code such as "EPSG:4258", in any letter case of the authority.
/// @throws Failure for a text of another form, for a code that is not there, and for a system that does not
/// tell positions on a map.
[[nodiscard]] GisSpatialReferencePtr registeredReference(std::string_view sAuthorityCode);

/// The bounds of the area of use of a geographic or projected system, or of that part of a compound one, in
/// its own units; nothing for another system and for one without such an area.
[[nodiscard]] std::optional<XyDomain> areaOfUse(const OGRSpatialReference& reference);

} // namespace halvane::host::gdal
