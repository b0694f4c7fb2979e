#pragma once

#include "base/Failure.h"
#include "host/Rows.h"
#include "host/gdal/facts/Fields.h"
#include "host/gdal/rows/ColumnReader.h"
#include "host/gdal/rows/FeatureBlock.h"
#include "host/gdal/rows/Row.h"
#include "host/gdal/rows/RowCheck.h"
#include "host/gdal/rows/RowOrder.h"
#include "host/gdal/rows/SpareRows.h"
#include "host/gdal/source/HandlePool.h"
#include "host/gdal/source/Queries.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace halvane::host::gdal {

/// Rows in the order of their key, or of the data where they have none, on a handle of its own: nothing that
/// happens elsewhere moves it.
class GdalCursor : public GisCursor {
public:
    /// @param order the layer's. @param sWhere "" for all rows.
    /// @throws Failure when the driver rejects the clause, at once or with the first row.
    /// @param fnTestEnd called at the end with the number of rows that came, of databases with some of it.
    GdalCursor(LayerHandle layer, GdalFieldsPtr pFields, RowOrder order, const std::string& sWhere,
               std::function<void(std::int64_t)> fnTestEnd);
    GdalCursor(const GdalCursor&) = delete;
    GdalCursor& operator=(const GdalCursor&) = delete;
    ~GdalCursor() override { finish(); }

    [[nodiscard]] GisRowPtr nextRow() override;

private:
    void open(const std::string& sWhere);
    [[nodiscard]] OGRLayer& rowLayer();
    void readAhead();
    void startThread();
    void advance();
    void leaveColumns();
    [[nodiscard]] GisRowPtr nextColumnRow();
    void turnToNextBatch();
    void finish();

    std::optional<LayerHandle> layer_;   // given back at the end of the rows
    std::optional<RowCheck> check_;      // likewise
    std::unique_ptr<ResultSet> pResult_; // where the rows come from a query of ours; goes before the handle
    GdalFieldsPtr pFields_;
    RowOrder order_;
    std::string sContext_;
    std::function<void(std::int64_t)> fnTestEnd_;
    FeatureBlock block_; // read, but not wholly handed out yet
    std::size_t lNext_ = 0;
    std::size_t lBlock_ = 1; // how many to read next
    SpareRows<GdalRow> rows_;
    std::size_t lHandedOut_ = 0;
    std::int64_t lLastId_ = 0;
    bool bAscending_ = true; // the identifiers handed out so far

    bool bMayUseColumns_;                    // until it was tried
    std::unique_ptr<ColumnReader> pColumns_; // goes before the handle
    ColumnBatchPtr pBatch_;
    std::size_t lBatchRow_ = 0;
    ColumnBatchPtr pEarlierBatch_;
    SpareRows<ColumnRow> columnRows_;

    std::unique_ptr<ReadAhead<FeatureBlock>> pThread_; // reads from the handle; goes first
};

} // namespace halvane::host::gdal
