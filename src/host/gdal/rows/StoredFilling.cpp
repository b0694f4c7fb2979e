#include "host/gdal/rows/StoredFilling.h"

#include "host/gdal/source/Sqlite.h"

#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace halvane::host::gdal {

namespace {

std::string_view bytesOf(sqlite3_value* pValue) {
    const auto* pBytes = static_cast<const char*>(sqlite3_value_blob(pValue));
    return {pBytes, pBytes == nullptr ? 0 : static_cast<std::size_t>(sqlite3_value_bytes(pValue))};
}

template<class Number>
bool fits(std::int64_t lValue) {
    return lValue >= std::numeric_limits<Number>::min() && lValue <= std::numeric_limits<Number>::max();
}

/// Where the well-known binary of a stored shape begins: behind a header and the bounds. Source: GeoPackage
/// encoding standard, 2.1.3 BLOB format. Nothing for extended types and for what is no such blob.
std::optional<std::size_t> shapeBegin(std::string_view sBlob) {
    constexpr std::size_t nHeader = 8;
    constexpr unsigned char nExtended = 0x20;
    constexpr std::array<std::size_t, 5> aBoundsBytes{0, 32, 48, 48, 64};
    constexpr char cVersion = 0;
    if (sBlob.size() <= nHeader || sBlob[0] != 'G' || sBlob[1] != 'P' || sBlob[2] != cVersion)
        return std::nullopt;
    const auto nFlags = static_cast<unsigned char>(sBlob[3]);
    const std::size_t nBounds = (nFlags >> 1U) & 7U;
    if ((nFlags & nExtended) != 0 || nBounds >= aBoundsBytes.size() ||
        nHeader + aBoundsBytes[nBounds] >= sBlob.size())
        return std::nullopt;
    return nHeader + aBoundsBytes[nBounds];
}

} // namespace

StoredFilling::StoredFilling(std::span<const ColumnSource> sources, std::int64_t lLastId, Exchange fnExchange)
    : BatchFilling(lLastId, std::move(fnExchange)), sources_(sources) {}

bool StoredFilling::add(std::span<sqlite3_value*> values) {
    if (values.size() != sources_.size() || sqlite3_value_type(values[0]) != SQLITE_INTEGER)
        return false;
    const std::int64_t lId = sqlite3_value_int64(values[0]);
    if (!mayFollow(lId))
        return false;
    for (std::size_t nColumn = 0; nColumn < sources_.size(); ++nColumn)
        if (!addCell(sources_[nColumn], values[nColumn]))
            return false;
    return endRow(lId);
}

bool StoredFilling::addCell(const ColumnSource& source, sqlite3_value* pValue) {
    switch (sqlite3_value_type(pValue)) {
    case SQLITE_NULL:
        batch().cells.emplace_back(Null{});
        return true;
    case SQLITE_INTEGER:
        return addInteger(source, pValue);
    case SQLITE_FLOAT:
        if (std::isinf(sqlite3_value_double(pValue)))
            return false; // the row loop tells of it
        if (source.kind == ColumnKind::Double)
            batch().cells.emplace_back(sqlite3_value_double(pValue));
        else if (source.kind == ColumnKind::Single)
            batch().cells.emplace_back(static_cast<float>(sqlite3_value_double(pValue)));
        else
            return false;
        return true;
    case SQLITE_TEXT:
        return addText(source, pValue);
    default:
        return addBytes(source, pValue);
    }
}

bool StoredFilling::addInteger(const ColumnSource& source, sqlite3_value* pValue) {
    const std::int64_t lValue = sqlite3_value_int64(pValue);
    switch (source.kind) {
    case ColumnKind::ObjectId:
    case ColumnKind::Integer64:
        batch().cells.emplace_back(lValue);
        return true;
    case ColumnKind::Boolean:
        batch().cells.emplace_back(static_cast<std::int32_t>(lValue));
        return lValue == 0 || lValue == 1;
    case ColumnKind::Integer:
        batch().cells.emplace_back(static_cast<std::int32_t>(lValue));
        return source.bSmall ? fits<std::int16_t>(lValue) : fits<std::int32_t>(lValue);
    default:
        return false;
    }
}

bool StoredFilling::addText(const ColumnSource& source, sqlite3_value* pValue) {
    const std::string_view sText(
        static_cast<const char*>(static_cast<const void*>(sqlite3_value_text(pValue))),
        static_cast<std::size_t>(sqlite3_value_bytes(pValue)));
    if (source.kind == ColumnKind::Text) {
        // The row loop's texts end there.
        batch().cells.emplace_back(batch().heap.add(sText.substr(0, sText.find('\0'))));
        return true;
    }
    Date date;
    if (source.kind != ColumnKind::Date || !parseStoredDate(sText, source.bTime, date))
        return false;
    batch().cells.emplace_back(date);
    return true;
}

bool StoredFilling::addBytes(const ColumnSource& source, sqlite3_value* pValue) {
    if (source.kind == ColumnKind::Shape)
        return addBlob(bytesOf(pValue));
    if (source.kind != ColumnKind::Binary)
        return false;
    const std::string_view sBytes = batch().heap.add(bytesOf(pValue));
    batch().cells.emplace_back(std::as_bytes(std::span(sBytes)));
    return true;
}

bool StoredFilling::addBlob(std::string_view sBlob) {
    const auto nBegin = shapeBegin(sBlob);
    return nBegin && addShape(sBlob.substr(*nBegin));
}

} // namespace halvane::host::gdal
