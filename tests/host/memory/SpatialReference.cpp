#include "host/memory/SpatialReference.h"

namespace halvane::host::memory {

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

} // namespace halvane::host::memory
