#include "host/gdal/source/Sqlite.h"

namespace halvane::host::gdal {

sqlite3* databaseOf(GDALDataset& dataset) {
    return static_cast<sqlite3*>(dataset.GetInternalHandle("SQLITE_HANDLE"));
}

StatementPtr prepare(sqlite3* pDatabase, const std::string& sSql) {
    sqlite3_stmt* pStatement = nullptr;
    if (sqlite3_prepare_v2(pDatabase, sSql.c_str(), static_cast<int>(sSql.size()), &pStatement, nullptr) !=
        SQLITE_OK)
        return nullptr;
    return StatementPtr(pStatement);
}

std::string textOf(sqlite3_stmt* pRow, int lColumn) {
    const void* pText = sqlite3_column_text(pRow, lColumn);
    return pText == nullptr ? std::string() : static_cast<const char*>(pText);
}

std::optional<std::int64_t> wholeNumber(sqlite3* pDatabase, const std::string& sSql) {
    const StatementPtr pStatement = prepare(pDatabase, sSql);
    if (pStatement == nullptr || sqlite3_step(pStatement.get()) != SQLITE_ROW ||
        sqlite3_column_type(pStatement.get(), 0) != SQLITE_INTEGER)
        return std::nullopt;
    return sqlite3_column_int64(pStatement.get(), 0);
}

ReadTransaction::ReadTransaction(sqlite3* pDatabase) : pDatabase_(pDatabase) {
    if (sqlite3_get_autocommit(pDatabase) == 0 ||
        sqlite3_exec(pDatabase, "BEGIN", nullptr, nullptr, nullptr) != SQLITE_OK)
        return;
    bOpen_ = true;
    // A transaction takes its lock with the first reading.
    if (sqlite3_exec(pDatabase, "SELECT count(*) FROM sqlite_master LIMIT 1", nullptr, nullptr, nullptr) !=
        SQLITE_OK) {
        sqlite3_exec(pDatabase, "ROLLBACK", nullptr, nullptr, nullptr);
        bOpen_ = false;
    }
}

ReadTransaction::~ReadTransaction() {
    if (bOpen_)
        sqlite3_exec(pDatabase_, "COMMIT", nullptr, nullptr, nullptr);
}

namespace {

// The number that fixed digits make; false when one is none.
template<class Number>
bool digits(std::string_view sDigits, Number lLeast, Number lMost, Number& lNumber) {
    std::int32_t lValue = 0;
    for (const char c : sDigits) {
        if (c < '0' || c > '9')
            return false;
        lValue = lValue * 10 + (c - '0');
    }
    if (lValue < lLeast || lValue > lMost)
        return false;
    lNumber = static_cast<Number>(lValue);
    return true;
}

using Part = std::uint8_t;

bool parseStoredTime(std::string_view sText, Date& date) {
    if ((sText.size() != 10 && sText.size() != 14) || sText[0] != 'T' || sText[3] != ':' || sText[6] != ':' ||
        sText.back() != 'Z')
        return false;
    date.zoneMinutes = 0;
    const bool bFraction =
        sText.size() == 10 ||
        (sText[9] == '.' && digits<std::uint16_t>(sText.substr(10, 3), 0, 999, date.millisecond));
    return bFraction && digits<Part>(sText.substr(1, 2), 0, 23, date.hour) &&
           digits<Part>(sText.substr(4, 2), 0, 59, date.minute) &&
           digits<Part>(sText.substr(7, 2), 0, 59, date.second);
}

} // namespace

bool parseStoredDate(std::string_view sText, bool bTime, Date& date) {
    date = {};
    if (sText.size() < 10 || sText[4] != '-' || sText[7] != '-' ||
        !digits<std::int32_t>(sText.substr(0, 4), 1, 9999, date.year) ||
        !digits<Part>(sText.substr(5, 2), 1, 12, date.month) ||
        !digits<Part>(sText.substr(8, 2), 1, 31, date.day))
        return false;
    return bTime ? parseStoredTime(sText.substr(10), date) : sText.size() == 10;
}

} // namespace halvane::host::gdal
