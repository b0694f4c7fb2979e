#include "host/SpatialReference.h"

#include "base/Failure.h"
#include "host/Application.h"

namespace halvane::host {

bool GisSpatialReference::isNorthFirst() const {
    throw Failure(FailureNumber::ActionNotSupported,
                  "the host application does not tell the order of a spatial reference's axes");
}

GisTransformationPtr GisSpatialReference::transformationTo(const GisSpatialReference& /*target*/) const {
    throw Failure(FailureNumber::ActionNotSupported, "the host application transforms no coordinates");
}

GisSpatialReferencePtr GisHost::referenceOf(std::string_view /*sAuthorityCode*/) {
    throw Failure(FailureNumber::ActionNotSupported,
                  "the host application has no register of spatial references");
}

} // namespace halvane::host
