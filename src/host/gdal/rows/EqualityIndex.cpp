#include "host/gdal/rows/EqualityIndex.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/rows/FeatureCursor.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Locations.h"
#include "host/gdal/source/Queries.h"
#include "host/gdal/source/Sqlite.h"

#include <cpl_vsi.h>

#include <algorithm>
#include <string_view>

namespace halvane::host::gdal {

namespace {

constexpr std::size_t nMostBytesKept = 48'000'000;

// Files compare texts byte by byte, letters A to Z as a to z.
std::string withoutCase(std::string_view sText) {
    std::string sLower(sText);
    std::transform(sLower.begin(), sLower.end(), sLower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return sLower;
}

std::size_t bytesOf(const OGRFeature& feature) {
    constexpr std::size_t nBytesOfObject = 200;
    std::size_t nBytes = nBytesOfObject;
    for (int lColumn = 0; lColumn < feature.GetFieldCount(); ++lColumn) {
        const OGRField& raw = *feature.GetRawFieldRef(lColumn);
        nBytes += sizeof(OGRField);
        if (OGR_RawField_IsUnset(&raw) != 0 || OGR_RawField_IsNull(&raw) != 0)
            continue;
        const OGRFieldType type = feature.GetFieldDefnRef(lColumn)->GetType();
        if (type == OFTString)
            nBytes += std::string_view(raw.String).size() + 24;
        else if (type == OFTBinary)
            nBytes += static_cast<std::size_t>(raw.Binary.nCount) + 24;
        else if (type != OFTInteger && type != OFTInteger64 && type != OFTReal)
            nBytes += nBytesOfObject;
    }
    const OGRGeometry* pShape = feature.GetGeometryRef();
    return nBytes + (pShape == nullptr ? 0 : 2 * pShape->WkbSize() + nBytesOfObject);
}

/// The features that an index has found.
class IndexedFeatures : public FeatureSource {
public:
    IndexedFeatures(std::shared_ptr<EqualityIndex> pIndex, std::span<const std::int64_t> ids)
        : pIndex_(std::move(pIndex)), ids_(ids) {}

    void read(FeatureBlock& block) override {
        constexpr std::size_t nMostAhead = 64;
        const std::size_t nAhead = std::min(nMostAhead, ids_.size());
        block = pIndex_->rows(ids_.first(nAhead));
        ids_ = ids_.subspan(nAhead);
        block.bLast = ids_.empty();
    }

private:
    std::shared_ptr<EqualityIndex> pIndex_; // keeps the identifiers
    std::span<const std::int64_t> ids_;     // of the rows to come
};

} // namespace

EqualityIndex::EqualityIndex(LayerHandle handle, Format format, int lColumn, bool bText)
    : handle_(std::move(handle)), check_(handle_), format_(format), lColumn_(lColumn), bText_(bText) {}

bool EqualityIndex::formatOf(const std::string& sDriver, Format& format) {
    if (sDriver == "GPKG" || sDriver == "SQLite") {
        format = Format::Database;
    } else if (sDriver == "ESRI Shapefile") {
        format = Format::Shapefile;
    } else if (sDriver == "PostgreSQL") {
        format = Format::Server;
    } else {
        format = Format::Sequential;
        return sDriver == "CSV" || sDriver == "GeoJSON" || sDriver == "FlatGeobuf";
    }
    return true;
}

std::shared_ptr<EqualityIndex> EqualityIndex::tryBuild(LayerHandle handle, const EqualityClause& clause,
                                                       const GdalFields& fields) {
    Format format{};
    OGRFeatureDefn& definition = *handle.layer().GetLayerDefn();
    const int lColumn = definition.GetFieldIndex(clause.sField.c_str());
    if (!formatOf(handle.source().sDriver, format) || lColumn < 0)
        return nullptr;
    // A filter on a number sees more than whole numbers in other types, and texts in lists.
    const OGRFieldDefn& field = *definition.GetFieldDefn(lColumn);
    const bool bWhole = field.GetType() == OFTInteger || field.GetType() == OFTInteger64;
    if ((clause.bText ? field.GetType() != OFTString : !bWhole) || field.GetSubType() != OFSTNone)
        return nullptr;
    std::shared_ptr<EqualityIndex> pIndex(
        new EqualityIndex(std::move(handle), format, lColumn, clause.bText));
    return pIndex->build(fields) ? pIndex : nullptr;
}

bool EqualityIndex::build(const GdalFields& fields) {
    const ErrorScope errors;
    if (format_ == Format::Database)
        databaseState_.emplace(databaseOf(handle_.dataset()));
    sState_ = stateOfData();
    const bool bDatabase = format_ == Format::Database && isPlainColumn();
    if (bDatabase)
        pRows_ = KeptRows::tryRead(handle_, fields, nMostBytesKept);
    const bool bRead = format_ == Format::Server ? !sState_.empty() && isPlainServerColumn() && readServer()
                       : format_ != Format::Database ? readFile()
                       : !bDatabase                  ? false
                                                     : readKept(fields) || readDatabase();
    byNumber_.finish();
    return bRead && !errors.failed() && !sState_.empty() && sState_ == stateOfData();
}

// A column of a table (no view, no virtual table) that compares as it is stored. With an index the database
// is fast itself.
bool EqualityIndex::isPlainColumn() const {
    sqlite3* pDatabase = databaseOf(handle_.dataset());
    OGRLayer& layer = handle_.layer();
    const std::string sTable = layer.GetName();
    const std::string sColumn = layer.GetLayerDefn()->GetFieldDefn(lColumn_)->GetNameRef();
    const char* pType = nullptr;
    const char* pCollation = nullptr;
    if (pDatabase == nullptr ||
        wholeNumber(pDatabase, "SELECT count(*) FROM sqlite_master WHERE name = " + quotedText(sTable) +
                                   " AND type = 'table' AND sql NOT LIKE 'CREATE VIRTUAL%'") != 1 ||
        wholeNumber(pDatabase, "SELECT count(*) FROM pragma_index_list(" + quotedText(sTable) +
                                   ") AS l, pragma_index_xinfo(l.name) AS i WHERE i.key AND (i.name IS NULL "
                                   "OR lower(i.name) = lower(" +
                                   quotedText(sColumn) + "))") != 0 ||
        wholeNumber(pDatabase, "SELECT count(*) FROM pragma_table_xinfo(" + quotedText(sTable) +
                                   ") WHERE pk = 1 AND upper(type) = 'INTEGER' AND lower(name) = lower(" +
                                   quotedText(layer.GetFIDColumn()) + ")") != 1 ||
        sqlite3_table_column_metadata(pDatabase, nullptr, sTable.c_str(), sColumn.c_str(), &pType,
                                      &pCollation, nullptr, nullptr, nullptr) != SQLITE_OK)
        return false;
    const std::string sType = upperCase(pType == nullptr ? "" : pType);
    const bool bInteger = sType.find("INT") != std::string::npos;
    const bool bText = sType.find("CHAR") != std::string::npos || sType.find("TEXT") != std::string::npos;
    return equalIgnoringCase(pCollation == nullptr ? "" : pCollation, "BINARY") &&
           (bText_ ? bText && !bInteger : bInteger);
}

// A column of texts that the server compares byte by byte, or of whole numbers; its rows have a key.
bool EqualityIndex::isPlainServerColumn() const {
    OGRLayer& layer = handle_.layer();
    if (std::string_view(layer.GetFIDColumn()).empty())
        return false;
    if (!bText_)
        return true;
    bool bPlain = false;
    query(handle_.dataset(),
          "SELECT 1 FROM pg_attribute a JOIN pg_collation c ON c.oid = a.attcollation WHERE a.attrelid = " +
              quotedText(serverTable(layer.GetName())) + "::regclass AND a.attname = " +
              quotedText(layer.GetLayerDefn()->GetFieldDefn(lColumn_)->GetNameRef()) +
              " AND a.atttypid IN ('text'::regtype, 'varchar'::regtype) AND c.collisdeterministic",
          [&](const QueryRow&) { bPlain = true; });
    return bPlain;
}

// A server gives rows in any order: theirs is that of the key.
bool EqualityIndex::readServer() {
    const bool bRead = readFile();
    // The rows are kept: the server need not keep their state for this connection.
    ServerSnapshots::leave(handle_.source(), handle_.dataset());
    if (!bRead)
        return false;
    byNumber_.sortRows();
    for (auto& [sText, rows] : byText_)
        std::ranges::sort(rows);
    return true;
}

// Numbers are in the rows as they are in the database; a text ends there at a NUL.
bool EqualityIndex::readKept(const GdalFields& fields) {
    if (pRows_ == nullptr || bText_)
        return false;
    const auto column = std::ranges::find_if(fields.columns(), [this](const Column& one) {
        return one.lColumn == lColumn_ && one.kind != ColumnKind::ObjectId && one.kind != ColumnKind::Shape;
    });
    if (column == fields.columns().end())
        return false;
    pRows_->forEachCell(static_cast<std::size_t>(column - fields.columns().begin()),
                        [this](std::int64_t lPlace, const Cell& cell) {
                            if (const auto* lShort = std::get_if<std::int32_t>(&cell))
                                byNumber_.add(*lShort, lPlace);
                            else if (const auto* lLong = std::get_if<std::int64_t>(&cell))
                                byNumber_.add(*lLong, lPlace);
                        });
    return true;
}

bool EqualityIndex::readDatabase() {
    OGRLayer& layer = handle_.layer();
    const std::string sId = quotedName(layer.GetFIDColumn());
    const StatementPtr pStatement = prepare(
        databaseOf(handle_.dataset()),
        "SELECT " + sId + ", " + quotedName(layer.GetLayerDefn()->GetFieldDefn(lColumn_)->GetNameRef()) +
            " FROM " + quotedName(layer.GetName()) + " ORDER BY " + sId);
    if (pStatement == nullptr)
        return false;
    const int lWanted = bText_ ? SQLITE_TEXT : SQLITE_INTEGER;
    int lCode = SQLITE_ROW;
    while ((lCode = sqlite3_step(pStatement.get())) == SQLITE_ROW) {
        const int lType = sqlite3_column_type(pStatement.get(), 1);
        if (lType == SQLITE_NULL)
            continue;
        if (lType != lWanted)
            return false;
        std::string_view sText;
        if (bText_) {
            const void* pText = sqlite3_column_text(pStatement.get(), 1);
            sText = {static_cast<const char*>(pText),
                     static_cast<std::size_t>(sqlite3_column_bytes(pStatement.get(), 1))};
        }
        const std::int64_t lId = sqlite3_column_int64(pStatement.get(), 0);
        const std::optional lRow = pRows_ == nullptr ? lId : pRows_->placeOf(lId);
        if (!lRow || !add(bText_ ? 0 : sqlite3_column_int64(pStatement.get(), 1), sText, *lRow))
            return false;
    }
    return lCode == SQLITE_DONE;
}

bool EqualityIndex::readFile() {
    if (format_ == Format::Shapefile && isFile(besideData("idm")))
        return false; // an index of the format's own decides how texts compare
    ErrorScope errors;
    while (OGRFeatureUniquePtr pFeature{handle_.layer().GetNextFeature()}) {
        if (pFeature->IsFieldSetAndNotNull(lColumn_) && !addOfFile(std::move(pFeature), errors))
            return false;
        handle_.missingRows().note(errors);
        errors.clear();
    }
    return !errors.failed() && !handle_.missingRows().any();
}

bool EqualityIndex::addOfFile(OGRFeatureUniquePtr pFeature, const ErrorScope& errors) {
    const OGRField& raw = *pFeature->GetRawFieldRef(lColumn_);
    const bool bLong = !bText_ && pFeature->GetFieldDefnRef(lColumn_)->GetType() == OFTInteger64;
    const std::int64_t lNumber = bText_ ? 0 : bLong ? raw.Integer64 : std::int64_t{raw.Integer};
    const std::int64_t lId = pFeature->GetFID();
    if (!add(lNumber, bText_ ? std::string_view(raw.String) : std::string_view(), lId))
        return false;
    if (!keepsRows())
        return true;
    if (RowFaultsPtr pFaults = check_.faultsOf(*pFeature, errors))
        faults_.emplace(lId, std::move(pFaults));
    nBytes_ += bytesOf(*pFeature);
    return lId >= 0 && rows_.emplace(lId, std::move(pFeature)).second; // else they do not tell rows apart
}

bool EqualityIndex::add(std::int64_t lNumber, std::string_view sText, std::int64_t lRow) {
    constexpr std::size_t nBytesOfEntry = 100;
    nBytes_ += 4 * sizeof(lRow);
    if (bText_) {
        RowNumbers& rows = byText_[textKey(sText)];
        nBytes_ += rows.empty() ? nBytesOfEntry + sText.size() : 0;
        rows.push_back(lRow);
    } else {
        byNumber_.add(lNumber, lRow);
    }
    return nBytes_ <= nMostBytesKept;
}

std::string EqualityIndex::textKey(std::string_view sText) const {
    const bool bByBytes = format_ == Format::Database || format_ == Format::Server;
    return bByBytes ? std::string(sText) : withoutCase(sText);
}

// Of a set of files, the one with that extension.
std::string EqualityIndex::besideData(const std::string& sExtension) const {
    const std::string& sFile = handle_.source().sOpenName;
    const std::size_t nDot = sFile.size() - std::min(extensionOf(sFile).size(), sFile.size());
    const std::string sOther = sFile.substr(0, nDot) + sExtension;
    return isFile(sOther) ? sOther : sFile.substr(0, nDot) + upperCase(sExtension);
}

std::string EqualityIndex::stateOfData() {
    if (databaseState_)
        return databaseState_->now();
    if (format_ == Format::Server)
        return handle_.heldState();
    VSIStatBufL status{};
    const std::string sFile = format_ == Format::Shapefile ? besideData("dbf") : handle_.source().sOpenName;
    if (VSIStatL(sFile.c_str(), &status) != 0)
        return "";
    return std::to_string(status.st_mtim.tv_sec) + "." + std::to_string(status.st_mtim.tv_nsec) + " " +
           std::to_string(status.st_size);
}

bool EqualityIndex::isCurrent() {
    const ErrorScope errors;
    return stateOfData() == sState_;
}

std::span<const std::int64_t> EqualityIndex::find(const EqualityClause& clause) const {
    if (!clause.bText)
        return byNumber_.find(clause.lNumber);
    const auto found = byText_.find(textKey(clause.sText));
    return found == byText_.end() ? std::span<const std::int64_t>() : found->second;
}

GisCursorPtr EqualityIndex::search(const EqualityClause& clause, const GdalFieldsPtr& pFields) {
    const auto found = find(clause);
    if (pRows_ != nullptr)
        return std::make_shared<KeptRowsCursor>(pFields, pRows_, found, shared_from_this());
    return std::make_shared<FeatureCursor>(pFields,
                                           std::make_unique<IndexedFeatures>(shared_from_this(), found));
}

FeatureBlock EqualityIndex::rows(std::span<const std::int64_t> ids) {
    std::optional<ReadTransaction> transaction;
    if (format_ == Format::Database && ids.size() > 1)
        transaction.emplace(databaseOf(handle_.dataset()));
    FeatureBlock block;
    block.features.reserve(ids.size());
    for (const std::int64_t lId : ids)
        addRow(block, lId);
    return block;
}

void EqualityIndex::addRow(FeatureBlock& block, std::int64_t lId) {
    const ErrorScope errors;
    const auto pKept = rows_.find(lId);
    const bool bKept = pKept != rows_.end();
    OGRFeatureUniquePtr pFeature(bKept ? pKept->second->Clone() : handle_.layer().GetFeature(lId));
    if (pFeature == nullptr) {
        errors.raise("Reading feature " + std::to_string(lId) + " of \"" +
                     std::string(handle_.layer().GetName()) + "\" failed");
    }
    RowFaultsPtr pFaults;
    if (!bKept)
        pFaults = check_.faultsOf(*pFeature, errors);
    else if (const auto pFound = faults_.find(lId); pFound != faults_.end())
        pFaults = pFound->second;
    if (pFaults != nullptr)
        block.faults.emplace_back(block.features.size(), std::move(pFaults));
    block.features.push_back(std::move(pFeature));
}

} // namespace halvane::host::gdal
