#include "host/gdal/HandlePool.h"

#include "host/gdal/ColumnReader.h"
#include "host/gdal/DatabaseGuard.h"
#include "host/gdal/Errors.h"

#include <cpl_string.h>

#include <algorithm>
#include <array>
#include <utility>

namespace halvane::host::gdal {

namespace {

// Each idle handle holds open files; a process may have 1024 of them.
constexpr std::size_t lMostIdle = 48;

} // namespace

Handle::Handle(std::shared_ptr<HandlePool> pPool, SourcePtr pSource, GDALDatasetUniquePtr pDataset)
    : pPool_(std::move(pPool)), pSource_(std::move(pSource)), pDataset_(std::move(pDataset)) {}

Handle::~Handle() {
    if (pDataset_ != nullptr) {
        pPool_->giveBack(std::move(pSource_), std::move(pDataset_));
    }
}

LayerHandle Handle::another(const std::string& sLayer) const {
    return pPool_->acquireLayer(pSource_, sLayer);
}

LayerHandle::~LayerHandle() {
    if (pLayer_ != nullptr) {
        const ErrorScope errors;
        pLayer_->SetAttributeFilter(nullptr);
        pLayer_->SetIgnoredFields(nullptr);
        pLayer_->ResetReading();
    }
}

Handle HandlePool::acquire(const SourcePtr& pSource) {
    const auto pIdle =
        std::find_if(idle_.begin(), idle_.end(), [&](const Idle& idle) { return idle.pSource == pSource; });
    if (pIdle == idle_.end()) {
        return {shared_from_this(), pSource, openDataset(*pSource)};
    }
    GDALDatasetUniquePtr pDataset = std::move(pIdle->pDataset);
    idle_.erase(pIdle);
    return {shared_from_this(), pSource, std::move(pDataset)};
}

LayerHandle HandlePool::acquireLayer(const SourcePtr& pSource, const std::string& sLayer) {
    Handle handle = acquire(pSource);
    const ErrorScope errors;
    OGRLayer* pLayer = handle.dataset().GetLayerByName(sLayer.c_str());
    if (pLayer == nullptr) {
        errors.raise("\"" + pSource->sDisplayName + "\" has no dataset \"" + sLayer + "\"");
    }
    return {std::move(handle), *pLayer};
}

void HandlePool::giveBack(SourcePtr pSource, GDALDatasetUniquePtr pDataset) noexcept {
    const ErrorScope errors; // closing may report
    try {
        idle_.push_front({std::move(pSource), std::move(pDataset)});
        if (idle_.size() > lMostIdle) {
            idle_.pop_back();
        }
    } catch (const std::bad_alloc&) {
        // Not kept: the handle was closed when its pointer went.
    }
}

GDALDatasetUniquePtr tryOpen(const Source& source, const char* const* pDrivers) {
    CPLStringList options;
    for (const std::string& sOption : source.openOptions) {
        options.AddString(sOption.c_str());
    }
    GDALDatasetUniquePtr pDataset(GDALDataset::Open(
        source.sOpenName.c_str(), source.lOpenKind | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR, pDrivers,
        options.List(), nullptr));
    if (pDataset != nullptr && pDataset->GetDriver() == nullptr) {
        pDataset.reset();
    }
    if (pDataset != nullptr) {
        guardDatabase(*pDataset);
        prepareForColumns(*pDataset);
    }
    return pDataset;
}

GDALDatasetUniquePtr openDataset(const Source& source) {
    const ErrorScope errors;
    const std::array<const char*, 2> aDrivers{source.sDriver.c_str(), nullptr};
    GDALDatasetUniquePtr pDataset = tryOpen(source, aDrivers.data());
    if (pDataset == nullptr) {
        errors.raise("\"" + source.sDisplayName + "\" cannot be opened");
    }
    return pDataset;
}

} // namespace halvane::host::gdal
