#include "host/memory/WhereClause.h"

#include "base/Failure.h"
#include "base/Text.h"

#include <charconv>
#include <optional>

namespace halvane::host::memory {

namespace {

[[noreturn]] void reject(std::string_view sClause) {
    throw Failure(FailureNumber::HostFailure, "The filter was rejected: " + std::string(sClause));
}

template<class Number>
std::optional<Number> wholeTextAs(std::string_view sText) {
    Number number{};
    const auto result = std::from_chars(sText.data(), sText.data() + sText.size(), number);
    if (result.ec != std::errc() || result.ptr != sText.data() + sText.size())
        return std::nullopt;
    return number;
}

std::optional<std::string> quotedText(std::string_view sLiteral) {
    if (sLiteral.size() < 2 || sLiteral.front() != '\'' || sLiteral.back() != '\'')
        return std::nullopt;
    const std::string sText = replaceAll(sLiteral.substr(1, sLiteral.size() - 2), "''", std::string(1, '\0'));
    if (sText.find('\'') != std::string::npos)
        return std::nullopt;
    return replaceAll(sText, std::string_view("\0", 1), "'");
}

bool isNumericType(std::int32_t lTypeCode) {
    switch (static_cast<FieldType>(lTypeCode)) {
    case FieldType::SmallInteger:
    case FieldType::Integer:
    case FieldType::Single:
    case FieldType::Double:
    case FieldType::Oid:
        return true;
    default:
        return false;
    }
}

struct NumberEquals {
    template<class Held>
    bool operator()(const Held& held) const {
        if constexpr (std::is_arithmetic_v<Held> && !std::is_same_v<Held, bool>)
            return bWhole && std::is_integral_v<Held> ? static_cast<std::int64_t>(held) == nWhole
                                                      : static_cast<double>(held) == dNumber;
        else
            return false;
    }

    bool bWhole;
    std::int64_t nWhole;
    double dNumber;
};

} // namespace

WhereClause::WhereClause(std::string_view sClause, const MemoryFields& fields) {
    const std::size_t nEquals = sClause.find('=');
    if (nEquals == std::string_view::npos)
        reject(sClause);
    const std::int32_t lField = fields.indexOfName(trimBlanks(sClause.substr(0, nEquals)));
    if (lField < 0)
        reject(sClause);
    nField_ = static_cast<std::size_t>(lField);
    const std::string_view sLiteral = trimBlanks(sClause.substr(nEquals + 1));
    const std::int32_t lTypeCode = fields.definition(lField).lTypeCode;
    if (isNumericType(lTypeCode)) {
        if (const auto nWhole = wholeTextAs<std::int64_t>(sLiteral))
            literal_ = *nWhole;
        else if (const auto dNumber = wholeTextAs<double>(sLiteral))
            literal_ = *dNumber;
        else
            reject(sClause);
        return;
    }
    const auto sText = quotedText(sLiteral);
    if (!sText || lTypeCode != static_cast<std::int32_t>(FieldType::String))
        reject(sClause);
    literal_ = *sText;
}

bool WhereClause::matches(const RowData& row) const {
    if (nField_ >= row.aValues.size())
        return false;
    const Value& vValue = row.aValues[nField_];
    if (const auto* sSought = std::get_if<std::string>(&literal_)) {
        const auto* sText = std::get_if<std::string>(&vValue);
        return sText != nullptr && *sText == *sSought;
    }
    const auto* nWhole = std::get_if<std::int64_t>(&literal_);
    const double dNumber = nWhole != nullptr ? static_cast<double>(*nWhole) : std::get<double>(literal_);
    return std::visit(NumberEquals{nWhole != nullptr, nWhole != nullptr ? *nWhole : 0, dNumber}, vValue);
}

} // namespace halvane::host::memory
