#pragma once

#include "host/gdal/rows/ColumnReader.h"
#include "host/gdal/rows/ReadAhead.h"
#include "host/gdal/rows/ServerFilling.h"
#include "host/gdal/source/HandlePool.h"
#include "host/gdal/source/ServerConnection.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace halvane::host::gdal {

/// The rest of a server's table in the order of its key, by a cursor on a connection of its own, whose values
/// come in binary form.
class ServerColumns final : public ColumnReader {
public:
    /// @param rows the handle of a row loop over the same rows, in a state that is held.
    /// @param lLastId the rows after this one are read.
    /// @param sCondition in the server's SQL: the rows for which it holds are read; "" for all.
    /// @returns nothing for a table that is read only surely row by row.
    [[nodiscard]] static std::unique_ptr<ServerColumns> tryOpen(const LayerHandle& rows,
                                                                const GdalFields& fields,
                                                                std::int64_t lLastId,
                                                                const std::string& sCondition);
    ~ServerColumns() override;

    [[nodiscard]] ColumnBatchPtr next(ColumnBatchPtr pUsed) override;
    [[nodiscard]] bool reachedEnd() const noexcept override { return bReachedEnd_; }

private:
    using Ahead = ReadAhead<ColumnBatchPtr>;

    ServerColumns(std::unique_ptr<ServerConnection> pConnection, std::vector<ServerValue> values);

    [[nodiscard]] bool start(const std::string& sQuery, std::int64_t lLastId);
    void read(Ahead& ahead, std::int64_t lLastId);

    std::unique_ptr<ServerConnection> pConnection_;
    std::vector<ServerValue> values_;
    std::atomic<bool> bReachedEnd_ = false;
    std::optional<Ahead> ahead_; // goes first
};

} // namespace halvane::host::gdal
