#include "host/com/Layers.h"

#include "host/com/Rows.h"
#include "host/com/SpatialReference.h"
#include "host/com/Tables.h"

namespace halvane::host::com {

namespace {

class ComOtherLayer final : public ComLayerOf<GisLayer> {
public:
    ComOtherLayer(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : ComLayerOf(std::move(pContext), kindLayer, std::move(pDispatch)) {}
};

class ComRasterLayer final : public ComLayerOf<GisRasterLayer> {
public:
    ComRasterLayer(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : ComLayerOf(std::move(pContext), kindRasterLayer, std::move(pDispatch)) {}

    [[nodiscard]] std::string filePath() const override { return object().text("FilePath"); }
};

class ComDataset final : public GisDataset, public HostObject {
public:
    ComDataset(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindDataset, std::move(pDispatch)) {}

    [[nodiscard]] GisWorkspacePtr workspace() const override {
        return roleOf<ComWorkspace>(object(), "Workspace");
    }
};

class ComTinLayer final : public ComLayerOf<GisTinLayer> {
public:
    ComTinLayer(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : ComLayerOf(std::move(pContext), kindTinLayer, std::move(pDispatch)) {}

    [[nodiscard]] GisDatasetPtr dataset() const override { return roleOf<ComDataset>(object(), "Dataset"); }
};

class ComGroupLayer final : public ComLayerOf<GisGroupLayer> {
public:
    ComGroupLayer(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : ComLayerOf(std::move(pContext), kindGroupLayer, std::move(pDispatch)) {}

    [[nodiscard]] std::int32_t layerCount() const override {
        return layers_.count([&] { return layersOf(object()); });
    }
    [[nodiscard]] GisLayerPtr layer(std::int32_t lIndex) const override {
        return layers_.item(lIndex, [&] { return layersOf(object()); });
    }

private:
    mutable CountedList<GisLayerPtr> layers_;
};

} // namespace

GisFeatureClassPtr ComFeatureLayer::featureClass() const {
    return roleOf<ComFeatureClass>(object(), "FeatureClass");
}

void ComFeatureLayer::setFeatureClass(GisFeatureClassPtr pFeatureClass) {
    object().assign("FeatureClass", halvane::com::toVariant(ObjectPtr(std::move(pFeatureClass))));
}

GisCursorPtr ComFeatureLayer::searchSelection() {
    const auto pFeatureClass = featureClass();
    if (pFeatureClass == nullptr)
        throw object().mismatch("FeatureClass");
    return cursorOver(context(), object().call("SearchSelection"), pFeatureClass->fields());
}

GisTablePtr ComFeatureLayer::asTable() const {
    if (object().has("Table"))
        return roleOf<ComTable>(object(), "Table");
    return featureClass();
}

GisSpatialReferencePtr ComFeatureLayer::spatialReference() const {
    return roleOf<ComSpatialReference>(object(), "SpatialReference");
}

std::string toldByLayer(const LateBound& layer, std::string_view sMember) {
    try {
        return layer.text(sMember);
    } catch (const Failure&) {
        return {};
    }
}

namespace {

GisLayerPtr layerOf(const ContextPtr& pContext, ComPtr<IDispatch> pDispatch) {
    const std::string sKind = toldByLayer({pContext, kindLayer, pDispatch}, "LayerKind");
    if (sKind == kindFeatureLayer.sName)
        return std::make_shared<ComFeatureLayer>(pContext, std::move(pDispatch));
    if (sKind == kindRasterLayer.sName)
        return std::make_shared<ComRasterLayer>(pContext, std::move(pDispatch));
    if (sKind == kindTinLayer.sName)
        return std::make_shared<ComTinLayer>(pContext, std::move(pDispatch));
    if (sKind == kindGroupLayer.sName)
        return std::make_shared<ComGroupLayer>(pContext, std::move(pDispatch));
    return std::make_shared<ComOtherLayer>(pContext, std::move(pDispatch));
}

} // namespace

std::vector<GisLayerPtr> layersOf(const LateBound& object) {
    return itemsAs(object, "Layers", kindLayer, Absence::Nameless, [&](ComPtr<IDispatch> pDispatch) {
        return layerOf(object.context(), std::move(pDispatch));
    });
}

} // namespace halvane::host::com
