#pragma once

#include "host/Rows.h"
#include "host/gdal/rows/FeatureSource.h"
#include "host/gdal/rows/Row.h"
#include "host/gdal/rows/SpareRows.h"

#include <cstddef>
#include <memory>

namespace halvane::host::gdal {

/// Makes rows of features, block by block, and uses rows again that nobody holds.
class FeatureRows {
public:
    explicit FeatureRows(GdalFieldsPtr pFields) : pFields_(std::move(pFields)) {}

    /// Whether all features of the block have been handed out.
    [[nodiscard]] bool areOut() const { return nNext_ == block_.features.size(); }
    /// Whether a source has nothing behind the block.
    [[nodiscard]] bool isLast() const { return block_.bLast; }
    /// The failure that the reading ended in, behind the block's features; nothing for none.
    [[nodiscard]] const std::optional<Failure>& failure() const { return block_.failure; }

    /// The block to be filled anew, when all rows are out.
    [[nodiscard]] FeatureBlock& nextBlock();
    /// Unless all are out.
    [[nodiscard]] GisRowPtr next();
    /// Lets everything go but the end itself. @throws Failure that the reading ended in, once.
    void end();
    /// Lets everything go, for rows that come in another way.
    void clear();

private:
    GdalFieldsPtr pFields_;
    FeatureBlock block_;
    std::size_t nNext_ = 0;
    SpareRows<GdalRow> rows_;
};

/// The rows of a source.
class FeatureCursor : public GisCursor {
public:
    FeatureCursor(GdalFieldsPtr pFields, std::unique_ptr<FeatureSource> pSource)
        : pSource_(std::move(pSource)), rows_(std::move(pFields)) {}

    [[nodiscard]] GisRowPtr nextRow() override;

private:
    std::unique_ptr<FeatureSource> pSource_;
    FeatureRows rows_;
};

} // namespace halvane::host::gdal
