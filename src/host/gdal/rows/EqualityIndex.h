#pragma once

#include "host/gdal/rows/EqualityClause.h"
#include "host/gdal/rows/FeatureBlock.h"
#include "host/gdal/rows/KeptRows.h"
#include "host/gdal/rows/RowCheck.h"
#include "host/gdal/rows/RowsByNumber.h"
#include "host/gdal/source/DatabaseState.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/HandlePool.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace halvane::host::gdal {

/// Which rows of a table hold which value in one field, in the order of the data. It answers exactly as the
/// format's own filter would: texts of databases with their letter case, texts of files without.
///
/// It keeps row identifiers in at most 48 MB by its own estimate, of formats that cannot jump to a row with
/// the rows themselves. Those of a database are kept beside it in as much again, where they fit.
class EqualityIndex : public std::enable_shared_from_this<EqualityIndex> {
public:
    /// Reads the table once. @returns nothing where the format's own filter must be asked: for other formats,
    /// a column with an index or with values of another type, and when it would be too large.
    /// @param handle stays with the index, for its rows.
    [[nodiscard]] static std::shared_ptr<EqualityIndex>
    tryBuild(LayerHandle handle, const EqualityClause& clause, const GdalFields& fields);

    /// Whether the data is still what was read: of a database as it tells, of a file by its time and size, of
    /// a server by the state that is held for an export.
    [[nodiscard]] bool isCurrent();
    /// The rows of a clause on the field. Reading them fails when one is gone.
    [[nodiscard]] GisCursorPtr search(const EqualityClause& clause, const GdalFieldsPtr& pFields);
    /// Some rows at a time: taking a database's lock costs more than reading a row.
    /// @throws Failure when one is gone.
    [[nodiscard]] FeatureBlock rows(std::span<const std::int64_t> ids);

private:
    enum class Format { Database, Shapefile, Sequential, Server };
    using RowNumbers = std::vector<std::int64_t>; // identifiers; places where the rows are kept

    EqualityIndex(LayerHandle handle, Format format, int lColumn, bool bText);

    [[nodiscard]] static bool formatOf(const std::string& sDriver, Format& format);
    [[nodiscard]] bool build(const GdalFields& fields);
    [[nodiscard]] std::span<const std::int64_t> find(const EqualityClause& clause) const;
    [[nodiscard]] bool readKept(const GdalFields& fields);
    void addRow(FeatureBlock& block, std::int64_t lId);
    [[nodiscard]] bool isPlainColumn() const;
    [[nodiscard]] bool isPlainServerColumn() const;
    [[nodiscard]] bool keepsRows() const {
        return format_ == Format::Sequential || format_ == Format::Server;
    }
    [[nodiscard]] std::string textKey(std::string_view sText) const;
    [[nodiscard]] bool readDatabase();
    [[nodiscard]] bool readFile();
    [[nodiscard]] bool readServer();
    [[nodiscard]] bool addOfFile(OGRFeatureUniquePtr pFeature, const ErrorScope& errors);
    [[nodiscard]] bool add(std::int64_t lNumber, std::string_view sText, std::int64_t lRow);
    [[nodiscard]] std::string besideData(const std::string& sExtension) const;
    [[nodiscard]] std::string stateOfData();

    LayerHandle handle_;
    RowCheck check_;
    Format format_;
    int lColumn_;
    bool bText_;
    std::string sState_;
    std::size_t nBytes_ = 0;
    RowsByNumber byNumber_;
    std::unordered_map<std::string, RowNumbers> byText_;
    KeptRowsPtr pRows_; // of a database, if they fit
    std::optional<DatabaseState> databaseState_;
    std::unordered_map<std::int64_t, OGRFeatureUniquePtr> rows_; // of a sequential format
    std::unordered_map<std::int64_t, RowFaultsPtr> faults_;      // of these
};

} // namespace halvane::host::gdal
