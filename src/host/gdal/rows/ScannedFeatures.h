#pragma once

#include "host/gdal/rows/FeatureSource.h"
#include "host/gdal/rows/ReadAhead.h"
#include "host/gdal/rows/RetypedLayer.h"
#include "host/gdal/rows/RowCheck.h"
#include "host/gdal/rows/RowOrder.h"
#include "host/gdal/source/HandlePool.h"
#include "host/gdal/source/Queries.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace halvane::host::gdal {

/// The features that satisfy a clause, in the order of their key, or of the data where they have none. The
/// first are read at once: a reader of a few does not pay for a thread. Those behind them are read ahead on
/// one.
class ScannedFeatures : public FeatureSource {
public:
    /// @param order the layer's.
    /// @throws Failure when the driver rejects the clause.
    ScannedFeatures(LayerHandle layer, RowOrder order, const Clause& clause);
    ScannedFeatures(const ScannedFeatures&) = delete;
    ScannedFeatures& operator=(const ScannedFeatures&) = delete;
    ~ScannedFeatures() override;

    void read(FeatureBlock& block) override;
    /// Whether those that are read at once have been.
    [[nodiscard]] bool isLong() const { return nRead_ >= nRowsAtOnce; }
    /// Goes on behind an identifier, and reads the features there at once.
    /// Only where features are read by ascending identifiers.
    void readBehind(std::int64_t lId, FeatureBlock& block);
    /// For others while nothing is read ahead.
    [[nodiscard]] const LayerHandle& layer() const { return *layer_; }

private:
    static constexpr std::size_t nRowsAtOnce = 1024;

    void open(const Clause& clause);
    [[nodiscard]] std::unique_ptr<ResultSet> resultOf(const std::string& sQuery);
    [[nodiscard]] OGRLayer& rowLayer();
    void readAtOnce(FeatureBlock& block);
    void startThread();

    std::optional<LayerHandle> layer_;
    std::optional<RowCheck> check_;
    std::unique_ptr<ResultSet>
        pResult_; // where the features come from a query of ours; goes before the handle
    std::unique_ptr<RetypedLayer> pRetyped_; // the same, where their types are not the table's
    RowOrder order_;
    Clause clause_;
    std::string sContext_;
    std::size_t nBlock_ = 1; // how many to read next
    std::size_t nRead_ = 0;
    std::unique_ptr<ReadAhead<FeatureBlock>> pThread_; // reads from the handle; goes first
};

} // namespace halvane::host::gdal
