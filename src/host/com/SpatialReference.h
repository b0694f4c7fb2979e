#pragma once

#include "host/SpatialReference.h"
#include "host/com/HostObject.h"

namespace halvane::host::com {

class ComSpatialReference final : public GisSpatialReference, public HostObject {
public:
    ComSpatialReference(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindSpatialReference, std::move(pDispatch)) {}

    [[nodiscard]] std::optional<XyDomain> xyDomain() const override;
    [[nodiscard]] std::optional<MeasureDomain> zDomain() const override;
    [[nodiscard]] std::optional<MeasureDomain> mDomain() const override;
    [[nodiscard]] std::string description() const override { return object().text("Description"); }
};

} // namespace halvane::host::com
