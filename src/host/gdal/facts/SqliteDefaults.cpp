#include "host/gdal/facts/SqliteDefaults.h"

#include "base/Text.h"
#include "host/gdal/source/HandlePool.h"
#include "host/gdal/source/Queries.h"
#include "host/gdal/source/Sqlite.h"

#include <array>
#include <charconv>
#include <cmath>
#include <memory>

namespace halvane::host::gdal {

namespace {

using DatabasePtr = Owned<sqlite3, sqlite3_close>;

// A database of nothing else: whatever a default says, it reaches nothing.
DatabasePtr newDatabase() {
    sqlite3* pDatabase = nullptr;
    const int lCode =
        sqlite3_open_v2(":memory:", &pDatabase, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    DatabasePtr pOwned(pDatabase);
    return lCode == SQLITE_OK ? std::move(pOwned) : nullptr;
}

int refuseFunctions(void* pCalls, int lAction, const char* /*pFirst*/, const char* /*pSecond*/,
                    const char* /*pDatabase*/, const char* /*pTrigger*/) {
    if (lAction == SQLITE_FUNCTION) {
        *static_cast<bool*>(pCalls) = true;
        return SQLITE_DENY;
    }
    return SQLITE_OK;
}

bool callsFunctions(sqlite3* pDatabase, const std::string& sExpression) {
    bool bCalls = false;
    sqlite3_set_authorizer(pDatabase, &refuseFunctions, &bCalls);
    static_cast<void>(
        prepare(pDatabase, "SELECT " + sExpression)); // a lone word is no expression, but a text
    sqlite3_set_authorizer(pDatabase, nullptr, nullptr);
    return bCalls;
}

bool run(sqlite3* pDatabase, const std::string& sSql) {
    const StatementPtr pStatement = prepare(pDatabase, sSql);
    return pStatement != nullptr && sqlite3_step(pStatement.get()) == SQLITE_DONE;
}

std::string textOf(sqlite3_stmt* pRow, ColumnKind kind) {
    // Of such a column the bytes are read, whatever is stored in it.
    if (kind == ColumnKind::Binary) {
        const void* pBytes = sqlite3_column_blob(pRow, 0);
        const auto lCount = static_cast<std::size_t>(sqlite3_column_bytes(pRow, 0));
        return toText(ValueView(Bytes(static_cast<const std::byte*>(pBytes), lCount)));
    }
    if (sqlite3_column_type(pRow, 0) == SQLITE_FLOAT && std::isfinite(sqlite3_column_double(pRow, 0))) {
        std::array<char, 32> aText{};
        char* pEnd =
            std::to_chars(aText.data(), aText.data() + aText.size(), sqlite3_column_double(pRow, 0)).ptr;
        return {aText.data(), pEnd};
    }
    const unsigned char* pText = sqlite3_column_text(pRow, 0);
    return {reinterpret_cast<const char*>(pText), static_cast<std::size_t>(sqlite3_column_bytes(pRow, 0))};
}

} // namespace

ColumnDefaults columnDefaultsOf(const LayerHandle& layer) {
    ColumnDefaults defaults;
    if (layer.source().sDriver == "GPKG" || layer.source().sDriver == "SQLite") {
        query(layer.dataset(),
              "SELECT name, type, dflt_value FROM pragma_table_info(" + quotedText(layer.layer().GetName()) +
                  ")",
              [&](const QueryRow& row) {
                  defaults.emplace(upperCase(row.text(0)), ColumnDefault{row.text(1), row.text(2)});
              });
    }
    return defaults;
}

std::optional<std::string> insertedByDefault(const ColumnDefault& column, ColumnKind kind) {
    const DatabasePtr pDatabase = column.sSql.empty() ? nullptr : newDatabase();
    if (pDatabase == nullptr || callsFunctions(pDatabase.get(), column.sSql))
        return std::nullopt;
    // The definition is told without the brackets that stood around an expression.
    const std::string sTable = "CREATE TABLE t (c " + quotedName(column.sType) + " DEFAULT ";
    if (!run(pDatabase.get(), sTable + column.sSql + "\n)") &&
        !run(pDatabase.get(), sTable + "(" + column.sSql + "\n))"))
        return std::nullopt;
    if (!run(pDatabase.get(), "INSERT INTO t DEFAULT VALUES"))
        return std::nullopt;
    const StatementPtr pRow = prepare(pDatabase.get(), "SELECT c FROM t");
    if (pRow == nullptr || sqlite3_step(pRow.get()) != SQLITE_ROW ||
        sqlite3_column_type(pRow.get(), 0) == SQLITE_NULL)
        return std::nullopt;
    return quotedText(textOf(pRow.get(), kind));
}

} // namespace halvane::host::gdal
