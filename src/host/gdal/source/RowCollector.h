#pragma once

#include <gdal_priv.h>
#include <sqlite3.h>

#include <span>

namespace halvane::host::gdal {

/// Takes the rows of a query from the database itself, which hands the values to a function of ours.
class RowCollector {
public:
    RowCollector() = default;
    RowCollector(const RowCollector&) = delete;
    RowCollector& operator=(const RowCollector&) = delete;
    virtual ~RowCollector() = default;

    /// Takes one row. @returns whether another is wanted; if not, that row may not have been taken.
    [[nodiscard]] virtual bool add(std::span<sqlite3_value*> values) = 0;
};

/// Adds the function halvane_collect_columns(collector, value …), an aggregate of each row, to a connection
/// of a GeoPackage. To be called before anything is read from it.
void prepareForCollectors(GDALDataset& dataset);
/// Binds the first parameter of a statement to what takes its rows.
void bindCollector(sqlite3_stmt* pStatement, RowCollector& collector);

} // namespace halvane::host::gdal
