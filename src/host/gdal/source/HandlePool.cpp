#include "host/gdal/source/HandlePool.h"

#include "base/Failure.h"
#include "host/gdal/source/DatabaseGuard.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Locations.h"
#include "host/gdal/source/LostDefinitions.h"
#include "host/gdal/source/Queries.h"
#include "host/gdal/source/RowCollector.h"
#include "host/gdal/source/Sqlite.h"

#include <cpl_string.h>
#include <gdal_pam.h>

#include <algorithm>
#include <array>
#include <utility>

namespace halvane::host::gdal {

namespace {

// Each idle handle holds open files; a process may have 1024 of them.
constexpr std::size_t nMostIdle = 48;
// A database's handle takes about 10 KB for each of its tables. Some are kept however large they are: loops
// inside loops use several by turns.
constexpr std::size_t nMostIdleLayers = 400;
constexpr std::size_t nLeastIdle = 4;

std::size_t layersOf(const Source& source, GDALDataset& dataset) {
    // Others look for their layers when they are counted.
    const bool bCounted = source.sDriver == "GPKG" || source.sDriver == "SQLite";
    return bCounted ? static_cast<std::size_t>(std::max(dataset.GetLayerCount(), 1)) : 1;
}

// What the library finds out about a raster it would write beside it, when the handle is closed. What stands
// there may name any other file, or an address, as the one of its overviews: it is forgotten before it is
// asked.
void limitSideFiles(GDALDataset& dataset) {
    auto* pRaster = dynamic_cast<GDALPamDataset*>(&dataset);
    if (pRaster == nullptr)
        return;
    pRaster->SetPamFlags(pRaster->GetPamFlags() | GPF_NOSAVE);
    if (pRaster->GetMetadata("OVERVIEWS") != nullptr)
        pRaster->SetMetadata(nullptr, "OVERVIEWS");
}

void testDefinition(const Handle& handle, const std::string& sLayer) {
    sqlite3* pDatabase = databaseOf(handle.dataset());
    const std::string sWhy = pDatabase == nullptr ? std::string() : whyLost(pDatabase, sLayer);
    if (!sWhy.empty())
        throw Failure(FailureNumber::HostFailure, "\"" + handle.source().sDisplayName + "\": " + sWhy);
}

} // namespace

Handle::Handle(std::shared_ptr<HandlePool> pPool, SourcePtr pSource, GDALDatasetUniquePtr pDataset,
               MissingRows missing)
    : pPool_(std::move(pPool)), pSource_(std::move(pSource)), pDataset_(std::move(pDataset)),
      watch_(pDataset_.get()), pMissing_(std::make_unique<MissingRows>(std::move(missing))) {}

Handle::~Handle() {
    watch_.end();
    if (pDataset_ != nullptr && pMissing_->any())
        discard();
    if (pDataset_ != nullptr)
        pPool_->giveBack(std::move(pSource_), std::move(pDataset_));
}

void Handle::discard() noexcept {
    const ErrorScope errors; // closing may report
    pDataset_.reset();
}

const std::shared_ptr<ShapeLosses>& Handle::shapeLosses() const {
    return pPool_->shapeLosses();
}

std::string Handle::heldState() const {
    return pPool_->snapshots().stateOf(*pSource_);
}

LayerHandle Handle::another(const std::string& sLayer) const {
    return pPool_->acquireLayer(pSource_, sLayer);
}

LayerHandle::~LayerHandle() {
    if (pLayer_ != nullptr) {
        const ErrorScope errors;
        setDataInUse(&source());
        try {
            pLayer_->SetAttributeFilter(nullptr);
            pLayer_->SetIgnoredFields(nullptr);
            pLayer_->ResetReading();
        } catch (const std::exception&) { // no memory to prepare it for the next: nobody gets it
            handle_.discard();
        }
    }
}

Handle HandlePool::acquire(const SourcePtr& pSource) {
    const auto pIdle =
        std::find_if(idle_.begin(), idle_.end(), [&](const Idle& idle) { return idle.pSource == pSource; });
    if (pIdle == idle_.end()) {
        MissingRows missing;
        GDALDatasetUniquePtr pDataset = openDataset(*pSource, missing);
        snapshots_.join(*pSource, *pDataset);
        return {shared_from_this(), pSource, std::move(pDataset), std::move(missing)};
    }
    GDALDatasetUniquePtr pDataset = std::move(pIdle->pDataset);
    nIdleLayers_ -= pIdle->nLayers;
    idle_.erase(pIdle);
    snapshots_.join(*pSource, *pDataset);
    return {shared_from_this(), pSource, std::move(pDataset)};
}

LayerHandle HandlePool::acquireLayer(const SourcePtr& pSource, const std::string& sLayer) {
    Handle handle = acquire(pSource);
    const ErrorScope errors;
    OGRLayer* pLayer = handle.dataset().GetLayerByName(sLayer.c_str());
    // Its errors are heard here: a definition that was read in part lacks fields in silence.
    if (pLayer == nullptr || pLayer->GetLayerDefn()->GetFieldCount() == 0)
        testDefinition(handle, sLayer);
    if (pLayer == nullptr) {
        // The library is silent about a view that cannot be read: the database tells why.
        if (pSource->sDriver == "SQLite")
            const ResultSet result(handle.dataset(), "SELECT * FROM " + quotedName(sLayer) + " LIMIT 1");
        const bool bThere = pSource->sDriver == "SQLite" && errors.failed();
        errors.raise("\"" + pSource->sDisplayName + "\" has " +
                     (bThere ? "a dataset that cannot be read, \"" : "no dataset \"") + sLayer + "\"");
    }
    if (errors.storageFailed()) {
        handle.discard();
        errors.raise("Reading \"" + sLayer + "\" failed");
    }
    handle.missingRows().note(errors);
    return {std::move(handle), *pLayer};
}

void HandlePool::giveBack(SourcePtr pSource, GDALDatasetUniquePtr pDataset) noexcept {
    const ErrorScope errors; // closing may report
    const Source* const pBefore = setDataInUse(pSource.get());
    try {
        snapshots_.letGo(*pSource, *pDataset);
        const std::size_t nLayers = layersOf(*pSource, *pDataset);
        idle_.push_front({std::move(pSource), std::move(pDataset), nLayers});
        nIdleLayers_ += nLayers;
        while (idle_.size() > nMostIdle || (idle_.size() > nLeastIdle && nIdleLayers_ > nMostIdleLayers)) {
            setDataInUse(idle_.back().pSource.get());
            nIdleLayers_ -= idle_.back().nLayers;
            idle_.pop_back();
        }
    } catch (const std::bad_alloc&) {
        // Not kept: the handle was closed when its pointer went.
    }
    setDataInUse(pBefore);
}

void HandlePool::keepAWhile(std::shared_ptr<const void> pRead) {
    aRead_.at(nNextRead_) = std::move(pRead);
    nNextRead_ = (nNextRead_ + 1) % aRead_.size();
}

void HandlePool::setEncoding(const std::string& sPath, const std::string& sEncoding) {
    encodings_[sPath] = sEncoding;
}

std::string HandlePool::encodingOf(const std::string& sPath) const {
    auto pFound = encodings_.find(sPath);
    if (pFound == encodings_.end())
        pFound = encodings_.find(folderOf(sPath));
    return pFound == encodings_.end() ? std::string() : pFound->second;
}

void HandlePool::addOpenOptions(const std::string& sPath, const std::map<std::string, std::string>& options) {
    openOptions_[sPath].insert(options.begin(), options.end());
}

std::vector<std::string> HandlePool::openOptionsOf(const std::string& sPath) const {
    std::vector<std::string> all;
    if (const auto pFound = openOptions_.find(sPath); pFound != openOptions_.end())
        for (const auto& [sName, sValue] : pFound->second)
            all.push_back(sName + "=" + sValue);
    return all;
}

GDALDatasetUniquePtr tryOpen(const Source& source, const char* const* pDrivers) {
    CPLStringList options;
    for (const std::string& sOption : source.openOptions)
        options.AddString(sOption.c_str());
    const Source* const pBefore = setDataInUse(&source);
    guardDatabaseFromTheStart();
    GDALDatasetUniquePtr pDataset(GDALDataset::Open(
        source.sOpenName.c_str(), source.lOpenKind | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR, pDrivers,
        options.List(), nullptr));
    if (pDataset != nullptr && pDataset->GetDriver() == nullptr)
        pDataset.reset();
    if (pDataset != nullptr) {
        limitSideFiles(*pDataset);
        if (isServer(source))
            const ResultSet result(*pDataset, "SET default_transaction_read_only = on");
        if (guardDatabase(*pDataset)) {
            prepareForCollectors(*pDataset);
        } else {
            CPLError(CE_Failure, CPLE_AppDefined, "the functions of its SQL cannot be limited");
            pDataset.reset();
        }
    }
    setDataInUse(pBefore);
    return pDataset;
}

GDALDatasetUniquePtr openDataset(const Source& source, MissingRows& missing) {
    const ErrorScope errors;
    const std::array<const char*, 2> aDrivers{source.sDriver.c_str(), nullptr};
    GDALDatasetUniquePtr pDataset = tryOpen(source, aDrivers.data());
    if (pDataset == nullptr)
        errors.raise("\"" + source.sDisplayName + "\" cannot be opened");
    missing.note(errors);
    return pDataset;
}

} // namespace halvane::host::gdal
