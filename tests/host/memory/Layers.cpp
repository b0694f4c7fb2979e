#include "host/memory/Layers.h"

#include "base/Failure.h"
#include "host/Tables.h"

namespace halvane::host::memory {

MemoryFeatureLayer::MemoryFeatureLayer(std::string sName, GisFeatureClassPtr pFeatureClass)
    : MemoryLayerOf(std::move(sName)), pFeatureClass_(std::move(pFeatureClass)) {}

MemoryFeatureLayerPtr MemoryFeatureLayer::make(std::string sName, GisFeatureClassPtr pFeatureClass) {
    return std::make_shared<MemoryFeatureLayer>(std::move(sName), std::move(pFeatureClass));
}

GisFeatureClassPtr MemoryFeatureLayer::featureClass() const {
    pass("GisFeatureLayer", "featureClass");
    return pFeatureClass_;
}

void MemoryFeatureLayer::setFeatureClass(GisFeatureClassPtr pFeatureClass) {
    pass("GisFeatureLayer", "setFeatureClass");
    pFeatureClass_ = std::move(pFeatureClass);
}

std::int32_t MemoryFeatureLayer::selectionCount() const {
    pass("GisFeatureLayer", "selectionCount");
    return static_cast<std::int32_t>(aSelectedIds_.size());
}

GisCursorPtr MemoryFeatureLayer::searchSelection() {
    pass("GisFeatureLayer", "searchSelection");
    const auto pFeatures = std::dynamic_pointer_cast<MemoryFeatureClass>(pFeatureClass_);
    if (!pFeatures)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    return std::make_shared<MemoryCursor>(pFeatures->contents().rowsWithIds(aSelectedIds_), script());
}

GisTablePtr MemoryFeatureLayer::asTable() const {
    pass("GisFeatureLayer", "asTable");
    return pFeatureClass_;
}

GisSpatialReferencePtr MemoryFeatureLayer::spatialReference() const {
    pass("GisFeatureLayer", "spatialReference");
    return pReference_ || !pFeatureClass_ ? pReference_ : pFeatureClass_->spatialReference();
}

MemoryRasterLayer::MemoryRasterLayer(std::string sName, std::string sFilePath)
    : MemoryLayerOf(std::move(sName)), sFilePath_(std::move(sFilePath)) {}

std::shared_ptr<MemoryRasterLayer> MemoryRasterLayer::make(std::string sName, std::string sFilePath) {
    return std::make_shared<MemoryRasterLayer>(std::move(sName), std::move(sFilePath));
}

std::string MemoryRasterLayer::filePath() const {
    pass("GisRasterLayer", "filePath");
    return sFilePath_;
}

std::shared_ptr<MemoryDataset> MemoryDataset::make(GisWorkspacePtr pWorkspace) {
    return std::make_shared<MemoryDataset>(std::move(pWorkspace));
}

GisWorkspacePtr MemoryDataset::workspace() const {
    pass("GisDataset", "workspace");
    return pWorkspace_;
}

MemoryTinLayer::MemoryTinLayer(std::string sName, GisDatasetPtr pDataset)
    : MemoryLayerOf(std::move(sName)), pDataset_(std::move(pDataset)) {}

std::shared_ptr<MemoryTinLayer> MemoryTinLayer::make(std::string sName, GisDatasetPtr pDataset) {
    return std::make_shared<MemoryTinLayer>(std::move(sName), std::move(pDataset));
}

GisDatasetPtr MemoryTinLayer::dataset() const {
    pass("GisTinLayer", "dataset");
    return pDataset_;
}

MemoryGroupLayer::MemoryGroupLayer(std::string sName, std::vector<GisLayerPtr> aLayers)
    : MemoryLayerOf(std::move(sName)), aLayers_(std::move(aLayers)) {}

std::shared_ptr<MemoryGroupLayer> MemoryGroupLayer::make(std::string sName,
                                                         std::vector<GisLayerPtr> aLayers) {
    return std::make_shared<MemoryGroupLayer>(std::move(sName), std::move(aLayers));
}

std::int32_t MemoryGroupLayer::layerCount() const {
    pass("GisGroupLayer", "layerCount");
    return static_cast<std::int32_t>(aLayers_.size());
}

GisLayerPtr MemoryGroupLayer::layer(std::int32_t lIndex) const {
    pass("GisGroupLayer", "layer");
    if (lIndex < 0 || static_cast<std::size_t>(lIndex) >= aLayers_.size())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return aLayers_[static_cast<std::size_t>(lIndex)];
}

} // namespace halvane::host::memory
