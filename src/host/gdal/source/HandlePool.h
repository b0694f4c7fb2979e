#pragma once

#include "host/gdal/source/DataInUse.h"
#include "host/gdal/source/LoopsUnderWay.h"
#include "host/gdal/source/MendedShapes.h"
#include "host/gdal/source/MissingRows.h"
#include "host/gdal/source/ServerSnapshots.h"
#include "host/gdal/source/ServerWatch.h"
#include "host/gdal/source/ShapeLosses.h"
#include "host/gdal/source/Source.h"

#include <ogrsf_frmts.h>

#include <array>
#include <cstddef>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane::host::gdal {

class HandlePool;
class LayerHandle;

/// A dataset handle on loan: nobody else uses it meanwhile; it goes back to its pool at the end, unless rows
/// were missing: some drivers read none from then on.
class Handle {
public:
    /// @param missing what was reported when the dataset was opened.
    Handle(std::shared_ptr<HandlePool> pPool, SourcePtr pSource, GDALDatasetUniquePtr pDataset,
           MissingRows missing = {});
    Handle(Handle&&) noexcept = default;
    Handle& operator=(Handle&&) noexcept = delete;
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle();

    [[nodiscard]] GDALDataset& dataset() const {
        setDataInUse(pSource_.get());
        return *pDataset_;
    }
    [[nodiscard]] const Source& source() const { return *pSource_; }
    /// Closes it: what it has read of the data's definitions is not whole.
    void discard() noexcept;
    /// Where those who read from it tell which shapes they lost.
    [[nodiscard]] const std::shared_ptr<ShapeLosses>& shapeLosses() const;
    /// What those who read from it note.
    [[nodiscard]] MissingRows& missingRows() const { return *pMissing_; }
    /// Another text for each state of a server that is held for an export; "" where none is.
    [[nodiscard]] std::string heldState() const;
    /// A layer of the same source on another handle. @throws Failure when it cannot be opened.
    [[nodiscard]] LayerHandle another(const std::string& sLayer) const;

private:
    std::shared_ptr<HandlePool> pPool_;
    SourcePtr pSource_;
    GDALDatasetUniquePtr pDataset_;
    ServerWatch watch_;
    std::unique_ptr<MissingRows> pMissing_;
};

/// A handle and one of its layers, whose filter and reading position are its own until the end.
class LayerHandle {
public:
    LayerHandle(Handle handle, OGRLayer& layer) : handle_(std::move(handle)), pLayer_(&layer) {}
    LayerHandle(LayerHandle&& other) noexcept
        : handle_(std::move(other.handle_)), pLayer_(std::exchange(other.pLayer_, nullptr)) {}
    LayerHandle& operator=(LayerHandle&&) noexcept = delete;
    LayerHandle(const LayerHandle&) = delete;
    LayerHandle& operator=(const LayerHandle&) = delete;
    ~LayerHandle();

    [[nodiscard]] OGRLayer& layer() const {
        setDataInUse(&handle_.source());
        return *pLayer_;
    }
    [[nodiscard]] GDALDataset& dataset() const { return handle_.dataset(); }
    [[nodiscard]] const Source& source() const { return handle_.source(); }
    [[nodiscard]] const std::shared_ptr<ShapeLosses>& shapeLosses() const { return handle_.shapeLosses(); }
    [[nodiscard]] MissingRows& missingRows() const { return handle_.missingRows(); }
    [[nodiscard]] std::string heldState() const { return handle_.heldState(); }
    /// Closes the handle: what it has read of the definitions is not whole. The layer is gone with it.
    void discard() noexcept {
        pLayer_ = nullptr;
        handle_.discard();
    }
    /// Another handle on the same layer. @throws Failure when it cannot be opened.
    [[nodiscard]] LayerHandle another() const { return handle_.another(pLayer_->GetName()); }

private:
    Handle handle_;
    OGRLayer* pLayer_;
};

/// Keeps idle dataset handles, since opening is much slower than reading a few rows. One thread only.
class HandlePool : public std::enable_shared_from_this<HandlePool> {
public:
    /// An idle handle or a new one. @throws Failure when the source cannot be opened.
    [[nodiscard]] Handle acquire(const SourcePtr& pSource);
    /// @throws Failure when the source has no such layer (ignoring case).
    [[nodiscard]] LayerHandle acquireLayer(const SourcePtr& pSource, const std::string& sLayer);

    void giveBack(SourcePtr pSource, GDALDatasetUniquePtr pDataset) noexcept;
    /// The states of servers that its handles read.
    [[nodiscard]] ServerSnapshots& snapshots() { return snapshots_; }
    /// Keeps something that was read from a handle while it is likely to be asked for again.
    void keepAWhile(std::shared_ptr<const void> pRead);
    /// What was lost by those who read from its handles.
    [[nodiscard]] const std::shared_ptr<ShapeLosses>& shapeLosses() const { return pShapeLosses_; }
    /// The loops over rows of its handles.
    [[nodiscard]] const std::shared_ptr<LoopsUnderWay>& loops() const { return pLoops_; }
    /// Remembers how the texts of a file, or of a folder's files, are encoded.
    void setEncoding(const std::string& sPath, const std::string& sEncoding);
    /// "" where nobody has said it.
    [[nodiscard]] std::string encodingOf(const std::string& sPath) const;
    /// Remembers further options by which a file is opened; one that was set already stays.
    void addOpenOptions(const std::string& sPath, const std::map<std::string, std::string>& options);
    /// "NAME=VALUE" each.
    [[nodiscard]] std::vector<std::string> openOptionsOf(const std::string& sPath) const;
    /// How many handles lie idle.
    [[nodiscard]] std::size_t idleCount() const { return idle_.size(); }

private:
    struct Idle {
        SourcePtr pSource;
        GDALDatasetUniquePtr pDataset;
        std::size_t nLayers; ///< a measure of the memory that it takes
    };
    ServerSnapshots snapshots_;
    std::list<Idle> idle_; // the most recently used first
    std::size_t nIdleLayers_ = 0;
    std::array<std::shared_ptr<const void>, 64> aRead_;
    std::size_t nNextRead_ = 0;
    std::shared_ptr<ShapeLosses> pShapeLosses_ = std::make_shared<ShapeLosses>();
    std::shared_ptr<LoopsUnderWay> pLoops_ = std::make_shared<LoopsUnderWay>();
    std::map<std::string, std::string> encodings_;                          // by path
    std::map<std::string, std::map<std::string, std::string>> openOptions_; // by path
};

/// A new handle by the first of the drivers that reads the source; nothing when none does. Its errors are
/// reported to the scope around the call.
[[nodiscard]] GDALDatasetUniquePtr tryOpen(const Source& source, const char* const* pDrivers);
/// A new handle, not pooled, by the source's own driver. @param missing notes what is reported.
/// @throws Failure with the library's text.
[[nodiscard]] GDALDatasetUniquePtr openDataset(const Source& source, MissingRows& missing);

} // namespace halvane::host::gdal
