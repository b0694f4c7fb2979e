#include "host/gdal/rows/RowCount.h"

#include "base/FindRow.h"
#include "host/gdal/rows/FeatureBlock.h"
#include "host/gdal/rows/Filtering.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Queries.h"
#include "host/gdal/source/Sqlite.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace halvane::host::gdal {

namespace {

enum class Count {
    OfDatabase, ///< the database counts, with a filter too
    OfDriver,   ///< the driver counts, with a filter too
    OfHeader    ///< the driver reads as many rows as the data's header says
};

struct ExactCount {
    std::string_view sDriver;
    Count count;
};

// The GeoPackage driver itself would tell a number that is kept beside the table.
constexpr std::array aExactCounts{
    ExactCount{"GPKG", Count::OfDatabase}, ExactCount{"SQLite", Count::OfDatabase},
    ExactCount{"PostgreSQL", Count::OfDriver}, ExactCount{"FlatGeobuf", Count::OfHeader},
    ExactCount{"OpenFileGDB", Count::OfHeader}};

std::optional<std::int64_t> countOfDatabase(const LayerHandle& layer, const Clause& clause) {
    sqlite3* pDatabase = databaseOf(layer.dataset());
    return pDatabase == nullptr
               ? std::nullopt
               : wholeNumber(pDatabase, "SELECT count(*) FROM " + quotedName(layer.layer().GetName()) +
                                            clause.condition());
}

/// What those who write the file keep there; a count of the rows would read all pages of the table.
std::optional<std::int64_t> countBesideTable(const LayerHandle& layer) {
    sqlite3* pDatabase = databaseOf(layer.dataset());
    return pDatabase == nullptr
               ? std::nullopt
               : wholeNumber(pDatabase,
                             "SELECT feature_count FROM gpkg_ogr_contents WHERE lower(table_name) = lower(" +
                                 quotedText(layer.layer().GetName()) + ")");
}

} // namespace

std::optional<std::int64_t> knownRowCount(const LayerHandle& layer, const Clause& clause) {
    const auto* pExact = findRow(aExactCounts, layer.source().sDriver, &ExactCount::sDriver);
    if (pExact == nullptr || (pExact->count == Count::OfHeader && !clause.isEmpty()))
        return std::nullopt;
    if (pExact->count == Count::OfDatabase)
        return countOfDatabase(layer, clause);
    setFilter(layer.layer(), clause);
    const ErrorScope errors;
    const std::int64_t lCount = layer.layer().GetFeatureCount(1);
    return lCount < 0 || errors.failed() ? std::nullopt : std::optional(lCount);
}

bool saysRowCount(const Source& source) {
    constexpr std::array<std::string_view, 4> aDrivers{"GPKG", "FlatGeobuf", "OpenFileGDB", "ESRI Shapefile"};
    return std::find(aDrivers.begin(), aDrivers.end(), source.sDriver) != aDrivers.end();
}

std::optional<std::int64_t> aboutRowCount(const LayerHandle& layer) {
    if (!saysRowCount(layer.source()))
        return std::nullopt;
    if (layer.source().sDriver == "GPKG")
        return countBesideTable(layer);
    setFilter(layer.layer(), Clause());
    const ErrorScope errors;
    const std::int64_t lCount = layer.layer().GetFeatureCount(0);
    return lCount < 0 || errors.failed() ? std::nullopt : std::optional(lCount);
}

std::int64_t countRows(const LayerHandle& layer, const Clause& clause) {
    setFilter(layer.layer(), clause);
    leaveShapesUnread(layer.layer(), {});
    std::int64_t lCount = 0;
    const std::string sContext =
        "Counting the rows of \"" + std::string(layer.layer().GetName()) + "\" failed";
    try {
        forEachFeature(layer, sContext, [&](OGRFeature&, const ErrorScope&) { ++lCount; });
    } catch (const Failure& failure) {
        raiseRejected(layer, clause, failure);
    }
    return lCount;
}

} // namespace halvane::host::gdal
