#pragma once

#include "host/gdal/source/DataFiles.h"

#include <string>
#include <vector>

namespace halvane::host::gdal {

// Tables that a map document computes by a SELECT over the datasets of one source.

/// The SQL is SQLite's. In a GeoPackage or SQLite file it runs on the data itself; of other formats, the
/// datasets that it names are first copied into a database in memory. Nothing but the datasets can be
/// reached.
struct TableQuery {
    std::vector<DatasetEntry> datasets; ///< of the source
    std::string sSql;
    std::string sName; ///< what the computed table is called
};

/// @throws Failure for what is not one SELECT over the datasets, with the reason. No row is read.
void testQuery(HandlePool& pool, const TableQuery& query);

/// Runs the query once, and keeps its rows in a database in memory as long as the entry's source is kept.
/// The rows are numbered from 1 in their order.
/// @throws Failure as testQuery, and for what fails as it is computed.
[[nodiscard]] DatasetEntry computeTable(HandlePool& pool, const TableQuery& query);

} // namespace halvane::host::gdal
