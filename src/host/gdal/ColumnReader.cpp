#include "host/gdal/ColumnReader.h"

#include "collection/Text.h"
#include "host/gdal/Errors.h"
#include "host/gdal/Queries.h"

#include <cpl_string.h>
#include <cpl_vsi.h>

#include <algorithm>
#include <string_view>

namespace halvane::host::gdal {

namespace {

// Opening the handles for it takes as long as reading this many rows one by one.
constexpr std::int64_t lFewestRows = 30'000;
// Some batches are in memory at a time, and one more for each row that somebody keeps.
constexpr std::int64_t lMostBatchBytes = 8'000'000;
// Smaller batches cost more than they gain, larger ones gain no more.
constexpr std::int64_t lFewestBatchRows = 1024;
constexpr std::int64_t lMostBatchRows = 4096;

std::optional<std::int64_t> wholeNumber(sqlite3* pDatabase, const std::string& sSql) {
    const StatementPtr pStatement = prepare(pDatabase, sSql);
    if (pStatement == nullptr || sqlite3_step(pStatement.get()) != SQLITE_ROW ||
        sqlite3_column_type(pStatement.get(), 0) != SQLITE_INTEGER) {
        return std::nullopt;
    }
    return sqlite3_column_int64(pStatement.get(), 0);
}

// The library's threads read on connections of their own, which nothing guards: only from stored columns of
// a table, never through a view or a virtual table. They would also see what another process writes
// meanwhile to a database with a log of its own.
bool isPlainTable(sqlite3* pDatabase, const std::string& sTable, const std::string& sIdColumn) {
    const auto one = [&](const std::string& sSql) { return wholeNumber(pDatabase, sSql) == 1; };
    const std::string sName = quoted(sTable);
    return one("SELECT count(*) FROM sqlite_master WHERE name = " + sName +
               " AND type = 'table' AND sql NOT LIKE 'CREATE VIRTUAL%'") &&
           one("SELECT count(*) = 0 FROM pragma_table_xinfo(" + sName + ") WHERE hidden <> 0") &&
           one("SELECT count(*) FROM pragma_table_xinfo(" + sName +
               ") WHERE pk = 1 AND name = " + quoted(sIdColumn) + " AND upper(type) = 'INTEGER'") &&
           one("SELECT count(*) FROM pragma_journal_mode WHERE journal_mode NOT IN ('wal', 'off')");
}

bool isLongEnough(const LayerHandle& rows, sqlite3* pDatabase) {
    OGRLayer& layer = rows.layer();
    const std::string sTable = layer.GetName();
    const std::string sId = quotedName(layer.GetFIDColumn());
    const std::string sFrom = ") FROM " + quotedName(sTable);
    const auto lFirst = wholeNumber(pDatabase, "SELECT min(" + sId + sFrom);
    const auto lLast = wholeNumber(pDatabase, "SELECT max(" + sId + sFrom);
    const auto lCount = wholeNumber(
        pDatabase, "SELECT feature_count FROM gpkg_ogr_contents WHERE table_name = " + quoted(sTable));
    return lFirst == 1 && lLast == lCount && lLast >= lFewestRows;
}

std::string_view formatOf(ColumnKind kind) {
    switch (kind) {
    case ColumnKind::ObjectId:
    case ColumnKind::Integer64:
        return "l";
    case ColumnKind::Integer:
        return "i";
    case ColumnKind::Single:
        return "f";
    case ColumnKind::Double:
        return "g";
    case ColumnKind::Text:
        return "u";
    case ColumnKind::Binary:
    case ColumnKind::Shape:
        return "z";
    default:
        return {};
    }
}

bool isReadApart(const OGRFieldDefn& definition, ColumnKind kind) {
    return kind == ColumnKind::Boolean || (kind == ColumnKind::Date && definition.GetType() != OFTTime) ||
           (kind == ColumnKind::Integer && definition.GetSubType() == OFSTInt16);
}

} // namespace

// Batches hold the identifier, the attributes in the layer's order, and the shape.
std::optional<ColumnReader::Layout> ColumnReader::layoutOf(OGRLayer& layer, const GdalFields& fields) {
    OGRFeatureDefn& definition = *layer.GetLayerDefn();
    Layout layout;
    for (const Column& column : fields.columns()) {
        Source source{column.kind};
        if (column.kind == ColumnKind::ObjectId) {
            source.lChild = 0;
        } else if (column.kind == ColumnKind::Shape) {
            source.lChild = 1 + definition.GetFieldCount();
        } else if (column.lColumn >= definition.GetFieldCount()) {
            return std::nullopt;
        } else if (const OGRFieldDefn& field = *definition.GetFieldDefn(column.lColumn);
                   isReadApart(field, column.kind)) {
            source.lSide = static_cast<int>(layout.sides.size());
            layout.sides.push_back({field.GetNameRef(), column.kind, field.GetType() == OFTDateTime});
        } else if (formatOf(column.kind).empty()) {
            return std::nullopt;
        } else {
            source.lChild = 1 + column.lColumn;
        }
        layout.sources.push_back(source);
    }
    return layout;
}

std::size_t ColumnReader::batchRowsOf(const LayerHandle& rows) {
    VSIStatBufL status{};
    if (VSIStatL(rows.source().sOpenName.c_str(), &status) != 0) {
        return 0;
    }
    const std::int64_t lRows =
        wholeNumber(databaseOf(rows.dataset()), "SELECT max(" + quotedName(rows.layer().GetFIDColumn()) +
                                                    ") FROM " + quotedName(rows.layer().GetName()))
            .value_or(0);
    const std::int64_t lMeanBytes = std::int64_t{status.st_size} / std::max<std::int64_t>(lRows, 1) + 1;
    const std::int64_t lFitting = std::min(lMostBatchBytes / lMeanBytes, lMostBatchRows);
    return lFitting < lFewestBatchRows ? 0 : static_cast<std::size_t>(lFitting);
}

std::unique_ptr<ColumnReader> ColumnReader::tryOpen(const LayerHandle& rows, const GdalFields& fields) {
    const ErrorScope errors;
    if (rows.source().sDriver != "GPKG") {
        return nullptr;
    }
    sqlite3* pDatabase = databaseOf(rows.dataset());
    OGRLayer& layer = rows.layer();
    if (pDatabase == nullptr || layer.GetFIDColumn()[0] == '\0' || !isLongEnough(rows, pDatabase) ||
        !isPlainTable(pDatabase, layer.GetName(), layer.GetFIDColumn())) {
        return nullptr;
    }
    auto layout = layoutOf(layer, fields);
    const std::size_t lBatchRows = batchRowsOf(rows);
    if (!layout || lBatchRows == 0) {
        return nullptr;
    }
    try {
        std::unique_ptr<ColumnReader> pReader(new ColumnReader(rows, std::move(*layout), lBatchRows));
        return pReader->start() ? std::move(pReader) : nullptr;
    } catch (const Failure&) {
        return nullptr; // no other handle can be had
    }
}

ColumnReader::ColumnReader(const LayerHandle& rows, Layout layout, std::size_t lBatchRows)
    : layout_(std::move(layout)), lBatchRows_(lBatchRows), transaction_(databaseOf(rows.dataset())),
      sideReader_(databaseOf(rows.dataset()), rows.layer().GetName(), rows.layer().GetFIDColumn(),
                  layout_.sides),
      layer_(rows.another()) {}

bool ColumnReader::start() {
    if (!transaction_.isOpen() || !sideReader_.isOpen()) {
        return false;
    }
    CPLStringList options;
    options.SetNameValue("MAX_FEATURES_IN_BATCH", std::to_string(lBatchRows_).c_str());
    Released<ArrowSchema> schema;
    if (!layer_.layer().GetArrowStream(stream_.get(), options.List()) ||
        stream_->get_schema(stream_.get(), schema.get()) != 0) {
        return false;
    }
    const auto isAsExpected = [&](const Source& source) {
        return source.lChild < 0 || (source.lChild < schema->n_children &&
                                     formatOf(source.kind) == schema->children[source.lChild]->format);
    };
    return std::all_of(layout_.sources.begin(), layout_.sources.end(), isAsExpected);
}

bool ColumnReader::bindColumns(ColumnBatch& batch) const {
    for (const Source& source : layout_.sources) {
        if (source.lSide >= 0) {
            batch.columns.push_back(batch.sides[static_cast<std::size_t>(source.lSide)].view());
            continue;
        }
        const ArrowArray& child = *batch.array->children[source.lChild];
        if (child.offset != 0 || child.length != batch.array->length) {
            return false;
        }
        const auto* pValid =
            child.null_count == 0 ? nullptr : static_cast<const std::uint8_t*>(child.buffers[0]);
        const bool bHeap = child.n_buffers > 2;
        batch.columns.push_back({source.kind, pValid, child.buffers[1],
                                 bHeap ? static_cast<const char*>(child.buffers[2]) : nullptr});
    }
    return true;
}

// Batches must follow one another without a gap: a thread that fails leaves one, and tells nobody.
bool ColumnReader::accept(ColumnBatch& batch) {
    const std::size_t lCount = batch.rowCount();
    const ArrowArray& ids = *batch.array->children[0];
    if (lCount == 0 || ids.length != batch.array->length) {
        return false;
    }
    batch.pIds = static_cast<const std::int64_t*>(ids.buffers[1]);
    for (std::size_t lRow = 0; lRow < lCount; ++lRow) {
        if (batch.pIds[lRow] != ++lLastId_) {
            return false;
        }
    }
    return sideReader_.read(batch.pIds[0], lCount, batch.sides) && bindColumns(batch);
}

namespace {

std::int64_t heapBytesOf(const ColumnBatch& batch) {
    std::int64_t lBytes = 0;
    for (const BatchColumn& column : batch.columns) {
        if (column.pHeap != nullptr) {
            lBytes += column.number<std::int32_t>(batch.rowCount());
        }
    }
    return lBytes;
}

} // namespace

ColumnBatchPtr ColumnReader::next() {
    if (bEnded_) {
        return nullptr;
    }
    const ErrorScope errors;
    auto pBatch = std::make_shared<ColumnBatch>();
    if (stream_->get_next(stream_.get(), pBatch->array.get()) != 0 || pBatch->array->release == nullptr ||
        !accept(*pBatch) || errors.failed()) {
        bEnded_ = true;
        return nullptr;
    }
    // Rows differ in size: the rest of such a table is read one by one, in little memory.
    bEnded_ = heapBytesOf(*pBatch) > 2 * lMostBatchBytes;
    return pBatch;
}

} // namespace halvane::host::gdal
