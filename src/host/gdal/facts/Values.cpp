#include "host/gdal/facts/Values.h"

#include "base/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <system_error>

namespace halvane::host::gdal {

namespace {

template<class Number>
std::optional<Number> number(std::string_view sText) {
    sText.remove_prefix(sText.starts_with('+') ? 1 : 0);
    Number value{};
    const auto [pEnd, code] = std::from_chars(sText.data(), sText.data() + sText.size(), value);
    return code == std::errc() && pEnd == sText.data() + sText.size() ? std::optional(value) : std::nullopt;
}

std::optional<Value> wholeNumber(std::string_view sText) {
    const auto lValue = number<std::int64_t>(sText);
    if (!lValue) {
        // A bound such as "10.0" is a whole number too.
        const auto dValue = number<double>(sText);
        constexpr double dSmallest = std::numeric_limits<std::int32_t>::min();
        constexpr double dLargest = std::numeric_limits<std::int32_t>::max();
        if (dValue && *dValue >= dSmallest && *dValue <= dLargest && *dValue == std::trunc(*dValue))
            return static_cast<std::int32_t>(*dValue);
        return std::nullopt;
    }
    using Limits = std::numeric_limits<std::int32_t>;
    if (*lValue >= Limits::min() && *lValue <= Limits::max())
        return static_cast<std::int32_t>(*lValue);
    return *lValue;
}

// The number at the front, cut off with the separator that follows it.
bool takePart(std::string_view& sText, std::string_view sSeparators, int& lPart) {
    const std::size_t nEnd = std::min(sText.find_first_of(sSeparators), sText.size());
    const auto part = number<int>(sText.substr(0, nEnd));
    sText.remove_prefix(std::min(nEnd + 1, sText.size()));
    lPart = part.value_or(0);
    return part.has_value();
}

std::optional<Value> date(std::string_view sText) {
    int lYear = 0;
    int lMonth = 0;
    int lDay = 0;
    if (!takePart(sText, "-/", lYear) || !takePart(sText, "-/", lMonth) || !takePart(sText, "T ", lDay) ||
        lMonth < 1 || lMonth > 12 || lDay < 1 || lDay > 31)
        return std::nullopt;
    int lHour = 0;
    int lMinute = 0;
    int lSecond = 0;
    if (!sText.empty() && (!takePart(sText, ":", lHour) || !takePart(sText, ":Z", lMinute) ||
                           (!sText.empty() && !takePart(sText, ".Z+-", lSecond))))
        return std::nullopt;
    const auto narrow = [](int lPart) { return static_cast<std::uint8_t>(lPart); };
    return Date{lYear, narrow(lMonth), narrow(lDay), narrow(lHour), narrow(lMinute), narrow(lSecond)};
}

} // namespace

std::optional<Value> parseValue(std::string_view sText, FieldType type) {
    const std::string_view sTrimmed = trimBlanks(sText);
    switch (type) {
    case FieldType::SmallInteger:
    case FieldType::Integer:
    case FieldType::Oid:
        return wholeNumber(sTrimmed);
    case FieldType::Single:
    case FieldType::Double: {
        const auto dValue = number<double>(sTrimmed);
        return dValue ? std::optional<Value>(*dValue) : std::nullopt;
    }
    case FieldType::Date:
        return date(sTrimmed);
    default:
        return Value(std::string(sText));
    }
}

namespace {

// A server tells the type behind a constant: "'2020-01-02'::date".
std::string_view withoutCast(std::string_view sSql) {
    const std::size_t nQuote = sSql.rfind('\'');
    const std::string_view sRest = nQuote == std::string_view::npos ? "" : sSql.substr(nQuote + 1);
    const bool bCast = sRest.starts_with("::") && std::all_of(sRest.begin() + 2, sRest.end(), [](char c) {
                           return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == ' ' || c == '_' ||
                                  c == '(' || c == ')';
                       });
    return bCast ? sSql.substr(0, nQuote + 1) : sSql;
}

} // namespace

Value parseDefault(std::string_view sSql, FieldType type) {
    const std::string_view sText = withoutCast(trimBlanks(sSql));
    if (sText.size() >= 2 && sText.front() == '\'' && sText.back() == '\'') {
        const std::string sPlain = replaceAll(sText.substr(1, sText.size() - 2), "''", "'");
        const auto value = parseValue(sPlain, type);
        // No number is infinite: such a text stays what the database calls it.
        const auto* pNumber = value ? std::get_if<double>(&*value) : nullptr;
        return value && (pNumber == nullptr || std::isfinite(*pNumber)) ? *value : Value(sPlain);
    }
    if (type == FieldType::String) {
        // What is not quoted is a number or a function.
        return number<double>(sText) ? Value(std::string(sText)) : Value(Null{});
    }
    if (type == FieldType::Date)
        return Null{};
    if (type == FieldType::SmallInteger &&
        (equalIgnoringCase(sText, "true") || equalIgnoringCase(sText, "false")))
        return std::int32_t{equalIgnoringCase(sText, "true") ? 1 : 0};
    return parseValue(sText, type).value_or(Value(Null{}));
}

} // namespace halvane::host::gdal
