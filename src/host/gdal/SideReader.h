#pragma once

#include "host/gdal/ColumnBatch.h"

#include <gdal_priv.h>
#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace halvane::host::gdal {

/// The database behind a dataset of the GeoPackage driver; nothing when the library does not lend it.
[[nodiscard]] sqlite3* databaseOf(GDALDataset& dataset);

struct StatementCloser {
    void operator()(sqlite3_stmt* pStatement) const { sqlite3_finalize(pStatement); }
};
using StatementPtr = std::unique_ptr<sqlite3_stmt, StatementCloser>;
/// Nothing when the statement cannot be prepared.
[[nodiscard]] StatementPtr prepare(sqlite3* pDatabase, const std::string& sSql);

/// Keeps the database as it is, as its other connections see it too, from construction to destruction.
class ReadTransaction {
public:
    explicit ReadTransaction(sqlite3* pDatabase);
    ReadTransaction(const ReadTransaction&) = delete;
    ReadTransaction& operator=(const ReadTransaction&) = delete;
    ~ReadTransaction();

    [[nodiscard]] bool isOpen() const { return bOpen_; }

private:
    sqlite3* pDatabase_;
    bool bOpen_ = false;
};

/// Reads the columns that the library's batches do not keep exactly: yes/no values (its bits stand in wrong
/// places), small integers (cut to 16 bits), dates (invalid ones become 1970, time zones are lost).
class SideReader {
public:
    struct Column {
        std::string sName;
        ColumnKind kind; ///< Boolean, Integer or Date
        bool bTime = false;
    };

    /// @param sIdColumn the table's integer key.
    SideReader(sqlite3* pDatabase, const std::string& sTable, const std::string& sIdColumn,
               std::vector<Column> columns);

    /// Whether values can be read at all.
    [[nodiscard]] bool isOpen() const { return columns_.empty() || pStatement_ != nullptr; }
    /// The columns of consecutive rows; false when a value is not in the form that its type prescribes, or
    /// the rows are not these.
    [[nodiscard]] bool read(std::int64_t lFirst, std::size_t lCount, std::vector<SideColumn>& sides);

private:
    [[nodiscard]] bool readRow(std::size_t lRow, std::vector<SideColumn>& sides);

    std::vector<Column> columns_;
    StatementPtr pStatement_;
};

/// A date "YYYY-MM-DD", with bTime also its time "THH:MM:SS[.mmm]Z". @returns whether it is exactly that.
[[nodiscard]] bool parseStoredDate(std::string_view sText, bool bTime, Date& date);

} // namespace halvane::host::gdal
