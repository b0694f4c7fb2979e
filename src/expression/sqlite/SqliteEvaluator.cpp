#include "expression/sqlite/SqliteEvaluator.h"

#include "base/Failure.h"
#include "expression/Comparisons.h"
#include "expression/SqlText.h"
#include "expression/sqlite/Clock.h"
#include "expression/sqlite/UnicodeFunctions.h"

#include <sqlite3.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace halvane::expression::sqlite {

namespace {

constexpr int nLongestText = 1'000'000; // bytes

struct Closer {
    void operator()(sqlite3* pDatabase) const { sqlite3_close_v2(pDatabase); }
    void operator()(sqlite3_stmt* pStatement) const { sqlite3_finalize(pStatement); }
};

[[noreturn]] void fail(FailureNumber number, sqlite3* pDatabase, int lCode) {
    if (lCode == SQLITE_NOMEM)
        throw Failure::of(FailureNumber::OutOfMemory);
    if (lCode == SQLITE_TOOBIG)
        throw Failure(number, "a text of an expression is longer than a million bytes");
    throw Failure(number, sqlite3_errmsg(pDatabase));
}

template<class... Numbers>
void appendFormatted(std::string& sText, const char* pFormat, Numbers... numbers) {
    std::array<char, 40> sPart{};
    std::snprintf(sPart.data(), sPart.size(), pFormat, numbers...);
    sText += sPart.data();
}

/// In the form of ISO 8601: a date, a date with a time, or a time; with what the data has of fractions and
/// zones.
std::string isoText(const Date& date) {
    const bool bZone = date.zoneMinutes != Date::noZone;
    const bool bTime =
        date.hour != 0 || date.minute != 0 || date.second != 0 || date.millisecond != 0 || bZone;
    std::string sText;
    if (date.month != 0)
        appendFormatted(sText, "%04d-%02d-%02d", date.year, date.month, date.day);
    if (!bTime && date.month != 0)
        return sText;
    if (date.month != 0)
        sText += 'T';
    appendFormatted(sText, "%02d:%02d:%02d", date.hour, date.minute, date.second);
    if (date.millisecond != 0)
        appendFormatted(sText, ".%03d", date.millisecond);
    if (date.zoneMinutes == 0)
        sText += 'Z';
    else if (bZone)
        appendFormatted(sText, "%c%02d:%02d", date.zoneMinutes < 0 ? '-' : '+',
                        std::abs(date.zoneMinutes) / 60, std::abs(date.zoneMinutes) % 60);
    return sText;
}

/// Gives one value to a statement.
class Binder {
public:
    Binder(sqlite3_stmt* pStatement, int lParameter) : pStatement_(pStatement), lParameter_(lParameter) {}

    int operator()(Empty /*empty*/) const { return sqlite3_bind_null(pStatement_, lParameter_); }
    int operator()(Null /*null*/) const { return sqlite3_bind_null(pStatement_, lParameter_); }
    int operator()(bool bValue) const { return sqlite3_bind_int(pStatement_, lParameter_, bValue ? 1 : 0); }
    int operator()(std::int32_t lValue) const { return sqlite3_bind_int(pStatement_, lParameter_, lValue); }
    int operator()(std::int64_t lValue) const { return sqlite3_bind_int64(pStatement_, lParameter_, lValue); }
    int operator()(float fValue) const {
        return sqlite3_bind_double(pStatement_, lParameter_, static_cast<double>(fValue));
    }
    int operator()(double dValue) const { return sqlite3_bind_double(pStatement_, lParameter_, dValue); }
    int operator()(const Date& date) const { return bindCopy(isoText(date)); }
    int operator()(std::string_view sText) const {
        return sqlite3_bind_text64(pStatement_, lParameter_, sText.data(), sText.size(), SQLITE_STATIC,
                                   SQLITE_UTF8);
    }
    int operator()(Bytes bytes) const {
        return sqlite3_bind_blob64(pStatement_, lParameter_, bytes.data(), bytes.size(), SQLITE_STATIC);
    }
    int operator()(const ObjectPtr& pObject) const {
        // A shape is no value that an expression could compute with, but it can be told whether there is one.
        if (pObject == nullptr)
            return sqlite3_bind_null(pStatement_, lParameter_);
        return dynamic_cast<const TextHolder*>(pObject.get()) == nullptr
                   ? sqlite3_bind_zeroblob(pStatement_, lParameter_, 0)
                   : bindCopy(toText(ValueView(pObject)));
    }

private:
    [[nodiscard]] int bindCopy(const std::string& sText) const {
        return sqlite3_bind_text64(pStatement_, lParameter_, sText.data(), sText.size(), SQLITE_TRANSIENT,
                                   SQLITE_UTF8);
    }

