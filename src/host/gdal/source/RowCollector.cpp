#include "host/gdal/source/RowCollector.h"

#include "host/gdal/source/Sqlite.h"

#include <exception>
#include <string_view>

namespace halvane::host::gdal {

namespace {

constexpr const char* pPointerType = "halvane_filling";

// An error ends the statement.
void collectRow(sqlite3_context* pContext, int lCount, sqlite3_value** ppValues) noexcept {
    auto* pCollector =
        lCount == 0 ? nullptr : static_cast<RowCollector*>(sqlite3_value_pointer(ppValues[0], pPointerType));
    if (pCollector == nullptr) {
        sqlite3_result_error(pContext, "not for use in queries", -1);
        return;
    }
    try {
        if (!pCollector->add({ppValues + 1, static_cast<std::size_t>(lCount) - 1}))
            sqlite3_result_error(pContext, "no more rows are wanted", -1);
    } catch (const std::exception&) {
        // There is no memory: the row loop will tell, if it finds none either.
        sqlite3_result_error_nomem(pContext);
    }
}

void endCollecting(sqlite3_context* pContext) noexcept {
    sqlite3_result_null(pContext);
}

} // namespace

void prepareForCollectors(GDALDataset& dataset) {
    if (dataset.GetDriver()->GetDescription() != std::string_view("GPKG"))
        return;
    if (sqlite3* pDatabase = databaseOf(dataset); pDatabase != nullptr)
        sqlite3_create_function_v2(pDatabase, "halvane_collect_columns", -1, SQLITE_UTF8 | SQLITE_DIRECTONLY,
                                   nullptr, nullptr, &collectRow, &endCollecting, nullptr);
}

void bindCollector(sqlite3_stmt* pStatement, RowCollector& collector) {
    sqlite3_bind_pointer(pStatement, 1, &collector, pPointerType, nullptr);
}

} // namespace halvane::host::gdal
