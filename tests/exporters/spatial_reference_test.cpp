// The numbers and the description of a spatial reference.

#include "exporters/ExporterTest.h"

#include <string>
#include <utility>
#include <vector>

namespace halvane::test {
namespace {

using host::memory::MemoryFeatureClass;
using host::memory::MemoryFeatureLayer;
using host::memory::MemoryMap;
using host::memory::MemoryMapDocument;
using host::memory::MemorySpatialReference;
using host::memory::MemorySpatialReferencePtr;

MemorySpatialReferencePtr referenceWithAllDomains(std::string sDescription = "") {
    auto pReference = MemorySpatialReference::make(std::move(sDescription));
    pReference->setXyDomain({-180, -90, 180.5, 90.25, 11, 12, 1000});
    pReference->setMDomain({1, 2, 3, 4});
    pReference->setZDomain({5, 6, 7, 8});
    return pReference;
}

class SpatialReferenceTest : public ExporterTest {
protected:
    SpatialReferenceTest() { state.pMap = pMap; }

    /// What one node writes whose value goes to an element "V".
    std::string value(const std::string& sProperty) {
        ExportSpatialReference(state, control("<v Name='V' DataProperty='" + sProperty + "'/>"),
                               element("V"));
        return written();
    }
    std::string valueOf(const std::string& sDescription, const std::string& sProperty) {
        pMap->setSpatialReference(MemorySpatialReference::make(sDescription));
        return value("SPATIALREFERENCE." + sProperty);
    }

