#include "host/gdal/objects/Map.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/Layers.h"
#include "host/Tables.h"
#include "host/gdal/source/Locations.h"

namespace halvane::host::gdal {

namespace {

template<class Items>
std::int32_t countOf(const Items& items) {
    return static_cast<std::int32_t>(items.size());
}

template<class Items>
const auto& itemAt(const Items& items, std::int32_t lIndex) {
    if (lIndex < 0 || lIndex >= countOf(items))
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return items[static_cast<std::size_t>(lIndex)];
}

std::shared_ptr<GdalFeatureLayer> findIn(const GisLayerPtr& pLayer, std::string_view sName) {
    if (auto pFeatureLayer = std::dynamic_pointer_cast<GdalFeatureLayer>(pLayer);
        pFeatureLayer != nullptr && equalIgnoringCase(pFeatureLayer->name(), sName))
        return pFeatureLayer;
    if (const auto pGroup = std::dynamic_pointer_cast<GisGroupLayer>(pLayer)) {
        for (std::int32_t lIndex = 0; lIndex < pGroup->layerCount(); ++lIndex)
            if (auto pFound = findIn(pGroup->layer(lIndex), sName))
                return pFound;
    }
    return nullptr;
}

GisSpatialReferencePtr ownReferenceOf(const GisLayer& layer,
                                      const std::optional<ReferenceOverride>& overrides) {
    if (const auto* pFeatureLayer = dynamic_cast<const GdalFeatureLayer*>(&layer))
        return pFeatureLayer->spatialReference(overrides);
    if (const auto* pRaster = dynamic_cast<const GdalRasterLayer*>(&layer))
        return pRaster->spatialReference(overrides);
    const auto* pTin = dynamic_cast<const GdalTinLayer*>(&layer);
    return pTin == nullptr ? nullptr : pTin->spatialReference(overrides);
}

void openData(const GisLayer& layer) {
    if (const auto* pFeatureLayer = dynamic_cast<const GdalFeatureLayer*>(&layer))
        static_cast<void>(pFeatureLayer->featureClass());
    else if (const auto* pRaster = dynamic_cast<const GisRasterLayer*>(&layer))
        static_cast<void>(pRaster->filePath());
    else if (const auto* pTin = dynamic_cast<const GisTinLayer*>(&layer))
        static_cast<void>(pTin->dataset());
}

bool isDataGone(const GisLayer& layer) {
    try {
        openData(layer);
        return false;
    } catch (const Failure&) {
        return true;
    }
}

GisSpatialReferencePtr referenceOf(const GisLayer& layer, const std::optional<ReferenceOverride>& overrides) {
    try {
        if (auto pReference = ownReferenceOf(layer, overrides))
            return pReference;
    } catch (const Failure&) {
        if (isDataGone(layer))
            return nullptr; // such a layer has none
        throw;
    }
    if (const auto* pGroup = dynamic_cast<const GisGroupLayer*>(&layer)) {
        for (std::int32_t lIndex = 0; lIndex < pGroup->layerCount(); ++lIndex)
            if (auto pReference = referenceOf(*pGroup->layer(lIndex), overrides))
                return pReference;
    }
    return nullptr;
}

GisSpatialReferencePtr firstReference(const std::vector<GisLayerPtr>& layers,
                                      const std::optional<ReferenceOverride>& overrides) {
    for (const GisLayerPtr& pLayer : layers)
        if (auto pReference = referenceOf(*pLayer, overrides))
            return pReference;
    return nullptr;
}

const TableReader& readerOf(const GisTable& table) {
    const auto* pClass = dynamic_cast<const GdalFeatureClass*>(&table);
    return pClass != nullptr ? pClass->reader() : dynamic_cast<const GdalTable&>(table).reader();
}

void collectProblems(const GisLayer& layer, std::vector<std::string>& problems) {
    try {
        if (const auto* pFeatureLayer = dynamic_cast<const GdalFeatureLayer*>(&layer))
            pFeatureLayer->testData();
        else
            openData(layer);
    } catch (const Failure& failure) {
        problems.push_back("layer \"" + layer.name() + "\": " + failure.description());
    }
    if (const auto* pGroup = dynamic_cast<const GisGroupLayer*>(&layer))
        for (std::int32_t lIndex = 0; lIndex < pGroup->layerCount(); ++lIndex)
            collectProblems(*pGroup->layer(lIndex), problems);
}

// What a table is called in its map, also where its data is gone.
std::string nameOf(const DataReference& data) {
    if (!data.pOverrides->sName.empty())
        return data.pOverrides->sName;
    return data.sDataset.empty() ? stemOf(data.sLocation) : data.sDataset;
}

} // namespace

bool GdalMap::findMore() const {
    if (addMore_ && !addMore_(parts_))
        addMore_ = nullptr;
    return addMore_ != nullptr;
}

const MapParts& GdalMap::allParts() const {
    while (findMore()) {
    }
    return parts_;
}

std::int32_t GdalMap::layersFoundFor(std::int32_t lIndex) const {
    while (lIndex >= countOf(parts_.layers) && findMore()) {
    }
    return countOf(parts_.layers);
}

std::int32_t GdalMap::standaloneTablesFoundFor(std::int32_t lIndex) const {
    while (lIndex >= countOf(parts_.tables) && findMore()) {
    }
    return countOf(parts_.tables);
}

std::int32_t GdalMap::layerCount() const {
    return countOf(allParts().layers);
}

GisLayerPtr GdalMap::layer(std::int32_t lIndex) const {
    static_cast<void>(layersFoundFor(lIndex));
    return itemAt(parts_.layers, lIndex);
}

std::int32_t GdalMap::standaloneTableCount() const {
    return countOf(allParts().tables);
}

GisTablePtr GdalMap::standaloneTable(std::int32_t lIndex) const {
    static_cast<void>(standaloneTablesFoundFor(lIndex));
    const DataReference& data = itemAt(parts_.tables, lIndex);
    try {
        return data.openTable();
    } catch (const Failure&) {
        return nullptr;
    }
}

std::string GdalMap::standaloneTableProblem(std::int32_t lIndex) const {
    static_cast<void>(standaloneTablesFoundFor(lIndex));
    try {
        static_cast<void>(itemAt(parts_.tables, lIndex).openTable());
        return {};
    } catch (const Failure& failure) {
        return failure.description();
    }
}

void GdalMap::requireReadableTable(std::string_view sName) const {
    for (const DataReference& data : allParts().tables)
        if (equalIgnoringCase(nameOf(data), sName))
            static_cast<void>(data.openTable());
}

GisSpatialReferencePtr GdalMap::spatialReference() const {
    if (reference_ && !reference_->sDefinition.empty())
        return makeSpatialReference(nullptr, reference_, {});
    return firstReference(allParts().layers, reference_);
}

std::shared_ptr<GdalFeatureLayer> GdalMap::findFeatureLayer(std::string_view sName) const {
    for (const GisLayerPtr& pLayer : allParts().layers)
        if (auto pFound = findIn(pLayer, sName))
            return pFound;
    return nullptr;
}

std::vector<std::string> GdalMap::problems() const {
    std::vector<std::string> problems;
    for (const GisLayerPtr& pLayer : allParts().layers)
        collectProblems(*pLayer, problems);
    for (const DataReference& data : allParts().tables) {
        try {
            if (!data.isKnown())
                readerOf(*data.openTable()).testOverrides();
        } catch (const Failure& failure) {
            problems.push_back("table \"" + nameOf(data) + "\": " + failure.description());
        }
    }
    return problems;
}

std::int32_t GdalMapDocument::mapCount() const {
    return countOf(maps_);
}

GisMapPtr GdalMapDocument::map(std::int32_t lIndex) const {
    return itemAt(maps_, lIndex);
}

} // namespace halvane::host::gdal
