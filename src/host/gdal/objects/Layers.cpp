#include "host/gdal/objects/Layers.h"

#include "base/Choices.h"
#include "base/Failure.h"
#include "base/Text.h"
#include "host/Tables.h"
#include "host/gdal/objects/Places.h"
#include "host/gdal/source/BrokenFiles.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Locations.h"

#include <cpl_string.h>
#include <gdal_pam.h>

#include <algorithm>
#include <array>
#include <limits>
#include <unordered_set>

namespace halvane::host::gdal {

namespace {

// The bounds of a raster's cells, which may lie askew; nothing for one that lies nowhere.
std::optional<XyDomain> rasterBounds(GDALDataset& dataset) {
    std::array<double, 6> aTransform{};
    if (dataset.GetGeoTransform(aTransform.data()) != CE_None)
        return std::nullopt;
    XyDomain bounds{aTransform[0], aTransform[3], aTransform[0], aTransform[3], 0, 0, 0};
    for (const double dColumn : {0.0, static_cast<double>(dataset.GetRasterXSize())}) {
        for (const double dRow : {0.0, static_cast<double>(dataset.GetRasterYSize())}) {
            const double dX = aTransform[0] + dColumn * aTransform[1] + dRow * aTransform[2];
            const double dY = aTransform[3] + dColumn * aTransform[4] + dRow * aTransform[5];
            bounds.dXMin = std::min(bounds.dXMin, dX);
            bounds.dYMin = std::min(bounds.dYMin, dY);
            bounds.dXMax = std::max(bounds.dXMax, dX);
            bounds.dYMax = std::max(bounds.dYMax, dY);
        }
    }
    return bounds;
}

// Some drivers ask their own files alone, not the one beside the raster.
const OGRSpatialReference* rasterReference(GDALDataset& dataset) {
    const OGRSpatialReference* pOwn = dataset.GetSpatialRef();
    if (pOwn != nullptr && !pOwn->IsEmpty())
        return pOwn;
    auto* pWithSideFile = dynamic_cast<GDALPamDataset*>(&dataset);
    return pWithSideFile == nullptr ? nullptr : pWithSideFile->GDALPamDataset::GetSpatialRef();
}

} // namespace

GdalWorkspacePtr DataReference::openWorkspace() const {
    if (!sWhyNot.empty())
        throw Failure(FailureNumber::HostFailure, sWhyNot);
    return at(sPlace, [&] {
        return bConnection ? pEnvironment->openConnection(sLocation) : pEnvironment->openPath(sLocation);
    });
}

GdalWorkspacePtr DataReference::openSurfaceWorkspace() const {
    if (!bMesh || !sWhyNot.empty()) {
        static_cast<void>(openData()); // a workspace without the dataset is a failure
        return openWorkspace();
    }
    return at(sPlace, [&] {
        if (!isFile(sLocation))
            throw Failure(FailureNumber::FileNotFound, whyMissing(sLocation));
        return pEnvironment->openPath(folderOf(sLocation));
    });
}

TableDataPtr DataReference::findData(GdalWorkspace& workspace) const {
    if (!pOverrides->sSql.empty())
        return workspace.computedTable(query(workspace));
    if (entry)
        return workspace.tableOf(*entry);
    if (!sDataset.empty()) {
        TableDataPtr pData = workspace.findTable(sDataset);
        testShapes(*pData);
        return pData;
    }
    const std::vector<DatasetEntry>& entries = workspace.datasets();
    if (nDataset && *nDataset < entries.size())
        return workspace.tableOf(entries[*nDataset]);
    if (entries.size() == 1)
        return workspace.tableOf(entries.front());
    throw Failure(FailureNumber::HostFailure, "\"" + sLocation + "\" holds " +
                                                  std::to_string(entries.size()) +
                                                  " datasets; say which one with dataset=\"...\"");
}

// Of several columns of shapes the first one is read.
void DataReference::testShapes(TableData& data) const {
    if (sShapes.empty())
        return;
    const LayerHandle handle = data.openLayer();
    OGRFeatureDefn& definition = *handle.layer().GetLayerDefn();
    if (definition.GetGeomFieldIndex(sShapes.c_str()) > 0)
        throw Failure(FailureNumber::HostFailure,
                      "its shapes are in the column \"" + sShapes + "\" of \"" + sDataset +
                          "\", of whose columns of shapes only \"" +
                          definition.GetGeomFieldDefn(0)->GetNameRef() +
                          "\" is read; make a view with that column alone, and use that");
}

TableQuery DataReference::query(const GdalWorkspace& workspace) const {
    return {workspace.datasets(), pOverrides->sSql, sDataset.empty() ? stemOf(sLocation) : sDataset};
}

void DataReference::testComputing() const {
    if (pOverrides->sSql.empty() && pOverrides->orderBy.empty() && pOverrides->sCrs.empty())
        return;
    if (!pOverrides->sCrs.empty())
        at(sPlace, [&] { static_cast<void>(registeredReference(pOverrides->sCrs)); });
    GdalWorkspacePtr pWorkspace;
    TableDataPtr pData;
    try {
        pWorkspace = openWorkspace();
        if (pOverrides->sSql.empty())
            pData = findData(*pWorkspace);
    } catch (const Failure&) {
        return; // what is gone is told by whoever asks for the layer
    }
    at(sPlace, [&] {
        if (!pOverrides->sSql.empty())
            testQuery(pEnvironment->pool(), query(*pWorkspace));
        if (pOverrides->orderBy.empty() && pOverrides->sCrs.empty())
            return;
        TableReader(pData == nullptr ? findData(*pWorkspace) : pData, pWorkspace, pOverrides)
            .testOrderAndReference();
    });
}

TableDataPtr DataReference::openData() const {
    return at(sPlace, [&] { return findData(*openWorkspace()); });
}

GdalFeatureClassPtr DataReference::openFeatureClass() const {
    return at(sPlace, [&] { return openWorkspace()->makeFeatureClass(openData(), pOverrides); });
}

GisTablePtr DataReference::openTable() const {
    return at(sPlace, [&] { return openWorkspace()->makeTable(openData(), pOverrides); });
}

std::string GdalFeatureLayer::name() const {
    if (sName_.empty() && pFeatureClass_ != nullptr)
        return pFeatureClass_->datasetName();
    return sName_;
}

GisFeatureClassPtr GdalFeatureLayer::featureClass() const {
    if (pFeatureClass_ == nullptr && data_)
        pFeatureClass_ = data_->openFeatureClass();
    return pFeatureClass_;
}

void GdalFeatureLayer::setFeatureClass(GisFeatureClassPtr pFeatureClass) {
    pFeatureClass_ = std::move(pFeatureClass);
    data_.reset();
    selection_.reset();
    selectedIds_.reset();
}

GisSpatialReferencePtr GdalFeatureLayer::spatialReference() const {
    const GisFeatureClassPtr pClass = featureClass();
    return pClass == nullptr ? nullptr : pClass->spatialReference();
}

GisSpatialReferencePtr
GdalFeatureLayer::spatialReference(const std::optional<ReferenceOverride>& overrides) const {
    return overrides ? reader().spatialReference(overrides) : spatialReference();
}

void GdalFeatureLayer::select(SelectionChoice choice) {
    selection_ = std::move(choice);
    selectedIds_.reset();
}

const TableReader& GdalFeatureLayer::reader() const {
    const auto pClass = std::dynamic_pointer_cast<GdalFeatureClass>(featureClass());
    if (pClass == nullptr)
        throw Failure(FailureNumber::HostFailure, "The layer \"" + name() + "\" has no feature class");
    return pClass->reader();
}

const std::vector<std::int64_t>& GdalFeatureLayer::selectedIds() const {
    if (selectedIds_)
        return *selectedIds_;
    if (!selection_)
        return selectedIds_.emplace();
    return selectedIds_.emplace(at(selection_->sPlace, [&] { return idsOf(*selection_); }));
}

std::vector<std::int64_t> GdalFeatureLayer::idsOf(const SelectionChoice& choice) const {
    if (!choice.sWhere.empty())
        return reader().idsWhere(choice.sWhere);
    const std::vector<std::int64_t> missing = reader().missingIds(choice.ids);
    if (!missing.empty()) {
        throw Failure(FailureNumber::HostFailure, "The layer \"" + name() + "\" has no feature " +
                                                      std::to_string(missing.front()) + " to select");
    }
    std::vector<std::int64_t> ids;
    std::unordered_set<std::int64_t> seen;
    std::copy_if(choice.ids.begin(), choice.ids.end(), std::back_inserter(ids),
                 [&](std::int64_t lId) { return seen.insert(lId).second; });
    return ids;
}

void GdalFeatureLayer::testData() const {
    if (data_ && !data_->isKnown()) {
        static_cast<void>(spatialReference());
        reader().testOverrides();
    }
    testSelection();
}

std::int32_t GdalFeatureLayer::selectionCount() const {
    const std::size_t nCount = selectedIds().size();
    return nCount > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())
               ? throw Failure::of(FailureNumber::Overflow)
               : static_cast<std::int32_t>(nCount);
}

