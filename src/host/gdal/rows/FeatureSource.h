#pragma once

#include "host/gdal/rows/FeatureBlock.h"

namespace halvane::host::gdal {

/// One way to get at the features of a table, in the order in which they are to be rows.
class FeatureSource {
public:
    FeatureSource() = default;
    FeatureSource(const FeatureSource&) = delete;
    FeatureSource& operator=(const FeatureSource&) = delete;
    virtual ~FeatureSource() = default;

    /// Fills a block anew with the features that follow; it may use what the block holds again.
    /// @throws Failure of one feature: those behind it can still be had.
    virtual void read(FeatureBlock& block) = 0;
};

} // namespace halvane::host::gdal
