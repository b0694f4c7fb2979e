#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/map/TwinNames.h"
#include "host/gdal/objects/Map.h"
#include "host/gdal/source/Locations.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>
#include <utility>

namespace halvane::host::gdal {

namespace {

/// Collects what the files of one map hold.
class Collector {
public:
    explicit Collector(EnvironmentPtr pEnvironment) : pEnvironment_(std::move(pEnvironment)) {}

    /// @param sLocation the file itself, or its folder.
    void addDatasets(MapParts& parts, const std::string& sLocation,
                     const std::vector<DatasetEntry>& entries) {
        for (const DatasetEntry& entry : entries) {
            DataReference data = referenceTo(sLocation, entry.sName);
            data.entry = entry;
            add(parts, std::move(data), entry.bFeatures ? BrokenFile::Kind::Layer : BrokenFile::Kind::Table,
                entry.pSource->sDisplayName);
        }
    }

    /// @returns whether the file holds rasters.
    bool addRasterFile(MapParts& parts, const std::string& sFile) {
        const std::vector<RasterEntry> rasters = rastersOfFile(pEnvironment_->pool(), sFile);
        for (const RasterEntry& raster : rasters)
            addRaster(parts, raster.sName, raster.pSource);
        return !rasters.empty();
    }

    /// A file database may hold rasters beside its tables.
    void addRastersOf(MapParts& parts, const SourcePtr& pSource) {
        for (const RasterEntry& raster : rastersOf(pEnvironment_->pool(), pSource))
            addRaster(parts, raster.sName, raster.pSource);
    }

    /// What cannot be read has its place too, and fails where it is reached.
    void addBroken(MapParts& parts, const std::string& sFile, const BrokenFile& broken) {
        DataReference data = referenceTo(sFile, stemOf(sFile));
        data.sWhyNot = broken.sReason;
        add(parts, std::move(data), broken.kind, sFile);
    }

    void addFileOfFolder(MapParts& parts, const GdalWorkspace& workspace, const std::string& sFolder,
                         const std::string& sFile) {
        const std::vector<DatasetEntry>& entries = workspace.datasetsOfFile(sFile);
        if (!entries.empty()) {
            addDatasets(parts, sFolder, entries);
            addRastersOf(parts, entries.front().pSource);
            return;
        }
        if (addRasterFile(parts, sFile))
            return;
        std::optional<BrokenFile> broken = workspace.brokenFile(sFile);
        // A database without anything in it is read as it should be.
        if (!broken && featureSourceOf(pEnvironment_->pool(), sFile) == nullptr)
            broken = brokenRasterFile(pEnvironment_->pool(), sFile);
        if (broken)
            addBroken(parts, sFile, *broken);
    }

private:
    [[nodiscard]] DataReference referenceTo(const std::string& sLocation, const std::string& sDataset) const {
        DataReference data;
        data.pEnvironment = pEnvironment_;
        data.sLocation = sLocation;
        data.sDataset = sDataset;
        return data;
    }

    void add(MapParts& parts, DataReference data, BrokenFile::Kind kind, const std::string& sFile) {
        const std::string sName = data.sDataset;
        if (kind == BrokenFile::Kind::Layer) {
            parts.layers.push_back(
                std::make_shared<GdalFeatureLayer>(layerNames_.give(sName, sFile), std::move(data)));
        } else if (kind == BrokenFile::Kind::Raster) {
            data.sDataset.clear();
            addRasterLayer(parts, sName, std::move(data), nullptr, sFile);
        } else {
            if (std::string sGiven = tableNames_.give(sName, sFile); sGiven != sName) {
                TableOverrides overrides;
                overrides.sName = std::move(sGiven);
                data.pOverrides = std::make_shared<const TableOverrides>(std::move(overrides));
            }
            parts.tables.push_back(std::move(data));
        }
    }

    void addRaster(MapParts& parts, const std::string& sName, SourcePtr pSource) {
        const std::string sFile = pSource->sDisplayName;
        addRasterLayer(parts, sName, referenceTo(sFile, ""), std::move(pSource), sFile);
    }