GisCursorPtr GdalFeatureLayer::searchSelection() {
    return reader().searchIds(selectedIds());
}

namespace {

SourcePtr namedRaster(const std::vector<RasterEntry>& rasters, const DataReference& data) {
    const auto pFound = std::find_if(rasters.begin(), rasters.end(), [&](const RasterEntry& raster) {
        return equalIgnoringCase(raster.sName, data.sDataset);
    });
    if (pFound != rasters.end())
        return pFound->pSource;
    if (rasters.empty())
        return rasterSourceOf(data.sLocation, data.sDataset); // to open it tells why
    Choice choice{"it has", "raster", "rasters", {}};
    for (const RasterEntry& raster : rasters)
        choice.names.push_back(raster.sName);
    throw Failure(FailureNumber::HostFailure, "\"" + data.sLocation + "\" has no raster \"" + data.sDataset +
                                                  "\"; " + meantOrThere(data.sDataset, choice));
}

} // namespace

SourcePtr GdalRasterLayer::findSource() const {
    HandlePool& pool = data_.pEnvironment->pool();
    if (!data_.sWhyNot.empty())
        throw Failure(FailureNumber::HostFailure, data_.sWhyNot);
    const std::vector<RasterEntry> rasters = rastersOfFile(pool, data_.sLocation);
    if (!data_.sDataset.empty())
        return namedRaster(rasters, data_);
    if (rasters.empty() && !isFile(data_.sLocation) && !isFolder(data_.sLocation))
        throw Failure(FailureNumber::HostFailure, whyMissing(data_.sLocation));
    if (rasters.empty()) {
        const auto broken = brokenRasterFile(pool, data_.sLocation);
        throw Failure(FailureNumber::HostFailure,
                      broken ? broken->sReason
                             : "\"" + data_.sLocation + "\" is not in a raster format that is read here");
    }
    if (rasters.size() > 1) {
        throw Failure(FailureNumber::HostFailure, "\"" + data_.sLocation + "\" holds " +
                                                      std::to_string(rasters.size()) +
                                                      " rasters; say which one with dataset=\"...\"");
    }
    return rasters.front().pSource;
}

