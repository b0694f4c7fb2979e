#include "exporters/second/LinkedRows.h"

#include "base/SqlQuotes.h"
#include "host/Fields.h"
#include "host/Tables.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>

namespace halvane {

namespace {

/// A value as keys are compared: a number, a text or a date; none of them matches nothing.
struct Key {
    std::optional<double> dNumber = {};
    std::optional<std::int64_t> lWhole = {};
    std::optional<std::string_view> sText = {};
    std::optional<Date> date = {};

    [[nodiscard]] bool isNothing() const { return !dNumber && !sText && !date; }
    friend bool operator==(const Key& left, const Key& right) {
        if (left.isNothing() || right.isNothing())
            return false;
        if (left.lWhole && right.lWhole)
            return left.lWhole == right.lWhole;
        return left.dNumber == right.dNumber && left.sText == right.sText && left.date == right.date;
    }
};

Key keyOf(const ValueView& value, std::string& sBuffer) {
    if (const auto* sText = std::get_if<std::string_view>(&value))
        return {.sText = *sText};
    if (const auto* lShort = std::get_if<std::int32_t>(&value))
        return {.dNumber = *lShort, .lWhole = *lShort};
    if (const auto* lLong = std::get_if<std::int64_t>(&value))
        return {.dNumber = static_cast<double>(*lLong), .lWhole = *lLong};
    if (const auto* bValue = std::get_if<bool>(&value))
        return {.dNumber = *bValue ? 1 : 0, .lWhole = *bValue ? 1 : 0};
    if (const auto* fSingle = std::get_if<float>(&value))
        return {.dNumber = static_cast<double>(*fSingle)};
    if (const auto* dDouble = std::get_if<double>(&value))
        return {.dNumber = *dDouble};
    if (const auto* date = std::get_if<Date>(&value))
        return {.date = *date};
    if (isNull(value) || std::holds_alternative<Empty>(value))
        return {};
    sBuffer = toText(value);
    return {.sText = sBuffer};
}

bool isPlainName(std::string_view sName) {
    const auto isOfName = [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
    };
    return !sName.empty() && (sName.front() < '0' || sName.front() > '9') &&
           std::ranges::all_of(sName, isOfName);
}

std::string literal(const Key& key) {
    if (key.sText)
        return quotedText(*key.sText);
    constexpr double dExact = 9007199254740992; // whole numbers up to here are told apart
    if (key.lWhole)
        return std::to_string(*key.lWhole);
    if (*key.dNumber == std::floor(*key.dNumber) && std::abs(*key.dNumber) < dExact)
        return std::to_string(static_cast<std::int64_t>(*key.dNumber));
    std::array<char, 40> sDigits{};
    const auto end = std::to_chars(sDigits.data(), sDigits.data() + sDigits.size(), *key.dNumber);
    return {sDigits.data(), end.ptr};
}

/// What the data can do to find the rows of a key.
enum class Narrowing : std::uint8_t {
    None,   ///< its dialect is not sure to find them: all rows are compared
    Clause, ///< a clause finds them
    NoRows, ///< the field holds no such values
};

Narrowing narrowingOf(const host::GisField& field, const Key& key) {
    switch (static_cast<host::FieldType>(field.typeCode())) {
    case host::FieldType::SmallInteger:
    case host::FieldType::Integer:
    case host::FieldType::Single:
    case host::FieldType::Double:
    case host::FieldType::Oid:
        if (!key.dNumber)
            return Narrowing::NoRows;
        // No dialect has a literal for what is infinite or no number.
        return std::isfinite(*key.dNumber) ? Narrowing::Clause : Narrowing::None;
    case host::FieldType::String:
        if (!key.sText)
            return Narrowing::NoRows;
        // A dialect may read a backslash as more than itself.
        return key.sText->find('\\') == std::string_view::npos ? Narrowing::Clause : Narrowing::None;
    default:
        return Narrowing::None;
    }
}

/// Where no field bears that name, a row's identifier can be a key.
bool asksIdentifier(const host::GisFields& fields, const std::string& sName) {
    return namesObjectId(sName) && fields.findField(sName) < 0;
}

/// Nothing for a row that has no such field.
Key keyIn(ExportState& state, const host::GisRow& row, const std::string& sName, FoundField& found,
          std::string& sBuffer) {
    if (asksIdentifier(row.fields(), sName))
        return keyOf(std::int64_t{row.objectId()}, sBuffer);
    return findRowField(state, row, "", sName, found) ? keyOf(row.value(found.lIndex), sBuffer) : Key();
}

} // namespace

LinkedRows::LinkedRows(ExportState& state, host::GisTable& table, std::vector<RowRules::Link>& links,
                       const host::GisRow& around)
    : state_(state), links_(links), around_(around) {
    RowRules::Link& link = links_.front();
    std::string sBuffer;
    const Key key = keyIn(state, around, link.sAround, link.around, sBuffer);
    const host::GisFieldsPtr pFields = table.fields();
    const bool bIdentifier = asksIdentifier(*pFields, link.sRelated);
    const std::int32_t lRelated = pFields->findField(link.sRelated);
    if (lRelated < 0 && !bIdentifier)
        state.noticeMissingField(link.sRelated, *pFields, false);
    if (key.isNothing() || (lRelated < 0 && !bIdentifier))
        return;
    // Whatever the data yields is compared once more.
    const Narrowing narrowing = bIdentifier ? Narrowing::None : narrowingOf(pFields->field(lRelated), key);
    if (narrowing == Narrowing::None) {
        pCursor_ = table.search(nullptr);
    } else if (narrowing == Narrowing::Clause) {
        const std::string sName = isPlainName(link.sRelated) ? link.sRelated : quotedName(link.sRelated);
        const host::GisQueryFilter filter{sName + "=" + literal(key)};
        pCursor_ = table.search(&filter);
    }
}

bool LinkedRows::matches(const host::GisRow& related) const {
    std::string sAround;
    std::string sRelated;
    return std::ranges::all_of(links_, [&](RowRules::Link& link) {
        return keyIn(state_, around_, link.sAround, link.around, sAround) ==
               keyIn(state_, related, link.sRelated, link.related, sRelated);
    });
}

host::GisRowPtr LinkedRows::nextRow() {
    while (pCursor_ != nullptr) {
        host::GisRowPtr pRow = pCursor_->nextRow();
        if (pRow == nullptr || matches(*pRow))
            return pRow;
    }
    return nullptr;
}

} // namespace halvane