    host::memory::MemoryMapPtr pMap = MemoryMap::make("Main");
};

TEST_F(SpatialReferenceTest, MayHaveQuestionMarksInItsDescription) {
    const std::vector<std::pair<std::string, std::string>> aLines{
        {"Projection", "PROJECTION"}, {"Datum", "DATUM"},
        {"Units", "UNITS"},           {"Fipszone", "FIPSZONE"},
        {"Zunits", "ZUNITS"},         {"Spheroid", "SPHEROID"},
        {"Xshift", "XSHIFT"},         {"Yshift", "YSHIFT"},
        {"Parameters", "PARAMETERS"}, {"Zone", "ZONE"}};
    for (const auto& [sKeyword, sProperty] : aLines)
        EXPECT_TRUE(valueOf(sKeyword + " what?", sProperty).ends_with("what?</V>")) << sKeyword;
}

TEST_F(SpatialReferenceTest, CutsItsLinesByCharactersNotByBytes) {
    EXPECT_EQ(valueOf("\u00e9Zone 15", "ZONE"), "<V>e 15</V>");
    EXPECT_EQ(valueOf("\u20acZone 16", "ZONE"), "<V>e 15</V><V>e 16</V>");
}

// ---- Numbers ----

struct NumberCase {
    const char* sName;
    const char* sText;
    char cDomain;
};

class SpatialReferenceNumber : public SpatialReferenceTest,
                               public ::testing::WithParamInterface<NumberCase> {};

TEST_P(SpatialReferenceNumber, IsThatOfItsDomain) {
    pMap->setSpatialReference(referenceWithAllDomains());
    EXPECT_EQ(value(std::string("SPATIALREFERENCE.") + GetParam().sName),
              std::string("<V>") + GetParam().sText + "</V>");
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_TRUE(observer.aNotices.empty());
}

TEST_P(SpatialReferenceNumber, IsEmptyWithoutItsDomainAlone) {
    const auto pReference = MemorySpatialReference::make("");
    if (GetParam().cDomain != 'X')
        pReference->setXyDomain({1, 1, 1, 1, 1, 1, 1});
    if (GetParam().cDomain != 'M')
        pReference->setMDomain({1, 1, 1, 1});
    if (GetParam().cDomain != 'Z')
        pReference->setZDomain({1, 1, 1, 1});
    pMap->setSpatialReference(pReference);
    element("V").setText("before");
    const Node oTarget = oRoot.firstChild();
    ExportSpatialReference(
        state, control(std::string("<v Name='V' DataProperty='SPATIALREFERENCE.") + GetParam().sName + "'/>"),
        oTarget);
    EXPECT_EQ(written(), "<V/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

INSTANTIATE_TEST_SUITE_P(All, SpatialReferenceNumber,
                         ::testing::Values(NumberCase{"XMIN", "-180", 'X'}, NumberCase{"XMAX", "180.5", 'X'},
                                           NumberCase{"YMIN", "-90", 'X'}, NumberCase{"YMAX", "90.25", 'X'},
                                           NumberCase{"FALSEX", "11", 'X'}, NumberCase{"FALSEY", "12", 'X'},
                                           NumberCase{"XYSCALE", "1000", 'X'}, NumberCase{"MMIN", "1", 'M'},
                                           NumberCase{"MMAX", "2", 'M'}, NumberCase{"FALSEM", "3", 'M'},
                                           NumberCase{"MSCALE", "4", 'M'}, NumberCase{"ZMIN", "5", 'Z'},
                                           NumberCase{"ZMAX", "6", 'Z'}, NumberCase{"FALSEZ", "7", 'Z'},
                                           NumberCase{"ZSCALE", "8", 'Z'}),
                         nameOfParameter<NumberCase>);

TEST_F(SpatialReferenceTest, WritesNumbersWithFifteenSignificantDigitsAndAnExponentWhereNeeded) {
    const auto pReference = MemorySpatialReference::make("");
    pReference->setXyDomain({1.0 / 3, -1e15, 0, 0, 0, 0, 0});
    pMap->setSpatialReference(pReference);
    EXPECT_EQ(value("SPATIALREFERENCE.XMIN"), "<V>0.333333333333333</V>");
    EXPECT_EQ(value("SPATIALREFERENCE.YMIN"), "<V>0.333333333333333</V><V>-1E+15</V>");
}

TEST_F(SpatialReferenceTest, TakesTheNumberFormatOfNoDecimalPlaces) {
    pMap->setSpatialReference(referenceWithAllDomains());
    ExportSpatialReference(
        state, control("<v Name='V' DecimalPlace='1' DataProperty='SPATIALREFERENCE.YMAX'/>"), element("V"));
    EXPECT_EQ(written(), "<V>90.25</V>");
}

TEST_F(SpatialReferenceTest, RecognisesItsPropertiesInAnyLetterCase) {
    pMap->setSpatialReference(referenceWithAllDomains("Datum NAD83"));
    EXPECT_EQ(value("SpatialReference.xMin"), "<V>-180</V>");
    EXPECT_EQ(value("spatialreference.datum"), "<V>-180</V><V>NAD83</V>");
}

TEST_F(SpatialReferenceTest, WritesNothingForPropertiesThatNoRuleComputesAndTellsSo) {
    pMap->setSpatialReference(referenceWithAllDomains("Datum NAD83"));
    EXPECT_EQ(value("SPATIALREFERENCE.VDATUM"), "<V/>");
    EXPECT_EQ(value("SPATIALREFERENCE.XYUNITS"), "<V/><V/>");
    EXPECT_EQ(value("SPATIALREFERENCE.NOSUCH"), "<V/><V/><V/>");
    EXPECT_EQ(state.lModErrNum, 0);
    ASSERT_EQ(observer.aNotices.size(), 3U);
    EXPECT_EQ(observer.aNotices[0].notice, Notice::PropertyWithoutValue);
    EXPECT_EQ(observer.aNotices[0].sDetail, "SPATIALREFERENCE.VDATUM");
    EXPECT_EQ(observer.aNotices[1].notice, Notice::PropertyWithoutValue);
    EXPECT_EQ(observer.aNotices[2].notice, Notice::UnknownProperty);
}

// ---- The description ----

struct LineCase {
    const char* sName;
    const char* sLine;
    const char* sProperty;
    const char* sXml;
};

class DescriptionLine : public SpatialReferenceTest, public ::testing::WithParamInterface<LineCase> {};

TEST_P(DescriptionLine, YieldsItsValue) {
    EXPECT_EQ(valueOf(GetParam().sLine, GetParam().sProperty), GetParam().sXml);
    EXPECT_EQ(state.lModErrNum, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Keywords, DescriptionLine,
    ::testing::Values(LineCase{"Projection", "Projection    UTM", "PROJECTION", "<V>UTM</V>"},
                      LineCase{"Zone", "Zone          15", "ZONE", "<V>15</V>"},
                      LineCase{"Datum", "Datum         NAD83", "DATUM", "<V>NAD83</V>"},
                      LineCase{"Units", "Units         METERS", "UNITS", "<V>METERS</V>"},
                      LineCase{"Fipszone", "Fipszone      2202", "FIPSZONE", "<V>2202</V>"},
                      LineCase{"Spheroid", "Spheroid      GRS1980", "SPHEROID", "<V>GRS1980</V>"},
                      LineCase{"Zunits", "Zunits        NO", "ZUNITS", "<V>NO</V>"},
                      LineCase{"Xshift", "Xshift        0.5", "XSHIFT", "<V>0.5</V>"},
                      LineCase{"Yshift", "Yshift        -1", "YSHIFT", "<V>-1</V>"},
                      LineCase{"Parameters", "Parameters    6", "PARAMETERS", "<V>6</V>"}),
    nameOfParameter<LineCase>);

// The first four skip the character after the keyword, whatever it is; the others begin right after it.
INSTANTIATE_TEST_SUITE_P(
    UnevenCuts, DescriptionLine,
    ::testing::Values(LineCase{"Projection", "Projection=UTM", "PROJECTION", "<V>UTM</V>"},
                      LineCase{"LowerZone", "Zone zone=15", "ZONE", "<V>15</V>"},
                      LineCase{"Datum", "Datum=NAD83", "DATUM", "<V>NAD83</V>"},
                      LineCase{"Units", "Units=METERS", "UNITS", "<V>METERS</V>"},
                      LineCase{"Fipszone", "Fipszone=2202", "FIPSZONE", "<V>=2202</V>"},
                      LineCase{"Spheroid", "Spheroid=GRS", "SPHEROID", "<V>=GRS</V>"},
                      LineCase{"Zunits", "Zunits=NO", "ZUNITS", "<V>=NO</V>"},
                      LineCase{"Xshift", "Xshift=0", "XSHIFT", "<V>=0</V>"},
                      LineCase{"Yshift", "Yshift=0", "YSHIFT", "<V>=0</V>"},
                      LineCase{"Parameters", "Parameters=6", "PARAMETERS", "<V>=6</V>"},
                      LineCase{"ZoneWithoutLowerCaseZone", "A Zone 15", "ZONE", "<V>ne 15</V>"},
                      LineCase{"TextBeforeTheKeyword", "The Datum is NAD83", "DATUM", "<V>is NAD83</V>"},
                      LineCase{"SeparatorOfSeveralBytes", "Datum\xE2\x86\x92NAD83", "DATUM", "<V>NAD83</V>"},
                      LineCase{"NoValueBehindTheSeparator", "Datum ", "DATUM", "<V/>"}),
    nameOfParameter<LineCase>);

INSTANTIATE_TEST_SUITE_P(
    Choices, DescriptionLine,
    ::testing::Values(
        LineCase{"AFipszoneIsNoZone", "Fipszone 2202", "ZONE", "<V/>"},
        LineCase{"ZunitsAreNoUnits", "Zunits NO", "UNITS", "<V/>"},
        LineCase{"UnitsBesideZunitsAreNone", "Units METERS Zunits NO", "UNITS", "<V/>"},
        LineCase{"ZunitsBesideUnitsAreFound", "Units METERS Zunits NO", "ZUNITS", "<V>NO</V>"},
        LineCase{"TheFirstKeywordDecides", "Datum of Projection UTM", "DATUM", "<V/>"},
        LineCase{"TheFirstKeywordYields", "Datum of Projection UTM", "PROJECTION", "<V>UTM</V>"},
        LineCase{"KeywordsAreExact", "datum NAD83", "DATUM", "<V/>"},
        LineCase{"OtherLinesAreSkipped", "Nonsense\n\nDatum NAD83\n", "DATUM", "<V>NAD83</V>"},
        LineCase{"TheLastOfSeveralStands", "Datum NAD27\nUnits FEET\nDatum NAD83", "DATUM", "<V>NAD83</V>"}),
    nameOfParameter<LineCase>);

TEST_F(SpatialReferenceTest, EndsAtALineShorterThanItsCutAndKeepsWhatWasWritten) {
    EXPECT_EQ(valueOf("Datum NAD27\nDatum\nDatum NAD83", "DATUM"), "<V>NAD27</V>");
    EXPECT_EQ(state.lModErrNum, 5);
}

TEST_F(SpatialReferenceTest, EndsAtAShortLineOfAnotherPropertyToo) {
    EXPECT_EQ(valueOf("Zon\nZone\nProjection\nDatum NAD83", "DATUM"), "<V/>");
    EXPECT_EQ(state.lModErrNum, 5);
}

// ---- Whose reference ----

class SpatialReferenceChoice : public SpatialReferenceTest {
protected:
    SpatialReferenceChoice() {
        pMap->setSpatialReference(MemorySpatialReference::make("Datum MAP"));
        pClass->setSpatialReference(MemorySpatialReference::make("Datum CLASS"));
        pLayer->setSpatialReference(MemorySpatialReference::make("Datum LAYER"));
        state.pFeatureClass = pClass;
        state.pFeatureLayer = pLayer;
    }

    host::memory::MemoryFeatureClassPtr pClass =
        MemoryFeatureClass::make("Roads", host::ShapeType::Polyline, {});
    host::memory::MemoryFeatureLayerPtr pLayer = MemoryFeatureLayer::make("Roads", pClass);
};

TEST_F(SpatialReferenceChoice, TakesTheCurrentMapsFirst) {
    EXPECT_EQ(value("SPATIALREFERENCE.DATUM"), "<V>MAP</V>");
}

TEST_F(SpatialReferenceChoice, TakesTheCurrentFeatureClassesWithoutAMap) {
    state.pMap.reset();
    EXPECT_EQ(value("SPATIALREFERENCE.DATUM"), "<V>CLASS</V>");
}

TEST_F(SpatialReferenceChoice, TakesTheCurrentLayersWithoutEither) {
    state.pMap.reset();
    state.pFeatureClass.reset();
    EXPECT_EQ(value("SPATIALREFERENCE.DATUM"), "<V>LAYER</V>");
}

TEST_F(SpatialReferenceChoice, LooksNoFurtherWhenTheMapHasNone) {
    pMap->setSpatialReference(nullptr);
    EXPECT_EQ(value("SPATIALREFERENCE.DATUM"), "<V/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(SpatialReferenceChoice, WritesNothingWithoutAnyOfTheThree) {
    state.pMap.reset();
    state.pFeatureClass.reset();
    state.pFeatureLayer.reset();
    EXPECT_EQ(value("SPATIALREFERENCE.DATUM"), "<V/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

constexpr const char* layerControl =
    "<a Name='Out'><l Name='Layer' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
    "<d Name='Datum' DataProperty='SPATIALREFERENCE.DATUM'/></l></a>";

TEST_F(SpatialReferenceChoice, GivesALayersNodeTheMapsWhileThereIsAMap) {
    pMap->addLayer(pLayer);
    EXPECT_EQ(exportWhole(MemoryMapDocument::make({pMap}), layerControl),
              "<Out><Layer><Datum>MAP</Datum></Layer></Out>");
}

TEST_F(SpatialReferenceChoice, GivesALayersNodeThatOfItsClassInAnExportWithoutAMap) {
    const auto pWorkspace = host::memory::MemoryWorkspace::make("D:\\data.mdb", 1);
    pWorkspace->add(pClass);
    pHost->registerWorkspace("D:\\data.mdb", pWorkspace);
    EXPECT_EQ(exportWhole(MemoryMapDocument::make({pMap}),
                          "<a Name='Out' DataLocation='D:\\data.mdb'><l Name='Layer' DataSource='MapLayer' "
                          "Identity='LayerName' IdentityValue='Roads'>"
                          "<d Name='Datum' DataProperty='SPATIALREFERENCE.DATUM'/></l></a>"),
              "<Out><Layer><Datum>CLASS</Datum></Layer></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

// ---- Writing ----

TEST_F(SpatialReferenceTest, WritesAnAttributeWhereTheDataLocationSaysSo) {
    pMap->setSpatialReference(referenceWithAllDomains());
    Node oTarget = element("G");
    oTarget.setAttribute("xmin", "");
    ExportSpatialReference(
        state, control("<v Name='x min' DataLocation='Attribute' DataProperty='SPATIALREFERENCE.XMIN'/>"),
        oTarget);
    EXPECT_EQ(written(), "<G xmin=\"-180\"/>");
    EXPECT_TRUE(observer.aNotices.empty());
}

TEST_F(SpatialReferenceTest, WritesNothingWhereThatAttributeIsLacking) {
    pMap->setSpatialReference(referenceWithAllDomains());
    Node oTarget = element("G");
    oTarget.setText("kept");
    ExportSpatialReference(
        state, control("<v Name='xmin' DataLocation='Attribute' DataProperty='SPATIALREFERENCE.XMIN'/>"),
        oTarget);
    EXPECT_EQ(written(), "<G>kept</G>");
    EXPECT_EQ(state.lModErrNum, 91);
}

TEST_F(SpatialReferenceTest, TakesADataLocationInOtherLetterCaseForAnElement) {
    pMap->setSpatialReference(referenceWithAllDomains());
    Node oTarget = element("G");
    oTarget.setAttribute("xmin", "");
    ExportSpatialReference(
        state, control("<v Name='xmin' DataLocation='attribute' DataProperty='SPATIALREFERENCE.XMIN'/>"),
        oTarget);
    EXPECT_EQ(written(), "<G xmin=\"\">-180</G>");
}

TEST_F(SpatialReferenceTest, ReplacesTheParentsContentForAnAttributeTargetAndWarns) {
    pMap->setSpatialReference(referenceWithAllDomains());
    EXPECT_EQ(exportWhole(MemoryMapDocument::make({pMap}),
                          "<a Name='Out'><g Name='G' DataSource='Map'><c Name='Child'/>"
                          "<x Name='xmin' Target='Attribute' DataProperty='SPATIALREFERENCE.XMIN'/></g></a>"),
              "<Out><G xmin=\"\">-180</G></Out>");
    EXPECT_TRUE(observer.noticed("xmin", Notice::ReplacesParentContent));
}

TEST_F(SpatialReferenceTest, FillsAnAttributeTargetWhoseDataLocationAndFrameAreSet) {
    pMap->setSpatialReference(referenceWithAllDomains());
    EXPECT_EQ(exportWhole(MemoryMapDocument::make({pMap}),
                          "<a Name='Out'><g Name='G' DataSource='Map'><c Name='Child'/>"
                          "<x Name='xmin' Target='Attribute' DataLocation='Attribute' DataFrame='Main' "
                          "DataProperty='SPATIALREFERENCE.XMIN'/></g></a>"),
              "<Out><G xmin=\"-180\"><Child/></G></Out>");
    EXPECT_FALSE(observer.noticed("xmin", Notice::ReplacesParentContent));
}

TEST_F(SpatialReferenceTest, ReadsOnlyTheNodesOwnProperty) {
    pMap->setSpatialReference(referenceWithAllDomains());
    EXPECT_EQ(exportWhole(MemoryMapDocument::make({pMap}),
                          "<a Name='Out'><g Name='G' DataSource='Map' DataProperty='SPATIALREFERENCE.XMIN'>"
                          "<x Name='X'/></g></a>"),
              "<Out><G><X/></G></Out>");
}

// ---- Failures ----

struct FailingCall {
    const char* sName;
    const char* sXml;
};

class SpatialReferenceFailure : public SpatialReferenceTest,
                                public ::testing::WithParamInterface<FailingCall> {};

TEST_P(SpatialReferenceFailure, EndsTheCallAndIsRecorded) {
    pMap->setSpatialReference(referenceWithAllDomains("Datum NAD83"));
    pHost->faults().failAt(GetParam().sName);
    EXPECT_EQ(value("SPATIALREFERENCE.XMIN"), GetParam().sXml);
    EXPECT_EQ(state.lModErrNum, 1004);
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures[0].sName, "V");
}

INSTANTIATE_TEST_SUITE_P(HostCalls, SpatialReferenceFailure,
                         ::testing::Values(FailingCall{"spatialReference", "<V/>"},
                                           FailingCall{"xyDomain", "<V/>"}, FailingCall{"mDomain", "<V/>"},
                                           FailingCall{"zDomain", "<V/>"},
                                           FailingCall{"description", "<V>-180</V>"}),
                         nameOfParameter<FailingCall>);

} // namespace
} // namespace halvane::test