Handle GdalRasterLayer::open() const {
    return at(data_.sPlace, [&] {
        pSource_ = pSource_ == nullptr ? findSource() : pSource_;
        return data_.pEnvironment->pool().acquire(pSource_);
    });
}

std::string GdalRasterLayer::filePath() const {
    if (sFilePath_.empty()) {
        const Handle handle = open();
        const ErrorScope errors;
        const CPLStringList files(handle.dataset().GetFileList());
        sFilePath_ = files.empty() ? data_.sLocation : files[0];
    }
    return sFilePath_;
}

GisSpatialReferencePtr
GdalRasterLayer::spatialReference(const std::optional<ReferenceOverride>& overrides) const {
    const Handle handle = open();
    const ErrorScope errors;
    LayerExtents extents;
    extents.xy = [bounds = rasterBounds(handle.dataset())] { return bounds; };
    return makeSpatialReference(rasterReference(handle.dataset()), overrides, std::move(extents));
}

GisSpatialReferencePtr
GdalTinLayer::spatialReference(const std::optional<ReferenceOverride>& overrides) const {
    const auto& own = data_.pOverrides->reference;
    if (data_.bMesh)
        return makeSpatialReference(nullptr, overrides ? overrides : own, {});
    return TableReader(data_.openData(), data_.openWorkspace(), noOverrides()).spatialReference(overrides);
}

GisDatasetPtr GdalTinLayer::dataset() const {
    return std::make_shared<GdalDataset>(data_.openSurfaceWorkspace());
}

std::int32_t GdalGroupLayer::layerCount() const {
    return static_cast<std::int32_t>(layers_.size());
}

GisLayerPtr GdalGroupLayer::layer(std::int32_t lIndex) const {
    if (lIndex < 0 || lIndex >= layerCount())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return layers_[static_cast<std::size_t>(lIndex)];
}

} // namespace halvane::host::gdal
