#pragma once

#include "collection/Failure.h"
#include "host/gdal/ColumnReader.h"
#include "host/gdal/FeatureBlock.h"
#include "host/gdal/Fields.h"
#include "host/gdal/HandlePool.h"
#include "host/gdal/Queries.h"
#include "host/gdal/Row.h"
#include "host/gdal/SpareRows.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace halvane::host::gdal {

/// Rows in the order of the data (of a server by their key, since it has none), on a handle of its own:
/// nothing that happens elsewhere moves it.
class GdalCursor : public GisCursor {
public:
    /// @param sWhere "" for all rows.
    /// @throws Failure when the driver rejects the clause, at once or with the first row.
    GdalCursor(LayerHandle layer, GdalFieldsPtr pFields, const std::string& sWhere);
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
    std::unique_ptr<ResultSet> pResult_; // where the rows come from a query of ours; goes before the handle
    GdalFieldsPtr pFields_;
    std::string sContext_;
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

/// Features by their identifiers, in the order of the list.
class GdalSelectionCursor : public GisCursor {
public:
    GdalSelectionCursor(LayerHandle layer, GdalFieldsPtr pFields, std::vector<std::int64_t> ids);

    [[nodiscard]] GisRowPtr nextRow() override;

private:
    void readAhead();

    LayerHandle layer_;
    GdalFieldsPtr pFields_;
    std::vector<std::int64_t> ids_;
    std::size_t lNext_ = 0;
    bool bSequential_;
    std::unordered_map<std::int64_t, OGRFeatureUniquePtr> features_; // of formats without random access
};

/// Sets a layer's filter. @throws Failure when the driver rejects it.
void setFilter(OGRLayer& layer, const std::string& sWhere);
/// Both clauses as one; "" stands for no clause.
/// @param sLayer for the message. @throws Failure for a clause that is more than one expression, or could
/// leave
///        the brackets that it is put into.
[[nodiscard]] std::string bothClauses(const std::string& sLeft, const std::string& sRight,
                                      const std::string& sLayer);

} // namespace halvane::host::gdal
