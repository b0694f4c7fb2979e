// What a leaf writes of related rows.

#include "ElementPropertyTest.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace halvane::test {
namespace {

class RelatedValues : public ElementPropertyTest {
protected:
    std::string related(const std::string& sLeafAttributes, const std::string& sLinkField = "ROUTE_ID") {
        return run(group("<r Name='R' DataSource='Feature' Entries='Multiple'>"
                         "<g Name='G' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' "
                         "LinkField='" +
                         sLinkField + "'><v Name='V' DataSource='RelatedRecord' " + sLeafAttributes +
                         "/></g></r>"))
            .value_or("(not written)");
    }
};

TEST_F(RelatedValues, WritesTheFirstRowIntoTheElementAndEachFurtherOneIntoANewElementAfterIt) {
    EXPECT_EQ(related("IdentityValue='KIND'"),
              "<Out><L><R><G><V>Stop</V><V>Yield</V></G></R><R><G><V/></G></R>"
              "<R><G><V>Stop</V><V>Yield</V></G></R></L></Out>");
}

TEST_F(RelatedValues, QuotesTheValueOfATextLinkFieldAndNoOther) {
    related("IdentityValue='KIND'");
    EXPECT_EQ(world.pSigns->whereClauses().back(), "ROUTE_ID='R17'");
    related("IdentityValue='KIND'", "LANES");
    EXPECT_EQ(world.pSigns->whereClauses().back(), "LANES=4");
}

TEST_F(RelatedValues, FormatsFloatingPointAndDateFieldsAndNulls) {
    EXPECT_EQ(related("IdentityValue='HEIGHT' DecimalPlace='1'"),
              "<Out><L><R><G><V>2.5</V><V/></G></R><R><G><V/></G></R><R><G><V>2.5</V><V/></G></R></L></Out>");
    EXPECT_EQ(related("IdentityValue='SET_ON'"),
              "<Out><L><R><G><V>05/06/2007</V><V/></G></R><R><G><V/></G></R>"
              "<R><G><V>05/06/2007</V><V/></G></R></L></Out>");
}

TEST_F(RelatedValues, WritesFurtherRowsAsElementsBesideAnAttributeHolder) {
    EXPECT_EQ(related("IdentityValue='KIND' Target='Attribute'"),
              "<Out><L><R><G V=\"Stop\"/><V>Yield</V></R><R><G V=\"\"/></R><R><G "
              "V=\"Stop\"/><V>Yield</V></R></L></Out>");
}

TEST_F(RelatedValues, TellsOnceForARowOfElementsBesideAnAttribute) {
    related("IdentityValue='KIND' Target='Attribute'");
    EXPECT_EQ(std::count_if(observer.aNotices.begin(), observer.aNotices.end(),
                            [](const auto& notice) { return notice.notice == Notice::RowsBesideAttribute; }),
              2);
    observer.aNotices.clear();
    related("IdentityValue='KIND'");
    EXPECT_FALSE(observer.noticed("V", Notice::RowsBesideAttribute));
}

TEST_F(RelatedValues, WritesNothingWithoutALinkFieldOrForOneThatTheRowLacks) {
    EXPECT_EQ(related("IdentityValue='KIND'", ""),
              "<Out><L><R><G><V/></G></R><R><G><V/></G></R><R><G><V/></G></R></L></Out>");
    EXPECT_EQ(related("IdentityValue='KIND'", "COLOUR"),
              "<Out><L><R><G><V/></G></R><R><G><V/></G></R><R><G><V/></G></R></L></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_TRUE(observer.noticed("V", Notice::FieldNotFound));
}

TEST_F(RelatedValues, WritesNothingWithoutARow) {
    EXPECT_EQ(
        leafBelowRoads(
            "DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' LinkField='ROUTE_ID'"),
        "<Out><L><V/></L></Out>");
}

TEST_F(RelatedValues, FailsForALinkValueOfNullWhoseClauseTheHostRejects) {
    world.pRoads->addRow({std::int64_t{4}, Null{}, std::string("Nameless"), Null{}, Null{}, Null{}, Null{}});
    related("IdentityValue='KIND'", "LANES");
    EXPECT_NE(state.lModErrNum, 0);
    ASSERT_FALSE(observer.aFailures.empty());
    EXPECT_EQ(observer.aFailures.back().sContext,
              "it is made of LinkField=\"LANES\" in line 1 and the row's value as it is, which is empty");
}

TEST_F(RelatedValues, SaysWhatAnApostropheInTheLinkValueDoesToTheClause) {
    world.pRoads->addRow(
        {std::int64_t{4}, Null{}, std::string("Pier"), std::string("O'Brien"), Null{}, Null{}, Null{}});
    related("IdentityValue='KIND'");
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(
        observer.aFailures.back().sContext,
        "it is made of LinkField=\"ROUTE_ID\" in line 1 and the row's value as it is, and the apostrophe "
        "in it ends the text: link by a field without apostrophes, or let a view of the linking data "
        "double them");
}

TEST_F(RelatedValues, SaysThatTheRelatedTableLacksTheLinkField) {
    related("IdentityValue='KIND'", "NAME");
    ASSERT_EQ(observer.aFailures.size(), 3U);
    EXPECT_EQ(
        observer.aFailures.front().sContext,
        "it is made of LinkField=\"NAME\" in line 1 and the row's value as it is: the related table needs "
        "a field of that name");
}

TEST_F(RelatedValues, TellsTheClauseWhereTheHostsMessageDoesNot) {
    constexpr const char* sContext =
        "the clause ROUTE_ID='R17' is made of LinkField=\"ROUTE_ID\" in line 1 and the row's value as it is";
    auto& faults = world.pHost->faults();
    faults.reset();
    faults.failAt("GisTable.search", 2); // after that of the roads
    related("IdentityValue='KIND'");
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures.front().sContext, sContext);
    faults.failAt("GisTable.search", 2);
    related("IdentityValue='KIND'", "OID");
    ASSERT_EQ(observer.aFailures.size(), 2U);
    EXPECT_EQ(observer.aFailures.back().sContext,
              "the clause OID=1 is made of LinkField=\"OID\" in line 1 and the row's value as it is")
        << "the first field of the related table is one of its fields, too";
    faults.failAt("GisTable.search", 2);
    faults.failAt("GisTable.fields", 2); // after those of the roads
    related("IdentityValue='KIND'");
    ASSERT_EQ(observer.aFailures.size(), 3U);
    EXPECT_EQ(observer.aFailures.back().sContext, sContext) << "a table that is not read lacks nothing";
}

TEST_F(RelatedValues, TellsNoLineOfALinkFieldWhereTheDocumentTellsNone) {
    const auto oControl = dom::Document::create();
    Node oNode = oControl->asNode();
    const auto add = [&](const std::string& sName,
                         const std::vector<std::pair<const char*, const char*>>& aAttributes) {
        oNode = oNode.appendChild(oControl->createElement(*oControl->findName("n")));
        oNode.setAttribute("Name", sName);
        for (const auto& [sAttribute, sValue] : aAttributes)
            oNode.setAttribute(sAttribute, sValue);
    };
    add("Out", {});
    add("L", {{"DataSource", "MapLayer"}, {"Identity", "LayerName"}, {"IdentityValue", "Roads"}});
    add("R", {{"DataSource", "Feature"}, {"Entries", "Multiple"}, {"LinkField", "ROUTE_ID"}});
    add("G", {{"DataSource", "RelatedTable"}, {"IdentityValue", "SIGNS"}});
    add("V", {{"DataSource", "RelatedRecord"}, {"IdentityValue", "KIND"}});
    state.options.oControlDocument = oControl;
    world.pHost->faults().failAt("GisTable.search", 2);
    run("");
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures.front().sContext,
              "the clause ROUTE_ID='R17' is made of LinkField=\"ROUTE_ID\" and the row's value as it is");
}

