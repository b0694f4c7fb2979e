#pragma once

#include "host/gdal/source/Sqlite.h"

#include <string>

namespace halvane::host::gdal {

/// Tells whether somebody else has changed a database, as often as once for each of many small searches.
class DatabaseState {
public:
    explicit DatabaseState(sqlite3* pDatabase);

    /// Another text after each change by another connection; "" where the database does not tell.
    [[nodiscard]] std::string now();

private:
    [[nodiscard]] std::string header() const;
    [[nodiscard]] std::string version();

    sqlite3* pDatabase_;
    StatementPtr pVersion_;
};

} // namespace halvane::host::gdal
