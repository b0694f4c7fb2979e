#include "host/gdal/rows/RowRanks.h"

#include "base/Choices.h"
#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/source/Interruption.h"

#include <algorithm>
#include <compare>
#include <variant>

namespace halvane::host::gdal {

namespace {

constexpr const char* sHowToOrder =
    "; write fields with commas between them, each with asc or desc behind it, as in "
    "\"NAME desc, POP\"";

Failure refused(const std::string& sWhat) {
    return {FailureNumber::HostFailure, "orderBy: " + sWhat};
}

/// Fields of one list, word by word.
class KeyReader {
public:
    explicit KeyReader(const std::string& sText) : sText_(sText) {}

    std::vector<RowKey> read() {
        std::vector<RowKey> keys;
        do {
            RowKey key{word(), false};
            if (key.sField.empty())
                throw refused("a field is missing in \"" + sText_ + "\"" + sHowToOrder);
            skipBlanks();
            if (!atEnd() && sText_[nNext_] != ',')
                key.bDescending = direction();
            keys.push_back(std::move(key));
            skipBlanks();
        } while (!atEnd() && sText_[nNext_++] == ',');
        if (!atEnd())
            throw refused("\"" + sText_ + "\" is no list of fields" + sHowToOrder);
        return keys;
    }

private:
    [[nodiscard]] bool atEnd() const { return nNext_ >= sText_.size(); }
    [[nodiscard]] static bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
    void skipBlanks() {
        while (!atEnd() && isBlank(sText_[nNext_]))
            ++nNext_;
    }

    std::string word() {
        skipBlanks();
        if (!atEnd() && sText_[nNext_] == '"')
            return quoted();
        std::string sWord;
        while (!atEnd() && !isBlank(sText_[nNext_]) && sText_[nNext_] != ',')
            sWord += sText_[nNext_++];
        return sWord;
    }

    std::string quoted() {
        std::string sWord;
        for (++nNext_; !atEnd();) {
            const char c = sText_[nNext_++];
            const bool bQuote = c == '"';
            if (bQuote && (atEnd() || sText_[nNext_] != '"'))
                return sWord;
            nNext_ += bQuote ? 1U : 0U; // doubled, it stands for itself
            sWord += c;
        }
        throw refused("a quotation mark is missing in \"" + sText_ + "\"");
    }

    bool direction() {
        const std::string sWord = lowerCase(word());
        if (sWord != "asc" && sWord != "desc")
            throw refused("\"" + sWord + "\" is neither asc nor desc" + sHowToOrder);
        return sWord == "desc";
    }

    const std::string& sText_;
    std::size_t nNext_ = 0;
};

/// A value that can be put in order with any other.
struct Sortable {
    enum class Kind : std::uint8_t { Missing, Number, Text } kind = Kind::Missing;
    long double dNumber = 0; // holds all whole numbers of 64 bits
    std::string sText;

    friend std::partial_ordering operator<=>(const Sortable& left, const Sortable& right) {
        if (left.kind != right.kind)
            return left.kind <=> right.kind;
        if (left.kind == Kind::Number)
            return left.dNumber <=> right.dNumber;
        return left.sText <=> right.sText;
    }
};

/// A number that is greater for a later date.
long double numberOf(const Date& date) {
    const long double dDay = (date.year * 13.0L + date.month) * 32 + date.day;
    return (((dDay * 24 + date.hour) * 60 + date.minute) * 60 + date.second) * 1000 + date.millisecond;
}

Sortable sortable(const ValueView& value) {
    return std::visit(
        [](const auto& held) -> Sortable {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_arithmetic_v<Held>)
                return {Sortable::Kind::Number, static_cast<long double>(held), {}};
            else if constexpr (std::is_same_v<Held, std::string_view>)
                return {Sortable::Kind::Text, 0, std::string(held)};
            else if constexpr (std::is_same_v<Held, Date>)
                return {Sortable::Kind::Number, numberOf(held), {}};
            else
                return {};
        },
        value);
}

struct Keyed {
    std::int64_t lId;
    std::vector<Sortable> values;
};

} // namespace

std::vector<RowKey> rowKeysOf(const std::string& sOrderBy) {
    return KeyReader(sOrderBy).read();
}

void requireKeys(const GdalFields& fields, const std::vector<RowKey>& keys) {
    for (const RowKey& key : keys) {
        const std::int32_t lIndex = fields.findField(key.sField);
        if (lIndex >= 0 && fields.columns()[static_cast<std::size_t>(lIndex)].kind != ColumnKind::Shape)
            continue;
        if (lIndex >= 0)
            throw refused("rows have no order by their shapes (\"" + key.sField + "\")");
        Choice choice{"it has", "field", "fields", {}};
        for (std::int32_t n = 0; n < fields.count(); ++n)
            choice.names.emplace_back(fields.field(n).name());
        throw refused("there is no field \"" + key.sField + "\"; " + meantOrThere(key.sField, choice));
    }
}

RowRanks::RowRanks(GisCursor& rows, const GdalFields& fields, const std::vector<RowKey>& keys) {
    requireKeys(fields, keys);
    std::vector<std::int32_t> columns;
    columns.reserve(keys.size());
    for (const RowKey& key : keys)
        columns.push_back(fields.findField(key.sField));
    std::vector<Keyed> all;
    while (const GisRowPtr pRow = rows.nextRow()) {
        endIfInterrupted();
        Keyed keyed{pRow->objectId(), {}};
        keyed.values.reserve(columns.size());
        for (const std::int32_t lColumn : columns)
            keyed.values.push_back(sortable(pRow->value(lColumn)));
        all.push_back(std::move(keyed));
    }
    std::ranges::stable_sort(all, [&](const Keyed& left, const Keyed& right) {
        for (std::size_t n = 0; n < keys.size(); ++n)
            if (const auto order = left.values[n] <=> right.values[n]; std::is_neq(order))
                return keys[n].bDescending ? std::is_gt(order) : std::is_lt(order);
        return false;
    });
    ids_.reserve(all.size());
    for (const Keyed& keyed : all) {
        ranks_.emplace(keyed.lId, ids_.size());
        ids_.push_back(keyed.lId);
    }
}

std::vector<std::int64_t> RowRanks::sorted(std::vector<std::int64_t> ids) const {
    const auto rankOf = [&](std::int64_t lId) {
        const auto pRank = ranks_.find(lId);
        return pRank == ranks_.end() ? ids_.size() : pRank->second;
    };
    std::ranges::stable_sort(ids, {}, rankOf);
    return ids;
}

} // namespace halvane::host::gdal
