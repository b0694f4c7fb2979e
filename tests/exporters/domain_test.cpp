// The domains of a workspace.

#include "exporters/DomainTest.h"

namespace halvane::test {
namespace {

using host::FieldType;
using host::memory::MemoryDomain;

// ---- Properties ----

TEST_F(DomainTest, WritesNameAndDescription) {
    const auto pDomain = MemoryDomain::range("Speed", FieldType::Integer, 10, 130);
    pDomain->setDescription("km/h");
    EXPECT_EQ(property(*pDomain, "DataProperty='DomainName'"), "<D><V>Speed</V></D>");
    EXPECT_EQ(property(*pDomain, "Target='Attribute' DataProperty='DomainDescription'"),
              "<D><V>Speed</V></D><D V=\"km/h\"/>");
}

TEST_F(DomainTest, WritesPoliciesAsTheirCodes) {
    const auto pDomain = MemoryDomain::range("Speed", FieldType::Integer, 10, 130);
    pDomain->setPolicies(3, 12);
    EXPECT_EQ(property(*pDomain, "DataProperty='DomainMergePolicy'"), "<D><V>3</V></D>");
    EXPECT_EQ(property(*pDomain, "DataProperty='DomainSplitPolicy'"), "<D><V>3</V></D><D><V>12</V></D>");
}

struct DomainCode {
    const char* sName;
    std::int32_t lCode;
};

class DomainFieldType : public DomainTest, public ::testing::WithParamInterface<DomainCode> {};

TEST_P(DomainFieldType, HasItsLiteral) {
    const std::string sName = GetParam().sName;
    const std::string sText = sName.starts_with("vemi") ? "<V>" + sName + "</V>" : "<V/>";
    EXPECT_EQ(property(*MemoryDomain::ofType("D", GetParam().lCode, 3), "DataProperty='DomainFieldType'"),
              "<D>" + sText + "</D>");
}

INSTANTIATE_TEST_SUITE_P(
    Codes, DomainFieldType,
    ::testing::Values(DomainCode{"vemiFieldTypeSmallInteger", 0}, DomainCode{"vemiFieldTypeInteger", 1},
                      DomainCode{"vemiFieldTypeSingle", 2}, DomainCode{"vemiFieldTypeDouble", 3},
                      DomainCode{"vemiFieldTypeString", 4}, DomainCode{"vemiFieldTypeDate", 5},
                      DomainCode{"vemiFieldTypeOID", 6}, DomainCode{"vemiFieldTypeGeometry", 7},
                      DomainCode{"vemiFieldTypeBlob", 8}, DomainCode{"Nine", 9}, DomainCode{"MinusOne", -1}),
    nameOfParameter<DomainCode>);

class DomainKind : public DomainTest, public ::testing::WithParamInterface<DomainCode> {};

TEST_P(DomainKind, HasItsLiteral) {
    const std::string sName = GetParam().sName;
    const std::string sText = sName.starts_with("vemi") ? "<V>" + sName + "</V>" : "<V/>";
    EXPECT_EQ(property(*MemoryDomain::ofType("D", 4, GetParam().lCode), "DataProperty='domaintype'"),
              "<D>" + sText + "</D>");
}

INSTANTIATE_TEST_SUITE_P(Codes, DomainKind,
                         ::testing::Values(DomainCode{"vemiDTRange", 1}, DomainCode{"vemiDTCodedValue", 2},
                                           DomainCode{"vemiDTString", 3}, DomainCode{"Zero", 0},
                                           DomainCode{"Four", 4}),
                         nameOfParameter<DomainCode>);

TEST_F(DomainTest, WritesTheBoundsOfARangeAsText) {
    const auto pRange = MemoryDomain::range("Speed", FieldType::Double, 0.5, 130.0);
    EXPECT_EQ(property(*pRange, "DataProperty='DOMAINRANGEMIN'"), "<D><V>0.5</V></D>");
    EXPECT_EQ(property(*pRange, "Target='Attribute' DataProperty='DomainRangeMax'"),
              "<D><V>0.5</V></D><D V=\"130\"/>");
    const auto pDates = MemoryDomain::range("When", FieldType::Date, Date{2020, 1, 2, 0, 0, 0}, Null{});
    EXPECT_EQ(property(*pDates, "DataProperty='DomainRangeMin'"),
              "<D><V>0.5</V></D><D V=\"130\"/><D><V>01/02/2020</V></D>");
}

TEST_F(DomainTest, WritesEmptyBoundsForATextDomain) {
    EXPECT_EQ(property(*MemoryDomain::ofType("T", 4, 3), "DataProperty='DomainRangeMax'"), "<D><V/></D>");
    EXPECT_EQ(property(*MemoryDomain::ofType("T", 4, 3), "DataProperty='DomainRangeMin'"),
              "<D><V/></D><D><V/></D>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(DomainTest, WritesNothingForTheBoundsOfCodedValues) {
    const auto pCoded = MemoryDomain::coded("C", FieldType::Integer, {});
    EXPECT_EQ(property(*pCoded, "DataProperty='DomainRangeMax'"), "<D/>");
    EXPECT_EQ(property(*pCoded, "Target='Attribute' DataProperty='DomainRangeMin'"), "<D/><D/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(DomainTest, WritesNothingAtAllForTheCodesOfARange) {
    const auto pRange = MemoryDomain::range("Speed", FieldType::Double, 0.5, 130.0);
    EXPECT_EQ(property(*pRange, "DataProperty='DomainCodedValues'"), "<D/>");
    EXPECT_EQ(property(*pRange, "Target='Attribute' DataProperty='DomainCodedValues'"), "<D/><D/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(DomainTest, WritesAnEmptyCodesElementForADomainWithoutCodes) {
    const auto pCoded = MemoryDomain::coded("C", FieldType::Integer, {});
    ExportDomainProperty(
        state, *pCoded,
        control("<v Name='V' DataProperty='DomainCodedValues'><c Name='C' Entries='Multiple'/></v>"),
        element("D"));
    EXPECT_EQ(written(), "<D><V/></D>");
}

TEST_F(DomainTest, WritesAnEmptyValueForAnUnknownPropertyOfAnyDomainAndTellsSo) {
    EXPECT_EQ(property(*MemoryDomain::coded("C", FieldType::Integer, {}), "DataProperty='NoSuch'"),
              "<D><V/></D>");
    EXPECT_EQ(property(*MemoryDomain::ofType("T", 4, 3), "Target='Attribute'"), "<D><V/></D><D V=\"\"/>");
    EXPECT_EQ(observer.aNotices.size(), 2U);
    EXPECT_TRUE(observer.noticed("V", Notice::UnknownProperty));
}

// ---- The driver ----

TEST_F(DomainTest, WritesOneElementPerDomainWithThePropertiesOfTheChildren) {
    addThreeDomains();
    EXPECT_EQ(exported("<d Name='D' DataSource='WorkspaceDomain'><n Name='N' DataProperty='DomainName'/>"
                       "<t Name='t' Target='Attribute' DataProperty='DomainMergePolicy'/></d>"),
              "<D t=\"0\"><N>A</N></D><D t=\"0\"><N>B</N></D><D t=\"0\"><N>C</N></D>");
    EXPECT_EQ(observer.lItems, 3);
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(DomainTest, WritesALeafsValuesOfAllDomainsIntoTheOneElement) {
    addThreeDomains();
    EXPECT_EQ(exported("<d Name='D' DataSource='WorkspaceDomain' DataProperty='DomainName'/>"),
              "<D><D>A</D><D>B</D><D>C</D></D>");
    EXPECT_EQ(observer.lItems, 3);
}

TEST_F(DomainTest, KeepsTheLastDomainsValueForALeafThatTargetsAnAttribute) {
    addThreeDomains();
    EXPECT_EQ(
        exported("<d Name='n' Target='Attribute' DataSource='WorkspaceDomain' DataProperty='DomainName'/>",
                 "G"),
        "<G n=\"C\"/>");
}

TEST_F(DomainTest, NamesTheLastCopyToItsCaller) {
    addThreeDomains();
    OutputElement oElement = element("D");
    ExportDomains(
        state,
        control("<d Name='D' DataSource='WorkspaceDomain'><n Name='N' DataProperty='DomainName'/></d>"),
        oElement);
    EXPECT_EQ(oElement.node(), oRoot.lastChild());
    EXPECT_EQ(oElement.node().xml(), "<D><N>C</N></D>");
}

TEST_F(DomainTest, WritesNothingForAWorkspaceThatCannotHoldDomains) {
    addThreeDomains();
    pWorkspace->refuseDomains();
    EXPECT_EQ(exported("<d Name='D' DataSource='WorkspaceDomain' DataProperty='DomainName'/>"), "<D/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(DomainTest, WritesNothingForAWorkspaceWithoutDomains) {
    EXPECT_EQ(
        exported("<d Name='D' DataSource='WorkspaceDomain'><n Name='N' DataProperty='DomainName'/></d>"),
        "<D/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(DomainTest, OpensTheDataLocationWithoutACurrentLayer) {
    addThreeDomains();
    state.pFeatureLayer.reset();
    pHost->registerWorkspace("D:\\data.mdb", pWorkspace);
    EXPECT_EQ(exported("<d Name='D' DataSource='WorkspaceDomain' DataLocation='D:\\data.mdb' "
                       "DataProperty='DomainName'/>"),
              "<D><D>A</D><D>B</D><D>C</D></D>");
}

TEST_F(DomainTest, CountsThePropertyCallsOfChildrenAgainstTheLimit) {
    addThreeDomains();
    state.options.lItemLimit = 3;
    EXPECT_EQ(exported("<d Name='D' DataSource='WorkspaceDomain'><n Name='N' DataProperty='DomainName'/>"
                       "<m Name='M' DataProperty='DomainMergePolicy'/></d>"),
              "<D><N>A</N><M>0</M></D><D><N>B</N><M>0</M></D>")
        << "the fourth call passes the limit";
    EXPECT_EQ(state.lModErrNum, 6);
}

TEST_F(DomainTest, CountsNothingForALeaf) {
    addThreeDomains();
    state.options.lItemLimit = 0;
    EXPECT_EQ(exported("<d Name='D' DataSource='WorkspaceDomain' DataProperty='DomainName'/>"),
              "<D><D>A</D><D>B</D><D>C</D></D>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(DomainTest, LosesOnlyThePropertyThatCannotBeRead) {
    addThreeDomains();
    pHost->faults().failAt("GisDomain.name", 2);
    EXPECT_EQ(exported("<d Name='D' DataSource='WorkspaceDomain'><n Name='N' DataProperty='DomainName'/>"
                       "<m Name='M' DataProperty='DomainMergePolicy'/></d>"),
              "<D><N>A</N><M>0</M></D><D><M>0</M></D><D><N>C</N><M>0</M></D>");
    EXPECT_EQ(state.lModErrNum, 1004);
}

TEST_F(DomainTest, EndsWhenTheEnumerationFailsAndKeepsWhatWasWritten) {
    addThreeDomains();
    pHost->faults().failAt("GisEnumDomain.next", 3);
    EXPECT_EQ(
        exported("<d Name='D' DataSource='WorkspaceDomain'><n Name='N' DataProperty='DomainName'/></d>"),
        "<D><N>A</N></D><D><N>B</N></D>");
    EXPECT_EQ(state.lModErrNum, 1004);
}

} // namespace
} // namespace halvane::test
