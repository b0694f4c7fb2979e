#include "host/gdal/MapDocumentBuilder.h"

#include "host/gdal/Places.h"

namespace halvane::host::gdal {

namespace {

DataReference referenceTo(const EnvironmentPtr& pEnvironment, DataModel& model) {
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
    overrides.sFilter = std::move(model.sFilter);
    overrides.sFilterPlace = data.sPlace;
    overrides.fields = std::move(model.fields);
    overrides.subtypes = std::move(model.subtypes);
    overrides.reference = std::move(model.spatialReference);
    data.pOverrides = std::make_shared<const TableOverrides>(std::move(overrides));
    return data;
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
    for (DataModel& table : model.tables) {
        tables.push_back(referenceTo(pEnvironment, table));
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
