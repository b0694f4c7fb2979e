#include "host/gdal/facts/SpatialReference.h"

#include "base/Failure.h"
#include "base/Owned.h"
#include "base/Text.h"
#include "host/gdal/facts/ProjObjects.h"
#include "host/gdal/facts/ReferenceDescription.h"
#include "host/gdal/source/Errors.h"

#include <cpl_conv.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <list>
#include <memory>
#include <string>
#include <utility>

namespace halvane::host::gdal {

namespace {

constexpr double dLinearScale = 1e4;
constexpr double dAngularScale = 1e9;
// One for each degree of an area all around the earth: where a polar projection is widest lies at a whole
// degree.
constexpr int lPointsOfDomainEdge = 359;

// The last digits of transformed coordinates differ from processor to processor, and mean nothing below the
// resolution of the domain.
XyDomain roundedTo(double dScale, XyDomain domain) {
    for (double* pBound : {&domain.dXMin, &domain.dYMin, &domain.dXMax, &domain.dYMax})
        *pBound = std::round(*pBound * dScale) / dScale;
    return domain;
}

struct StatedAxis {
    std::optional<double> dFalseOrigin;
    std::optional<double> dScale;
};

std::optional<MeasureDomain> completed(std::optional<MeasureDomain> domain, bool bDerived,
                                       const StatedAxis& stated) {
    if (!domain)
        return domain;
    if (bDerived)
        domain->dFalseOrigin = std::floor(domain->dMin);
    if (domain->dScale == 0)
        domain->dScale = dLinearScale;
    domain->dFalseOrigin = stated.dFalseOrigin.value_or(domain->dFalseOrigin);
    domain->dScale = stated.dScale.value_or(domain->dScale);
    return domain;
}

void requireRegister(const std::string& sUnknown) {
    if (!isRegisterReadable()) {
        throw Failure(FailureNumber::HostFailure,
                      "The register of coordinate systems (proj.db) cannot be read, so that " + sUnknown +
                          " not known; install the data of the PROJ library, let this user read it, or name "
                          "its folder in PROJ_DATA");
    }
}

// Without the register any system would seem to have no area of use, and the data's extent would stand for
// it.
void requireAreas() {
    requireRegister("bounds are");
}

OGRSpatialReference parse(const ReferenceOverride& overrides) {
    const ErrorScope errors;
    OGRSpatialReference reference;
    if (reference.SetFromUserInput(overrides.sDefinition.c_str(),
                                   OGRSpatialReference::SET_FROM_USER_INPUT_LIMITATIONS_get()) !=
        OGRERR_NONE) {
        requireRegister("\"" + overrides.sDefinition.substr(0, 200) + "\" is");
        errors.raise(
            overrides.sPlace + ": \"" + overrides.sDefinition.substr(0, 200) +
            "\" is not a spatial reference; give a code such as \"EPSG:25832\", well-known text or a "
            "PROJ string");
    }
    return reference;
}

// GeoPackage numbers systems that nobody knows; the library makes systems of them.
bool isUndefined(const OGRSpatialReference& reference) {
    const std::string sName = upperCase(reference.GetName() == nullptr ? "" : reference.GetName());
    return sName.starts_with("UNDEFINED GEOGRAPHIC SRS") || sName.starts_with("UNDEFINED CARTESIAN SRS");
}

std::string definitionOf(const OGRSpatialReference& reference) {
    const ErrorScope errors;
    char* pText = nullptr;
    const std::array<const char*, 2> aOptions{"FORMAT=WKT2_2019", nullptr};
    reference.exportToWkt(&pText, aOptions.data());
    const Owned<char, VSIFree> pWkt(pText);
    return pWkt == nullptr ? std::string() : pWkt.get();
}

struct KnownReference {
    std::string sDefinition;
    std::optional<std::optional<XyDomain>> area;
    std::optional<std::string> sDescription;
};

// An export reads a reference property by property, through a new object each time, and a folder's files have
// few references by turns. What the projection library searches its database for, for up to a fifth of a
// second, is kept for the last definitions.
KnownReference& knownReference(const OGRSpatialReference& reference) {
    constexpr std::size_t nMostKept = 32;
    thread_local std::list<KnownReference> kept; // the last used first
    std::string sDefinition = definitionOf(reference);
    const auto pFound = std::find_if(kept.begin(), kept.end(), [&](const KnownReference& known) {
        return !sDefinition.empty() && known.sDefinition == sDefinition;
    });
    if (pFound != kept.end()) {
        kept.splice(kept.begin(), kept, pFound);
        return kept.front();
    }
    kept.push_front({std::move(sDefinition), std::nullopt, std::nullopt});
    kept.resize(std::min(kept.size(), nMostKept));
    return kept.front();
}

struct ReleaseReference {
    void operator()(OGRSpatialReference* pReference) const { pReference->Release(); }
};

// Some formats keep a system's parameters without its code and its name. A registered system with the very
// same parameters has the same area of use.
ProjPtr registered(const OGRSpatialReference& horizontal) {
    constexpr int lSameButForNames = 70;
    const char* pName = horizontal.GetName();
    if (horizontal.GetAuthorityCode(nullptr) == nullptr && pName != nullptr &&
        equalIgnoringCase(pName, "unnamed")) {
        const std::unique_ptr<OGRSpatialReference, ReleaseReference> pMatch(
            horizontal.FindBestMatch(lSameButForNames));
        if (pMatch != nullptr)
            return projOf(*pMatch);
    }
    return projOf(horizontal);
}

// Degrees of longitude and latitude. What counts other axes than a map's has no bounds on a map.
std::optional<XyDomain> geographicArea(const OGRSpatialReference& horizontal) {
    if (horizontal.IsGeographic() == 0 && horizontal.IsProjected() == 0)
        return std::nullopt;
    const ProjPtr pSystem = registered(horizontal);
    XyDomain area;
    if (pSystem == nullptr ||
        proj_get_area_of_use(projContext(), pSystem.get(), &area.dXMin, &area.dYMin, &area.dXMax, &area.dYMax,
                             nullptr) == 0 ||
        area.dXMin < -180.5) // the library's mark of an unknown bound is -1000
        return std::nullopt;
    return area;
}

std::optional<XyDomain> knownAreaOfUse(const OGRSpatialReference& reference) {
    KnownReference& known = knownReference(reference);
    if (!known.area)
        known.area = areaOfUse(reference);
    return *known.area;
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
        requireAreas();
        domain = knownAreaOfUse(reference_);
        if (domain)
            domain = roundedTo(scale(), *domain);
        else if (extents_.xy)
            domain = extents_.xy();
        if (domain) {
            domain->dFalseX = std::floor(domain->dXMin);
            domain->dFalseY = std::floor(domain->dYMin);
        }
    }
    if (!domain)
        return domain;
    const CoordinateGrid stated = grid();
    domain->dFalseX = stated.dFalseX.value_or(domain->dFalseX);
    domain->dFalseY = stated.dFalseY.value_or(domain->dFalseY);
    domain->dScale = stated.dXyScale.value_or(domain->dScale == 0 ? scale() : domain->dScale);
    return domain;
}

std::optional<MeasureDomain> GdalSpatialReference::zDomain() const {
    const bool bDerived = !overrides_.z;
    const CoordinateGrid stated = grid();
    return completed(bDerived && extents_.z ? extents_.z() : overrides_.z, bDerived,
                     {stated.dFalseZ, stated.dZScale});
}

std::optional<MeasureDomain> GdalSpatialReference::mDomain() const {
    const bool bDerived = !overrides_.m;
    const CoordinateGrid stated = grid();
    return completed(bDerived && extents_.m ? extents_.m() : overrides_.m, bDerived,
                     {stated.dFalseM, stated.dMScale});
}

std::string GdalSpatialReference::description() const {
    KnownReference& known = knownReference(reference_);
    if (!known.sDescription)
        known.sDescription = describeReference(reference_);
    return *known.sDescription;
}

namespace {

bool isToldByData(const ReferenceOverride& overrides, const OGRSpatialReference* pOwn) {
    if (!overrides.bUnlessSame || pOwn == nullptr || pOwn->IsEmpty() || isUndefined(*pOwn))
        return false;
    const std::array<const char*, 2> aOptions{"IGNORE_DATA_AXIS_TO_SRS_AXIS_MAPPING=YES", nullptr};
    const OGRSpatialReference stated = parse(overrides);
    return pOwn->IsSame(&stated, aOptions.data()) != 0;
}

} // namespace

void testDefinition(const ReferenceOverride& overrides) {
    if (!overrides.sDefinition.empty() && isRegisterReadable())
        static_cast<void>(parse(overrides));
}

GisSpatialReferencePtr makeSpatialReference(const OGRSpatialReference* pOwn,
                                            const std::optional<ReferenceOverride>& overrides,
                                            LayerExtents extents) {
    const ReferenceOverride known = overrides.value_or(ReferenceOverride{});
    if (!known.sDefinition.empty() && !isToldByData(known, pOwn)) {
        extents.grid = nullptr; // of the data's own system
        return std::make_shared<GdalSpatialReference>(parse(known), known, std::move(extents));
    }
    if (pOwn != nullptr && !pOwn->IsEmpty() && !isUndefined(*pOwn))
        return std::make_shared<GdalSpatialReference>(*pOwn, known, std::move(extents));
    return overrides
               ? std::make_shared<GdalSpatialReference>(OGRSpatialReference(), known, std::move(extents))
               : nullptr;
}

std::optional<XyDomain> areaOfUse(const OGRSpatialReference& reference) {
    const ErrorScope errors;
    OGRSpatialReference target(reference);
    target.StripVertical();
    target.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    const auto area = geographicArea(target);
    if (!area)
        return std::nullopt;
    OGRSpatialReference source;
    source.importFromEPSG(4326);
    source.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    const std::unique_ptr<OGRCoordinateTransformation> pTransformation(
        OGRCreateCoordinateTransformation(&source, &target));
    XyDomain domain;
    if (pTransformation == nullptr ||
        pTransformation->TransformBounds(area->dXMin, area->dYMin, area->dXMax, area->dYMax, &domain.dXMin,
                                         &domain.dYMin, &domain.dXMax, &domain.dYMax,
                                         lPointsOfDomainEdge) == 0 ||
        !std::isfinite(domain.dXMin + domain.dYMin + domain.dXMax + domain.dYMax))
        return std::nullopt;
    if (domain.dXMin > domain.dXMax && target.IsGeographic() != 0) {
        // The area lies on both sides of the antimeridian.
        const double dHalfTurn = 3.14159265358979323846 / target.GetAngularUnits();
        domain.dXMin = -dHalfTurn;
        domain.dXMax = dHalfTurn;
    }
    return domain;
}

} // namespace halvane::host::gdal
