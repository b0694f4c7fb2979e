#include "host/gdal/source/LostDefinitions.h"

#include "base/Text.h"
#include "host/gdal/source/Queries.h"
#include "host/gdal/source/Sqlite.h"
#include "host/gdal/source/SystemTables.h"

#include <string_view>

namespace halvane::host::gdal {

namespace {

bool isKnown(sqlite3* pDatabase, const std::string& sTable) {
    // Prepared, never run: what asks for its columns would compute a view.
    return prepare(pDatabase, "CREATE VIEW main." + quotedName(sTable) + " AS SELECT 1") == nullptr;
}

// Whether all that is listed could be read, and all that the format itself needs is known.
bool isUsable(sqlite3* pDatabase) {
    const StatementPtr pListed =
        prepare(pDatabase, "SELECT name FROM sqlite_master WHERE type IN ('table', 'view')");
    int lCode = pListed == nullptr ? SQLITE_ERROR : sqlite3_step(pListed.get());
    for (; lCode == SQLITE_ROW; lCode = sqlite3_step(pListed.get())) {
        const std::string sName = textOf(pListed.get(), 0);
        if ((isGeoPackageTable(sName) || isSpatialiteTable(sName)) && !isKnown(pDatabase, sName))
            return false;
    }
    return lCode == SQLITE_DONE;
}

} // namespace

void loadDefinitions(sqlite3* pDatabase) {
    constexpr const char* pAny = "SELECT 1 FROM sqlite_master";
    if (prepare(pDatabase, pAny) != nullptr ||
        !std::string_view(sqlite3_errmsg(pDatabase)).starts_with("malformed database schema"))
        return;
    // This alone has SQLite go on behind such an error. Without the other switch it would also trust that a
    // definition is of the name that it is listed by.
    sqlite3_db_config(pDatabase, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(pDatabase, SQLITE_DBCONFIG_WRITABLE_SCHEMA, 1, nullptr);
    static_cast<void>(prepare(pDatabase, pAny)); // loads them, and fails once more
    sqlite3_db_config(pDatabase, SQLITE_DBCONFIG_WRITABLE_SCHEMA, 0, nullptr);
    sqlite3_db_config(pDatabase, SQLITE_DBCONFIG_DEFENSIVE, 0, nullptr);
    if (!isUsable(pDatabase))
        sqlite3_exec(pDatabase, "PRAGMA writable_schema = RESET", nullptr, nullptr, nullptr);
}

std::string whyLost(sqlite3* pDatabase, const std::string& sTable) {
    const StatementPtr pListed = prepare(
        pDatabase, "SELECT name, sql FROM sqlite_master WHERE type IN ('table', 'view') AND lower(name) = "
                   "lower(?1)");
    if (pListed == nullptr ||
        sqlite3_bind_text(pListed.get(), 1, sTable.c_str(), -1, SQLITE_TRANSIENT) != SQLITE_OK ||
        sqlite3_step(pListed.get()) != SQLITE_ROW || isKnown(pDatabase, textOf(pListed.get(), 0)))
        return {};
    const std::string sWhat = "SQLite cannot parse the definition of \"" + textOf(pListed.get(), 0) + "\"";
    const std::string sDefinition = textOf(pListed.get(), 1);
    // Other statements are none that make a table, and some of them act when they are prepared.
    if (!lowerCase(sDefinition).starts_with("create ") || prepare(pDatabase, sDefinition) != nullptr)
        return sWhat;
    return sWhat + ": " + sqlite3_errmsg(pDatabase);
}

} // namespace halvane::host::gdal
