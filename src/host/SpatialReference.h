#pragma once

// What coordinates mean, and where they may lie.

#include "base/Value.h"
#include "host/Forward.h"
#include "host/Geometry.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace halvane::host {

struct XyDomain {
    double dXMin = 0, dYMin = 0, dXMax = 0, dYMax = 0;
    double dFalseX = 0, dFalseY = 0, dScale = 0;
};
/// A Z or M domain.
struct MeasureDomain {
    double dMin = 0, dMax = 0;
    double dFalseOrigin = 0, dScale = 0;
};

struct Bounds {
    double dXMin = 0, dYMin = 0, dXMax = 0, dYMax = 0;
};

/// The way from the coordinates of one reference to those of another. On both sides x is the easting or the
/// longitude, whatever order the references have.
class GisTransformation : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisTransformation"; }
    /// Replaces x and y of each point; z only where both references have heights of their own. Measures stay.
    /// @throws Failure for a point that has no place in the other reference; the points are of no use then.
    virtual void transform(std::span<PointValues> aPoints) const = 0;
    /// The bounds of a box, whose edges are followed at 21 points each. Where they hold the antimeridian of a
    /// geographic reference, they are those of all longitudes.
    /// @throws Failure when an edge has no place in the other reference.
    [[nodiscard]] virtual Bounds transformBounds(const Bounds& bounds) const = 0;
};

class GisSpatialReference : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisSpatialReference"; }
    /// Nothing where the reference has no such domain.
    [[nodiscard]] virtual std::optional<XyDomain> xyDomain() const = 0;
    [[nodiscard]] virtual std::optional<MeasureDomain> zDomain() const = 0;
    [[nodiscard]] virtual std::optional<MeasureDomain> mDomain() const = 0;
    /// One keyword and its value a line, lines separated by line feeds.
    [[nodiscard]] virtual std::string description() const = 0;
    /// Under which a register has the reference: "EPSG:4258"; "" where that is not known.
    [[nodiscard]] virtual std::string authorityCode() const { return {}; }
    /// Whether its authority has the northing or the latitude before the easting or the longitude.
    /// @throws Failure ActionNotSupported where the host does not know.
    [[nodiscard]] virtual bool isNorthFirst() const;
    /// The way to another reference of the same host; nothing where coordinates stay what they are.
    /// @throws Failure when there is none, ActionNotSupported where the host transforms nothing.
    [[nodiscard]] virtual GisTransformationPtr transformationTo(const GisSpatialReference& target) const;
};

} // namespace halvane::host
