#pragma once

#include "host/Layers.h"
#include "host/com/HostObject.h"

namespace halvane::host::com {

template<class Kind>
class ComLayerOf : public Kind, public HostObject {
public:
    [[nodiscard]] std::string name() const override { return object().text("Name"); }

protected:
    using HostObject::HostObject;
};

class ComFeatureLayer final : public ComLayerOf<GisFeatureLayer> {
public:
    ComFeatureLayer(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : ComLayerOf(std::move(pContext), kindFeatureLayer, std::move(pDispatch)) {}

    [[nodiscard]] GisFeatureClassPtr featureClass() const override;
    /// @throws Failure TypeMismatch for a feature class of another host.
    void setFeatureClass(GisFeatureClassPtr pFeatureClass) override;
    [[nodiscard]] std::int32_t selectionCount() const override { return object().integer("SelectionCount"); }
    [[nodiscard]] GisCursorPtr searchSelection() override;
    [[nodiscard]] GisTablePtr asTable() const override;
    [[nodiscard]] GisSpatialReferencePtr spatialReference() const override;
};

/// The layers of an object's list "Layers".
[[nodiscard]] std::vector<GisLayerPtr> layersOf(const LateBound& object);

} // namespace halvane::host::com
