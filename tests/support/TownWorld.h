#pragma once

#include "host/IExternalProcessor.h"
#include "host/memory/Memory.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace halvane::test {

/// A processor that returns a fixed text and remembers the keys of the objects that it was shown.
class SpyProcessor : public IExternalProcessor {
public:
    explicit SpyProcessor(std::string sText = {}) : sText_(std::move(sText)) {}

    std::string Process(dCollection& dColSpatialVariables) override {
        aKeys_.assign(dColSpatialVariables.ReturnKeys().begin(), dColSpatialVariables.ReturnKeys().end());
        return sText_;
    }
    [[nodiscard]] const std::vector<std::string>& keysInOrder() const { return aKeys_; }
    [[nodiscard]] std::vector<std::string> kindsSeen() const {
        auto aKinds = aKeys_;
        std::sort(aKinds.begin(), aKinds.end());
        return aKinds;
    }

private:
    std::string sText_;
    std::vector<std::string> aKeys_;
};

/// A small host in memory: a document of two maps, a database on disk, a road layer with three roads, a table
/// of signs that stand on two of them.
struct TownWorld {
    TownWorld();

    /// Adds a map of that name behind the others.
    void addMapNamed(const std::string& sName);
    std::shared_ptr<SpyProcessor> registerSpy(const std::string& sProgId, const std::string& sText = {});
    void registerComponentWithoutRole(const std::string& sProgId);
    /// Puts a database of that type code in the place of the town's.
    void replaceWorkspace(std::int32_t lTypeCode);
    /// Gives the town map a raster layer "Photo" with that path, before any other.
    void setPhotoPath(const std::string& sPath);

    host::memory::MemoryHostPtr pHost; // first: the objects share its faults
    host::memory::MemoryFeatureClassPtr pRoads;
    host::memory::MemoryFeatureClassPtr pRoadsOnDisk;
    host::memory::MemoryFeatureLayerPtr pRoadsLayer;
    host::memory::MemoryTablePtr pSigns;
    host::memory::MemoryTablePtr pPosts;
    host::memory::MemoryWorkspacePtr pWorkspace;
    host::memory::MemoryWorkspacePtr pTinWorkspace;
    host::GisTinLayerPtr pTinLayer;
    host::GisRasterLayerPtr pRasterLayer;
    host::GisLayerPtr pBaseGroup;
    host::GisLayerPtr pRoadsInBase;
    host::GisLayerPtr pLastWater;
    host::GisLayerPtr pFirstTwin;
    host::memory::MemoryMapPtr pTownMap;
    host::memory::MemoryMapPtr pHarbourMap;
    host::memory::MemoryMapDocumentPtr pMapDocument;

private:
    void makeDatabase(std::int32_t lTypeCode);
    void makeTownMap(const std::string& sPhotoPath);
    void makeDocument(std::vector<host::GisMapPtr> aFurtherMaps);
};

} // namespace halvane::test
