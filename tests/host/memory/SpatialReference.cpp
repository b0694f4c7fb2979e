#include "host/memory/SpatialReference.h"

#include "base/Failure.h"

#include <array>
#include <cmath>

namespace halvane::host::memory {

namespace {

class MemoryTransformation final : public GisTransformation, private Scripted {
public:
    MemoryTransformation(const PlaceInWorld& from, const PlaceInWorld& to,
                         std::shared_ptr<FaultScript> pFaults)
        : Scripted(std::move(pFaults)), from_(from), to_(to) {}

    void transform(std::span<PointValues> aPoints) const override {
        pass("GisTransformation", "transform");
        for (PointValues& point : aPoints) {
            const double dX = from_.dX + from_.dScale * point.dX;
            const double dY = from_.dY + from_.dScale * point.dY;
            constexpr double dEnd = 1e6;
            if (!(std::abs(dX) <= dEnd && std::abs(dY) <= dEnd))
                throw Failure(FailureNumber::HostFailure, "the point lies outside the world");
            point.dX = (dX - to_.dX) / to_.dScale;
            point.dY = (dY - to_.dY) / to_.dScale;
        }
    }
    [[nodiscard]] Bounds transformBounds(const Bounds& bounds) const override {
        std::array<PointValues, 2> aCorners{
            {{bounds.dXMin, bounds.dYMin, 0, 0}, {bounds.dXMax, bounds.dYMax, 0, 0}}};
        transform(aCorners);
        return {aCorners[0].dX, aCorners[0].dY, aCorners[1].dX, aCorners[1].dY};
    }

private:
    PlaceInWorld from_;
    PlaceInWorld to_;
};

} // namespace

MemorySpatialReferencePtr MemorySpatialReference::make(std::string sDescription) {
    return std::make_shared<MemorySpatialReference>(std::move(sDescription));
}

std::optional<XyDomain> MemorySpatialReference::xyDomain() const {
    pass("GisSpatialReference", "xyDomain");
    return xyDomain_;
}

std::optional<MeasureDomain> MemorySpatialReference::zDomain() const {
    pass("GisSpatialReference", "zDomain");
    return zDomain_;
}

std::optional<MeasureDomain> MemorySpatialReference::mDomain() const {
    pass("GisSpatialReference", "mDomain");
    return mDomain_;
}

std::string MemorySpatialReference::description() const {
    pass("GisSpatialReference", "description");
    return sDescription_;
}

std::string MemorySpatialReference::authorityCode() const {
    pass("GisSpatialReference", "authorityCode");
    return sCode_;
}

bool MemorySpatialReference::isNorthFirst() const {
    pass("GisSpatialReference", "isNorthFirst");
    return bNorthFirst_;
}

GisTransformationPtr MemorySpatialReference::transformationTo(const GisSpatialReference& target) const {
    pass("GisSpatialReference", "transformationTo");
    const PlaceInWorld& to = dynamic_cast<const MemorySpatialReference&>(target).place_;
    if (place_.dX == to.dX && place_.dY == to.dY && place_.dScale == to.dScale)
        return nullptr;
    return std::make_shared<MemoryTransformation>(place_, to, script());
}

} // namespace halvane::host::memory
