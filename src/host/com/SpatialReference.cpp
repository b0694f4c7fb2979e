#include "host/com/SpatialReference.h"

namespace halvane::host::com {

namespace {

std::optional<MeasureDomain> measureDomain(const LateBound& reference, std::string_view sMember) {
    auto pDispatch = reference.object(sMember);
    if (!pDispatch)
        return std::nullopt;
    const LateBound domain(reference.context(), kindMeasureDomain, std::move(pDispatch));
    return MeasureDomain{.dMin = domain.number("Min"),
                         .dMax = domain.number("Max"),
                         .dFalseOrigin = domain.number("FalseOrigin"),
                         .dScale = domain.number("Scale")};
}

} // namespace

std::optional<XyDomain> ComSpatialReference::xyDomain() const {
    auto pDispatch = object().object("XyDomain");
    if (!pDispatch)
        return std::nullopt;
    const LateBound domain(context(), kindXyDomain, std::move(pDispatch));
    return XyDomain{.dXMin = domain.number("XMin"),
                    .dYMin = domain.number("YMin"),
                    .dXMax = domain.number("XMax"),
                    .dYMax = domain.number("YMax"),
                    .dFalseX = domain.number("FalseX"),
                    .dFalseY = domain.number("FalseY"),
                    .dScale = domain.number("Scale")};
}

std::optional<MeasureDomain> ComSpatialReference::zDomain() const {
    return measureDomain(object(), "ZDomain");
}

std::optional<MeasureDomain> ComSpatialReference::mDomain() const {
    return measureDomain(object(), "MDomain");
}

} // namespace halvane::host::com
