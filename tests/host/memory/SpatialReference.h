#pragma once

#include "host/SpatialReference.h"
#include "host/memory/Faults.h"

#include <memory>
#include <optional>
#include <string>

namespace halvane::host::memory {

/// How a reference's coordinates lie in a world that all references share: so far from its origin, and so
/// large. What lies further than a million from that origin has no place in it.
struct PlaceInWorld {
    double dX = 0, dY = 0, dScale = 1;
};

/// A spatial reference with the description and the domains that it is given; it has no others.
class MemorySpatialReference final : public GisSpatialReference, private Scripted {
public:
    explicit MemorySpatialReference(std::string sDescription) : sDescription_(std::move(sDescription)) {}
    /// @param sDescription one keyword and its value a line, lines separated by line feeds.
    [[nodiscard]] static std::shared_ptr<MemorySpatialReference> make(std::string sDescription);

    void setXyDomain(const XyDomain& domain) { xyDomain_ = domain; }
    void setZDomain(const MeasureDomain& domain) { zDomain_ = domain; }
    void setMDomain(const MeasureDomain& domain) { mDomain_ = domain; }

    void setCode(std::string sCode, bool bNorthFirst = false) {
        sCode_ = std::move(sCode);
        bNorthFirst_ = bNorthFirst;
    }
    void setPlace(const PlaceInWorld& place) { place_ = place; }

    [[nodiscard]] std::optional<XyDomain> xyDomain() const override;
    [[nodiscard]] std::optional<MeasureDomain> zDomain() const override;
    [[nodiscard]] std::optional<MeasureDomain> mDomain() const override;
    [[nodiscard]] std::string description() const override;
    [[nodiscard]] std::string authorityCode() const override;
    [[nodiscard]] bool isNorthFirst() const override;
    [[nodiscard]] GisTransformationPtr transformationTo(const GisSpatialReference& target) const override;

private:
    std::string sDescription_;
    std::optional<XyDomain> xyDomain_;
    std::optional<MeasureDomain> zDomain_;
    std::optional<MeasureDomain> mDomain_;
    std::string sCode_;
    bool bNorthFirst_ = false;
    PlaceInWorld place_;
};
using MemorySpatialReferencePtr = std::shared_ptr<MemorySpatialReference>;

} // namespace halvane::host::memory
