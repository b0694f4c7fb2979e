#include "host/gdal/rows/StoredColumns.h"

#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Queries.h"

#include <optional>
#include <string>
#include <system_error>

namespace halvane::host::gdal {

namespace {

// Only the stored columns of a table by its key, never through a view or a virtual table. A key with an index
// of its own is not the number that the rows stand in order of.
bool isPlainTable(sqlite3* pDatabase, const std::string& sTable, const std::string& sIdColumn) {
    const auto one = [&](const std::string& sSql) { return wholeNumber(pDatabase, sSql) == 1; };
    const std::string sName = quotedText(sTable);
    return one("SELECT count(*) FROM sqlite_master WHERE name = " + sName +
               " AND type = 'table' AND sql NOT LIKE 'CREATE VIRTUAL%'") &&
           one("SELECT count(*) = 0 FROM pragma_table_xinfo(" + sName + ") WHERE hidden <> 0") &&
           one("SELECT count(*) FROM pragma_table_xinfo(" + sName +
               ") WHERE pk = 1 AND name = " + quotedText(sIdColumn) + " AND upper(type) = 'INTEGER'") &&
           one("SELECT count(*) = 0 FROM pragma_index_list(" + sName + ") WHERE origin = 'pk'");
}

std::optional<ColumnSource> sourceOf(OGRLayer& layer, const Column& column) {
    OGRFeatureDefn& definition = *layer.GetLayerDefn();
    ColumnSource source{column.kind};
    if (column.kind == ColumnKind::ObjectId || column.kind == ColumnKind::Shape)
        return source;
    if (column.kind == ColumnKind::Structured || column.kind == ColumnKind::Time ||
        column.lColumn >= definition.GetFieldCount())
        return std::nullopt;
    const OGRFieldDefn& field = *definition.GetFieldDefn(column.lColumn);
    source.bSmall = field.GetSubType() == OFSTInt16;
    source.bTime = field.GetType() == OFTDateTime;
    return source;
}

std::string nameOf(OGRLayer& layer, const Column& column) {
    OGRFeatureDefn& definition = *layer.GetLayerDefn();
    if (column.kind == ColumnKind::ObjectId)
        return quotedName(layer.GetFIDColumn());
    if (column.kind == ColumnKind::Shape)
        return definition.IsGeometryIgnored() != 0 ? "NULL" : quotedName(layer.GetGeometryColumn());
    return quotedName(definition.GetFieldDefn(column.lColumn)->GetNameRef());
}

// An index would yield the rows in an order of its own.
std::string queryOf(OGRLayer& layer, const GdalFields& fields, const std::string& sCondition) {
    std::string sSql = "SELECT halvane_collect_columns(?1";
    for (const Column& column : fields.columns())
        sSql += ", " + nameOf(layer, column);
    return sSql + ") FROM " + quotedName(layer.GetName()) + " NOT INDEXED WHERE " +
           quotedName(layer.GetFIDColumn()) + " > ?2" + (sCondition.empty() ? "" : " AND " + sCondition);
}

} // namespace

std::unique_ptr<StoredColumns> StoredColumns::tryOpen(const LayerHandle& rows, const GdalFields& fields,
                                                      std::int64_t lLastId, const std::string& sCondition) {
    const ErrorScope errors;
    OGRLayer& layer = rows.layer();
    if (rows.source().sDriver != "GPKG" || layer.GetFIDColumn()[0] == '\0')
        return nullptr;
    sqlite3* pDatabase = databaseOf(rows.dataset());
    if (pDatabase == nullptr || !isPlainTable(pDatabase, layer.GetName(), layer.GetFIDColumn()))
        return nullptr;
    std::vector<ColumnSource> sources;
    for (const Column& column : fields.columns()) {
        const auto source = sourceOf(layer, column);
        if (!source)
            return nullptr;
        sources.push_back(*source);
    }
    std::unique_ptr<StoredColumns> pReader(new StoredColumns(pDatabase, std::move(sources)));
    return pReader->start(queryOf(layer, fields, sCondition), lLastId) ? std::move(pReader) : nullptr;
}

StoredColumns::StoredColumns(sqlite3* pDatabase, std::vector<ColumnSource> sources)
    : sources_(std::move(sources)), pDatabase_(pDatabase), transaction_(pDatabase) {}

bool StoredColumns::start(const std::string& sQuery, std::int64_t lLastId) {
    // It cannot be prepared for a table of more columns than a function may have arguments.
    pStatement_ = prepare(pDatabase_, sQuery);
    if (!transaction_.isOpen() || pStatement_ == nullptr)
        return false;
    try {
        ahead_.emplace([this, lLastId](Ahead& ahead) { read(ahead, lLastId); });
    } catch (const std::system_error&) {
        return false; // no thread can be had
    }
    return true;
}

// Runs on the thread. How the statement ends does not matter: whatever it did not yield the row loop reads.
void StoredColumns::read(Ahead& ahead, std::int64_t lLastId) {
    const ErrorScope errors;
    StoredFilling filling(sources_, lLastId, exchangeWith(ahead));
    sqlite3_stmt* pStatement = pStatement_.get();
    bindCollector(pStatement, filling);
    sqlite3_bind_int64(pStatement, 2, lLastId);
    bReachedEnd_ = sqlite3_step(pStatement) == SQLITE_ROW;
    sqlite3_reset(pStatement);
    filling.finish();
}

ColumnBatchPtr StoredColumns::next(ColumnBatchPtr pUsed) {
    return ahead_->next(std::move(pUsed)).value_or(nullptr);
}

} // namespace halvane::host::gdal
