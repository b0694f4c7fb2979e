#include "host/gdal/rows/ServerFilling.h"

#include "host/gdal/facts/Dates.h"

#include <ogr_core.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace halvane::host::gdal {

namespace {

using Form = ServerValue::Form;

constexpr std::array aValues{
    ServerValue{ColumnKind::ObjectId, "int2", Form::Whole},
    ServerValue{ColumnKind::ObjectId, "int4", Form::Whole},
    ServerValue{ColumnKind::ObjectId, "int8", Form::Whole},
    ServerValue{ColumnKind::Boolean, "bool", Form::Boolean},
    ServerValue{ColumnKind::Integer, "int2", Form::Whole},
    ServerValue{ColumnKind::Integer, "int4", Form::Whole},
    ServerValue{ColumnKind::Integer, "numeric", Form::NumberText, true},
    ServerValue{ColumnKind::Integer64, "int8", Form::Whole},
    ServerValue{ColumnKind::Integer64, "numeric", Form::NumberText, true},
    ServerValue{ColumnKind::Single, "float4", Form::Single},
    ServerValue{ColumnKind::Double, "float8", Form::Double},
    ServerValue{ColumnKind::Double, "numeric", Form::NumberText, true},
    ServerValue{ColumnKind::Text, "text", Form::Text},
    ServerValue{ColumnKind::Text, "varchar", Form::Text},
    ServerValue{ColumnKind::Text, "bpchar", Form::Text},
    ServerValue{ColumnKind::Text, "name", Form::Text},
    ServerValue{ColumnKind::Text, "json", Form::Text},
    ServerValue{ColumnKind::Text, "jsonb", Form::Text, true},
    ServerValue{ColumnKind::Text, "uuid", Form::Text, true},
    ServerValue{ColumnKind::Text, "enum", Form::Text, true},
    ServerValue{ColumnKind::Text, "int2", Form::Text, true},
    ServerValue{ColumnKind::Text, "int4", Form::Text, true},
    ServerValue{ColumnKind::Text, "int8", Form::Text, true},
    ServerValue{ColumnKind::Date, "date", Form::Day},
    ServerValue{ColumnKind::Date, "timestamp", Form::Moment},
    ServerValue{ColumnKind::Date, "timestamptz", Form::MomentText, true},
    ServerValue{ColumnKind::Binary, "bytea", Form::Bytes},
    ServerValue{ColumnKind::Shape, "geometry", Form::Shape},
};

/// The number that stands in the order of the network.
template<class Number>
Number numberIn(std::string_view sBytes) {
    Number number = 0;
    std::memcpy(&number, sBytes.data(), sizeof(number));
    if constexpr (std::endian::native == std::endian::big)
        return number;
    else if constexpr (sizeof(number) == sizeof(std::uint16_t))
        return static_cast<Number>(__builtin_bswap16(static_cast<std::uint16_t>(number)));
    else if constexpr (sizeof(number) == sizeof(std::uint32_t))
        return static_cast<Number>(__builtin_bswap32(static_cast<std::uint32_t>(number)));
    else
        return static_cast<Number>(__builtin_bswap64(static_cast<std::uint64_t>(number)));
}

std::int64_t wholeIn(std::string_view sBytes) {
    if (sBytes.size() == sizeof(std::int16_t))
        return numberIn<std::int16_t>(sBytes);
    return sBytes.size() == sizeof(std::int32_t) ? numberIn<std::int32_t>(sBytes)
                                                 : numberIn<std::int64_t>(sBytes);
}

/// Sets the date of a day counted from 2000-01-01. @returns whether its year has four digits.
bool setDay(std::int64_t lDays, OGRField& field) {
    using namespace std::chrono;
    constexpr sys_days begin = 2000y / January / 1;
    constexpr sys_days first = 1000y / January / 1;
    constexpr sys_days last = 9999y / December / 31;
    if (lDays < (first - begin).count() || lDays > (last - begin).count())
        return false;
    const year_month_day day(begin + days(lDays));
    field.Date.Year = static_cast<GInt16>(static_cast<int>(day.year()));
    field.Date.Month = static_cast<GByte>(static_cast<unsigned>(day.month()));
    field.Date.Day = static_cast<GByte>(static_cast<unsigned>(day.day()));
    return true;
}

/// Sets a moment counted in microseconds from 2000-01-01. @returns whether its text would read as it.
bool setMoment(std::int64_t lMicroseconds, OGRField& field) {
    constexpr std::int64_t lOfDay = 86'400'000'000;
    constexpr std::int64_t lOfMinute = 60'000'000;
    const std::int64_t lRest = (lMicroseconds % lOfDay + lOfDay) % lOfDay;
    if (!setDay((lMicroseconds - lRest) / lOfDay, field))
        return false;
    const std::int64_t lMinutes = lRest / lOfMinute;
    field.Date.Hour = static_cast<GByte>(lMinutes / 60);
    field.Date.Minute = static_cast<GByte>(lMinutes % 60);
    field.Date.Second = static_cast<float>(static_cast<double>(lRest % lOfMinute) / 1e6);
    return field.Date.Second < 60; // that is how many there may be once they are rounded
}

} // namespace

