#include "exporters/second/PushedCondition.h"

#include "engine/second/RowScope.h"
#include "engine/second/SecondEdition.h"
#include "host/Fields.h"
#include "host/Rows.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <utility>

namespace halvane {

namespace {

using expression::Reference;
using expression::Term;
using host::RowCondition;
using Kind = RowCondition::Kind;
using Pushed = std::optional<RowCondition>;

struct Comparison {
    std::string_view sOperator;
    Kind kind;
    Kind negated;
    Kind turned; ///< with its operands exchanged
};
constexpr std::array<Comparison, 6> comparisons{{
    {"<", Kind::Less, Kind::GreaterOrEqual, Kind::Greater},
    {"<=", Kind::LessOrEqual, Kind::Greater, Kind::GreaterOrEqual},
    {"=", Kind::Equal, Kind::NotEqual, Kind::Equal},
    {"<>", Kind::NotEqual, Kind::Equal, Kind::NotEqual},
    {">=", Kind::GreaterOrEqual, Kind::Less, Kind::LessOrEqual},
    {">", Kind::Greater, Kind::LessOrEqual, Kind::Less},
}};

const Comparison* comparisonOf(std::string_view sOperator) {
    for (const Comparison& comparison : comparisons)
        if (comparison.sOperator == sOperator)
            return &comparison;
    return nullptr;
}

/// The comparison with its operands exchanged.
const Comparison& turned(const Comparison& comparison) {
    return *std::ranges::find(comparisons, comparison.turned, &Comparison::kind);
}

class Pushing {
public:
    Pushing(const ExportState& state, const NodeExpression& where) : state_(state), where_(where) {}

    /// @param bNot of what the term says: Null is neither.
    [[nodiscard]] Pushed of(const Term& term, bool bNot) const {
        switch (term.kind) {
        case Term::Kind::Prefix:
            return term.sWord == "NOT" ? of(term.operands[0], !bNot) : std::nullopt;
        case Term::Kind::Infix:
            return ofInfix(term, bNot);
        case Term::Kind::Between:
            return ofBetween(term, bNot != term.bNot);
        case Term::Kind::In:
            return ofList(term, bNot != term.bNot);
        default:
            return std::nullopt;
        }
    }

private:
    [[nodiscard]] Pushed ofInfix(const Term& term, bool bNot) const {
        const Term& left = term.operands[0];
        const Term& right = term.operands[1];
        if (term.sWord == "AND" || term.sWord == "OR")
            return together((term.sWord == "AND") != bNot, {of(left, bNot), of(right, bNot)});
        if (term.sWord == "IS" || term.sWord == "IS NOT")
            return ofNull(left, right, (term.sWord == "IS") != bNot);
        const Comparison* const pComparison = comparisonOf(term.sWord);
        if (pComparison == nullptr)
            return std::nullopt;
        const bool bTurned = fieldOf(left) == nullptr;
        const Comparison& comparison = bTurned ? turned(*pComparison) : *pComparison;
        return compared(bTurned ? right : left, bNot ? comparison.negated : comparison.kind,
                        bTurned ? left : right);
    }

    [[nodiscard]] Pushed ofNull(const Term& left, const Term& right, bool bNull) const {
        const Reference* const pField = fieldOf(left);
        if (pField == nullptr || right.kind != Term::Kind::Null)
            return std::nullopt;
        return RowCondition{.kind = bNull ? Kind::IsNull : Kind::IsNotNull, .sField = pField->sName};
    }

    [[nodiscard]] Pushed ofBetween(const Term& term, bool bNot) const {
        const Term& value = term.operands[0];
        return together(!bNot, {compared(value, bNot ? Kind::Less : Kind::GreaterOrEqual, term.operands[1]),
                                compared(value, bNot ? Kind::Greater : Kind::LessOrEqual, term.operands[2])});
    }

    [[nodiscard]] Pushed ofList(const Term& term, bool bNot) const {
        std::vector<Pushed> parts;
        for (std::size_t n = 1; n < term.operands.size(); ++n)
            parts.push_back(
                compared(term.operands[0], bNot ? Kind::NotEqual : Kind::Equal, term.operands[n]));
        return together(bNot, std::move(parts));
    }

