#include "snapshot/RecordingHost.h"

#include "host/Application.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Tables.h"
#include "host/Workspace.h"

namespace halvane::test {

namespace {

class RecordingFactory final : public RecorderOf<host::GisWorkspaceFactory> {
public:
    using RecorderOf::RecorderOf;

    /// A workspace is filed under its path: the set of properties is new each time.
    [[nodiscard]] host::GisWorkspacePtr open(const host::GisPropertySet& properties,
                                             std::int32_t lWindowHandle) override {
        const std::string sKey = answerKey("Open", {toText(properties.property("DATABASE"))});
        return recordObject<RecordingWorkspace>(object(), sKey, "Workspace",
                                                [&] { return host().open(properties, lWindowHandle); });
    }
    [[nodiscard]] host::GisWorkspacePtr openFromFile(std::string_view sPath,
                                                     std::int32_t lWindowHandle) override {
        const std::string sKey = answerKey("OpenFromFile", {std::string(sPath), lWindowHandle});
        return recordObject<RecordingWorkspace>(object(), sKey, "Workspace",
                                                [&] { return host().openFromFile(sPath, lWindowHandle); });
    }
};

template<class Kind>
class RecordingLayerOf : public RecorderOf<Kind> {
public:
    using RecorderOf<Kind>::RecorderOf;
    [[nodiscard]] std::string name() const override {
        return this->noted("Name", [&] { return this->host().name(); });
    }
};

class RecordingFeatureLayer final : public RecordingLayerOf<host::GisFeatureLayer> {
public:
    using RecordingLayerOf::RecordingLayerOf;

    [[nodiscard]] host::GisFeatureClassPtr featureClass() const override {
        if (pAssigned_ != nullptr)
            return pAssigned_;
        return recordObject<RecordingFeatureClass>(object(), "FeatureClass", "FeatureClass",
                                                   [&] { return host().featureClass(); });
    }
    void setFeatureClass(host::GisFeatureClassPtr pFeatureClass) override {
        const auto pRecorder = std::dynamic_pointer_cast<RecordingFeatureClass>(pFeatureClass);
        host().setFeatureClass(pRecorder == nullptr ? pFeatureClass : pRecorder->real());
        pAssigned_ = std::move(pFeatureClass);
    }
    [[nodiscard]] std::int32_t selectionCount() const override {
        return noted("SelectionCount", [&] { return host().selectionCount(); });
    }
    [[nodiscard]] host::GisCursorPtr searchSelection() override {
        if (const auto pFeatureClass = featureClass())
            static_cast<void>(pFeatureClass->fields());
        return recordRows(object(), "SearchSelection", host().searchSelection());
    }
    /// The feature class, where the real layer says so too.
    [[nodiscard]] host::GisTablePtr asTable() const override {
        auto pTable = host().asTable();
        if (std::dynamic_pointer_cast<host::GisFeatureClass>(pTable) != nullptr)
            return featureClass();
        return recordObject<RecordingTable>(object(), "Table", "Table", [&] { return pTable; });
    }
    [[nodiscard]] host::GisSpatialReferencePtr spatialReference() const override {
        return recordObject<RecordingReference>(object(), "SpatialReference", "SpatialReference",
                                                [&] { return host().spatialReference(); });
    }

private:
    host::GisFeatureClassPtr pAssigned_;
};

class RecordingRasterLayer final : public RecordingLayerOf<host::GisRasterLayer> {
public:
    using RecordingLayerOf::RecordingLayerOf;
    [[nodiscard]] std::string filePath() const override {
        return noted("FilePath", [&] { return host().filePath(); });
    }
};

class RecordingDataset final : public RecorderOf<host::GisDataset> {
public:
    using RecorderOf::RecorderOf;
    [[nodiscard]] host::GisWorkspacePtr workspace() const override {
        return recordObject<RecordingWorkspace>(object(), "Workspace", "Workspace",
                                                [&] { return host().workspace(); });
    }
};

class RecordingTinLayer final : public RecordingLayerOf<host::GisTinLayer> {
public:
    using RecordingLayerOf::RecordingLayerOf;
    [[nodiscard]] host::GisDatasetPtr dataset() const override {
        return recordObject<RecordingDataset>(object(), "Dataset", "Dataset",
                                              [&] { return host().dataset(); });
    }
};

/// Files the layers of a map or a group as a list. @returns their number.
template<class Holder>
std::int32_t recordLayers(RecordedObject& object, const Holder& holder) {
    const std::int32_t lCount = holder.layerCount();
    Json list = Json::array();
    for (std::int32_t i = 0; i < lCount; ++i) {
        const std::string sKey = "Layers[" + std::to_string(i) + "]";
        static_cast<void>(recordLayer(object, sKey, holder.layer(i)));
        list.push_back(object.answerAt(sKey));
    }
    object.answer("Layers", {{"list", list}});
    return lCount;
}

template<class Holder>
host::GisLayerPtr recordedLayer(RecordedObject& object, const Holder& holder, std::int32_t lIndex) {
    static_cast<void>(recordLayers(object, holder));
    return recordLayer(object, "Layers[" + std::to_string(lIndex) + "]", holder.layer(lIndex));
}

class RecordingGroupLayer final : public RecordingLayerOf<host::GisGroupLayer> {
public:
    using RecordingLayerOf::RecordingLayerOf;
    [[nodiscard]] std::int32_t layerCount() const override { return recordLayers(object(), host()); }
    [[nodiscard]] host::GisLayerPtr layer(std::int32_t lIndex) const override {
        return recordedLayer(object(), host(), lIndex);
    }
};

using RecordingOtherLayer = RecordingLayerOf<host::GisLayer>;

class RecordingMap final : public RecorderOf<host::GisMap> {
public:
    using RecorderOf::RecorderOf;

