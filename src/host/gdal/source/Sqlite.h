#pragma once

#include "base/Owned.h"
#include "base/Value.h"

#include <gdal_priv.h>
#include <sqlite3.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace halvane::host::gdal {

/// The database behind a dataset of the GeoPackage driver; nothing when the library does not lend it.
[[nodiscard]] sqlite3* databaseOf(GDALDataset& dataset);

using StatementPtr = Owned<sqlite3_stmt, sqlite3_finalize>;
/// Nothing when the statement cannot be prepared.
[[nodiscard]] StatementPtr prepare(sqlite3* pDatabase, const std::string& sSql);
/// A column of the row that a statement stands on; "" for null.
[[nodiscard]] std::string textOf(sqlite3_stmt* pRow, int lColumn);
/// The whole number that a query yields first; nothing when it yields none or fails.
[[nodiscard]] std::optional<std::int64_t> wholeNumber(sqlite3* pDatabase, const std::string& sSql);

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

/// A date "YYYY-MM-DD", with bTime also its time "THH:MM:SS[.mmm]Z". @returns whether it is exactly that.
[[nodiscard]] bool parseStoredDate(std::string_view sText, bool bTime, Date& date);

} // namespace halvane::host::gdal
