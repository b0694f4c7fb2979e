// A repeated node of a related table, which writes nothing.

#include "MultipleTest.h"
#include "host/Rows.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::test {
namespace {

using RepeatedRelatedTables = MultipleTest;

TEST_F(RepeatedRelatedTables, NeverWritesARepeatedRelatedTableBelowARepeatedFeature) {
    EXPECT_EQ(
        below("<r Name='R' DataSource='Feature' Entries='Multiple'>"
              "<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' "
              "LinkField='LANES' "
              "Entries='Multiple'><k Name='K' DataSource='RelatedRecord' IdentityValue='KIND'/></s></r>"),
        "<Out><L><R><S/></R><R><S/></R><R><S/></R></L></Out>");
    EXPECT_TRUE(world.pSigns->whereClauses().empty()) << "no parent is handed on, so nothing is searched";
    EXPECT_TRUE(observer.noticed("S", Notice::RepeatIsSilent));
}

TEST_F(RepeatedRelatedTables, WritesNothingForARepeatedRelatedTableBelowATable) {
    EXPECT_EQ(
        belowSigns("<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' "
                   "LinkField='LANES' "
                   "Entries='Multiple'><k Name='K' DataSource='RelatedRecord' IdentityValue='KIND'/></s>"),
        "<Out><T><S/></T></Out>");
    EXPECT_TRUE(world.pSigns->whereClauses().empty());
}

TEST_F(RepeatedRelatedTables, SearchesForARepeatedRelatedTableInAGroupOfAFeatureAndEnds) {
    EXPECT_EQ(
        below("<r Name='R' DataSource='Feature' Entries='Multiple'><g Name='G'>"
              "<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' "
              "LinkField='LANES' "
              "Entries='Multiple'><k Name='K' DataSource='RelatedRecord' IdentityValue='KIND'/></s></g></r>"),
        "<Out><L><R><G><S/></G></R><R><G><S/></G></R><R><G><S/></G></R></L></Out>");
    EXPECT_EQ(world.pSigns->whereClauses(),
              (std::vector<std::string>{"LANES = 2", "LANES = 1", "LANES = 4"}));
    EXPECT_EQ(std::count_if(observer.aNotices.begin(), observer.aNotices.end(),
                            [](const auto& told) { return told.notice == Notice::RepeatIsSilent; }),
              5)
        << "once a road, and again for the two roads with signs: their node is visited once more";
}

TEST_F(RepeatedRelatedTables, WritesNothingForARepeatedRelatedTableThatIsNotFound) {
    EXPECT_EQ(below("<r Name='Road' DataSource='Feature' Entries='Multiple'><g Name='G'>"
                    "<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='NOWHERE' "
                    "LinkField='LANES' Entries='Multiple'><k Name='K'/></s></g></r>"),
              "<Out><L><Road><G><S/></G></Road><Road><G><S/></G></Road><Road><G><S/></G></Road></L></Out>");
    EXPECT_EQ(std::count_if(observer.aNotices.begin(), observer.aNotices.end(),
                            [](const auto& told) { return told.notice == Notice::RepeatIsSilent; }),
              3)
        << "the node is not visited once more";
}

/// A repeated "RelatedTable" node called with a parent that is a feature, as a walk below a feature's group
/// does.
class RepeatedRelatedTable : public MultipleTest {
protected:
    std::string call(const std::string& sLinkField, const std::string& sParentSource = "Feature") {
        prepare();
        state.oOutputManager = std::make_unique<ClsXMLManager>();
        state.oOutputManager->setDOMDoc(dom::Document::create());
        control_.emplace(state, "<f Name='F' DataSource='" + sParentSource +
                                    "'><s Name='S' DataSource='RelatedTable' Identity='LayerName' "
                                    "IdentityValue='SIGNS' LinkField='" +
                                    sLinkField +
                                    "' Entries='Multiple'><k Name='K' DataSource='RelatedRecord'/></s></f>");
        Node oOut = state.oOutputManager->DOMDoc()->asNode().appendChild(newOutputElement(state, "Out"));
        Node oElement = oOut.appendChild(newOutputElement(state, "S"));
        const GisRowPtr pRoad = world.pRoads->search(nullptr)->nextRow();
        const ControlNode& parent = control_->root();
        ExportMultiple(state, *parent.pFirstChild, oElement, pRoad, nullptr, &parent);
        return oOut.xml();
    }

    std::optional<ControlText> control_;
};

TEST_F(RepeatedRelatedTable, SearchesWithBlanksAroundTheEqualsSignAndEndsWithoutWriting) {
    EXPECT_EQ(call("LANES"), "<Out><S/></Out>");
    ASSERT_EQ(world.pSigns->whereClauses().size(), 1U);
    EXPECT_EQ(world.pSigns->whereClauses().front(), "LANES = 2");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(RepeatedRelatedTable, PutsNoQuotesAroundATextValue) {
    EXPECT_EQ(call("ROUTE_ID"), "<Out><S/></Out>");
    EXPECT_EQ(world.pSigns->whereClauses().front(), "ROUTE_ID = R17");
    EXPECT_NE(state.lModErrNum, 0) << "the host rejects the clause";
}

TEST_F(RepeatedRelatedTable, MayBeLinkedByTheFirstField) {
    call("OID");
    ASSERT_EQ(world.pSigns->whereClauses().size(), 1U);
    EXPECT_EQ(world.pSigns->whereClauses().front(), "OID = 1");
}

TEST_F(RepeatedRelatedTable, ActsForAFeatureTableToo) {
    EXPECT_EQ(call("LANES", "FeatureTable"), "<Out><S/></Out>");
    EXPECT_EQ(world.pSigns->whereClauses().size(), 1U);
}

TEST_F(RepeatedRelatedTable, SearchesNothingForAnotherParentOrAFieldThatTheFeatureLacks) {
    call("LANES", "Table");
    call("COLOUR");
    call("");
    EXPECT_TRUE(world.pSigns->whereClauses().empty());
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(RepeatedRelatedTable, SearchesForNoParentThatIsNotAboutFeatures) {
    std::vector<std::string> aSources{" ", "Other", "maplayer", "subtype", "Geometry.Other"};
    for (const std::string_view sWord : dataSourceWords())
        if (sWord != "Feature" && sWord != "FeatureTable")
            aSources.emplace_back(sWord);
    for (const std::string& sSource : aSources) {
        call("LANES", sSource);
        EXPECT_TRUE(world.pSigns->whereClauses().empty()) << sSource;
    }
}

} // namespace
} // namespace halvane::test
