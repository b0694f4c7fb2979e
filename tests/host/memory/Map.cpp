#include "host/memory/Map.h"

#include "base/Failure.h"

namespace halvane::host::memory {

namespace {

template<class Item>
Item itemAt(const std::vector<Item>& aItems, std::int32_t lIndex) {
    if (lIndex < 0 || static_cast<std::size_t>(lIndex) >= aItems.size())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return aItems[static_cast<std::size_t>(lIndex)];
}

} // namespace

MemoryMapPtr MemoryMap::make(std::string sName, std::vector<GisLayerPtr> aLayers) {
    auto pMap = std::make_shared<MemoryMap>(std::move(sName));
    pMap->aLayers_ = std::move(aLayers);
    return pMap;
}

std::string MemoryMap::name() const {
    pass("GisMap", "name");
    return sName_;
}

std::int32_t MemoryMap::layerCount() const {
    pass("GisMap", "layerCount");
    return static_cast<std::int32_t>(aLayers_.size());
}

GisLayerPtr MemoryMap::layer(std::int32_t lIndex) const {
    pass("GisMap", "layer");
    return itemAt(aLayers_, lIndex);
}

std::int32_t MemoryMap::standaloneTableCount() const {
    pass("GisMap", "standaloneTableCount");
    return static_cast<std::int32_t>(aTables_.size());
}

GisTablePtr MemoryMap::standaloneTable(std::int32_t lIndex) const {
    pass("GisMap", "standaloneTable");
    return itemAt(aTables_, lIndex);
}

GisSpatialReferencePtr MemoryMap::spatialReference() const {
    pass("GisMap", "spatialReference");
    return pReference_;
}

MemoryMapDocument::MemoryMapDocument(std::vector<GisMapPtr> aMaps) : aMaps_(std::move(aMaps)) {
    if (!aMaps_.empty())
        pFocusMap_ = aMaps_.front();
}

MemoryMapDocumentPtr MemoryMapDocument::make(std::vector<GisMapPtr> aMaps) {
    return std::make_shared<MemoryMapDocument>(std::move(aMaps));
}

GisMapPtr MemoryMapDocument::focusMap() const {
    pass("GisMapDocument", "focusMap");
    return pFocusMap_;
}

std::int32_t MemoryMapDocument::mapCount() const {
    pass("GisMapDocument", "mapCount");
    return static_cast<std::int32_t>(aMaps_.size());
}

GisMapPtr MemoryMapDocument::map(std::int32_t lIndex) const {
    pass("GisMapDocument", "map");
    return itemAt(aMaps_, lIndex);
}

} // namespace halvane::host::memory
