#include "collection/Failure.h"
#include "host/gdal/Locations.h"
#include "host/gdal/Map.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>

namespace halvane::host::gdal {

namespace {

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
    for (const RasterEntry& raster : rastersOfFile(pEnvironment->pool(), sFile)) {
        addRaster(parts, pEnvironment, raster.sName, raster.pSource);
    }
}

// A file database may hold rasters beside its tables.
void addRastersOf(MapParts& parts, const EnvironmentPtr& pEnvironment, const SourcePtr& pSource) {
    for (const RasterEntry& raster : rastersOf(pEnvironment->pool(), pSource)) {
        addRaster(parts, pEnvironment, raster.sName, raster.pSource);
    }
}

void addFileOfFolder(MapParts& parts, const EnvironmentPtr& pEnvironment, const std::string& sFolder,
                     const GdalWorkspace& workspace, const std::string& sFile) {
    const std::vector<DatasetEntry>& entries = workspace.datasetsOfFile(sFile);
    if (entries.empty()) {
        addRasterFile(parts, pEnvironment, sFile);
    } else {
        addDatasets(parts, pEnvironment, sFolder, entries);
        addRastersOf(parts, pEnvironment, entries.front().pSource);
    }
}

// Adds what the next file of the folder holds.
std::function<bool(MapParts&)> filesOf(const EnvironmentPtr& pEnvironment, const std::string& sFolder) {
    const GdalWorkspacePtr pWorkspace = pEnvironment->openPath(sFolder);
    static_cast<void>(pWorkspace->files()); // a folder that cannot be read fails at once
    return [pEnvironment, sFolder, pWorkspace, lNext = std::size_t{0}](MapParts& parts) mutable {
        const std::vector<std::string>& files = pWorkspace->files();
        if (lNext == files.size()) {
            return false;
        }
        MapParts ofFile; // all of it or nothing
        addFileOfFolder(ofFile, pEnvironment, sFolder, *pWorkspace, files[lNext]);
        ++lNext;
        std::move(ofFile.layers.begin(), ofFile.layers.end(), std::back_inserter(parts.layers));
        std::move(ofFile.tables.begin(), ofFile.tables.end(), std::back_inserter(parts.tables));
        return true;
    };
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
    std::function<bool(MapParts&)> addMore;
    if (isFolder(sPath) && extensionOf(sPath) != "gdb") {
        addMore = filesOf(pEnvironment, sPath);
        while (parts.layers.empty() && parts.tables.empty() && addMore(parts)) {
        }
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
    std::vector<GdalMapPtr> maps{std::make_shared<GdalMap>(sName, std::move(parts), std::move(addMore))};
    return std::make_shared<GdalMapDocument>(std::move(maps), 0);
}

} // namespace halvane::host::gdal