    [[nodiscard]] std::string name() const override {
        return noted("Name", [&] { return host().name(); });
    }
    [[nodiscard]] std::int32_t layerCount() const override { return recordLayers(object(), host()); }
    [[nodiscard]] host::GisLayerPtr layer(std::int32_t lIndex) const override {
        return recordedLayer(object(), host(), lIndex);
    }
    [[nodiscard]] std::int32_t standaloneTableCount() const override {
        const std::int32_t lCount = host().standaloneTableCount();
        Json list = Json::array();
        for (std::int32_t i = 0; i < lCount; ++i) {
            static_cast<void>(recordedTable(i));
            list.push_back(object().answerAt(tableKey(i)));
        }
        object().answer("StandaloneTables", {{"list", list}});
        return lCount;
    }
    [[nodiscard]] host::GisTablePtr standaloneTable(std::int32_t lIndex) const override {
        static_cast<void>(standaloneTableCount());
        return recordedTable(lIndex);
    }
    [[nodiscard]] host::GisSpatialReferencePtr spatialReference() const override {
        return recordObject<RecordingReference>(object(), "SpatialReference", "SpatialReference",
                                                [&] { return host().spatialReference(); });
    }

private:
    static std::string tableKey(std::int32_t lIndex) {
        return "StandaloneTables[" + std::to_string(lIndex) + "]";
    }
    [[nodiscard]] host::GisTablePtr recordedTable(std::int32_t lIndex) const {
        return recordObject<RecordingTable>(object(), tableKey(lIndex), "Table",
                                            [&] { return host().standaloneTable(lIndex); });
    }
};

class RecordingMapDocument final : public RecorderOf<host::GisMapDocument> {
public:
    using RecorderOf::RecorderOf;