    sqlite3_stmt* pStatement_;
    int lParameter_;
};

class SqliteEvaluation final : public Evaluation {
public:
    explicit SqliteEvaluation(sqlite3_stmt* pStatement) : pStatement_(pStatement) {}

    /// Computes what it can by itself. @param pComparisons of the same expression; nothing for others.
    void computeBy(std::unique_ptr<Comparisons> pComparisons) { pComparisons_ = std::move(pComparisons); }

    ValueView of(std::span<const ValueView> arguments) override {
        const auto known = pComparisons_ == nullptr ? std::nullopt : pComparisons_->of(arguments);
        return known ? *known : computed(arguments);
    }

private:
    [[nodiscard]] ValueView computed(std::span<const ValueView> arguments) {
        sqlite3_reset(pStatement_.get());
        int lParameter = 0;
        for (const auto& argument : arguments)
            require(std::visit(Binder(pStatement_.get(), ++lParameter), argument));
        if (const int lCode = sqlite3_step(pStatement_.get()); lCode != SQLITE_ROW)
            fail(FailureNumber::HostFailure, database(), lCode);
        return result();
    }
    [[nodiscard]] sqlite3* database() const { return sqlite3_db_handle(pStatement_.get()); }
    void require(int lCode) const {
        if (lCode != SQLITE_OK)
            fail(FailureNumber::HostFailure, database(), lCode);
    }
    [[nodiscard]] ValueView result() const {
        sqlite3_stmt* const pRow = pStatement_.get();
        const auto nBytes = [pRow] { return static_cast<std::size_t>(sqlite3_column_bytes(pRow, 0)); };
        switch (sqlite3_column_type(pRow, 0)) {
        case SQLITE_INTEGER:
            return static_cast<std::int64_t>(sqlite3_column_int64(pRow, 0));
        case SQLITE_FLOAT:
            return sqlite3_column_double(pRow, 0);
        case SQLITE_TEXT: {
            const auto* const pText = reinterpret_cast<const char*>(sqlite3_column_text(pRow, 0));
            return std::string_view(pText, nBytes());
        }
        case SQLITE_BLOB: {
            const auto* const pBytes = static_cast<const std::byte*>(sqlite3_column_blob(pRow, 0));
            return Bytes(pBytes, nBytes());
        }
        default:
            return Null();
        }
    }

    std::unique_ptr<sqlite3_stmt, Closer> pStatement_;
    std::unique_ptr<Comparisons> pComparisons_;
};

std::unique_ptr<SqliteEvaluation> prepared(sqlite3* pDatabase, const Term& term) {
    const std::string sSql = "SELECT " + sqlText(term);
    sqlite3_stmt* pStatement = nullptr;
    const int lCode = sqlite3_prepare_v3(pDatabase, sSql.c_str(), static_cast<int>(sSql.size()),
                                         SQLITE_PREPARE_PERSISTENT, &pStatement, nullptr);
    if (lCode != SQLITE_OK)
        fail(FailureNumber::DocumentFailure, pDatabase, lCode);
    return std::make_unique<SqliteEvaluation>(pStatement);
}

} // namespace

struct SqliteEvaluator::Database {
    explicit Database(std::int64_t nMoment) : clock(nMoment) {
        sqlite3* pOpened = nullptr;
        constexpr int lFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY | SQLITE_OPEN_PRIVATECACHE;
        int lCode = sqlite3_open_v2(":memory:", &pOpened, lFlags, clock.name());
        pHandle.reset(pOpened);
        if (lCode == SQLITE_OK)
            lCode = addUnicodeFunctions(pOpened);
        if (lCode != SQLITE_OK)
            fail(FailureNumber::HostFailure, pOpened, lCode);
        sqlite3_limit(pOpened, SQLITE_LIMIT_LENGTH, nLongestText);
        sqlite3_limit(pOpened, SQLITE_LIMIT_ATTACHED, 0);
        sqlite3_db_config(pOpened, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    }

    Clock clock;
    std::unique_ptr<sqlite3, Closer> pHandle;
};

SqliteEvaluator::SqliteEvaluator(std::int64_t nMoment) : pDatabase_(std::make_unique<Database>(nMoment)) {}

SqliteEvaluator::~SqliteEvaluator() = default;

std::unique_ptr<Evaluation> SqliteEvaluator::prepare(const Expression& expression) {
    sqlite3* const pDatabase = pDatabase_->pHandle.get();
    auto pEvaluation = prepared(pDatabase, expression.root());
    pEvaluation->computeBy(Comparisons::tryMake(expression.root(), [pDatabase](const Term& literal) {
        return toValue(prepared(pDatabase, literal)->of({}));
    }));
    return pEvaluation;
}

} // namespace halvane::expression::sqlite