TEST_F(RelatedValues, TellsTheLinkFieldOfAnElementFurtherUp) {
    world.pRoads->addRow(
        {std::int64_t{4}, Null{}, std::string("Pier"), std::string("R17"), Null{}, Null{}, Null{}});
    run(group(
        "<r Name='R' DataSource='Feature' Entries='Multiple' LinkField='LANES'>\n"
        "<g Name='G' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' LinkField=''>\n"
        "<v Name='V' DataSource='RelatedRecord' IdentityValue='KIND'/></g></r>"));
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures.back().sContext,
              "it is made of LinkField=\"LANES\" in line 1 and the row's value as it is, which is empty");
}

TEST_F(RelatedValues, LeavesNoElementForARowWhoseValueFails) {
    world.pHost->faults().failAt("GisRow.value", 3); // after the link value and the first row's
    EXPECT_EQ(related("IdentityValue='KIND'"), "<Out><L><R><G><V>Stop</V></G></R><R><G><V/></G></R>"
                                               "<R><G><V>Stop</V><V>Yield</V></G></R></L></Out>");
    EXPECT_NE(state.lModErrNum, 0);
}

TEST_F(RelatedValues, TakesTheFieldsNameWhateverTheIdentity) {
    EXPECT_EQ(related("Identity='TagName' IdentityValue='KIND'"),
              "<Out><L><R><G><V>Stop</V><V>Yield</V></G></R><R><G><V/></G></R><R><G><V>Stop</V><V>Yield</V></"
              "G></R></L></Out>");
}

TEST_F(RelatedValues, GivesAnEmptyValueForAFieldThatTheRelatedRowLacks) {
    EXPECT_EQ(related("IdentityValue='COLOUR'"),
              "<Out><L><R><G><V/><V/></G></R><R><G><V/></G></R><R><G><V/><V/></G></R></L></Out>");
    EXPECT_TRUE(observer.noticed("V", Notice::FieldNotFound));
}

TEST_F(RelatedValues, WritesForARelatedTableLeafToo) {
    EXPECT_EQ(
        leafOfEachRoad(
            "DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' LinkField='ROUTE_ID'"),
        "<Out><L><R><V/><V/></R><R><V/></R><R><V/><V/></R></L></Out>")
        << "the table's name is no field of it, but each of its rows is written";
}

TEST_F(RelatedValues, TellsTheLinkFieldEvenWhereTheHostFailsToTellTheTablesFields) {
    world.pRoads->addRow({std::int64_t{4}, Null{}, std::string("Nameless"), Null{}, Null{}, Null{}, Null{}});
    auto& faults = world.pHost->faults();
    related("IdentityValue='KIND'", "LANES");
    ASSERT_EQ(observer.aFailures.size(), 1U);
    const std::string sContext = observer.aFailures[0].sContext;
    const std::int64_t nCalls = faults.callCount("GisTable.fields");
    faults.reset();
    related("IdentityValue='KIND'", "LANES");
    // The last time that fields are asked for is for the context.
    const std::int64_t nCallsOfOne = faults.callCount("GisTable.fields");
    ASSERT_GE(nCalls, nCallsOfOne);
    faults.reset();
    faults.failAt("GisTable.fields", nCallsOfOne);
    observer.aFailures.clear();
    related("IdentityValue='KIND'", "LANES");
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures[0].sContext, sContext);
}

} // namespace
} // namespace halvane::test
