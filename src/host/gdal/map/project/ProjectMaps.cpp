#include "host/gdal/map/project/ProjectMaps.h"

#include "base/Failure.h"
#include "base/Text.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace halvane::host::gdal {

namespace {

using Ids = std::unordered_set<std::string>;
/// Of the layers of a map; nothing for all.
using IdsPtr = std::shared_ptr<const Ids>;

class MapsReader {
public:
    MapsReader(const MarkupElement& root, ProjectLayers& layers, ProjectReferences& references,
               ProjectRemarks& remarks)
        : root_(root), layers_(layers), references_(references), remarks_(remarks),
          tree_(root.child("layer-tree-group")) {}

    std::vector<MapModel> read(const std::string& sStem);

private:
    void readThemes();
    void readWindows();
    void readLayouts();
    void readLayoutMaps(const MarkupElement& layout);
    [[nodiscard]] std::optional<MarkupElement> window(std::string_view sName) const;
    [[nodiscard]] IdsPtr idsOfTheme(const std::string& sTheme);
    [[nodiscard]] IdsPtr idsOfItem(const MarkupElement& item);
    void addMap(std::string sName, const IdsPtr& ids, std::optional<ReferenceOverride> reference);
    void addMembers(const MarkupElement& group, const IdsPtr& ids, MapModel& map,
                    std::vector<LayerModel>& members);
    void weigh(std::size_t nBytes);
    void addLayer(const ProjectLayer& layer, MapModel& map, std::vector<LayerModel>& members);
    void addGroup(const MarkupElement& element, const IdsPtr& ids, MapModel& map,
                  std::vector<LayerModel>& members);
    void remarkTree(const MarkupElement& group, int lDepth);
    void remarkUnused();

