#include "host/gdal/rows/RowOrder.h"

#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Queries.h"
#include "host/gdal/source/Sqlite.h"

#include <array>
#include <optional>

namespace halvane::host::gdal {

namespace {

/// A table or a view of a database.
struct Relation {
    std::string sName;
    bool bView = false;
};

std::optional<Relation> findRelation(sqlite3* pDatabase, const std::string& sName) {
    const auto lView = wholeNumber(pDatabase, "SELECT type = 'view' FROM sqlite_master WHERE type IN "
                                              "('table', 'view') AND lower(name) = lower(" +
                                                  quotedText(sName) + ")");
    return lView ? std::optional(Relation{sName, *lView == 1}) : std::nullopt;
}

// A table of several shapes is as many layers: "roads(axis)", "roads(outline)".
std::optional<Relation> relationOf(sqlite3* pDatabase, const std::string& sLayer) {
    const auto relation = findRelation(pDatabase, sLayer);
    return relation || !sLayer.ends_with(')') ? relation
                                              : findRelation(pDatabase, sLayer.substr(0, sLayer.rfind('(')));
}

// Columns that tell the rows of a table apart where none of them is its number.
std::string primaryKey(sqlite3* pDatabase, const std::string& sTable) {
    std::string sKey;
    const StatementPtr pColumns = prepare(pDatabase, "SELECT name FROM pragma_table_info(" +
                                                         quotedText(sTable) + ") WHERE pk > 0 ORDER BY pk");
    while (pColumns != nullptr && sqlite3_step(pColumns.get()) == SQLITE_ROW) {
        const void* pName = sqlite3_column_text(pColumns.get(), 0);
        sKey += (sKey.empty() ? "" : ", ") + quotedName(static_cast<const char*>(pName));
    }
    return sKey;
}

} // namespace

RowOrder RowOrder::of(const LayerHandle& layer) {
    if (layer.source().sDriver != "GPKG" && layer.source().sDriver != "SQLite")
        return {};
    const ErrorScope errors;
    sqlite3* pDatabase = databaseOf(layer.dataset());
    const auto relation =
        pDatabase == nullptr ? std::nullopt : relationOf(pDatabase, layer.layer().GetName());
    if (!relation)
        return {};
    const std::string sId = layer.layer().GetFIDColumn();
    if (relation->bView)
        return {Kind::OfView, "", sId.empty()};
    if (!sId.empty())
        return {Kind::OfKey, quotedName(sId), false};
    if (prepare(pDatabase, "SELECT _rowid_ FROM " + quotedName(relation->sName)) != nullptr)
        return {Kind::OfKey, "_rowid_", false};
    return {Kind::OfKey, primaryKey(pDatabase, relation->sName), true};
}

// The drivers of databases put a filter behind the WHERE of their own statement as it is.
std::string RowOrder::filter(const Clause& clause) const {
    switch (kind_) {
    case Kind::OfKey:
        return (clause.isEmpty() ? "1" : clause.inBrackets()) + " ORDER BY " + sKey_;
    case Kind::OfView:
        // What orders a view may be any plan of the database; a clause that no index serves, and of which
        // nothing is known, leaves that plan as it is.
        return clause.isEmpty() ? "" : "likelihood(CASE WHEN " + clause.inBrackets() + " THEN 1 END, 1.0)";
    default:
        return clause.text();
    }
}

void leaveShapesUnread(OGRLayer& layer, const RowOrder& order) {
    if (order.allowsIgnoredColumns() && layer.TestCapability(OLCIgnoreFields) != 0) {
        const ErrorScope errors;
        std::array<const char*, 2> aIgnored{"OGR_GEOMETRY", nullptr};
        layer.SetIgnoredFields(aIgnored.data());
    }
}

} // namespace halvane::host::gdal