const ServerValue* ServerValue::find(ColumnKind kind, std::string_view sType) {
    const auto pFound = std::find_if(aValues.begin(), aValues.end(), [&](const ServerValue& value) {
        return value.kind == kind && value.sType == sType;
    });
    return pFound == aValues.end() ? nullptr : &*pFound;
}

ServerFilling::ServerFilling(std::span<const ServerValue> values, std::int64_t lLastId, Exchange fnExchange)
    : BatchFilling(lLastId, std::move(fnExchange)), values_(values) {}

bool ServerFilling::add(const PGresult& rows) {
    const int lRows = PQntuples(&rows);
    for (int lRow = 0; lRow < lRows; ++lRow)
        if (!addRow(rows, lRow))
            return false;
    return true;
}

bool ServerFilling::addRow(const PGresult& rows, int lRow) {
    std::int64_t lId = 0;
    for (std::size_t nColumn = 0; nColumn < values_.size(); ++nColumn) {
        const int lField = static_cast<int>(nColumn);
        const bool bNull = PQgetisnull(&rows, lRow, lField) != 0;
        const std::string_view sBytes(PQgetvalue(&rows, lRow, lField),
                                      static_cast<std::size_t>(PQgetlength(&rows, lRow, lField)));
        if (nColumn == 0) {
            lId = bNull ? std::numeric_limits<std::int64_t>::min() : wholeIn(sBytes);
            if (!mayFollow(lId))
                return false;
        }
        if (bNull)
            batch().cells.emplace_back(Null{});
        else if (!addCell(values_[nColumn], sBytes))
            return false;
    }
    return endRow(lId);
}

bool ServerFilling::addCell(const ServerValue& value, std::string_view sBytes) {
    OGRField time{};
    switch (value.form) {
    case Form::Boolean:
        batch().cells.emplace_back(std::int32_t{sBytes[0] != 0});
        return true;
    case Form::Whole:
        return addWhole(value.kind, wholeIn(sBytes));
    case Form::Single:
        return addReal(value.kind, std::bit_cast<float>(numberIn<std::uint32_t>(sBytes)));
    case Form::Double:
        return addReal(value.kind, std::bit_cast<double>(numberIn<std::uint64_t>(sBytes)));
    case Form::NumberText:
        return addNumber(value.kind, sBytes);
    case Form::Text:
        batch().cells.emplace_back(batch().heap.add(sBytes));
        return true;
    case Form::Day:
        return setDay(numberIn<std::int32_t>(sBytes), time) && addDate(time);
    case Form::Moment:
        return setMoment(numberIn<std::int64_t>(sBytes), time) && addDate(time);
    case Form::MomentText:
        return OGRParseDate(std::string(sBytes).c_str(), &time, 0) != 0 && addDate(time);
    case Form::Bytes:
        batch().cells.emplace_back(std::as_bytes(std::span(batch().heap.add(sBytes))));
        return true;
    default:
        return addEwkb(sBytes);
    }
}

bool ServerFilling::addWhole(ColumnKind kind, std::int64_t lValue) {
    if (kind != ColumnKind::Integer)
        batch().cells.emplace_back(lValue);
    else
        batch().cells.emplace_back(static_cast<std::int32_t>(lValue));
    return kind != ColumnKind::Integer || lValue == static_cast<std::int32_t>(lValue);
}

bool ServerFilling::addReal(ColumnKind kind, double dValue) {
    if (kind == ColumnKind::Single)
        batch().cells.emplace_back(static_cast<float>(dValue));
    else
        batch().cells.emplace_back(dValue);
    return std::isfinite(dValue); // the row loop tells of others
}

bool ServerFilling::addNumber(ColumnKind kind, std::string_view sText) {
    const char* const pEnd = sText.data() + sText.size();
    const auto isWhole = [pEnd](const std::from_chars_result& read) {
        return read.ec == std::errc() && read.ptr == pEnd;
    };
    if (kind == ColumnKind::Double) {
        double dValue = 0;
        return isWhole(std::from_chars(sText.data(), pEnd, dValue)) && addReal(kind, dValue);
    }
    std::int64_t lValue = 0;
    return isWhole(std::from_chars(sText.data(), pEnd, lValue)) && addWhole(kind, lValue);
}

bool ServerFilling::addDate(const OGRField& time) {
    batch().cells.emplace_back(dateOf(time));
    return time.Date.Day != 0;
}

// The server puts the number of the reference behind the type, which well-known binary does not have.
bool ServerFilling::addEwkb(std::string_view sBytes) {
    constexpr std::size_t nHeader = 5;
    constexpr unsigned char nHasReference = 0x20;
    if (sBytes.size() < nHeader)
        return false;
    const std::size_t nFlags = sBytes[0] == 0 ? 1 : nHeader - 1; // in the most significant byte of the type
    if ((static_cast<unsigned char>(sBytes[nFlags]) & nHasReference) == 0)
        return addShape(sBytes);
    sShape_.assign(sBytes.substr(0, nHeader));
    sShape_[nFlags] = static_cast<char>(static_cast<unsigned char>(sShape_[nFlags]) & ~nHasReference);
    sShape_.append(sBytes, nHeader + sizeof(std::int32_t));
    return addShape(sShape_);
}

} // namespace halvane::host::gdal
