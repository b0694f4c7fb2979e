#include "host/gdal/map/MapDocumentBuilder.h"

#include "base/Text.h"
#include "host/gdal/map/TwinNames.h"
#include "host/gdal/objects/Places.h"
#include "host/gdal/source/Locations.h"

#include <map>
#include <string>
#include <utility>

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
    data.sWhyNot = std::move(model.sWhyNot);
    if (!data.bConnection && !data.sLocation.empty())
        pEnvironment->addDataLocation(data.sLocation);
    data.sDataset = std::move(model.sDataset);
    data.nDataset = model.nDataset;
    data.sShapes = std::move(model.sShapes);
    data.bMesh = model.bMesh;
    const std::string& sFile = model.sFile.empty() ? data.sLocation : model.sFile;
    if (!model.sEncoding.empty())
        pEnvironment->pool().setEncoding(sFile, model.sEncoding);
    if (!model.openOptions.empty())
        pEnvironment->pool().addOpenOptions(sFile, model.openOptions);
    TableOverrides overrides;
    overrides.sName = sName;
    overrides.sSql = std::move(model.sSql);
    overrides.sFilter = std::move(model.sFilter);
    overrides.sFilterPlace = data.sPlace;
    overrides.orderBy = std::move(model.orderBy);
    overrides.sCrs = std::move(model.sCrs);
    overrides.fields = std::move(model.fields);
    overrides.subtypes = std::move(model.subtypes);
    overrides.reference = std::move(model.spatialReference);
    data.pOverrides = std::make_shared<const TableOverrides>(std::move(overrides));
    data.testComputing();
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

// The document may give a name twice. Whoever looks for it among the layers of a map or of a group finds the
// first one.
void remarkNamesakes(const std::vector<LayerModel>& models, std::vector<std::string>& remarks) {
    std::map<std::pair<LayerKind, std::string>, const LayerModel*> firsts; // features: of all kinds
    for (const LayerModel& model : models) {
        remarkNamesakes(model.layers, remarks);
        if (!model.bNamed)
            continue;
        const std::string sName = upperCase(model.sName);
        const auto pFirst = firsts.emplace(std::pair(model.kind, sName), &model).first;
        const auto pOfAll = firsts.emplace(std::pair(LayerKind::Feature, sName), &model).first;
        const LayerModel& first = model.kind == LayerKind::Feature ? *pOfAll->second : *pFirst->second;
        if (&first != &model && model.kind != LayerKind::Group) {
            const long lLine = first.data.place.lLine;
            remarks.push_back(model.data.place.text() + ": the layer \"" + model.sName +
                              "\" has the name of another one" +
                              (lLine == 0 ? "" : " (line " + std::to_string(lLine) + ")") +
                              ", which alone is found by it; give one of them another name");
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
    if (model.selection)
        pLayer->select(std::move(*model.selection));
    return pLayer;
}

std::vector<GisLayerPtr> buildLayers(const EnvironmentPtr& pEnvironment, std::vector<LayerModel>& models) {
    nameTwins(models);
    std::vector<GisLayerPtr> layers;
    layers.reserve(models.size());
    for (LayerModel& model : models)
        layers.push_back(buildLayer(pEnvironment, model));
    return layers;
}

GdalMapPtr buildMap(const EnvironmentPtr& pEnvironment, MapModel& model) {
    std::vector<DataReference> tables;
    tables.reserve(model.tables.size());
    TwinNames names;
    for (DataModel& table : model.tables) {
        const std::string sOwn = table.sDataset.empty() ? stemOf(table.sLocation) : table.sDataset;
        const std::string sName = names.give(table.sName.empty() ? sOwn : table.sName, table.sLocation);
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
    for (const ConnectionModel& connection : model.connections)
        addConnection(*pEnvironment, connection);
    for (WorkspaceModel& workspace : model.workspaces) {
        if (!workspace.bConnection)
            pEnvironment->addDataLocation(workspace.sLocation);
        pEnvironment->addFacts(workspace.sLocation, workspace.bConnection,
                               {std::move(workspace.domains), std::move(workspace.relationships)});
    }
    std::vector<GdalMapPtr> maps;
    std::size_t nShown = 0;
    std::vector<std::string> remarks = std::move(model.remarks);
    for (MapModel& map : model.maps) {
        remarkNamesakes(map.layers, remarks);
        nShown = map.bShown ? maps.size() : nShown;
        maps.push_back(buildMap(pEnvironment, map));
    }
    return std::make_shared<GdalMapDocument>(std::move(maps), nShown, std::move(remarks));
}

} // namespace halvane::host::gdal
