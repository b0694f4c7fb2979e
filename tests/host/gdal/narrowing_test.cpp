// Rows that a database may leave out, since whoever asks would pass them over.

#include "SampleData.h"

#include "base/Numbers.h"
#include "host/Fields.h"
#include "host/RowCondition.h"
#include "host/Workspace.h"
#include "host/gdal/rows/RowsByNumber.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <random>

namespace halvane::tests {
namespace {

using host::RowCondition;
using host::gdal::RowsByNumber;
using Kind = RowCondition::Kind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class NarrowedRows : public ::testing::Test {
protected:
    /// A table "t" of 5,000 rows with the columns I, B, R, T; each is a value of one row by turns.
    void makeTable(const std::vector<std::string>& values) {
        makeCity(folder);
        std::vector<std::string> statements{
            "CREATE TABLE t (fid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, I MEDIUMINT, B INTEGER, R "
            "DOUBLE, "
            "T TEXT)",
            "INSERT INTO gpkg_contents(table_name, data_type, identifier) VALUES ('t', 'attributes', 't')"};
        std::string sRows;
        for (std::size_t nRow = 0; nRow < 5000; ++nRow)
            sRows += (sRows.empty() ? "(" : ", (") + values[nRow % values.size()] + ")";
        statements.push_back("INSERT INTO t(I, B, R, T) VALUES " + sRows);
        runSql(sPath, statements);
        pTable = openWorkspace(sPath)->openTable("t");
    }

    static bool holds(const RowCondition& condition, const host::GisRow& row) {
        const auto part = [&](const RowCondition& one) { return holds(one, row); };
        if (condition.kind == Kind::All)
            return std::ranges::all_of(condition.parts, part);
        if (condition.kind == Kind::Any)
            return std::ranges::any_of(condition.parts, part);
        const ValueView value = row.value(row.fields().findField(condition.sField));
        if (condition.kind == Kind::IsNull || condition.kind == Kind::IsNotNull)
            return isNull(value) == (condition.kind == Kind::IsNull);
        const auto* pText = std::get_if<std::string>(&condition.value);
        if (const auto* pOwn = std::get_if<std::string_view>(&value))
            return pText != nullptr && condition.kind == Kind::Equal && *pOwn == *pText;
        if (isNull(value) || pText != nullptr)
            return false;
        return compared(condition.kind, toDouble(toText(value)), toDouble(toText(condition.value)));
    }

    /// How many rows come for a condition. All for which it holds do, in their order.
    std::size_t found(const RowCondition& condition) {
        std::vector<std::int64_t> wanted;
        const auto pAll = pTable->search(nullptr);
        while (const auto pRow = pAll->nextRow())
            if (holds(condition, *pRow))
                wanted.push_back(pRow->objectId());
        std::vector<std::int64_t> ids;
        std::vector<std::int64_t> holding;
        const auto pNarrowed = pTable->searchNarrowed(condition, true);
        while (const auto pRow = pNarrowed->nextRow()) {
            ids.push_back(pRow->objectId());
            if (holds(condition, *pRow))
                holding.push_back(pRow->objectId());
        }
        EXPECT_EQ(holding, wanted);
        EXPECT_TRUE(std::ranges::is_sorted(ids));
        return ids.size();
    }

    static RowCondition of(const std::string& sField, Kind kind, Value value = {}) {
        return {.kind = kind, .sField = sField, .value = std::move(value)};
    }

    TemporaryFolder folder;
    std::string sPath = folder.file("city.gpkg");
    host::GisTablePtr pTable;

private:
    static bool compared(Kind kind, double dLeft, double dRight) {
        switch (kind) {
        case Kind::Less:
            return dLeft < dRight;
        case Kind::LessOrEqual:
            return dLeft <= dRight;
        case Kind::Equal:
            return dLeft == dRight;
        case Kind::NotEqual:
            return dLeft != dRight;
        case Kind::GreaterOrEqual:
            return dLeft >= dRight;
        default:
            return dLeft > dRight;
        }
    }
};

const std::vector<std::string>& plainValues() {
    static const std::vector<std::string> values{"1, 1, 1.0, 'a'",         "-5, 9007199254740993, 2.5, 'b'",
                                                 "NULL, NULL, NULL, NULL", "7, 40, 1e300, ''",
                                                 "100, -3, -0.0, 'it''s'", "2, 2, 2.0, 'A'",
                                                 "3, 3, 3.5, 'ä'"};
    return values;
}

TEST_F(NarrowedRows, AreFewerInADatabase) {
    makeTable(plainValues());
    constexpr std::size_t nReadBefore = 1200; // a reader of few rows gets all of them
    EXPECT_LT(found(of("I", Kind::Greater, std::int64_t{50})), nReadBefore + 5000 / 7);
    EXPECT_LT(found(of("T", Kind::Equal, std::string("it's"))), nReadBefore + 5000 / 7);
    EXPECT_LT(found(of("R", Kind::Less, -7.5)), nReadBefore);
    EXPECT_LT(found(of("T", Kind::IsNull)), nReadBefore + 5000 / 7);
}

TEST_F(NarrowedRows, AreAllForWhichAConditionHolds) {
    makeTable(plainValues());
    std::mt19937 random(5);
    const auto pick = [&random](const auto& all) { return all[random() % all.size()]; };
    const std::vector<std::string> fields{"I", "b", "R", "T", "fid"};
    const std::vector<Kind> kinds{Kind::Less,           Kind::LessOrEqual, Kind::Equal,  Kind::NotEqual,
                                  Kind::GreaterOrEqual, Kind::Greater,     Kind::IsNull, Kind::IsNotNull};
    const std::vector<Value> values{std::int64_t{1},
                                    std::int64_t{9007199254740993},
                                    2.5,
                                    -0.5,
                                    1e300,
                                    std::string("a"),
                                    std::string(""),
                                    std::string("it's")};
    const auto comparison = [&] { return of(pick(fields), pick(kinds), pick(values)); };
    for (int lCase = 0; lCase < 60; ++lCase) {
        RowCondition condition{.kind = lCase % 2 == 0 ? Kind::All : Kind::Any};
        condition.parts = {comparison(), comparison(), {.kind = lCase % 3 == 0 ? Kind::All : Kind::Any}};
        condition.parts.back().parts = {comparison(), comparison()};
        found(condition);
    }
}

TEST_F(NarrowedRows, IncludeValuesThatAreNotOfTheirColumnsTypes) {
    makeTable(
        {"'abc', 'x', 'y', x'61'", "1, 1, 1, 'a' || char(0) || 'b'", "2.5, 2.5, '3', 4", "x'31', 2, 2, 'a'"});
    for (const Kind kind : {Kind::Less, Kind::Equal, Kind::NotEqual, Kind::Greater}) {
        for (const auto* pField : {"I", "B", "R"})
            found(of(pField, kind, std::int64_t{1}));
        found(of("T", kind, std::string("a")));
    }
}

TEST(RowsByNumber, AreThoseOfANumberInTheirOrder) {
    for (const std::int64_t lStep : {1, 1'000'000'007}) {
        RowsByNumber ids;
        for (std::int64_t lId = 1; lId <= 100; ++lId)
            ids.add((lId % 10 - 5) * lStep, lId);
        ids.finish();
        EXPECT_THAT(ids.find(-5 * lStep), ElementsAre(10, 20, 30, 40, 50, 60, 70, 80, 90, 100));
        EXPECT_EQ(ids.find(4 * lStep).size(), 10U);
        EXPECT_THAT(ids.find(5 * lStep), IsEmpty());
        EXPECT_THAT(ids.find(-6 * lStep), IsEmpty());
    }
}

TEST(RowsByNumber, HoldTheLeastAndTheGreatestNumber) {
    constexpr auto lLeast = std::numeric_limits<std::int64_t>::min();
    constexpr auto lMost = std::numeric_limits<std::int64_t>::max();
    RowsByNumber ids;
    EXPECT_THAT(ids.find(0), IsEmpty());
    ids.add(lMost, 1);
    ids.add(lLeast, 2);
    ids.finish();
    EXPECT_THAT(ids.find(lMost), ElementsAre(1));
    EXPECT_THAT(ids.find(lLeast), ElementsAre(2));
    EXPECT_THAT(ids.find(0), IsEmpty());
    RowsByNumber().finish();
}

} // namespace
} // namespace halvane::tests
