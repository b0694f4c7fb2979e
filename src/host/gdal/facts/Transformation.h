#pragma once

#include "base/Failure.h"
#include "host/SpatialReference.h"

#include <ogr_spatialref.h>

#include <memory>
#include <string>

namespace halvane::host::gdal {

/// A transformation by the data library, without network. Heights change only where both references have
/// some; otherwise they stay, and do not count. Where no way but the guess is known that two datums are the
/// same, there is none.
class GdalTransformation : public GisTransformation {
public:
    /// Both with x before y.
    /// @throws Failure where no way is known.
    GdalTransformation(const OGRSpatialReference& source, const OGRSpatialReference& target);

    void transform(std::span<PointValues> aPoints) const override;
    [[nodiscard]] Bounds transformBounds(const Bounds& bounds) const override;

private:
    [[nodiscard]] Failure noPlace(const PointValues& point) const;

    std::string sFrom_; ///< what people call the references
    std::string sTo_;
    bool bHeights_;
    double dHalfTurn_ = 0; ///< of a geographic target; else 0
    std::unique_ptr<OGRCoordinateTransformation> pTransformation_;
};

/// Whether coordinates of one reference are those of the other, the order of the axes apart.
[[nodiscard]] bool haveSameCoordinates(const OGRSpatialReference& one, const OGRSpatialReference& other);

/// What people call a reference: its code, else its name.
[[nodiscard]] std::string shownName(const OGRSpatialReference& reference);

/// Under which a register has it; "" for none.
[[nodiscard]] std::string codeOf(const OGRSpatialReference& reference);

} // namespace halvane::host::gdal
