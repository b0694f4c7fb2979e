// Keys of related rows: what the data is asked for, and what is compared with it.

#include "exporters/second/SecondEditionTest.h"

#include <gmock/gmock.h>

#include <limits>
#include <vector>

namespace halvane::test {

namespace {

using namespace host;
using namespace host::memory;
using ::testing::ElementsAre;

class RelatedKeys : public SecondEditionTest {
protected:
    struct Column {
        FieldType type;
        std::vector<Value> values = {};
        std::string sField = "KEY";
    };

    static MemoryTablePtr makeTable(const std::string& sName, const Column& column) {
        auto pTable =
            MemoryTable::make(sName, {field("OID", FieldType::Oid), field(column.sField, column.type)});
        for (std::size_t n = 0; n < column.values.size(); ++n)
            pTable->addRow({static_cast<std::int64_t>(n + 1), column.values[n]});
        return pTable;
    }
    /// Which rows of the second table the keys of the first find, rows of the first between blanks.
    std::string found(const Column& around, const Column& related) {
        pRelated = makeTable("RELATED", related);
        const auto pMap = MemoryMap::make("M");
        pMap->addTable(makeTable("AROUND", around));
        pMap->addTable(pRelated);
        world.pMapDocument = MemoryMapDocument::make({pMap});
        const std::string sLink = around.sField + "=" + related.sField;
        return in("<t DataSource='Table' Identity='TableName' IdentityValue='AROUND' Entries='Multiple' "
                  "h:Rows='Each' h:Omit='Self'><s h:Omit='Self' h:Text=' '/>"
                  "<r h:Omit='Self' DataSource='RelatedTable' Identity='LayerName' IdentityValue='RELATED' "
                  "h:Rows='Each' h:Link='" +
                  sLink + "' h:Text='{OID}'/></t>");
    }
    /// The clause that a key asks with.
    std::vector<std::string> clauses(const Column& around, const Column& related) {
        (void)found(around, related);
        return pRelated->whereClauses();
    }

