#include "host/gdal/MapDocumentBuilder.h"

#include "host/gdal/Locations.h"
#include "host/gdal/Places.h"
#include "host/gdal/TwinNames.h"

#include <map>

namespace halvane::host::gdal {

namespace {

/// @param sName of a table, instead of its dataset's; "" for that.
DataReference referenceTo(const EnvironmentPtr& pEnvironment, DataModel& model,
                          const std::string& sName = {}) {
    DataReference data;
    data.pEnvironment = pEnvironment;
    data.sPlace = model.place.text();
    data.sLocation = std::move(model.sLocation);
    data.bConnection = model.bConnection;
    if (!data.bConnection) {
        pEnvironment->addDataLocation(data.sLocation);
    }
    data.sDataset = std::move(model.sDataset);
    if (!model.sEncoding.empty()) {
        pEnvironment->pool().setEncoding(data.sLocation, model.sEncoding);
    }
    TableOverrides overrides;
    overrides.sName = sName;
    overrides.sFilter = std::move(model.sFilter);
    overrides.sFilterPlace = data.sPlace;
    overrides.fields = std::move(model.fields);
    overrides.subtypes = std::move(model.subtypes);
    overrides.reference = std::move(model.spatialReference);
    data.pOverrides = std::make_shared<const TableOverrides>(std::move(overrides));
    return data;
}

// What the document itself names is named as it says. Rasters and TINs are looked for among their kind,
// feature layers among all layers.
void nameTwins(std::vector<LayerModel>& models) {
    std::map<LayerKind, TwinNames> ofKinds;
    TwinNames& ofAll = ofKinds[LayerKind::Feature];
    for (const LayerModel& model : models) {
        if (model.bNamed) {
            ofAll.take(model.sName);
            ofKinds[model.kind].take(model.sName);
        }
    }
    for (LayerModel& model : models) {
        if (!model.bNamed) {
            model.sName = ofKinds[model.kind].give(model.sName, model.data.sLocation);
            ofAll.take(model.sName);
        }
    }
}

std::vector<GisLayerPtr> buildLayers(const EnvironmentPtr& pEnvironment, std::vector<LayerModel>& models);

GisLayerPtr buildLayer(const EnvironmentPtr& pEnvironment, LayerModel& model) {
    switch (model.kind) {
    case LayerKind::Group:
        return std::make_shared<GdalGroupLayer>(model.sName, buildLayers(pEnvironment, model.layers));
    case LayerKind::Raster:
        return std::make_shared<GdalRasterLayer>(model.sName, referenceTo(pEnvironment, model.data), nullptr);
    case LayerKind::Tin:
        return std::make_shared<GdalTinLayer>(model.sName, referenceTo(pEnvironment, model.data));
    default:
        break;
    }
    auto pLayer = std::make_shared<GdalFeatureLayer>(model.sName, referenceTo(pEnvironment, model.data));
    if (model.selection) {
        pLayer->select(std::move(*model.selection));
    }
    return pLayer;
}

std::vector<GisLayerPtr> buildLayers(const EnvironmentPtr& pEnvironment, std::vector<LayerModel>& models) {
    nameTwins(models);
    std::vector<GisLayerPtr> layers;
    layers.reserve(models.size());
    for (LayerModel& model : models) {
        layers.push_back(buildLayer(pEnvironment, model));
    }
    return layers;
}

GdalMapPtr buildMap(const EnvironmentPtr& pEnvironment, MapModel& model) {
    std::vector<DataReference> tables;
    tables.reserve(model.tables.size());
    TwinNames names;
    for (DataModel& table : model.tables) {
        const std::string sOwn = table.sDataset.empty() ? stemOf(table.sLocation) : table.sDataset;
        const std::string sName = names.give(sOwn, table.sLocation);
        tables.push_back(referenceTo(pEnvironment, table, sName == sOwn ? "" : sName));
    }
    return std::make_shared<GdalMap>(model.sName, buildLayers(pEnvironment, model.layers), std::move(tables),
                                     std::move(model.spatialReference));
}

void addConnection(Environment& environment, const ConnectionModel& model) {
    at(model.place.text(), [&] { environment.addConnection(model.sName, model.sDatabase); });
}

} // namespace

GdalMapDocumentPtr buildMapDocument(const EnvironmentPtr& pEnvironment, MapDocumentModel model) {
    pEnvironment->setBaseFolder(model.sFolder);
    for (const ConnectionModel& connection : model.connections) {
        addConnection(*pEnvironment, connection);
    }
    for (WorkspaceModel& workspace : model.workspaces) {
        if (!workspace.bConnection) {
            pEnvironment->addDataLocation(workspace.sLocation);
        }
        pEnvironment->addFacts(workspace.sLocation, workspace.bConnection,
                               {std::move(workspace.domains), std::move(workspace.relationships)});
    }
    std::vector<GdalMapPtr> maps;
    std::size_t lShown = 0;
    for (MapModel& map : model.maps) {
        lShown = map.bShown ? maps.size() : lShown;
        maps.push_back(buildMap(pEnvironment, map));
    }
    return std::make_shared<GdalMapDocument>(std::move(maps), lShown);
}

} // namespace halvane::host::gdal
