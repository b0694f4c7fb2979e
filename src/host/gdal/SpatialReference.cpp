#include "host/gdal/SpatialReference.h"

#include "collection/Failure.h"
#include "host/gdal/Errors.h"
#include "host/gdal/ReferenceDescription.h"

#include <cpl_conv.h>

#include <array>
#include <cmath>
#include <memory>
#include <string>
#include <utility>

namespace halvane::host::gdal {

namespace {

constexpr double dLinearScale = 1e4;
constexpr double dAngularScale = 1e9;
// Enough points along the edges for the bounds of any projection.
constexpr int lEdgePoints = 21;

// The last digits of transformed coordinates differ from processor to processor, and mean nothing below the
// resolution of the domain.
XyDomain roundedTo(double dScale, XyDomain domain) {
    for (double* pBound : {&domain.dXMin, &domain.dYMin, &domain.dXMax, &domain.dYMax}) {
        *pBound = std::round(*pBound * dScale) / dScale;
    }
    return domain;
}

std::optional<MeasureDomain> completed(std::optional<MeasureDomain> domain, bool bDerived) {
    if (domain && bDerived) {
        domain->dFalseOrigin = std::floor(domain->dMin);
    }
    if (domain && domain->dScale == 0) {
        domain->dScale = dLinearScale;
    }
    return domain;
}

OGRSpatialReference parse(const ReferenceOverride& overrides) {
    const ErrorScope errors;
    OGRSpatialReference reference;
    if (reference.SetFromUserInput(overrides.sDefinition.c_str(),
                                   OGRSpatialReference::SET_FROM_USER_INPUT_LIMITATIONS_get()) !=
        OGRERR_NONE) {
        errors.raise(
            overrides.sPlace + ": \"" + overrides.sDefinition.substr(0, 200) +
            "\" is not a spatial reference; give a code such as \"EPSG:25832\", well-known text or a "
            "PROJ string");
    }
    return reference;
}

std::string definitionOf(const OGRSpatialReference& reference) {
    const ErrorScope errors;
    char* pText = nullptr;
    const std::array<const char*, 2> aOptions{"FORMAT=WKT2_2019", nullptr};
    reference.exportToWkt(&pText, aOptions.data());
    const std::unique_ptr<char, decltype(&VSIFree)> pWkt(pText, &VSIFree);
    return pWkt == nullptr ? std::string() : pWkt.get();
}

// An export reads a reference property by property, through a new object each time; what the projection
// library searches its database for, for milliseconds, is kept for the last definition.
struct LastReference {
    std::string sDefinition;
    std::optional<std::optional<XyDomain>> area;
    std::optional<std::string> sDescription;
};

LastReference& lastReference(const OGRSpatialReference& reference) {
    thread_local LastReference last;
    std::string sDefinition = definitionOf(reference);
    if (sDefinition.empty() || sDefinition != last.sDefinition) {
        last = {std::move(sDefinition), std::nullopt, std::nullopt};
    }
    return last;
}

std::optional<XyDomain> knownAreaOfUse(const OGRSpatialReference& reference) {
    LastReference& last = lastReference(reference);
    if (!last.area) {
        last.area = areaOfUse(reference);
    }
    return *last.area;
}

} // namespace

GdalSpatialReference::GdalSpatialReference(OGRSpatialReference reference, ReferenceOverride overrides,
                                           LayerExtents extents)
    : reference_(std::move(reference)), overrides_(std::move(overrides)), extents_(std::move(extents)) {
    reference_.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
}

double GdalSpatialReference::scale() const {
    return reference_.IsGeographic() != 0 ? dAngularScale : dLinearScale;
}

std::optional<XyDomain> GdalSpatialReference::xyDomain() const {
    std::optional<XyDomain> domain = overrides_.xy;
    if (!domain) {
        domain = knownAreaOfUse(reference_);
        if (domain) {
            domain = roundedTo(scale(), *domain);
        } else if (extents_.xy) {
            domain = extents_.xy();
        }
        if (domain) {
            domain->dFalseX = std::floor(domain->dXMin);
            domain->dFalseY = std::floor(domain->dYMin);
        }
    }
    if (domain && domain->dScale == 0) {
        domain->dScale = scale();
    }
    return domain;
}

std::optional<MeasureDomain> GdalSpatialReference::zDomain() const {
    const bool bDerived = !overrides_.z;
    return completed(bDerived && extents_.z ? extents_.z() : overrides_.z, bDerived);
}

std::optional<MeasureDomain> GdalSpatialReference::mDomain() const {
    const bool bDerived = !overrides_.m;
    return completed(bDerived && extents_.m ? extents_.m() : overrides_.m, bDerived);
}

std::string GdalSpatialReference::description() const {
    LastReference& last = lastReference(reference_);
    if (!last.sDescription) {
        last.sDescription = describeReference(reference_);
    }
    return *last.sDescription;
}

GisSpatialReferencePtr makeSpatialReference(const OGRSpatialReference* pOwn,
                                            const std::optional<ReferenceOverride>& overrides,
                                            LayerExtents extents) {
    const ReferenceOverride known = overrides.value_or(ReferenceOverride{});
    if (!known.sDefinition.empty()) {
        return std::make_shared<GdalSpatialReference>(parse(known), known, std::move(extents));
    }
    if (pOwn != nullptr && !pOwn->IsEmpty()) {
        return std::make_shared<GdalSpatialReference>(*pOwn, known, std::move(extents));
    }
    return overrides
               ? std::make_shared<GdalSpatialReference>(OGRSpatialReference(), known, std::move(extents))
               : nullptr;
}

std::optional<XyDomain> areaOfUse(const OGRSpatialReference& reference) {
    const ErrorScope errors;
    double dWest = 0;
    double dSouth = 0;
    double dEast = 0;
    double dNorth = 0;
    if (!reference.GetAreaOfUse(&dWest, &dSouth, &dEast, &dNorth, nullptr) || dWest < -180.5) {
        return std::nullopt;
    }
    OGRSpatialReference target(reference);
    target.StripVertical();
    target.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    OGRSpatialReference source;
    source.importFromEPSG(4326);
    source.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    const std::unique_ptr<OGRCoordinateTransformation> pTransformation(
        OGRCreateCoordinateTransformation(&source, &target));
    XyDomain domain;
    if (pTransformation == nullptr ||
        pTransformation->TransformBounds(dWest, dSouth, dEast, dNorth, &domain.dXMin, &domain.dYMin,
                                         &domain.dXMax, &domain.dYMax, lEdgePoints) == 0 ||
        !std::isfinite(domain.dXMin + domain.dYMin + domain.dXMax + domain.dYMax)) {
        return std::nullopt;
    }
    if (domain.dXMin > domain.dXMax && reference.IsGeographic() != 0) {
        // The area lies on both sides of the antimeridian.
        const double dHalfTurn = 3.14159265358979323846 / target.GetAngularUnits();
        domain.dXMin = -dHalfTurn;
        domain.dXMax = dHalfTurn;
    }
    return domain;
}

} // namespace halvane::host::gdal