    const MarkupElement& root_;
    ProjectLayers& layers_;
    ProjectReferences& references_;
    ProjectRemarks& remarks_;
    std::optional<MarkupElement> tree_;
    std::map<std::string, std::shared_ptr<Ids>> themes_;
    std::vector<std::string> themeNames_; // in the project's order
    std::set<std::string> usedThemes_;
    Ids inTree_;
    std::optional<ReferenceOverride> reference_; // the project's
    std::vector<MapModel> maps_;
    std::set<std::string> names_; // upper-cased, of those
    std::size_t nWeight_ = 0;     // of those, in bytes
};

// A project of a few pages can ask for very many copies of its layers.
std::size_t weightOf(const LayerModel& layer) {
    std::size_t nWeight = layer.data.sFilter.size() + layer.data.sSql.size();
    for (const FieldOverride& field : layer.data.fields) {
        nWeight += sizeof(FieldOverride) + field.sName.size() + field.sPlace.size() +
                   field.sAlias.value_or("").size() + field.sDefault.value_or("").size();
    }
    return nWeight;
}

void MapsReader::weigh(std::size_t nBytes) {
    constexpr std::size_t nMost = std::size_t{512} << 20U;
    nWeight_ += nBytes;
    if (nWeight_ > nMost) {
        throw Failure(FailureNumber::HostFailure,
                      "the maps of the project hold more layers than there is room for (512 MiB); take some "
                      "layouts out of it");
    }
}

void MapsReader::addLayer(const ProjectLayer& layer, MapModel& map, std::vector<LayerModel>& members) {
    weigh(weightOf(layer.model));
    if (layer.bTable)
        map.tables.push_back(layer.model.data);
    else
        members.push_back(layer.model);
}

void MapsReader::addGroup(const MarkupElement& element, const IdsPtr& ids, MapModel& map,
                          std::vector<LayerModel>& members) {
    LayerModel group;
    group.kind = LayerKind::Group;
    group.sName = element.text("name");
    addMembers(element, ids, map, group.layers);
    if (ids == nullptr || !group.layers.empty())
        members.push_back(std::move(group));
}

void MapsReader::addMembers(const MarkupElement& group, const IdsPtr& ids, MapModel& map,
                            std::vector<LayerModel>& members) {
    for (const MarkupElement& child : group.children()) {
        weigh(sizeof(LayerModel)); // also of what is looked at in vain: there may be many maps
        if (child.name() == "layer-tree-group" && !toBool(child.text("embedded")))
            addGroup(child, ids, map, members);
        if (child.name() != "layer-tree-layer")
            continue;
        const std::string sId = child.text("id");
        const ProjectLayer* pLayer = layers_.find(sId);
        if (pLayer != nullptr && (ids == nullptr || ids->contains(sId)))
            addLayer(*pLayer, map, members);
    }
}

void MapsReader::addMap(std::string sName, const IdsPtr& ids, std::optional<ReferenceOverride> reference) {
    MapModel map;
    map.sName = sName;
    for (int lTwin = 2; !names_.insert(upperCase(map.sName)).second; ++lTwin)
        map.sName = sName + " (" + std::to_string(lTwin) + ")";
    map.spatialReference = reference ? std::move(reference) : reference_;
    if (tree_) {
        addMembers(*tree_, ids, map, map.layers);
    } else {
        for (const std::string& sId : layers_.ids())
            if (ids == nullptr || ids->contains(sId))
                addLayer(*layers_.find(sId), map, map.layers);
    }
    maps_.push_back(std::move(map));
}

void MapsReader::readThemes() {
    const auto presets = root_.child("visibility-presets");
    if (!presets)
        return;
    for (const MarkupElement& theme : presets->children("visibility-preset")) {
        const std::string sName = theme.text("name");
        themeNames_.push_back(sName);
        auto& pIds = themes_[sName];
        pIds = std::make_shared<Ids>();
        // Themes of older projects list the visible layers alone.
        for (const MarkupElement& layer : theme.children("layer"))
            if (layer.attribute("visible").value_or("1") == "1")
                pIds->insert(layer.text("id"));
    }
}

IdsPtr MapsReader::idsOfTheme(const std::string& sTheme) {
    if (sTheme.empty())
        return nullptr;
    usedThemes_.insert(sTheme);
    const auto pTheme = themes_.find(sTheme);
    if (pTheme != themes_.end())
        return pTheme->second;
    remarks_.add("themes that are not there are passed over", sTheme);
    return nullptr;
}

std::optional<MarkupElement> MapsReader::window(std::string_view sName) const {
    for (const MarkupElement& canvas : root_.children("mapcanvas"))
        if (canvas.text("name") == sName)
            return canvas;
    return std::nullopt;
}

void MapsReader::readWindows() {
    constexpr std::string_view sMain = "theMapCanvas";
    for (const MarkupElement& canvas : root_.children("mapcanvas"))
        if (canvas.text("name") != sMain)
            addMap(canvas.text("name"), idsOfTheme(canvas.text("theme")),
                   references_.in(canvas.child("destinationsrs")));
    if (const auto views = root_.child("mapViewDocks"))
        for (const MarkupElement& view : views->children("view"))
            if (!window(view.text("name")))
                addMap(view.text("name"), nullptr, std::nullopt);
}

IdsPtr MapsReader::idsOfItem(const MarkupElement& item) {
    if (toBool(item.text("followPreset")))
        return idsOfTheme(item.text("followPresetName"));
    const auto set = toBool(item.text("keepLayerSet")) ? item.child("LayerSet") : std::nullopt;
    if (!set)
        return nullptr;
    auto pIds = std::make_shared<Ids>();
    for (const MarkupElement& layer : set->children("Layer"))
        pIds->insert(layer.content());
    return pIds;
}

void MapsReader::readLayoutMaps(const MarkupElement& layout) {
    constexpr std::string_view sTypeOfMaps = "65639";
    std::vector<MarkupElement> items = layout.children("LayoutItem");
    std::erase_if(items, [&](const MarkupElement& item) { return item.text("type") != sTypeOfMaps; });
    std::reverse(items.begin(), items.end()); // what was added first lies lowest, and is written last
    for (std::size_t nItem = 0; nItem < items.size(); ++nItem) {
        const std::string sId = items[nItem].text("id");
        addMap(layout.text("name") + ": " + (sId.empty() ? "Map " + std::to_string(nItem + 1) : sId),
               idsOfItem(items[nItem]), references_.in(items[nItem].child("crs")));
    }
}

void MapsReader::readLayouts() {
    const auto layouts = root_.child("Layouts");
    if (!layouts)
        return;
    for (const MarkupElement& layout : layouts->children("Layout"))
        readLayoutMaps(layout);
    for (const MarkupElement& report : layouts->children("Report"))
        remarks_.add("reports are left out, with their maps", report.text("name"));
}

void MapsReader::remarkTree(const MarkupElement& group, int lDepth) {
    for (const MarkupElement& child : group.children()) {
        if (child.name() == "layer-tree-group") {
            if (toBool(child.text("embedded")))
                remarks_.add("groups that stand in another project are left out", child.text("name"));
            remarkTree(child, lDepth + 1);
        }
        if (child.name() == "custom-order" && toBool(child.text("enabled")))
            remarks_.add("the order of drawing is left out; layers have the order of the tree", "");
        if (child.name() != "layer-tree-layer")
            continue;
        const std::string sId = child.text("id");
        inTree_.insert(sId);
        const ProjectLayer* pLayer = layers_.find(sId);
        const bool bFeature = pLayer != nullptr && pLayer->model.kind == LayerKind::Feature;
        if (pLayer != nullptr && !pLayer->bTable && lDepth > (bFeature ? 1 : 0))
            remarks_.add("layers two groups deep, and rasters and meshes in groups, are not found by "
                         "their names",
                         pLayer->model.sName);
    }
}

void MapsReader::remarkUnused() {
    for (const std::string& sId : layers_.ids())
        if (tree_ && !inTree_.contains(sId))
            remarks_.add("layers that are not in the tree are in no map", layers_.find(sId)->model.sName);
    for (const std::string& sTheme : themeNames_)
        if (!usedThemes_.contains(sTheme))
            remarks_.add("themes that no map follows are left out", sTheme);
}

std::vector<MapModel> MapsReader::read(const std::string& sStem) {
    readThemes();
    if (tree_)
        remarkTree(*tree_, 0);
    reference_ = references_.in(root_.child("projectCrs"));
    const std::string sTitle = root_.contentOf("title");
    const auto main = window("theMapCanvas");
    addMap(sTitle.empty() ? sStem : sTitle, nullptr,
           references_.in(main ? main->child("destinationsrs") : std::nullopt));
    maps_.front().bShown = true;
    readWindows();
    readLayouts();
    remarkUnused();
    return std::move(maps_);
}

} // namespace

std::vector<MapModel> readProjectMaps(const MarkupElement& root, const std::string& sStem,
                                      ProjectLayers& layers, ProjectReferences& references,
                                      ProjectRemarks& remarks) {
    return MapsReader(root, layers, references, remarks).read(sStem);
}

} // namespace halvane::host::gdal
