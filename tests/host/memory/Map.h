#pragma once

#include "host/Map.h"
#include "host/memory/Faults.h"

#include <memory>
#include <string>
#include <vector>

namespace halvane::host::memory {

class MemoryMap final : public GisMap, private Scripted {
public:
    explicit MemoryMap(std::string sName) : sName_(std::move(sName)) {}
    [[nodiscard]] static std::shared_ptr<MemoryMap> make(std::string sName,
                                                         std::vector<GisLayerPtr> aLayers = {});

    void addLayer(GisLayerPtr pLayer) { aLayers_.push_back(std::move(pLayer)); }
    /// @param pTable nothing for a table whose data is gone.
    void addTable(GisTablePtr pTable) { aTables_.push_back(std::move(pTable)); }
    void setSpatialReference(GisSpatialReferencePtr pReference) { pReference_ = std::move(pReference); }

    [[nodiscard]] std::string name() const override;
    [[nodiscard]] std::int32_t layerCount() const override;
    [[nodiscard]] GisLayerPtr layer(std::int32_t lIndex) const override;
    [[nodiscard]] std::int32_t standaloneTableCount() const override;
    [[nodiscard]] GisTablePtr standaloneTable(std::int32_t lIndex) const override;
    [[nodiscard]] GisSpatialReferencePtr spatialReference() const override;

private:
    std::string sName_;
    std::vector<GisLayerPtr> aLayers_;
    std::vector<GisTablePtr> aTables_;
    GisSpatialReferencePtr pReference_;
};
using MemoryMapPtr = std::shared_ptr<MemoryMap>;

/// A document shows its first map unless told otherwise.
class MemoryMapDocument final : public GisMapDocument, private Scripted {
public:
    explicit MemoryMapDocument(std::vector<GisMapPtr> aMaps);
    [[nodiscard]] static std::shared_ptr<MemoryMapDocument> make(std::vector<GisMapPtr> aMaps);

    /// @param pMap any map, or nothing.
    void setFocusMap(GisMapPtr pMap) { pFocusMap_ = std::move(pMap); }

    [[nodiscard]] GisMapPtr focusMap() const override;
    [[nodiscard]] std::int32_t mapCount() const override;
    [[nodiscard]] GisMapPtr map(std::int32_t lIndex) const override;

private:
    std::vector<GisMapPtr> aMaps_;
    GisMapPtr pFocusMap_;
};
using MemoryMapDocumentPtr = std::shared_ptr<MemoryMapDocument>;

} // namespace halvane::host::memory
