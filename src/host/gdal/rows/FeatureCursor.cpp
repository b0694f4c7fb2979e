#include "host/gdal/rows/FeatureCursor.h"

#include <utility>

namespace halvane::host::gdal {

FeatureBlock& FeatureRows::nextBlock() {
    rows_.release(); // the shape of a row can be as large as those that are read now
    nNext_ = 0;
    return block_;
}

GisRowPtr FeatureRows::next() {
    RowFaultsPtr pFaults = block_.faults.empty() ? nullptr : block_.faultsOf(nNext_);
    OGRFeatureUniquePtr& pFeature = block_.features[nNext_++];
    if (auto pRow = rows_.spare()) {
        pRow->exchange(pFeature, std::move(pFaults));
        return pRow;
    }
    auto pRow = std::make_shared<GdalRow>(pFields_, std::move(pFeature), std::move(pFaults));
    rows_.add(pRow);
    return pRow;
}

void FeatureRows::end() {
    rows_.clear();
    if (block_.failure)
        throw *std::exchange(block_.failure, std::nullopt);
}

void FeatureRows::clear() {
    rows_.clear();
    block_ = {};
    nNext_ = 0;
}

GisRowPtr FeatureCursor::nextRow() {
    if (rows_.areOut() && !rows_.isLast())
        pSource_->read(rows_.nextBlock());
    if (!rows_.areOut())
        return rows_.next();
    rows_.end();
    return nullptr;
}

} // namespace halvane::host::gdal
