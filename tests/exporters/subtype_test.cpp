// The subtypes of a feature class.

#include "exporters/ExporterTest.h"

namespace halvane::test {
namespace {

using host::FieldType;
using host::memory::field;
using host::memory::MemoryDomain;
using host::memory::MemoryFeatureClass;
using host::memory::MemorySubtypes;

class SubtypeTest : public ExporterTest {
protected:
    SubtypeTest() {
        pSubtypes->addSubtype(1, "Highway");
        pSubtypes->addSubtype(5, "Track");
        pSubtypes->setDomain(1, "LANES", MemoryDomain::ofType("HighwayLanes", 1, 3));
        pSubtypes->setDefaultValue(1, "LANES", 4);
        pSubtypes->setDefaultValue(5, "LANES", Null{});
        pSubtypes->setDefaultValue(5, "NAME", std::string("unnamed"));
    }

    std::string exported(const std::string& sControl, const std::string& sElement = "S") {
        ExportSubtypes(state, pRoads, pSubtypes, control(sControl), element(sElement), progress);
        return written();
    }
    /// One property of the current subtype and field.
    std::string leaf(const std::string& sProperty) {
        return exported("<v Name='V' DataSource='SubType' DataProperty='" + sProperty + "'/>", "V");
    }

    host::memory::MemoryFeatureClassPtr pRoads =
        MemoryFeatureClass::make("Roads", host::ShapeType::Polyline,
                                 {field("FID", FieldType::Oid), field("NAME", FieldType::String),
                                  field("Lanes", FieldType::SmallInteger)});
    host::memory::MemorySubtypesPtr pSubtypes = MemorySubtypes::make("KIND", 5);
    SubtypeProgress progress;

