#include "host/gdal/DatabaseGuard.h"

#include "collection/Text.h"

#include <gdal_priv.h>
#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace halvane::host::gdal {

namespace {

// Beginnings of the names of functions that reach beyond the database.
constexpr std::array<std::string_view, 13> aReachingFunctions{"load_extension",
                                                              "ogr_datasource_load_layers",
                                                              "ogr_geocode",
                                                              "gdal_get_",
                                                              "xb_",
                                                              "sqlproc_",
                                                              "storedproc_",
                                                              "eval",
                                                              "proj_setdatabasepath",
                                                              "blobfromfile",
                                                              "blobtofile",
                                                              "import",
                                                              "export"};

bool isReaching(std::string_view sFunction) {
    const std::string sLower = lowerCase(sFunction);
    return std::any_of(aReachingFunctions.begin(), aReachingFunctions.end(),
                       [&](std::string_view sStart) { return sLower.starts_with(sStart); });
}

int authorize(void* /*pData*/, int lAction, const char* /*pFirst*/, const char* pSecond,
              const char* /*pDatabase*/, const char* /*pTrigger*/) {
    if (lAction == SQLITE_ATTACH) {
        return SQLITE_DENY;
    }
    try {
        return lAction == SQLITE_FUNCTION && pSecond != nullptr && isReaching(pSecond) ? SQLITE_DENY
                                                                                       : SQLITE_OK;
    } catch (const std::exception&) {
        return SQLITE_DENY;
    }
}

} // namespace

void guardDatabase(GDALDataset& dataset) {
    const std::string_view sDriver = dataset.GetDriver()->GetDescription();
    if (sDriver != "GPKG" && sDriver != "SQLite") {
        return;
    }
    auto* pDatabase = static_cast<sqlite3*>(dataset.GetInternalHandle("SQLITE_HANDLE"));
    if (pDatabase == nullptr) {
        return;
    }
    // What indexes and searches inside the database itself.
    std::array<const char*, 11> aKept{
        "rtree",     "rtree_i32",           "geopoly",           "fts3", "fts4", "fts5", "json_each",
        "json_tree", "VirtualSpatialIndex", "VirtualElementary", nullptr};
    sqlite3_drop_modules(pDatabase, aKept.data());
    // A quoted name that is no column is a mistake, not a text that every row satisfies.
    sqlite3_db_config(pDatabase, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_set_authorizer(pDatabase, &authorize, nullptr);
}

} // namespace halvane::host::gdal
