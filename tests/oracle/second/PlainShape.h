#pragma once

// Shapes as documents of the second edition show them: plain lists of points, and what is computed of them.

#include "host/Geometry.h"
#include "host/SpatialReference.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace halvane::oracle {

using Points = std::vector<host::PointValues>;

/// A point, a line, or an area with its holes.
struct ShapeMember {
    std::string sType;         ///< "Point", "LineString" or "Polygon"
    std::vector<Points> aRuns; ///< one; of an area its border and its holes
};

/// Borders run counter-clockwise, holes clockwise; both end where they began.
struct PlainShape {
    std::string sType; ///< as h:Geometry="type" tells it
    std::vector<ShapeMember> aMembers;
    std::size_t nParts = 0; ///< of the data, without empty ones
    bool bHeights = false;  ///< all points have them
    bool bMeasures = false;

    [[nodiscard]] bool isEmpty() const { return aMembers.empty(); }
    [[nodiscard]] bool isOfMembers() const { return sType.starts_with("Multi") || isCollection(); }
    [[nodiscard]] bool isCollection() const { return sType == "GeometryCollection"; }
};

/// @param pWay to other coordinates; nothing: they stay what they are.
/// @throws Failure for a hole without an area, and a point without a place.
[[nodiscard]] PlainShape plainShape(const host::GisGeometry& shape, const host::GisTransformation* pWay);

// ---- Figures ----

[[nodiscard]] host::Bounds boundsOf(const PlainShape& shape);
/// Nothing where there are no areas.
[[nodiscard]] std::optional<double> areaOf(const PlainShape& shape);
/// Of lines and borders; nothing where there are none.
[[nodiscard]] std::optional<double> lengthOf(const PlainShape& shape);
[[nodiscard]] host::PointValues centroidOf(const PlainShape& shape);

// ---- Texts ----

/// How numbers and positions are written.
struct Notation {
    std::function<std::string(double)> fnNumber;
    bool bYFirst = false;

    [[nodiscard]] std::string position(const host::PointValues& point, const std::string& sBetween,
                                       bool bHeight) const;
    /// Separated by blanks.
    [[nodiscard]] std::string positions(const Points& aPoints, const std::string& sBetween,
                                        bool bHeights) const;
};

/// In a form that is a text of its points.
/// @throws Failure for a shape that the form cannot tell.
[[nodiscard]] std::string textOfPoints(const PlainShape& shape, const std::string& sForm,
                                       const Notation& notation);

/// "." before decimals, no exponent. @param lPlaces at most so many decimals; 0: 15 significant digits.
[[nodiscard]] std::string plainCoordinate(double dValue, std::int32_t lPlaces);

} // namespace halvane::oracle