    MemoryTablePtr pRelated;
};

constexpr std::int64_t lOdd = 9007199254740993; // no number with a fraction is it

TEST_F(RelatedKeys, AskForNumbersInDigitsThatTellThemApart) {
    EXPECT_THAT(clauses({FieldType::Double, {2.5, 2.0, 1e300, -0.1}}, {FieldType::Double}),
                ElementsAre("KEY=2.5", "KEY=2", "KEY=1e+300", "KEY=-0.1"));
    EXPECT_THAT(clauses({FieldType::Single, {0.5F}}, {FieldType::Single}), ElementsAre("KEY=0.5"));
    EXPECT_THAT(clauses({FieldType::Integer, {std::int32_t{-7}, lOdd, true, false}}, {FieldType::Integer}),
                ElementsAre("KEY=-7", "KEY=9007199254740993", "KEY=1", "KEY=0"));
    EXPECT_THAT(clauses({FieldType::SmallInteger, {std::int32_t{3}}}, {FieldType::SmallInteger}),
                ElementsAre("KEY=3"));
}

TEST_F(RelatedKeys, AskForNoNumberThatHasNoDigits) {
    const double dInfinite = std::numeric_limits<double>::infinity();
    const double dNone = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(
        found({FieldType::Double, {dInfinite, dNone, 1.0}}, {FieldType::Double, {1.0, dInfinite, dNone}}),
        " 2  1");
    EXPECT_THAT(pRelated->whereClauses(), ElementsAre("KEY=1"));
    EXPECT_EQ(failures(), "");
}

TEST_F(RelatedKeys, CompareNumbersOfAllTypes) {
    EXPECT_EQ(found({FieldType::Double, {2.0, 2.5}}, {FieldType::Integer, {std::int32_t{2}, Null()}}), " 1 ");
    EXPECT_EQ(found({FieldType::Integer, {std::int32_t{2}, lOdd}},
                    {FieldType::Double, {2.0, static_cast<double>(lOdd)}}),
              " 1 2")
        << "as numbers with fractions, where one has them";
    EXPECT_EQ(found({FieldType::Integer, {lOdd}}, {FieldType::Integer, {lOdd - 1, lOdd}}), " 2")
        << "as whole numbers, where both are";
    EXPECT_EQ(found({FieldType::Integer, {true}}, {FieldType::Oid, {}, "OBJECTID"}), " ");
}

TEST_F(RelatedKeys, AreTextsToFieldsOfTexts) {
    EXPECT_THAT(clauses({FieldType::String, {std::string("O'Brien")}}, {FieldType::String}),
                ElementsAre("KEY='O''Brien'"));
    EXPECT_EQ(found({FieldType::Integer, {std::int32_t{2}}}, {FieldType::String, {std::string("2")}}), " ");
    EXPECT_THAT(pRelated->whereClauses(), ElementsAre());
    EXPECT_EQ(world.pHost->faults().callCount("GisTable.search"), 3) << "the rows around alone";
}

TEST_F(RelatedKeys, LeaveABackslashToNoDialect) {
    const std::string sPath = R"(C:\data)";
    EXPECT_EQ(found({FieldType::String, {sPath}}, {FieldType::String, {std::string("C:data"), sPath}}), " 2");
    EXPECT_THAT(pRelated->whereClauses(), ElementsAre());
}

TEST_F(RelatedKeys, QuoteNamesThatAreMoreThanAWord) {
    const auto clauseOf = [&](const std::string& sField) {
        return clauses({FieldType::Integer, {std::int32_t{1}}}, {FieldType::Integer, {}, sField}).at(0);
    };
    EXPECT_EQ(clauseOf("site_Id2"), "site_Id2=1");
    EXPECT_EQ(clauseOf("SITE ID"), "\"SITE ID\"=1");
    EXPECT_EQ(clauseOf("2ND"), "\"2ND\"=1");
    EXPECT_EQ(clauseOf("STRA\xC3\x9F"
                       "E"),
              "\"STRA\xC3\x9F"
              "E\"=1");
    EXPECT_EQ(clauseOf("[a]"), "\"[a]\"=1");
    EXPECT_EQ(clauseOf("a{b"), "\"a{b\"=1");
}

TEST_F(RelatedKeys, MatchNothingWithoutAValue) {
    EXPECT_EQ(found({FieldType::Date, {Null(), Empty()}}, {FieldType::Date, {Null(), Empty()}}), "  ");
    EXPECT_EQ(found({FieldType::String, {Null()}}, {FieldType::String, {Null()}}), " ");
    EXPECT_EQ(failures(), "");
}

TEST_F(RelatedKeys, MatchNothingOfAnotherType) {
    const Date date{2001, 2, 3};
    EXPECT_EQ(found({FieldType::Date, {date}}, {FieldType::Date, {date, std::string("x"), 1.0}}), " 1");
    EXPECT_EQ(found({FieldType::String, {std::string("x")}}, {FieldType::Blob, {std::string("x"), date}}),
              " 1");
    EXPECT_EQ(found({FieldType::Double, {1.0}}, {FieldType::Blob, {std::string("1"), 1.0}}), " 2");
}

TEST_F(RelatedKeys, TellOfFieldsThatOneSideLacks) {
    EXPECT_EQ(
        found({FieldType::Integer, {std::int32_t{1}}}, {FieldType::Integer, {std::int32_t{1}}, "OTHER"}),
        " 1");
    for (const std::string sLink : {"NONE=OTHER", "KEY=NONE", "KEY=OTHER, NONE=OTHER"}) {
        EXPECT_EQ(in("<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='AROUND' "
                     "Entries='Multiple' h:Rows='Each'><r Name='R' DataSource='RelatedTable' "
                     "Identity='LayerName' IdentityValue='RELATED' h:Rows='Each' h:Link='" +
                     sLink + "'/></t>"),
                  "<T/>");
        EXPECT_TRUE(observer.noticed("R", Notice::FieldNotFound)) << sLink;
    }
}

} // namespace

} // namespace halvane::test