    /// Of all of several, some may be missing; of any, none.
    [[nodiscard]] static Pushed together(bool bAll, std::vector<Pushed> parts) {
        RowCondition condition{.kind = bAll ? Kind::All : Kind::Any};
        for (Pushed& part : parts) {
            if (part)
                condition.parts.push_back(*std::move(part));
            else if (!bAll)
                return std::nullopt;
        }
        return condition.parts.empty() ? Pushed() : std::move(condition);
    }

    [[nodiscard]] Pushed compared(const Term& left, Kind kind, const Term& right) const {
        const Reference* const pField = fieldOf(left);
        std::optional<Value> value = pField == nullptr ? std::nullopt : constantOf(right);
        if (!value)
            return std::nullopt;
        return RowCondition{.kind = kind, .sField = pField->sName, .value = *std::move(value)};
    }

    /// A field of the row that is tested.
    [[nodiscard]] const Reference* fieldOf(const Term& term) const {
        if (term.kind != Term::Kind::Reference)
            return nullptr;
        const Reference& reference = where_.expression().references()[term.nReference];
        return reference.kind == Reference::Kind::Field && reference.lClimb == 0 ? &reference : nullptr;
    }

    /// A number or a text that is the same for all rows.
    [[nodiscard]] std::optional<Value> constantOf(const Term& term) const {
        if (term.kind == Term::Kind::Text)
            return Value(term.sWord);
        if (term.kind == Term::Kind::Number)
            return numberOf(term.sWord);
        if (term.kind == Term::Kind::Prefix && term.sWord == "-" &&
            term.operands[0].kind == Term::Kind::Number)
            return numberOf("-" + term.operands[0].sWord);
        return term.kind == Term::Kind::Reference
                   ? constantOf(where_.expression().references()[term.nReference])
                   : std::nullopt;
    }

    /// Of a row around, or given for the export; others may differ from row to row. What is missing is told
    /// when the condition is computed.
    [[nodiscard]] std::optional<Value> constantOf(const Reference& reference) const {
        const auto& given = state_.options.pSecondEdition->values;
        if (reference.kind == Reference::Kind::Variable) {
            const auto found = given.find(reference.sName);
            return found == given.end() ? std::nullopt : std::optional<Value>(found->second);
        }
        if (reference.kind != Reference::Kind::Field || reference.lClimb == 0)
            return std::nullopt;
        const RowScope* pScope = state_.pRowScope;
        for (std::uint32_t lClimb = reference.lClimb; pScope != nullptr && lClimb > 0; --lClimb)
            pScope = pScope->around();
        if (pScope == nullptr || pScope->row() == nullptr)
            return std::nullopt;
        const std::int32_t lField = pScope->row()->fields().findField(reference.sName);
        try {
            return lField < 0 ? std::nullopt : constantOf(pScope->row()->value(lField));
        } catch (const Failure&) {
            return std::nullopt; // told where a row is tested, if there is any
        }
    }

    [[nodiscard]] static std::optional<Value> constantOf(const ValueView& value) {
        if (const auto* lShort = std::get_if<std::int32_t>(&value))
            return Value(std::int64_t{*lShort});
        if (const auto* fSingle = std::get_if<float>(&value))
            return Value(static_cast<double>(*fSingle));
        if (std::holds_alternative<std::int64_t>(value) || std::holds_alternative<double>(value) ||
            std::holds_alternative<std::string_view>(value))
            return toValue(value);
        return std::nullopt;
    }

    [[nodiscard]] static std::optional<Value> numberOf(std::string_view sNumber) {
        double dNumber = 0;
        const auto end = std::from_chars(sNumber.data(), sNumber.data() + sNumber.size(), dNumber);
        const bool bWhole = end.ec == std::errc() && end.ptr == sNumber.data() + sNumber.size();
        return bWhole ? std::optional<Value>(dNumber) : std::nullopt;
    }

    const ExportState& state_;
    const NodeExpression& where_;
};

} // namespace

Pushed pushedCondition(const ExportState& state, const NodeExpression& where) {
    return Pushing(state, where).of(where.expression().root(), false);
}

} // namespace halvane