    [[nodiscard]] host::GisMapPtr focusMap() const override {
        return recordObject<RecordingMap>(object(), "FocusMap", "Map", [&] { return host().focusMap(); });
    }
    [[nodiscard]] std::int32_t mapCount() const override {
        const std::int32_t lCount = host().mapCount();
        Json list = Json::array();
        for (std::int32_t i = 0; i < lCount; ++i) {
            static_cast<void>(recordedMap(i));
            list.push_back(object().answerAt(mapKey(i)));
        }
        object().answer("Maps", {{"list", list}});
        return lCount;
    }
    [[nodiscard]] host::GisMapPtr map(std::int32_t lIndex) const override {
        static_cast<void>(mapCount());
        return recordedMap(lIndex);
    }

private:
    static std::string mapKey(std::int32_t lIndex) { return "Maps[" + std::to_string(lIndex) + "]"; }
    [[nodiscard]] host::GisMapPtr recordedMap(std::int32_t lIndex) const {
        return recordObject<RecordingMap>(object(), mapKey(lIndex), "Map",
                                          [&] { return host().map(lIndex); });
    }
};

template<class Wrapper, class Role>
host::GisLayerPtr layerAs(RecordedObject& object, const std::string& sKey, std::string_view sKind,
                          const host::GisLayerPtr& pReal) {
    auto pRole = std::dynamic_pointer_cast<Role>(pReal);
    if (pRole == nullptr)
        return nullptr;
    auto pLayer = recordObject<Wrapper>(object, sKey, sKind, [&] { return pRole; });
    object.child(sKey, sKind).answer("LayerKind", std::string(sKind));
    return pLayer;
}

} // namespace

host::GisLayerPtr recordLayer(RecordedObject& object, const std::string& sKey,
                              const host::GisLayerPtr& pReal) {
    if (pReal == nullptr) {
        object.answer(sKey, nullptr);
        return nullptr;
    }
    if (auto p = layerAs<RecordingFeatureLayer, host::GisFeatureLayer>(object, sKey, "FeatureLayer", pReal))
        return p;
    if (auto p = layerAs<RecordingRasterLayer, host::GisRasterLayer>(object, sKey, "RasterLayer", pReal))
        return p;
    if (auto p = layerAs<RecordingTinLayer, host::GisTinLayer>(object, sKey, "TinLayer", pReal))
        return p;
    if (auto p = layerAs<RecordingGroupLayer, host::GisGroupLayer>(object, sKey, "GroupLayer", pReal))
        return p;
    return layerAs<RecordingOtherLayer, host::GisLayer>(object, sKey, "Layer", pReal);
}

host::GisFeatureLayerPtr RecordingHost::newFeatureLayer() {
    const std::string sKey = "NewFeatureLayer[" + std::to_string(recording_.next("NewFeatureLayer")) + "]";
    return std::dynamic_pointer_cast<host::GisFeatureLayer>(
        recordLayer(object(), sKey, host().newFeatureLayer()));
}

host::GisWorkspaceFactoryPtr RecordingHost::newWorkspaceFactory(host::WorkspaceFactoryKind kind) {
    return recordObject<RecordingFactory>(
        object(), answerKey("NewWorkspaceFactory", {static_cast<std::int32_t>(kind)}), "WorkspaceFactory",
        [&] { return host().newWorkspaceFactory(kind); });
}

host::GisSpatialReferencePtr RecordingHost::referenceOf(std::string_view sAuthorityCode) {
    return recordObject<RecordingReference>(object(), answerKey("ReferenceOf", {std::string(sAuthorityCode)}),
                                            "SpatialReference",
                                            [&] { return host().referenceOf(sAuthorityCode); });
}

char RecordingHost::pathSeparator() const {
    object().answer("PathSeparator", std::string(1, host().pathSeparator()));
    return host().pathSeparator();
}

host::GisMapDocumentPtr recordDocument(RecordedObject& object, const host::GisMapDocumentPtr& pReal) {
    return pReal == nullptr ? nullptr : std::make_shared<RecordingMapDocument>(object, pReal);
}

} // namespace halvane::test
