#pragma once

#include "base/SqlQuotes.h"
#include <ogrsf_frmts.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace halvane::host::gdal {

/// A row of a small query.
class QueryRow {
public:
    explicit QueryRow(const OGRFeature& feature) : feature_(feature) {}

    /// "" for null.
    [[nodiscard]] std::string text(int lColumn) const;
    [[nodiscard]] std::optional<std::string> optionalText(int lColumn) const;
    [[nodiscard]] std::int32_t whole(int lColumn) const;

private:
    const OGRFeature& feature_;
};

/// Runs a query in the data's own SQL and hands over its rows. A query that fails has no rows: tables that
/// a format may have are simply asked for.
void query(GDALDataset& dataset, const std::string& sSql, const std::function<void(const QueryRow&)>& take);

/// The rows of a query, for as long as they are needed; the dataset outlives it.
class ResultSet {
public:
    /// Errors are reported to the scope around the call.
    ResultSet(GDALDataset& dataset, const std::string& sSql);
    ~ResultSet();
    ResultSet(const ResultSet&) = delete;
    ResultSet& operator=(const ResultSet&) = delete;

    /// Empty when the query failed, and when it has no result.
    [[nodiscard]] OGRLayer* layer() const { return pLayer_; }

private:
    GDALDataset& dataset_;
    OGRLayer* pLayer_;
};

/// A server's table as an identifier of SQL, with its schema where the layer's name has one.
[[nodiscard]] std::string serverTable(const std::string& sLayer);

} // namespace halvane::host::gdal
