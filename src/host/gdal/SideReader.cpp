#include "host/gdal/SideReader.h"

#include "host/gdal/Queries.h"

namespace halvane::host::gdal {

sqlite3* databaseOf(GDALDataset& dataset) {
    return static_cast<sqlite3*>(dataset.GetInternalHandle("SQLITE_HANDLE"));
}

StatementPtr prepare(sqlite3* pDatabase, const std::string& sSql) {
    sqlite3_stmt* pStatement = nullptr;
    if (sqlite3_prepare_v2(pDatabase, sSql.c_str(), static_cast<int>(sSql.size()), &pStatement, nullptr) !=
        SQLITE_OK) {
        return nullptr;
    }
    return StatementPtr(pStatement);
}

ReadTransaction::ReadTransaction(sqlite3* pDatabase) : pDatabase_(pDatabase) {
    if (sqlite3_get_autocommit(pDatabase) == 0 ||
        sqlite3_exec(pDatabase, "BEGIN", nullptr, nullptr, nullptr) != SQLITE_OK) {
        return;
    }
    bOpen_ = true;
    // A transaction takes its lock with the first reading.
    if (sqlite3_exec(pDatabase, "SELECT count(*) FROM sqlite_master LIMIT 1", nullptr, nullptr, nullptr) !=
        SQLITE_OK) {
        sqlite3_exec(pDatabase, "ROLLBACK", nullptr, nullptr, nullptr);
        bOpen_ = false;
    }
}

ReadTransaction::~ReadTransaction() {
    if (bOpen_) {
        sqlite3_exec(pDatabase_, "COMMIT", nullptr, nullptr, nullptr);
    }
}

namespace {

// The number that fixed digits make; false when one is none.
template<class Number>
bool digits(std::string_view sDigits, Number lLeast, Number lMost, Number& lNumber) {
    std::int32_t lValue = 0;
    for (const char c : sDigits) {
        if (c < '0' || c > '9') {
            return false;
        }
        lValue = lValue * 10 + (c - '0');
    }
    if (lValue < lLeast || lValue > lMost) {
        return false;
    }
    lNumber = static_cast<Number>(lValue);
    return true;
}

using Part = std::uint8_t;

bool parseStoredTime(std::string_view sText, Date& date) {
    if ((sText.size() != 10 && sText.size() != 14) || sText[0] != 'T' || sText[3] != ':' || sText[6] != ':' ||
        sText.back() != 'Z') {
        return false;
    }
    Part lHundredth = 0;
    Part lTenth = 0;
    const bool bFraction =
        sText.size() == 10 || (sText[9] == '.' && digits<Part>(sText.substr(10, 2), 0, 99, lHundredth) &&
                               digits<Part>(sText.substr(12, 1), 0, 9, lTenth));
    return bFraction && digits<Part>(sText.substr(1, 2), 0, 23, date.hour) &&
           digits<Part>(sText.substr(4, 2), 0, 59, date.minute) &&
           digits<Part>(sText.substr(7, 2), 0, 59, date.second);
}

std::string sideQuery(const std::string& sTable, const std::string& sIdColumn,
                      const std::vector<SideReader::Column>& columns) {
    std::string sSql = "SELECT " + quotedName(sIdColumn);
    for (const SideReader::Column& column : columns) {
        sSql += ", " + quotedName(column.sName);
    }
    return sSql + " FROM " + quotedName(sTable) + " WHERE " + quotedName(sIdColumn) +
           " BETWEEN ?1 AND ?2 ORDER BY " + quotedName(sIdColumn);
}

} // namespace

bool parseStoredDate(std::string_view sText, bool bTime, Date& date) {
    date = {};
    if (sText.size() < 10 || sText[4] != '-' || sText[7] != '-' ||
        !digits<std::int32_t>(sText.substr(0, 4), 1, 9999, date.year) ||
        !digits<Part>(sText.substr(5, 2), 1, 12, date.month) ||
        !digits<Part>(sText.substr(8, 2), 1, 31, date.day)) {
        return false;
    }
    return bTime ? parseStoredTime(sText.substr(10), date) : sText.size() == 10;
}

SideReader::SideReader(sqlite3* pDatabase, const std::string& sTable, const std::string& sIdColumn,
                       std::vector<Column> columns)
    : columns_(std::move(columns)) {
    if (!columns_.empty()) {
        pStatement_ = prepare(pDatabase, sideQuery(sTable, sIdColumn, columns_));
    }
}

bool SideReader::readRow(std::size_t lRow, std::vector<SideColumn>& sides) {
    const auto lBit = static_cast<std::uint8_t>(1U << (lRow % 8));
    for (std::size_t lSide = 0; lSide < columns_.size(); ++lSide) {
        SideColumn& side = sides[lSide];
        const int lColumn = static_cast<int>(lSide) + 1;
        const int lType = sqlite3_column_type(pStatement_.get(), lColumn);
        if (lType == SQLITE_NULL) {
            continue;
        }
        side.valid[lRow / 8] |= lBit;
        if (side.kind != ColumnKind::Date) {
            side.integers[lRow] = sqlite3_column_int(pStatement_.get(), lColumn);
            continue;
        }
        const void* pText = lType == SQLITE_TEXT ? sqlite3_column_text(pStatement_.get(), lColumn) : nullptr;
        const auto lLength = static_cast<std::size_t>(sqlite3_column_bytes(pStatement_.get(), lColumn));
        if (pText == nullptr || !parseStoredDate({static_cast<const char*>(pText), lLength},
                                                 columns_[lSide].bTime, side.dates[lRow])) {
            return false;
        }
    }
    return true;
}

bool SideReader::read(std::int64_t lFirst, std::size_t lCount, std::vector<SideColumn>& sides) {
    sides.clear();
    for (const Column& column : columns_) {
        SideColumn& side = sides.emplace_back();
        side.kind = column.kind == ColumnKind::Date ? ColumnKind::Date : ColumnKind::Integer;
        side.valid.assign(lCount / 8 + 1, 0);
        side.kind == ColumnKind::Date ? side.dates.resize(lCount) : side.integers.resize(lCount);
    }
    if (columns_.empty()) {
        return true;
    }
    sqlite3_stmt* pStatement = pStatement_.get();
    sqlite3_bind_int64(pStatement, 1, lFirst);
    sqlite3_bind_int64(pStatement, 2, lFirst + static_cast<std::int64_t>(lCount) - 1);
    bool bGood = true;
    std::size_t lRow = 0;
    while (bGood && lRow < lCount && sqlite3_step(pStatement) == SQLITE_ROW) {
        bGood = sqlite3_column_int64(pStatement, 0) == lFirst + static_cast<std::int64_t>(lRow) &&
                readRow(lRow, sides);
        ++lRow;
    }
    sqlite3_reset(pStatement);
    return bGood && lRow == lCount;
}

} // namespace halvane::host::gdal
