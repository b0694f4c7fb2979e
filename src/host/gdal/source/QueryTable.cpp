#include "host/gdal/source/QueryTable.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/source/DatabaseGuard.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Interruption.h"
#include "host/gdal/source/Queries.h"
#include "host/gdal/source/Sqlite.h"

#include <cpl_conv.h>
#include <cpl_string.h>
#include <cpl_vsi.h>

#include <algorithm>
#include <atomic>
#include <set>
#include <utility>

namespace halvane::host::gdal {

namespace {

Failure hostFailure(const std::string& sText) {
    return {FailureNumber::HostFailure, sText};
}

/// A database file in memory; it goes with the object.
class MemoryDatabase {
public:
    MemoryDatabase() : sPath_(newPath()) {
        setDataInUse(nullptr);
        GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName("GPKG");
        pDataset_.reset(pDriver == nullptr ? nullptr
                                           : pDriver->Create(sPath_.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    }
    MemoryDatabase(const MemoryDatabase&) = delete;
    MemoryDatabase& operator=(const MemoryDatabase&) = delete;
    ~MemoryDatabase() {
        const ErrorScope errors;
        pDataset_.reset();
        VSIUnlink(sPath_.c_str());
    }

    /// Nothing when it could not be made: the scope around knows why.
    [[nodiscard]] GDALDataset* dataset() const { return pDataset_.get(); }
    /// To be read from now on.
    void finish() { pDataset_.reset(); }
    [[nodiscard]] const std::string& path() const { return sPath_; }

private:
    static std::string newPath() {
        static std::atomic<unsigned> nLast{0};
        return "/vsimem/halvane-query-" + std::to_string(++nLast) + ".gpkg";
    }

    std::string sPath_;
    GDALDatasetUniquePtr pDataset_;
};

/// A name that is not among the others yet, ignoring case.
std::string unused(const std::string& sWanted, std::set<std::string>& taken) {
    std::string sName = sWanted;
    for (int n = 1; !taken.insert(upperCase(sName)).second; ++n)
        sName = sWanted + "_" + std::to_string(n);
    return sName;
}

struct CopyNames {
    std::string sId;    ///< of the identifier, unless an attribute has it
    std::string sShape; ///< likewise, where the layer has none of its own
    bool bKeepIds;
};

/// Copies a layer, attribute by attribute, into a database.
class LayerCopy {
public:
    LayerCopy(OGRLayer& from, GDALDataset& to, const std::string& sName, const CopyNames& names)
        : from_(from), bKeepIds_(names.bKeepIds) {
        const OGRFeatureDefn& definition = *from.GetLayerDefn();
        std::set<std::string> taken;
        std::vector<std::string> fields;
        fields.reserve(static_cast<std::size_t>(definition.GetFieldCount()));
        // The library takes the column of a table's identifiers out of the others.
        if (const std::string sIdColumn = from.GetFIDColumn(); !bKeepIds_ && !sIdColumn.empty())
            sIdColumn_ = unused(sIdColumn, taken);
        for (int n = 0; n < definition.GetFieldCount(); ++n)
            fields.push_back(unused(definition.GetFieldDefn(n)->GetNameRef(), taken));
        const std::string sOwnShape = from.GetGeometryColumn();
        CPLStringList options;
        options.SetNameValue("GEOMETRY_NAME",
                             unused(sOwnShape.empty() ? names.sShape : sOwnShape, taken).c_str());
        options.SetNameValue("FID", unused(names.sId, taken).c_str());
        options.SetNameValue("SPATIAL_INDEX", "NO");
        pTo_ = to.CreateLayer(sName.c_str(), from.GetSpatialRef(), from.GetGeomType(), options.List());
        if (pTo_ != nullptr && !sIdColumn_.empty()) {
            OGRFieldDefn field(sIdColumn_.c_str(), OFTInteger64);
            static_cast<void>(pTo_->CreateField(&field));
        }
        for (int n = 0; pTo_ != nullptr && n < definition.GetFieldCount(); ++n)
            addField(*definition.GetFieldDefn(n), fields[static_cast<std::size_t>(n)]);
    }

    void copyRows() {
        while (pTo_ != nullptr) {
            endIfInterrupted();
            const OGRFeatureUniquePtr pRow(from_.GetNextFeature());
            if (pRow == nullptr)
                return;
            OGRFeature copy(pTo_->GetLayerDefn());
            copy.SetFieldsFrom(pRow.get(), map_.data(), TRUE);
            copy.SetGeometryDirectly(pRow->StealGeometry());
            if (bKeepIds_)
                copy.SetFID(pRow->GetFID());
            if (!sIdColumn_.empty())
                copy.SetField(0, pRow->GetFID());
            if (pTo_->CreateFeature(&copy) != OGRERR_NONE)
                return;
        }
    }

private:
    void addField(const OGRFieldDefn& own, const std::string& sName) {
        OGRFieldDefn field(sName.c_str(), own.GetType());
        field.SetSubType(own.GetSubType());
        field.SetWidth(own.GetWidth());
        field.SetPrecision(own.GetPrecision());
        static_cast<void>(pTo_->CreateField(&field));
        map_.push_back(pTo_->GetLayerDefn()->GetFieldCount() - 1);
    }

    OGRLayer& from_;
    bool bKeepIds_;
    std::string sIdColumn_; ///< first of the attributes; "" for none
    OGRLayer* pTo_ = nullptr;
    std::vector<int> map_;
};

/// The datasets of a query as a database: the source itself, or a copy.
class QueriedDatabase {
public:
    /// @param bRows whether rows are needed.
    QueriedDatabase(HandlePool& pool, const TableQuery& query, bool bRows)
        : pSource_(databaseOf(query)), pCopy_(pSource_ == nullptr ? copy(pool, query, bRows) : nullptr) {
        if (pSource_ != nullptr)
            return;
        auto pSource = std::make_shared<Source>();
        pSource->sOpenName = pCopy_->path();
        pSource->sDisplayName =
            query.datasets.empty() ? query.sName : query.datasets.front().pSource->sDisplayName;
        pSource->sDriver = "GPKG";
        pSource_ = std::move(pSource);
    }

    [[nodiscard]] const SourcePtr& source() const { return pSource_; }

private:
    static SourcePtr databaseOf(const TableQuery& query) {
        if (query.datasets.empty())
            return nullptr;
        const SourcePtr& pFirst = query.datasets.front().pSource;
        const bool bDatabase = pFirst->sDriver == "GPKG" || pFirst->sDriver == "SQLite";
        const bool bAlone = std::ranges::all_of(
            query.datasets, [&](const DatasetEntry& entry) { return entry.pSource == pFirst; });
        return bDatabase && bAlone ? pFirst : nullptr;
    }

    // A name that the SQL does not hold is none that it asks for.
    static std::unique_ptr<MemoryDatabase> copy(HandlePool& pool, const TableQuery& query, bool bRows) {
        const ErrorScope errors;
        auto pDatabase = std::make_unique<MemoryDatabase>();
        if (pDatabase->dataset() == nullptr)
            errors.raise("A database in memory cannot be made");
        static_cast<void>(pDatabase->dataset()->StartTransaction(FALSE));
        // A database without tables is not opened; nothing says this one's name.
        static_cast<void>(pDatabase->dataset()->CreateLayer("halvane_empty", nullptr, wkbNone, nullptr));
        std::set<std::string> names;
        for (const DatasetEntry& entry : query.datasets) {
            if (!containsIgnoringCase(query.sSql, upperCase(entry.sName)) ||
                !names.insert(upperCase(entry.sName)).second)
                continue;
            const LayerHandle layer = pool.acquireLayer(entry.pSource, entry.sName);
            LayerCopy layerCopy(layer.layer(), *pDatabase->dataset(), entry.sName, {"fid", "geom", true});
            if (bRows)
                layerCopy.copyRows();
            errors.raiseIfFailed("Reading \"" + entry.sName + "\" for a query failed");
        }
        static_cast<void>(pDatabase->dataset()->CommitTransaction());
        pDatabase->finish();
        errors.raiseIfFailed("A database in memory cannot be made");
        return pDatabase;
    }

    SourcePtr pSource_;
    std::unique_ptr<MemoryDatabase> pCopy_;
};

std::string statementOf(const std::string& sSql) {
    std::string_view sText = trimBlanks(sSql);
    while (!sText.empty() && (sText.back() == ';' || sText.back() == '\n' || sText.back() == '\r' ||
                              sText.back() == '\t' || sText.back() == ' '))
        sText.remove_suffix(1);
    const auto nBegin = sText.find_first_not_of(" \t\r\n");
    return std::string(nBegin == std::string_view::npos ? sText : sText.substr(nBegin));
}

void requireQuery(GDALDataset& dataset, const std::string& sSql) {
    const ErrorScope errors;
    if (const std::string sWhy = whyNoQuery(dataset, sSql); !sWhy.empty())
        throw hostFailure("sql=\"" + sSql + "\" cannot be followed: " + sWhy);
}

/// The kinds of values that a computed column has.
struct ValueKinds {
    bool bWhole = false;
    bool bReal = false;
    bool bText = false;

    /// What all of them are written as where they differ; "" where they do not.
    [[nodiscard]] const char* common() const {
        if (bText)
            return bWhole || bReal ? "TEXT" : "";
        return bWhole && bReal ? "REAL" : "";
    }
};

/// "c0, c1, c2"
std::string columnList(int lColumns) {
    std::string sList;
    for (int n = 0; n < lColumns; ++n)
        sList += (n == 0 ? "c" : ", c") + std::to_string(n);
    return sList;
}

std::vector<ValueKinds> kindsOf(sqlite3* pDatabase, const std::string& sAll, int lColumns) {
    std::string sKinds;
    for (int n = 0; n < lColumns; ++n)
        for (const char* pKind : {"integer", "real", "text"})
            sKinds += std::string(sKinds.empty() ? "" : ", ") + "max(typeof(c" + std::to_string(n) + ") = '" +
                      pKind + "')";
    std::vector<ValueKinds> kinds(static_cast<std::size_t>(lColumns));
    const StatementPtr pRow = prepare(pDatabase, sAll + " SELECT " + sKinds + " FROM q");
    if (pRow == nullptr || sqlite3_step(pRow.get()) != SQLITE_ROW)
        return kinds; // reading the rows fails too, and tells why
    for (int n = 0; n < lColumns; ++n)
        kinds[static_cast<std::size_t>(n)] = {sqlite3_column_int(pRow.get(), 3 * n) != 0,
                                              sqlite3_column_int(pRow.get(), 3 * n + 1) != 0,
                                              sqlite3_column_int(pRow.get(), 3 * n + 2) != 0};
    return kinds;
}

// The library takes the type of a computed column from its first row, cuts what comes later to it, and leaves
// out columns of a name that was there before: the statement is then put into another one.
std::string settled(GDALDataset& dataset, const std::string& sSql) {
    sqlite3* pDatabase = databaseOf(dataset);
    const StatementPtr pStatement = prepare(pDatabase, sSql);
    const int lColumns = pStatement == nullptr ? 0 : sqlite3_column_count(pStatement.get());
    std::set<std::string> taken;
    std::vector<std::string> names;
    bool bComputes = false;
    bool bRenames = false;
    for (int n = 0; n < lColumns; ++n) {
        const std::string sName = sqlite3_column_name(pStatement.get(), n);
        names.push_back(unused(sName, taken));
        bRenames = bRenames || names.back() != sName;
        bComputes = bComputes || sqlite3_column_decltype(pStatement.get(), n) == nullptr;
    }
    const std::string sAll = "WITH q(" + columnList(lColumns) + ") AS (" + sSql + "\n)";
    const auto kinds = bComputes ? kindsOf(pDatabase, sAll, lColumns) : std::vector<ValueKinds>(names.size());
    std::string sColumns;
    bool bDiffer = bRenames;
    for (std::size_t n = 0; n < names.size(); ++n) {
        const std::string sCommon = kinds[n].common();
        const std::string sColumn = "c" + std::to_string(n);
        bDiffer = bDiffer || !sCommon.empty();
        sColumns += n == 0 ? "" : ", ";
        if (sCommon.empty())
            sColumns += sColumn;
        else
            sColumns.append("CAST(").append(sColumn).append(" AS ").append(sCommon).append(")");
        sColumns.append(" AS ").append(quotedName(names[n]));
    }
    return bDiffer ? sAll + " SELECT " + sColumns + " FROM q" : sSql;
}

} // namespace

void testQuery(HandlePool& pool, const TableQuery& query) {
    const QueriedDatabase database(pool, query, false);
    const Handle handle = pool.acquire(database.source());
    requireQuery(handle.dataset(), statementOf(query.sSql));
}

DatasetEntry computeTable(HandlePool& pool, const TableQuery& query) {
    const std::string sSql = statementOf(query.sSql);
    const std::string sContext = "Computing \"" + query.sName + R"(" by its sql="..." failed)";
    const QueriedDatabase database(pool, query, true);
    const Handle handle = pool.acquire(database.source());
    requireQuery(handle.dataset(), sSql);
    const ErrorScope errors;
    auto pResult = std::make_shared<MemoryDatabase>();
    if (pResult->dataset() == nullptr)
        errors.raise(sContext);
    bool bFeatures = false;
    {
        const CPLConfigOptionSetter wide("OGR_PROMOTE_TO_INTEGER64", "YES", false);
        const ResultSet result(handle.dataset(), settled(handle.dataset(), sSql));
        if (result.layer() == nullptr || errors.failed())
            errors.raise(sContext);
        bFeatures = result.layer()->GetGeomType() != wkbNone;
        static_cast<void>(pResult->dataset()->StartTransaction(FALSE));
        LayerCopy(*result.layer(), *pResult->dataset(), query.sName, {"OID", "SHAPE", false}).copyRows();
        static_cast<void>(pResult->dataset()->CommitTransaction());
        errors.raiseIfFailed(sContext);
    }
    pResult->finish();
    errors.raiseIfFailed(sContext);
    auto pSource = std::make_shared<Source>();
    pSource->sOpenName = pResult->path();
    pSource->sDisplayName = handle.source().sDisplayName;
    pSource->sDriver = "GPKG";
    pSource->pKept = std::move(pResult);
    return {std::move(pSource), query.sName, bFeatures};
}

} // namespace halvane::host::gdal
