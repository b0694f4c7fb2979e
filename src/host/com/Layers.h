#pragma once

#include "host/Layers.h"
#include "host/com/HostObject.h"

namespace halvane::host::com {

/// What a layer tells of itself, its kind or its name. "" for one that does not, so that it hides none of the
/// others: it is of none of the kinds that are looked into, and a search by name passes over it.
[[nodiscard]] std::string toldByLayer(const LateBound& layer, std::string_view sMember);

template<class Kind>
class ComLayerOf : public Kind, public HostObject {
public:
    [[nodiscard]] std::string name() const override { return toldByLayer(object(), "Name"); }

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
