#include "host/gdal/rows/Narrowing.h"

#include "base/SqlQuotes.h"

#include <cmath>
#include <optional>
#include <string_view>

namespace halvane::host::gdal {

namespace {

using Kind = RowCondition::Kind;

/// The whole number next to a number; nothing beyond those that a number with decimals holds exactly.
std::optional<std::string> wholeBound(const Value& value, bool bUpwards) {
    constexpr double dExact = 9007199254740992;
    const auto* lWhole = std::get_if<std::int64_t>(&value);
    const auto* dGiven = std::get_if<double>(&value);
    if (lWhole == nullptr && dGiven == nullptr)
        return std::nullopt;
    const double dNumber = lWhole != nullptr ? static_cast<double>(*lWhole) : *dGiven;
    if (!(std::abs(dNumber) < dExact))
        return std::nullopt;
    return std::to_string(static_cast<std::int64_t>(bUpwards ? std::ceil(dNumber) : std::floor(dNumber)));
}

/// Between whole numbers, a comparison with one of them lets more rows through, never fewer.
std::string numberClause(const std::string& sColumn, Kind kind, const Value& value) {
    const auto sBelow = wholeBound(value, false);
    const auto sAbove = wholeBound(value, true);
    if (!sBelow || !sAbove)
        return "";
    const bool bWhole = sBelow == sAbove;
    switch (kind) {
    case Kind::Less:
        return sColumn + (bWhole ? " < " : " <= ") + *sAbove;
    case Kind::LessOrEqual:
        return sColumn + " <= " + *sAbove;
    case Kind::Equal:
        return sColumn + " BETWEEN " + *sBelow + " AND " + *sAbove;
    case Kind::NotEqual:
        return bWhole ? sColumn + " <> " + *sBelow : "";
    case Kind::GreaterOrEqual:
        return sColumn + " >= " + *sBelow;
    case Kind::Greater:
        return sColumn + (bWhole ? " > " : " >= ") + *sBelow;
    default:
        return "";
    }
}

/// A row's text ends where the stored one has a NUL, so that what follows one does not count.
std::string textClause(const std::string& sColumn, Kind kind, const Value& value) {
    const auto* pText = std::get_if<std::string>(&value);
    if (kind != Kind::Equal || pText == nullptr || pText->find('\0') != std::string::npos)
        return "";
    return sColumn + " COLLATE BINARY >= " + quotedText(*pText) + " AND " + sColumn + " COLLATE BINARY < " +
           quotedText(*pText + '\1');
}

bool isOfNumbers(ColumnKind kind) {
    return kind == ColumnKind::Integer || kind == ColumnKind::Integer64 || kind == ColumnKind::Double;
}

std::string comparison(const OGRFeatureDefn& definition, const GdalFields& fields,
                       const RowCondition& condition) {
    const std::int32_t lField = fields.findField(condition.sField);
    if (lField < 0)
        return "";
    const Column& column = fields.columns()[static_cast<std::size_t>(lField)];
    const bool bNumbers = isOfNumbers(column.kind);
    if ((!bNumbers && column.kind != ColumnKind::Text) || column.lColumn >= definition.GetFieldCount())
        return "";
    const std::string sColumn = quotedName(definition.GetFieldDefn(column.lColumn)->GetNameRef());
    if (condition.kind == Kind::IsNull || condition.kind == Kind::IsNotNull)
        return sColumn + (condition.kind == Kind::IsNull ? " IS NULL" : " IS NOT NULL");
    const std::string sClause = bNumbers ? numberClause(sColumn, condition.kind, condition.value)
                                         : textClause(sColumn, condition.kind, condition.value);
    const std::string_view sOtherTypes = bNumbers ? ") IN ('text','blob')" : ") = 'blob'";
    return sClause.empty() ? "" : sClause + " OR typeof(" + sColumn + std::string(sOtherTypes);
}

} // namespace

std::string narrowingOf(const OGRFeatureDefn& definition, const GdalFields& fields,
                        const RowCondition& condition) {
    const bool bAll = condition.kind == Kind::All;
    if (!bAll && condition.kind != Kind::Any) {
        const std::string sClause = comparison(definition, fields, condition);
        return sClause.empty() ? "" : "(" + sClause + ")";
    }
    std::string sClauses;
    for (const RowCondition& part : condition.parts) {
        const std::string sClause = narrowingOf(definition, fields, part);
        if (sClause.empty() && !bAll)
            return "";
        if (!sClause.empty())
            sClauses += (sClauses.empty() ? "(" : bAll ? " AND " : " OR ") + sClause;
    }
    return sClauses.empty() ? "" : sClauses + ")";
}

} // namespace halvane::host::gdal
