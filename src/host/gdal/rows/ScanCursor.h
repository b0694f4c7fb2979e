#pragma once

#include "host/gdal/rows/ColumnRows.h"
#include "host/gdal/rows/FeatureCursor.h"
#include "host/gdal/rows/ScannedFeatures.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace halvane::host::gdal {

/// Rows in the order of their key, or of the data where they have none, on a handle of its own: nothing that
/// happens elsewhere moves it. The rows of a long table come from its columns where they can.
class ScanCursor : public GisCursor {
public:
    /// @param order the layer's.
    /// @throws Failure when the driver rejects the clause, at once or with the first row.
    /// @param fnTestEnd called at the end with the number of rows that came, of databases with some of it.
    /// @param sNarrowing in the database's SQL: rows for which it does not hold may be left out; "" for none.
    ScanCursor(LayerHandle layer, GdalFieldsPtr pFields, RowOrder order, const Clause& clause,
               std::function<void(std::int64_t)> fnTestEnd, std::string sNarrowing = {});
    ScanCursor(const ScanCursor&) = delete;
    ScanCursor& operator=(const ScanCursor&) = delete;
    ~ScanCursor() override { finish(); }

    [[nodiscard]] GisRowPtr nextRow() override;

private:
    void advance();
    [[nodiscard]] GisRowPtr nextColumnRow();
    void finish();

    std::unique_ptr<ScannedFeatures> pFeatures_; // given back at the end of the rows
    GdalFieldsPtr pFields_;
    FeatureRows rows_;
    std::function<void(std::int64_t)> fnTestEnd_;
    std::string sCondition_; // in the database's SQL, on what columns yield
    std::size_t nHandedOut_ = 0;
    std::int64_t lLastId_ = 0;
    bool bAscending_ = true; // the identifiers handed out so far

    bool bMayUseColumns_;                  // until it was tried
    std::unique_ptr<ColumnRows> pColumns_; // goes before the features
};

} // namespace halvane::host::gdal
