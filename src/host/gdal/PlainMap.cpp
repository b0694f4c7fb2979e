#include "collection/Failure.h"
#include "host/gdal/Locations.h"
#include "host/gdal/Map.h"

#include <filesystem>

namespace halvane::host::gdal {

namespace {

struct MapParts {
    std::vector<GisLayerPtr> layers;
    std::vector<DataReference> tables;
};

DataReference referenceTo(const EnvironmentPtr& pEnvironment, const std::string& sPath,
                          const DatasetEntry& entry) {
    DataReference data;
    data.pEnvironment = pEnvironment;
    data.sLocation = sPath;
    data.sDataset = entry.sName;
    data.entry = entry;
    return data;
}

void addDatasets(MapParts& parts, const EnvironmentPtr& pEnvironment, const std::string& sPath,
                 const std::vector<DatasetEntry>& entries) {
    for (const DatasetEntry& entry : entries) {
        DataReference data = referenceTo(pEnvironment, sPath, entry);
        if (entry.bFeatures) {
            parts.layers.push_back(std::make_shared<GdalFeatureLayer>(entry.sName, std::move(data)));
        } else {
            parts.tables.push_back(std::move(data));
        }
    }
}

void addRaster(MapParts& parts, const EnvironmentPtr& pEnvironment, std::string sName, SourcePtr pSource) {
    DataReference data;
    data.pEnvironment = pEnvironment;
    data.sLocation = pSource->sDisplayName;
    parts.layers.push_back(
        std::make_shared<GdalRasterLayer>(std::move(sName), std::move(data), std::move(pSource)));
}

void addRasterFile(MapParts& parts, const EnvironmentPtr& pEnvironment, const std::string& sFile) {
    if (SourcePtr pSource = rasterSourceOf(pEnvironment->pool(), sFile)) {
        addRaster(parts, pEnvironment, stemOf(sFile), std::move(pSource));
    }
}

// A file database may hold rasters beside its tables.
void addRastersOf(MapParts& parts, const EnvironmentPtr& pEnvironment, const SourcePtr& pSource) {
    for (const RasterEntry& raster : rastersOf(pEnvironment->pool(), pSource)) {
        addRaster(parts, pEnvironment, raster.sName, raster.pSource);
    }
}

void addFolder(MapParts& parts, const EnvironmentPtr& pEnvironment, const std::string& sFolder) {
    const GdalWorkspacePtr pWorkspace = pEnvironment->openPath(sFolder);
    for (const std::string& sFile : pWorkspace->files()) {
        const std::vector<DatasetEntry>& entries = pWorkspace->datasetsOfFile(sFile);
        if (entries.empty()) {
            addRasterFile(parts, pEnvironment, sFile);
        } else {
            addDatasets(parts, pEnvironment, sFolder, entries);
            addRastersOf(parts, pEnvironment, entries.front().pSource);
        }
    }
}

void addFile(MapParts& parts, const EnvironmentPtr& pEnvironment, const std::string& sFile) {
    const GdalWorkspacePtr pWorkspace = pEnvironment->findPath(sFile);
    if (pWorkspace == nullptr) {
        addRasterFile(parts, pEnvironment, sFile);
        return;
    }
    addDatasets(parts, pEnvironment, sFile, pWorkspace->datasets());
    for (const SourcePtr& pSource : pWorkspace->sources()) {
        addRastersOf(parts, pEnvironment, pSource);
    }
}

} // namespace

GdalMapDocumentPtr mapOfDataset(const EnvironmentPtr& pEnvironment, const std::string& sPath) {
    MapParts parts;
    if (isFolder(sPath) && extensionOf(sPath) != "gdb") {
        addFolder(parts, pEnvironment, sPath);
    } else {
        addFile(parts, pEnvironment, sPath);
    }
    if (parts.layers.empty() && parts.tables.empty()) {
        throw Failure(FailureNumber::HostFailure,
                      "\"" + sPath +
                          "\" is neither a map document (its root would be <MapDocument>) nor data in a "
                          "format that is read here");
    }
    const std::string sName =
        isFolder(sPath) ? std::filesystem::path(sPath).filename().string() : stemOf(sPath);
    std::vector<GdalMapPtr> maps{
        std::make_shared<GdalMap>(sName, std::move(parts.layers), std::move(parts.tables), std::nullopt)};
    return std::make_shared<GdalMapDocument>(std::move(maps), 0);
}

} // namespace halvane::host::gdal