    // Rasters are looked for among rasters. A feature layer is looked for among all layers.
    void addRasterLayer(MapParts& parts, const std::string& sName, DataReference data, SourcePtr pSource,
                        const std::string& sFile) {
        const std::string sGiven = rasterNames_.give(sName, sFile);
        static_cast<void>(layerNames_.give(sGiven, sFile));
        parts.layers.push_back(
            std::make_shared<GdalRasterLayer>(sGiven, std::move(data), std::move(pSource)));
    }

    EnvironmentPtr pEnvironment_;
    TwinNames layerNames_;
    TwinNames rasterNames_;
    TwinNames tableNames_;
};

// Adds what the next file of the folder holds.
std::function<bool(MapParts&)> filesOf(const EnvironmentPtr& pEnvironment, const std::string& sFolder) {
    const GdalWorkspacePtr pWorkspace = pEnvironment->openPath(sFolder);
    static_cast<void>(pWorkspace->files()); // a folder that cannot be read fails at once
    return [collector = Collector(pEnvironment), sFolder, pWorkspace,
            lNext = std::size_t{0}](MapParts& parts) mutable {
        const std::vector<std::string>& files = pWorkspace->files();
        if (lNext == files.size())
            return false;
        MapParts ofFile; // all of it or nothing
        collector.addFileOfFolder(ofFile, *pWorkspace, sFolder, files[lNext]);
        ++lNext;
        std::move(ofFile.layers.begin(), ofFile.layers.end(), std::back_inserter(parts.layers));
        std::move(ofFile.tables.begin(), ofFile.tables.end(), std::back_inserter(parts.tables));
        return true;
    };
}

void addFile(MapParts& parts, const EnvironmentPtr& pEnvironment, const std::string& sFile) {
    Collector collector(pEnvironment);
    const GdalWorkspacePtr pWorkspace = pEnvironment->findPath(sFile);
    if (pWorkspace == nullptr) {
        collector.addRasterFile(parts, sFile);
        return;
    }
    collector.addDatasets(parts, sFile, pWorkspace->datasets());
    for (const SourcePtr& pSource : pWorkspace->sources())
        collector.addRastersOf(parts, pSource);
}

std::string whyNoMap(Environment& environment, const std::string& sPath) {
    if (isFolder(sPath) && extensionOf(sPath) != "gdb")
        return "The folder \"" + sPath + "\" holds no data in a format that is read here";
    for (const auto& broken :
         {brokenFeatureFile(environment.pool(), sPath), brokenRasterFile(environment.pool(), sPath)})
        if (broken)
            return broken->sReason;
    if (std::string sDenied = whyDenied(sPath); !sDenied.empty())
        return sDenied;
    const bool bKnown = !openFeatures(environment.pool(), sPath).sExpectedDriver.empty();
    if (bKnown || environment.findPath(sPath) != nullptr)
        return "\"" + sPath + "\" holds no layers and no tables";
    return "\"" + sPath +
           "\" is neither a map document (its root would be <MapDocument>), nor a QGIS project, nor data in "
           "a "
           "format that is read here";
}

} // namespace

GdalMapDocumentPtr mapOfDataset(const EnvironmentPtr& pEnvironment, const std::string& sPath) {
    pEnvironment->addDataLocation(sPath);
    MapParts parts;
    std::function<bool(MapParts&)> addMore;
    if (isFolder(sPath) && extensionOf(sPath) != "gdb") {
        addMore = filesOf(pEnvironment, sPath);
        while (parts.layers.empty() && parts.tables.empty() && addMore(parts)) {
        }
    } else {
        addFile(parts, pEnvironment, sPath);
    }
    if (parts.layers.empty() && parts.tables.empty())
        throw Failure(FailureNumber::HostFailure, whyNoMap(*pEnvironment, sPath));
    const std::string sName =
        isFolder(sPath) ? std::filesystem::path(sPath).filename().string() : stemOf(sPath);
    std::vector<GdalMapPtr> maps{std::make_shared<GdalMap>(sName, std::move(parts), std::move(addMore))};
    return std::make_shared<GdalMapDocument>(std::move(maps), 0);
}

} // namespace halvane::host::gdal
