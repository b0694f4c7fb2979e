#pragma once

#include "host/gdal/ColumnBatch.h"
#include "host/gdal/HandlePool.h"
#include "host/gdal/SideReader.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace halvane::host::gdal {

/// Reads the rest of a long GeoPackage table column by column, while threads of the library read ahead. What
/// it yields is what the row loop would yield; where that is not certain (a value out of its type's form, a
/// gap in the identifiers, any failure) it ends, and the row loop takes over after the last row.
class ColumnReader {
public:
    /// @param rows the handle of a row loop without a filter; it stays open while columns are read.
    /// @returns nothing for a table that is read better, or only surely, row by row.
    [[nodiscard]] static std::unique_ptr<ColumnReader> tryOpen(const LayerHandle& rows,
                                                               const GdalFields& fields);
    ColumnReader(const ColumnReader&) = delete;
    ColumnReader& operator=(const ColumnReader&) = delete;
    ~ColumnReader() = default;

    /// The next batch; nothing at the end of what columns can yield. Its first rows may be ones that the row
    /// loop has handed out already.
    [[nodiscard]] ColumnBatchPtr next();

private:
    struct Source {
        ColumnKind kind;
        int lChild = -1; ///< of the library's batch; -1 for a column that is read apart
        int lSide = -1;
    };
    struct Layout {
        std::vector<Source> sources; ///< in the order of the table's fields
        std::vector<SideReader::Column> sides;
    };

    ColumnReader(const LayerHandle& rows, Layout layout, std::size_t lBatchRows);

    [[nodiscard]] static std::optional<Layout> layoutOf(OGRLayer& layer, const GdalFields& fields);
    [[nodiscard]] static std::size_t batchRowsOf(const LayerHandle& rows);
    [[nodiscard]] bool start();
    [[nodiscard]] bool bindColumns(ColumnBatch& batch) const;
    [[nodiscard]] bool accept(ColumnBatch& batch);

    Layout layout_;
    std::size_t lBatchRows_;
    ReadTransaction transaction_; // ends after the statement of the side reader
    SideReader sideReader_;
    LayerHandle layer_; // goes back after its stream has ended
    Released<ArrowArrayStream> stream_;
    std::int64_t lLastId_ = 0;
    bool bEnded_ = false;
};

} // namespace halvane::host::gdal
