// The field definitions of a feature class.

#include "exporters/ExporterTest.h"

namespace halvane::test {
namespace {

using host::FieldType;
using host::ShapeType;
using host::memory::field;
using host::memory::MemoryFeatureClass;
using host::memory::MemoryField;

class FieldTest : public ExporterTest {
protected:
    FieldTest() { state.pFeatureClass = pRoads; }

    std::string property(const host::memory::FieldDefinition& definition, const std::string& sAttributes) {
        const MemoryField writtenField(definition);
        ExportFieldProperty(state, writtenField, control("<v Name='V' " + sAttributes + "/>"), element("F"));
        return written();
    }
    std::string exported(const std::string& sControl) {
        ExportFields(state, pRoads, control(sControl), element("Fields"));
        return written();
    }

    host::memory::MemoryFeatureClassPtr pRoads =
        MemoryFeatureClass::make("Roads", ShapeType::Polygon,
                                 {field("FID", FieldType::Oid), field("Shape", FieldType::Geometry),
                                  field("NAME", FieldType::String).alias("Street name").length(40)});
    static constexpr const char* sRepeated =
        "<f Name='Fields' Entries='Multiple' DataSource='Field'><t Name='Field'>"
        "<n Name='Name' DataProperty='FieldName'/><y Name='type' Target='Attribute' "
        "DataProperty='FieldType'/></t></f>";
};

// ---- Properties ----

class FieldProperty : public FieldTest, public ::testing::WithParamInterface<PropertyCase> {
protected:
    static host::memory::FieldDefinition definition() {
        return field("LANES", FieldType::Integer).alias("Lanes of it").length(4).precision(9).readOnly();
    }
};

TEST_P(FieldProperty, IsWrittenAsAnElement) {
    EXPECT_EQ(property(definition(), std::string("DataProperty='") + GetParam().sName + "'"),
              std::string("<F><V>") + GetParam().sText + "</V></F>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_P(FieldProperty, IsWrittenAsAnAttributeAndRecognisedInLowerCase) {
    EXPECT_EQ(property(definition(), "Target='Attribute' DataProperty='" + lowerCase(GetParam().sName) + "'"),
              std::string("<F V=\"") + GetParam().sText + "\"/>");
}

INSTANTIATE_TEST_SUITE_P(All, FieldProperty,
                         ::testing::Values(PropertyCase{"FieldName", "LANES"},
                                           PropertyCase{"FieldIsNull", "True"},
                                           PropertyCase{"FieldLength", "4"},
                                           PropertyCase{"FieldPrecision", "9"},
                                           PropertyCase{"FieldEditable", "False"},
                                           PropertyCase{"FieldType", "vemiFieldTypeInteger"},
                                           PropertyCase{"FieldAlias", "Lanes of it"}),
                         nameOfParameter<PropertyCase>);

TEST_F(FieldTest, WritesTheOtherValueOfEachFlag) {
    EXPECT_EQ(property(field("A", FieldType::String).notNull(), "DataProperty='FieldIsNull'"),
              "<F><V>False</V></F>");
    EXPECT_EQ(property(field("A", FieldType::String), "DataProperty='FieldEditable'"),
              "<F><V>False</V></F><F><V>True</V></F>");
}

TEST_F(FieldTest, WritesAnEmptyValueForAnUnknownPropertyAsElementAndAttribute) {
    EXPECT_EQ(property(field("A", FieldType::String), "DataProperty='NoSuch'"), "<F><V/></F>");
    EXPECT_EQ(property(field("A", FieldType::String), "Target='Attribute'"), "<F><V/></F><F V=\"\"/>");
    EXPECT_TRUE(observer.noticed("V", Notice::UnknownProperty));
    EXPECT_EQ(state.lModErrNum, 0);
}

struct TypeCase {
    const char* sName;
    std::int32_t lCode;
};

class FieldTypeCode : public FieldTest, public ::testing::WithParamInterface<TypeCase> {};

TEST_P(FieldTypeCode, HasItsLiteral) {
    const std::string sName = GetParam().sName;
    EXPECT_EQ(property(field("A", GetParam().lCode), "DataProperty='FieldType'"),
              sName.starts_with("vemi") ? "<F><V>" + sName + "</V></F>" : "<F><V/></F>");
}

INSTANTIATE_TEST_SUITE_P(
    Codes, FieldTypeCode,
    ::testing::Values(TypeCase{"vemiFieldTypeSmallInteger", 0}, TypeCase{"vemiFieldTypeInteger", 1},
                      TypeCase{"vemiFieldTypeSingle", 2}, TypeCase{"vemiFieldTypeDouble", 3},
                      TypeCase{"vemiFieldTypeString", 4}, TypeCase{"vemiFieldTypeDate", 5},
                      TypeCase{"vemiFieldTypeOID", 6}, TypeCase{"vemiGeometryPolygon", 7},
                      TypeCase{"vemiFieldTypeBlob", 8}, TypeCase{"Nine", 9}, TypeCase{"MinusOne", -1}),
    nameOfParameter<TypeCase>);

class ShapeTypeCode : public FieldTest, public ::testing::WithParamInterface<TypeCase> {};

TEST_P(ShapeTypeCode, IsTheTypeOfTheGeometryField) {
    state.pFeatureClass = MemoryFeatureClass::make("Any", static_cast<ShapeType>(GetParam().lCode), {});
    const std::string sName = GetParam().sName;
    EXPECT_EQ(property(field("Shape", FieldType::Geometry), "DataProperty='FieldType'"),
              sName.starts_with("vemi") ? "<F><V>" + sName + "</V></F>" : "<F><V/></F>");
}

INSTANTIATE_TEST_SUITE_P(
    Codes, ShapeTypeCode,
    ::testing::Values(TypeCase{"vemiGeometryPoint", 1}, TypeCase{"vemiGeometryMultipoint", 2},
                      TypeCase{"vemiGeometryPolyline", 3}, TypeCase{"vemiGeometryPolygon", 4},
                      TypeCase{"vemiGeometryLine", 13}, TypeCase{"Zero", 0}, TypeCase{"Five", 5}),
    nameOfParameter<TypeCase>);

TEST_F(FieldTest, TakesTheShapeTypeOfTheCurrentClassNotOfTheClassHandedIn) {
    state.pFeatureClass = MemoryFeatureClass::make("Points", ShapeType::Point, {});
    EXPECT_EQ(
        exported(
            "<f Name='Fields' Entries='Multiple'><t Name='F'><y Name='Y' DataProperty='FieldType'/></t></f>"),
        "<Fields><F><Y>vemiFieldTypeOID</Y></F><F><Y>vemiGeometryPoint</Y></F>"
        "<F><Y>vemiFieldTypeString</Y></F></Fields>");
}

// ---- The driver ----

TEST_F(FieldTest, WritesOneElementPerFieldInTheOrderOfTheFields) {
    EXPECT_EQ(exported(sRepeated), "<Fields><Field type=\"vemiFieldTypeOID\"><Name>FID</Name></Field>"
                                   "<Field type=\"vemiGeometryPolygon\"><Name>Shape</Name></Field>"
                                   "<Field type=\"vemiFieldTypeString\"><Name>NAME</Name></Field></Fields>");
    EXPECT_EQ(observer.lItems, 3);
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(FieldTest, RepeatsEachChildOverAllFields) {
    EXPECT_EQ(
        exported("<f Name='Fields' Entries='Multiple'><a Name='A'><n Name='N' DataProperty='FieldName'/></a>"
                 "<b Name='B'/></f>"),
        "<Fields><A><N>FID</N></A><A><N>Shape</N></A><A><N>NAME</N></A><B/><B/><B/></Fields>");
}

TEST_F(FieldTest, OverwritesTheOneAttributeOfAChildThatTargetsOne) {
    EXPECT_EQ(exported("<f Name='Fields' Entries='Multiple'><a Name='a' Target='Attribute'>"
                       "<n Name='n' Target='Attribute' DataProperty='FieldName'/></a></f>"),
              "<Fields a=\"\" n=\"NAME\"/>");
}

TEST_F(FieldTest, WritesNothingUnlessTheNodesOwnEntriesAreMultiple) {
    ControlAttributes inherited;
    inherited.sEntries = "Multiple";
    ExportFields(state, pRoads, control("<f Name='Fields'><t Name='F'/></f>", inherited), element("Fields"));
    EXPECT_EQ(written(), "<Fields/>");
    EXPECT_EQ(exported("<f Name='Fields' Entries='multiple'><t Name='F'/></f>"), "<Fields/><Fields/>");
}

TEST_F(FieldTest, WritesNothingForANodeWithoutChildren) {
    EXPECT_EQ(exported("<f Name='Fields' Entries='Multiple' DataProperty='FieldName'/>"), "<Fields/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(FieldTest, LosesOnlyThePropertyThatCannotBeRead) {
    pHost->faults().failAt("GisField.name", 2);
    EXPECT_EQ(
        exported("<f Name='Fields' Entries='Multiple'><t Name='F'><n Name='N' DataProperty='FieldName'/>"
                 "<l Name='L' DataProperty='FieldLength'/></t></f>"),
        "<Fields><F><N>FID</N><L>0</L></F><F><L>0</L></F><F><N>NAME</N><L>40</L></F></Fields>");
    EXPECT_EQ(state.lModErrNum, 1004);
}

TEST_F(FieldTest, EndsWhenTheFieldsCannotBeRead) {
    pHost->faults().failAt("GisTable.fields");
    EXPECT_EQ(exported(sRepeated), "<Fields/>");
    EXPECT_EQ(state.lModErrNum, 1004);
}

TEST_F(FieldTest, FailsForTheTypeOfAGeometryFieldWhereNoFeatureClassIsCurrent) {
    state.pFeatureClass.reset();
    EXPECT_EQ(property(field("Shape", FieldType::Geometry), "DataProperty='FieldType'"), "<F/>");
    EXPECT_EQ(state.lModErrNum, static_cast<std::int32_t>(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(property(field("NAME", FieldType::String), "DataProperty='FieldName'"),
              "<F/><F><V>NAME</V></F>");
}

TEST_F(FieldTest, FailsForAPropertyWhoseOutputHasNoNameThatXmlAllows) {
    const MemoryField writtenField(field("NAME", FieldType::String));
    ExportFieldProperty(state, writtenField, control("<v Name='1' DataProperty='FieldName'/>"), element("F"));
    EXPECT_EQ(written(), "<F/>");
    EXPECT_EQ(state.lModErrNum, static_cast<std::int32_t>(FailureNumber::ObjectVariableNotSet));
}

} // namespace
} // namespace halvane::test
