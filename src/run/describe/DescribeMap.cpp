#include "host/Explanations.h"
#include "host/Layers.h"
#include "host/Tables.h"
#include "host/Workspace.h"
#include "run/describe/DescribeData.h"
#include "run/describe/MapDescription.h"

namespace halvane {

namespace {

constexpr const char* sDataGone = "its data cannot be found or opened";

/// Lists each workspace once, whoever leads to it.
class Workspaces {
public:
    /// @returns the workspace's index; nothing where there is none.
    std::optional<std::size_t> index(const host::GisWorkspacePtr& pWorkspace) {
        if (pWorkspace == nullptr)
            return std::nullopt;
        for (std::size_t i = 0; i < objects_.size(); ++i)
            if (objects_[i] == pWorkspace)
                return i;
        auto path = read([&] { return pWorkspace->pathName(); });
        for (std::size_t i = 0; i < all_.size(); ++i)
            if (path && all_[i].sPath && *all_[i].sPath == *path)
                return i;
        objects_.push_back(pWorkspace);
        all_.push_back(describeWorkspace(*pWorkspace, std::move(path)));
        return objects_.size() - 1;
    }

    [[nodiscard]] std::vector<WorkspaceDescription> take() { return std::move(all_); }

private:
    std::vector<host::GisWorkspacePtr> objects_;
    std::vector<WorkspaceDescription> all_;
};

/// One walk over a document.
class Walk {
public:
    explicit Walk(std::optional<std::size_t> sketchPoints) : sketchPoints_(sketchPoints) {}

    MapDescription describe(const host::GisMapDocument& document,
                            const std::vector<host::GisWorkspacePtr>& named) {
        const auto shown = read([&] { return document.focusMap(); });
        MapDescription description;
        description.maps = readItems([&] { return document.mapCount(); },
                                     [&](std::int32_t lIndex) {
                                         const auto pMap = present(document.map(lIndex), "there is none");
                                         auto map = describeOne(*pMap);
                                         map.bShown = isShown(pMap, shown);
                                         return map;
                                     });
        for (const auto& pWorkspace : named)
            workspaces_.index(pWorkspace);
        description.workspaces = workspaces_.take();
        return description;
    }

private:
    static Reading<bool> isShown(const host::GisMapPtr& pMap, const Reading<host::GisMapPtr>& shown) {
        return shown ? Reading<bool>{*shown == pMap, {}} : Reading<bool>{std::nullopt, shown.sWhyNot};
    }

    OneMapDescription describeOne(const host::GisMap& map) {
        OneMapDescription description;
        description.sName = read([&] { return map.name(); });
        description.spatialReference = read([&] { return describeReference(map.spatialReference()); });
        description.layers = readItems(
            [&] { return map.layerCount(); },
            [&](std::int32_t lIndex) { return layer(present(map.layer(lIndex), "there is none")); });
        description.tables = readItems([&] { return map.standaloneTableCount(); },
                                       [&](std::int32_t lIndex) { return standaloneTable(map, lIndex); });
        return description;
    }

    TableDescription standaloneTable(const host::GisMap& map, std::int32_t lIndex) {
        const auto pTable = map.standaloneTable(lIndex);
        if (pTable == nullptr) {
            const auto* pProblems = dynamic_cast<const host::TableProblems*>(&map);
            const std::string sProblem =
                pProblems == nullptr ? std::string() : pProblems->standaloneTableProblem(lIndex);
            throw Failure(FailureNumber::ObjectVariableNotSet, sProblem.empty() ? sDataGone : sProblem);
        }
        const auto rules = read([&] {
            const auto* pRules = dynamic_cast<const host::FieldRules*>(pTable.get());
            return pRules == nullptr ? nullptr : pRules->fieldRules();
        });
        TableDescription description = table(*pTable, rules ? *rules : nullptr);
        if (!rules && description.fields) {
            for (auto& field : *description.fields.fact)
                if (field)
                    field->sDomain = field->sDefault = {std::nullopt, rules.sWhyNot};
        }
        return description;
    }

    LayerDescription layer(const host::GisLayerPtr& pLayer) {
        LayerDescription description;
        description.sName = read([&] { return pLayer->name(); });
        if (const auto pFeatures = std::dynamic_pointer_cast<host::GisFeatureLayer>(pLayer))
            addFeatures(description, *pFeatures);
        else if (const auto pRaster = std::dynamic_pointer_cast<host::GisRasterLayer>(pLayer))
            addRaster(description, *pRaster);
        else if (const auto pTin = std::dynamic_pointer_cast<host::GisTinLayer>(pLayer))
            addTin(description, *pTin);
        else if (const auto pGroup = std::dynamic_pointer_cast<host::GisGroupLayer>(pLayer))
            addMembers(description, *pGroup);
        return description;
    }

    void addFeatures(LayerDescription& description, const host::GisFeatureLayer& layer) {
        description.kind = LayerKind::Feature;
        description.featureClass =
            read([&] { return featureClass(*present(layer.featureClass(), sDataGone)); });
        description.lSelected = read([&] { return layer.selectionCount(); });
        description.spatialReference = read([&] { return describeReference(layer.spatialReference()); });
    }

    static void addRaster(LayerDescription& description, const host::GisRasterLayer& layer) {
        description.kind = LayerKind::Raster;
        description.sFilePath = read([&] { return layer.filePath(); });
    }

    void addTin(LayerDescription& description, const host::GisTinLayer& layer) {
        description.kind = LayerKind::Tin;
        description.lWorkspace =
            read([&] { return workspaces_.index(present(layer.dataset(), sDataGone)->workspace()); });
    }

    void addMembers(LayerDescription& description, const host::GisGroupLayer& group) {
        description.kind = LayerKind::Group;
        description.members = readItems(
            [&] { return group.layerCount(); },
            [&](std::int32_t lIndex) { return layer(present(group.layer(lIndex), "there is none")); });
    }

    TableDescription table(const host::GisTable& table, const host::GisSubtypesPtr& pSubtypes) {
        TableDescription description;
        description.sDataset = read([&] { return table.datasetName(); });
        description.lWorkspace = read([&] { return workspaces_.index(table.workspace()); });
        description.fields = describeFields(table, pSubtypes);
        return description;
    }

    FeatureClassDescription featureClass(host::GisFeatureClass& featureClass) {
        const auto subtypes = read([&] { return featureClass.subtypes(); });
        FeatureClassDescription description;
        description.table = table(featureClass, subtypes ? *subtypes : nullptr);
        description.lShapeType = read([&] { return featureClass.shapeType(); });
        if (description.lShapeType)
            nameShapesByTheirType(description.table.fields, *description.lShapeType);
        description.lFeatures = read([&] { return featureClass.featureCount(); });
        if (subtypes)
            description.subtypes = read([&] { return describeSubtypes(featureClass, *subtypes); });
        else
            description.subtypes.sWhyNot = subtypes.sWhyNot;
        if (sketchPoints_)
            description.sketch = read([&] {
                return sketchLayer(featureClass, description.lFeatures ? *description.lFeatures : 0,
                                   *sketchPoints_);
            });
        return description;
    }

    std::optional<std::size_t> sketchPoints_;
    Workspaces workspaces_;
};

} // namespace

MapDescription describeMap(const host::GisMapDocument& document,
                           const std::vector<host::GisWorkspacePtr>& named,
                           std::optional<std::size_t> sketchPoints) {
    return Walk(sketchPoints).describe(document, named);
}

} // namespace halvane