    static constexpr const char* sSubtypes =
        "<s Name='S' DataSource='SubType' Entries='Multiple'><n Name='Name' DataProperty='SubTypeName'/>"
        "<c Name='code' Target='Attribute' DataProperty='SubTypeCode'/></s>";
    static constexpr const char* sFields = "<s Name='F' DataSource='SubTypeFieldInfo' Entries='Multiple'><n "
                                           "Name='N' DataProperty='FieldName'/></s>";
};

// ---- Properties ----

class SubtypeProperty : public SubtypeTest, public ::testing::WithParamInterface<PropertyCase> {
protected:
    SubtypeProperty() {
        progress.lSubtypeCode = 1;
        progress.sFieldName = "LANES";
    }
};

TEST_P(SubtypeProperty, BecomesTheTextOfTheElementHandedIn) {
    EXPECT_EQ(leaf(GetParam().sName), std::string("<V>") + GetParam().sText + "</V>");
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_TRUE(observer.aNotices.empty());
}

TEST_P(SubtypeProperty, FillsTheAttributeMadeForItAndIsRecognisedInLowerCase) {
    Node oElement = element("G");
    oElement.setAttribute("v", "");
    ExportSubtypes(
        state, pRoads, pSubtypes,
        control("<v Name='v' Target='Attribute' DataProperty='" + lowerCase(GetParam().sName) + "'/>"),
        oElement, progress);
    EXPECT_EQ(written(), std::string("<G v=\"") + GetParam().sText + "\"/>");
}

INSTANTIATE_TEST_SUITE_P(
    All, SubtypeProperty,
    ::testing::Values(PropertyCase{"SubTypeFieldName", "KIND"}, PropertyCase{"DefaultSubTypeCode", "5"},
                      PropertyCase{"SubTypeName", "Highway"}, PropertyCase{"SubTypeCode", "1"},
                      PropertyCase{"FieldName", "LANES"}, PropertyCase{"SubtypeDomain", "HighwayLanes"},
                      PropertyCase{"SubTypeDefaultValue", "4"}),
    nameOfParameter<PropertyCase>);

TEST_F(SubtypeTest, StartsWithTheSubtypeCodeZeroAndNoField) {
    EXPECT_EQ(leaf("SubTypeCode"), "<V>0</V>");
    EXPECT_EQ(leaf("FieldName"), "<V>0</V><V/>");
}

TEST_F(SubtypeTest, WritesAnEmptyDomainNameWhereThereIsNoDomain) {
    progress.lSubtypeCode = 5;
    progress.sFieldName = "LANES";
    EXPECT_EQ(leaf("SubtypeDomain"), "<V/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(SubtypeTest, WritesAnEmptyDefaultValueForNull) {
    progress.lSubtypeCode = 5;
    progress.sFieldName = "LANES";
    EXPECT_EQ(leaf("SubTypeDefaultValue"), "<V/>");
    progress.sFieldName = "NAME";
    EXPECT_EQ(leaf("SubTypeDefaultValue"), "<V/><V>unnamed</V>");
}

TEST_F(SubtypeTest, TellsOfAnAttributeInAGroupThatStaysEmpty) {
    EXPECT_EQ(exported("<s Name='S' DataSource='SubType' Entries='Multiple'><g Name='G'>"
                       "<c Name='code' Target='Attribute' DataProperty='SubTypeCode'/></g></s>"),
              "<S><G code=\"\"/></S><S><G code=\"\"/></S>");
    EXPECT_TRUE(observer.noticed("code", Notice::AttributeStaysEmpty));
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(SubtypeTest, WritesAnEmptyValueForAnUnknownPropertyAndTellsSo) {
    Node oElement = element("V");
    oElement.setText("before");
    ExportSubtypes(state, pRoads, pSubtypes, control("<v Name='V' DataProperty='NoSuch'/>"), oElement,
                   progress);
    EXPECT_EQ(written(), "<V/>");
    EXPECT_TRUE(observer.noticed("V", Notice::UnknownProperty));
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(SubtypeTest, NeverCreatesAnAttribute) {
    EXPECT_EQ(exported("<v Name='v' Target='Attribute' DataProperty='SubTypeCode'/>", "G"), "<G/>");
    EXPECT_EQ(state.lModErrNum, 91);
}

TEST_F(SubtypeTest, WritesNothingForAClassWithoutSubtypes) {
    pSubtypes = MemorySubtypes::make("KIND", 0);
    EXPECT_EQ(leaf("SubTypeFieldName"), "<V/>");
    EXPECT_EQ(exported(sSubtypes), "<V/><S/>");
    EXPECT_EQ(exported(sFields), "<V/><S/><S/>");
    pSubtypes = nullptr;
    EXPECT_EQ(exported(sSubtypes), "<V/><S/><S/><S/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

// ---- Repeats over subtypes ----

TEST_F(SubtypeTest, WritesOneElementPerSubtypeNamedLikeTheOneHandedIn) {
    EXPECT_EQ(exported(sSubtypes, "Kind"), "<Kind code=\"1\"><Name>Highway</Name></Kind>"
                                           "<Kind code=\"5\"><Name>Track</Name></Kind>");
    EXPECT_EQ(observer.lItems, 2);
    EXPECT_EQ(progress.lSubtypeCounter, 2);
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(SubtypeTest, RecognisesItsModesInAnyLetterCaseButNotItsEntries) {
    EXPECT_EQ(exported("<s Name='S' DataSource='SUBTYPE' Entries='Multiple'><c Name='C' "
                       "DataProperty='SubTypeCode'/></s>"),
              "<S><C>1</C></S><S><C>5</C></S>");
    EXPECT_EQ(exported("<s Name='T' DataSource='SubType' Entries='multiple'><c Name='C' "
                       "DataProperty='SubTypeFieldName'/></s>",
                       "T"),
              "<S><C>1</C></S><S><C>5</C></S><T><C>KIND</C></T>");
}

TEST_F(SubtypeTest, EndsTheRepeatAtASubtypeWithoutAName) {
    pSubtypes->addSubtype(6, "");
    pSubtypes->addSubtype(7, "Path");
    EXPECT_EQ(exported("<s Name='S' DataSource='SubType' Entries='Multiple'><c Name='C' "
                       "DataProperty='SubTypeCode'/></s>"),
              "<S><C>1</C></S><S><C>5</C></S>");
}

TEST_F(SubtypeTest, WritesNothingForARepeatOfAnotherKindAndTellsSo) {
    EXPECT_EQ(
        exported(
            "<s Name='S' DataSource='Field' Entries='Multiple'><c Name='C' DataProperty='SubTypeCode'/></s>"),
        "<S/>");
    EXPECT_TRUE(observer.noticed("S", Notice::RepeatIsSilent));
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(SubtypeTest, LeavesTheLastCodeToASiblingAfterTheRepeat) {
    EXPECT_EQ(
        exported(std::string("<g Name='G' DataSource='SubType'>") + sSubtypes +
                     "<a Name='After' DataProperty='SubTypeCode'/></g>",
                 "G"),
        "<G><S code=\"1\"><Name>Highway</Name></S><S code=\"5\"><Name>Track</Name></S><After>5</After></G>");
}

TEST_F(SubtypeTest, ContinuesTheCountOfASiblingBefore) {
    EXPECT_EQ(exported("<g Name='G' DataSource='SubType'>"
                       "<a Name='A' Entries='Multiple'><c Name='C' DataProperty='SubTypeCode'/></a>"
                       "<b Name='B' Entries='Multiple'><c Name='C' DataProperty='SubTypeCode'/></b></g>",
                       "G"),
              "<G><A><C>1</C></A><A><C>5</C></A><B/><B><C>1</C></B><B><C>5</C></B></G>")
        << "the element made for the second repeat stays empty: the counter is past 0";
}

// ---- Repeats over fields ----

TEST_F(SubtypeTest, WritesOneElementPerEditableFieldWithItsNameInUpperCase) {
    EXPECT_EQ(exported(sFields, "F"), "<F><N>NAME</N></F><F><N>LANES</N></F>");
    EXPECT_EQ(observer.lItems, 2);
    EXPECT_EQ(progress.lFieldCounter, 2);
}

TEST_F(SubtypeTest, LeavesOutShapeFieldsInAnyLetterCaseAndFieldsThatAreNotEditable) {
    pRoads = MemoryFeatureClass::make("Roads", host::ShapeType::Polyline,
                                      {field("Shape", 7), field("SHAPE_Area", 3), field("shape_length", 3),
                                       field("Shape_Len", 3), field("FIXED", FieldType::String).readOnly(),
                                       field("Last", FieldType::String)});
    EXPECT_EQ(exported(sFields, "F"), "<F><N>SHAPE_LEN</N></F><F><N>LAST</N></F>");
}

TEST_F(SubtypeTest, WritesNothingOfFieldsThatAreAllLeftOut) {
    pRoads = MemoryFeatureClass::make("Roads", host::ShapeType::Polyline, {field("FID", FieldType::Oid)});
    EXPECT_EQ(exported(sFields, "F"), "<F/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(SubtypeTest, SharesTheFieldCounterAmongSubtypesSoThatLaterOnesBeginWithACopy) {
    EXPECT_EQ(exported("<s Name='S' DataSource='SubType' Entries='Multiple'>"
                       "<c Name='code' Target='Attribute' DataProperty='SubTypeCode'/>"
                       "<f Name='F' DataSource='SubTypeFieldInfo' Entries='Multiple'>"
                       "<n Name='N' DataProperty='FieldName'/><d Name='D' DataProperty='SubtypeDomain'/>"
                       "<v Name='V' DataProperty='SubTypeDefaultValue'/></f></s>"),
              "<S code=\"1\"><F><N>NAME</N><D/><V/></F><F><N>LANES</N><D>HighwayLanes</D><V>4</V></F></S>"
              "<S code=\"5\"><F/><F><N>NAME</N><D/><V>unnamed</V></F><F><N>LANES</N><D/><V/></F></S>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(SubtypeTest, SeesTheModeThatANestedNodeInherits) {
    EXPECT_EQ(exported("<g Name='G' DataSource='SubTypeFieldInfo'><s Name='F' Entries='Multiple'>"
                       "<n Name='N' DataProperty='FieldName'/></s></g>",
                       "G"),
              "<G><F><N>NAME</N></F><F><N>LANES</N></F></G>");
}

TEST_F(SubtypeTest, LosesTheFieldInARepeatOverSubtypesBelowIt) {
    EXPECT_EQ(exported("<s Name='F' DataSource='SubTypeFieldInfo' Entries='Multiple'>"
                       "<t Name='T' DataSource='SubType' Entries='Multiple'>"
                       "<n Name='N' DataProperty='FieldName'/></t></s>",
                       "F"),
              "<F><T><N/></T><T><N/></T></F><F><T/><T><N/></T><T><N/></T></F>");
}

// ---- Groups ----

TEST_F(SubtypeTest, WritesTheChildrenOfAPlainGroup) {
    EXPECT_EQ(exported("<g Name='G' DataSource='SubType'><a Name='A' DataProperty='SubTypeFieldName'/>"
                       "<b Name='B'><c Name='C' DataProperty='DefaultSubTypeCode'/></b></g>",
                       "G"),
              "<G><A>KIND</A><B><C>5</C></B></G>");
}

TEST_F(SubtypeTest, LeavesAnAttributeOfAPlainGroupEmpty) {
    EXPECT_EQ(exported("<g Name='G' DataSource='SubType'><a Name='a' Target='Attribute' "
                       "DataProperty='SubTypeFieldName'/></g>",
                       "G"),
              "<G a=\"\"/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(SubtypeTest, KeepsTheSubtypeButLosesTheFieldInAGroupBelow) {
    EXPECT_EQ(exported("<s Name='S' DataSource='SubType' Entries='Multiple'><g Name='G'>"
                       "<c Name='C' DataProperty='SubTypeCode'/></g></s>"),
              "<S><G><C>1</C></G></S><S><G><C>5</C></G></S>");
    EXPECT_EQ(exported("<s Name='F' DataSource='SubTypeFieldInfo' Entries='Multiple'><g Name='G'>"
                       "<n Name='N' DataProperty='FieldName'/></g><n Name='N' DataProperty='FieldName'/></s>",
                       "F"),
              "<S><G><C>1</C></G></S><S><G><C>5</C></G></S>"
              "<F><G><N/></G><N>NAME</N></F><F><G><N/></G><N>LANES</N></F>");
}

// ---- Failures ----

TEST_F(SubtypeTest, EndsWithAnOverflowAfterTheSubtypeThatPassesTheLimit) {
    pSubtypes->addSubtype(6, "Path");
    state.options.lItemLimit = 1;
    EXPECT_EQ(exported("<s Name='S' DataSource='SubType' Entries='Multiple'><c Name='C' "
                       "DataProperty='SubTypeCode'/></s>"),
              "<S><C>1</C></S><S><C>5</C></S>");
    EXPECT_EQ(state.lModErrNum, 6);
}

TEST_F(SubtypeTest, EndsWithAnOverflowAfterTheFieldThatPassesTheLimit) {
    state.options.lItemLimit = 0;
    EXPECT_EQ(exported(sFields, "F"), "<F><N>NAME</N></F>");
    EXPECT_EQ(state.lModErrNum, 6);
}

TEST_F(SubtypeTest, LosesOnlyThePropertyThatCannotBeRead) {
    // The repeat asks for each name once itself.
    pHost->faults().failAt("subtypeName", 2);
    EXPECT_EQ(exported(sSubtypes), "<S code=\"1\"><Name/></S><S code=\"5\"><Name>Track</Name></S>");
    EXPECT_EQ(state.lModErrNum, 1004);
}

TEST_F(SubtypeTest, EndsWhenTheEnumerationFailsAndKeepsWhatWasWritten) {
    pHost->faults().failAt("GisSubtypes.subtypeCode", 2);
    EXPECT_EQ(exported(sSubtypes), "<S code=\"1\"><Name>Highway</Name></S>");
    EXPECT_EQ(state.lModErrNum, 1004);
}

} // namespace
} // namespace halvane::test
