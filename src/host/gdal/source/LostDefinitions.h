#pragma once

#include <sqlite3.h>

#include <string>

namespace halvane::host::gdal {

/// Loads the definitions of a database of which nothing has been read yet. Where SQLite cannot parse one of a
/// table, view, index or trigger it takes none of them; then those that it can parse are loaded all the same.
/// Not so where the format's own tables are among the lost: without them the others would be read wrongly.
/// The connection must not be one that writes. What fails here is left for the next statement to find.
void loadDefinitions(sqlite3* pDatabase);

/// Why a table or view that the database lists is not among those that it knows.
/// @returns "" for one that it knows, and for one that it does not list.
[[nodiscard]] std::string whyLost(sqlite3* pDatabase, const std::string& sTable);

} // namespace halvane::host::gdal
