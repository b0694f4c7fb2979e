// The relationship classes of a data source.

#include "exporters/ExporterTest.h"

namespace halvane::test {
namespace {

using host::memory::MemoryFeatureClass;
using host::memory::MemoryFeatureLayer;
using host::memory::MemoryRelationshipClass;
using host::memory::MemoryWorkspace;
using host::memory::RelationshipDefinition;

RelationshipDefinition fullDefinition() {
    RelationshipDefinition definition;
    definition.sName = "RoadSigns";
    definition.sForwardPathLabel = "has signs";
    definition.sBackwardPathLabel = "stands at";
    definition.sFeatureDatasetName = "Traffic";
    definition.bAttributed = true;
    definition.bComposite = false;
    definition.lNotification = 3;
    definition.lCardinality = 2;
    definition.sOriginClassName = "Roads";
    definition.sDestinationClassName = "Signs";
    definition.sOriginPrimaryKey = "ROAD_ID";
    definition.sOriginForeignKey = "ROAD_REF";
    definition.sDestinationPrimaryKey = "SIGN_ID";
    definition.sDestinationForeignKey = "SIGN_REF";
    return definition;
}

class RelationshipTest : public ExporterTest {
protected:
    RelationshipTest() {
        pWorkspace->add(pRoads);
        state.pFeatureLayer = MemoryFeatureLayer::make("Roads", pRoads);
    }

    void addClass(const std::string& sName) {
        RelationshipDefinition definition;
        definition.sName = sName;
        pWorkspace->add(MemoryRelationshipClass::make(std::move(definition)));
    }
    std::string property(const RelationshipDefinition& definition, const std::string& sAttributes) {
        ExportRelationshipProperty(state, MemoryRelationshipClass(definition),
                                   control("<v Name='V' " + sAttributes + "/>"), element("R"));
        return written();
    }
    std::string exported(const std::string& sControl, const std::string& sElement = "R") {
        OutputElement oElement = element(sElement);
        ExportRelationshipClasses(state, control(sControl), oElement);
        return written();
    }
    static std::string repeated(const std::string& sChildren) {
        return "<r Name='R' DataSource='Relationship'>" + sChildren + "</r>";
    }

    host::memory::MemoryWorkspacePtr pWorkspace = MemoryWorkspace::make("D:\\data.mdb", 1);
    host::memory::MemoryFeatureClassPtr pRoads =
        MemoryFeatureClass::make("Roads", host::ShapeType::Polyline, {});
    static constexpr const char* sNameChild = "<n Name='N' DataProperty='RelationshipName'/>";
};

// ---- Properties ----

class RelationshipProperty : public RelationshipTest, public ::testing::WithParamInterface<PropertyCase> {};

TEST_P(RelationshipProperty, IsWrittenAsAnElement) {
    const std::string sText = GetParam().sText;
    EXPECT_EQ(property(fullDefinition(), std::string("DataProperty='") + GetParam().sName + "'"),
              sText.empty() ? "<R><V/></R>" : "<R><V>" + sText + "</V></R>");
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_TRUE(observer.aNotices.empty());
}

TEST_P(RelationshipProperty, IsWrittenAsAnAttributeAndRecognisedInLowerCase) {
    EXPECT_EQ(
        property(fullDefinition(), "Target='Attribute' DataProperty='" + lowerCase(GetParam().sName) + "'"),
        std::string("<R V=\"") + GetParam().sText + "\"/>");
}

INSTANTIATE_TEST_SUITE_P(
    All, RelationshipProperty,
    ::testing::Values(
        PropertyCase{"RelationshipName", "RoadSigns"}, PropertyCase{"ForwardPathLabel", "has signs"},
        PropertyCase{"FeatureDataset", "Traffic"}, PropertyCase{"IsAttibuted", "True"},
        PropertyCase{"IsComposite", "False"}, PropertyCase{"Notification", "vemiRelNotificationBackward"},
        PropertyCase{"RelationshipRules", ""}, PropertyCase{"BackwardPathLabel", "stands at"},
        PropertyCase{"Cardinality", "vemiRelCardinalityOneToMany"},
        PropertyCase{"DestinationClassName", "Signs"}, PropertyCase{"OriginClassName", "Roads"},
        PropertyCase{"DestinationForeignKey", "SIGN_REF"}, PropertyCase{"DestinationPrimaryKey", "SIGN_ID"},
        PropertyCase{"OriginForeignKey", "ROAD_REF"}, PropertyCase{"OriginPrimaryKey", "ROAD_ID"}),
    nameOfParameter<PropertyCase>);

TEST_F(RelationshipTest, WritesBothValuesOfEachFlag) {
    RelationshipDefinition definition;
    definition.bComposite = true;
    EXPECT_EQ(property(definition, "DataProperty='IsComposite'"), "<R><V>True</V></R>");
    EXPECT_EQ(property(definition, "DataProperty='IsAttibuted'"), "<R><V>True</V></R><R><V>False</V></R>");
}

TEST_F(RelationshipTest, DoesNotRecogniseTheCorrectSpellingOfTheAttributedFlag) {
    EXPECT_EQ(property(fullDefinition(), "DataProperty='IsAttributed'"), "<R><V/></R>");
    EXPECT_TRUE(observer.noticed("V", Notice::UnknownProperty));
}

TEST_F(RelationshipTest, WritesAnEmptyValueForAnUnknownPropertyAsElementAndAttribute) {
    EXPECT_EQ(property(fullDefinition(), "DataProperty='NoSuch'"), "<R><V/></R>");
    EXPECT_EQ(property(fullDefinition(), "Target='Attribute'"), "<R><V/></R><R V=\"\"/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(RelationshipTest, WritesAnEmptyFeatureDatasetForAClassOutsideAny) {
    EXPECT_EQ(property(RelationshipDefinition{}, "DataProperty='FeatureDataset'"), "<R><V/></R>");
}

struct CodeCase {
    const char* sName;
    std::int32_t lCode;
    const char* sXml;
};

class NotificationCode : public RelationshipTest, public ::testing::WithParamInterface<CodeCase> {};

TEST_P(NotificationCode, HasItsLiteral) {
    auto definition = fullDefinition();
    definition.lNotification = GetParam().lCode;
    EXPECT_EQ(property(definition, "DataProperty='Notification'"), GetParam().sXml);
}

INSTANTIATE_TEST_SUITE_P(All, NotificationCode,
                         ::testing::Values(CodeCase{"Zero", 0, "<R><V/></R>"},
                                           CodeCase{"None", 1, "<R><V>vemiRelNotificationNone</V></R>"},
                                           CodeCase{"Forward", 2, "<R><V>vemiRelNotificationForward</V></R>"},
                                           CodeCase{"Backward", 3,
                                                    "<R><V>vemiRelNotificationBackward</V></R>"},
                                           CodeCase{"Both", 4, "<R><V>vemiRelNotificationBoth</V></R>"},
                                           CodeCase{"Five", 5, "<R><V/></R>"}),
                         nameOfParameter<CodeCase>);

class CardinalityCode : public RelationshipTest, public ::testing::WithParamInterface<CodeCase> {};

TEST_P(CardinalityCode, HasItsLiteral) {
    auto definition = fullDefinition();
    definition.lCardinality = GetParam().lCode;
    EXPECT_EQ(property(definition, "DataProperty='Cardinality'"), GetParam().sXml);
}

INSTANTIATE_TEST_SUITE_P(
    All, CardinalityCode,
    ::testing::Values(CodeCase{"Zero", 0, "<R><V/></R>"},
                      CodeCase{"OneToOne", 1, "<R><V>vemiRelCardinalityOneToOne</V></R>"},
                      CodeCase{"OneToMany", 2, "<R><V>vemiRelCardinalityOneToMany</V></R>"},
                      CodeCase{"ManyToMany", 3, "<R><V>vemiRelCardinalityManyToMany</V></R>"},
                      CodeCase{"Four", 4, "<R><V/></R>"}),
    nameOfParameter<CodeCase>);

// ---- The driver ----

TEST_F(RelationshipTest, WritesOneElementPerClassWithThePropertiesOfTheChildren) {
    addClass("A");
    addClass("B");
    EXPECT_EQ(
        exported(repeated(std::string(sNameChild) +
                          "<c Name='c' Target='Attribute' DataProperty='Cardinality'/>")),
        "<R c=\"vemiRelCardinalityOneToOne\"><N>A</N></R><R c=\"vemiRelCardinalityOneToOne\"><N>B</N></R>");
    EXPECT_EQ(observer.lItems, 2);
}

TEST_F(RelationshipTest, GivesALeafOneElementPerClassToo) {
    addClass("A");
    addClass("B");
    EXPECT_EQ(exported("<r Name='R' DataSource='Relationship' DataProperty='RelationshipName'/>"),
              "<R><R>A</R></R><R><R>B</R></R>");
}

TEST_F(RelationshipTest, NamesTheLastCopyToItsCaller) {
    addClass("A");
    addClass("B");
    OutputElement oElement = element("R");
    ExportRelationshipClasses(state, control(repeated(sNameChild)), oElement);
    EXPECT_EQ(oElement.node(), oRoot.lastChild());
    EXPECT_EQ(oElement.node().xml(), "<R><N>B</N></R>");
}

TEST_F(RelationshipTest, WritesNothingForADataSourceWithoutRelationshipClasses) {
    EXPECT_EQ(exported(repeated(sNameChild)), "<R/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(RelationshipTest, WritesNothingForAnotherKindOfDataSource) {
    addClass("A");
    EXPECT_EQ(exported(std::string("<r Name='R' DataSource='Workspace'>") + sNameChild + "</r>"), "<R/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(RelationshipTest, OpensTheDataLocationWithoutACurrentLayer) {
    addClass("A");
    state.pFeatureLayer.reset();
    pHost->registerWorkspace("D:\\data.mdb", pWorkspace);
    EXPECT_EQ(exported(std::string("<r Name='R' DataSource='Relationship' DataLocation='D:\\data.mdb'>") +
                       sNameChild + "</r>"),
              "<R><N>A</N></R>");
}

TEST_F(RelationshipTest, IsRecordedAsAFailureWhenTheDataLocationCannotBeOpened) {
    state.pFeatureLayer.reset();
    EXPECT_EQ(exported(std::string("<r Name='R' DataSource='Relationship' DataLocation='D:\\none.mdb'>") +
                       sNameChild + "</r>"),
              "<R/>");
    EXPECT_NE(state.lModErrNum, 0);
}

TEST_F(RelationshipTest, InheritsItsDataSourceFromTheAttributesHandedIn) {
    addClass("A");
    ControlAttributes inherited;
    inherited.sDataSource = "Relationship";
    OutputElement oElement = element("R");
    ExportRelationshipClasses(state, control(std::string("<r Name='R'>") + sNameChild + "</r>", inherited),
                              oElement);
    EXPECT_EQ(written(), "<R><N>A</N></R>");
}

// ---- Failures ----

TEST_F(RelationshipTest, CountsPropertyCallsAndClassesAgainstTheLimit) {
    for (const char* sName : {"A", "B", "C", "D"})
        addClass(sName);
    state.options.lItemLimit = 4;
    // A and B count two each; the one child of C passes the limit.
    EXPECT_EQ(exported(repeated(sNameChild)), "<R><N>A</N></R><R><N>B</N></R><R><N>C</N></R>");
    EXPECT_EQ(state.lModErrNum, 6);
}

TEST_F(RelationshipTest, CountsOnlyClassesForALeaf) {
    for (const char* sName : {"A", "B", "C", "D"})
        addClass(sName);
    state.options.lItemLimit = 2;
    EXPECT_EQ(exported("<r Name='R' DataSource='Relationship' DataProperty='RelationshipName'/>"),
              "<R><R>A</R></R><R><R>B</R></R><R><R>C</R></R>");
    EXPECT_EQ(state.lModErrNum, 6);
}

TEST_F(RelationshipTest, LosesOnlyThePropertyThatCannotBeRead) {
    addClass("A");
    addClass("B");
    pHost->faults().failAt("GisRelationshipClass.name");
    EXPECT_EQ(exported(repeated(std::string(sNameChild) + "<c Name='C' DataProperty='RelationshipRules'/>")),
              "<R><C/></R><R><N>B</N><C/></R>");
    EXPECT_EQ(state.lModErrNum, 1004);
}

TEST_F(RelationshipTest, EndsWhenTheEnumerationFailsAndKeepsWhatWasWritten) {
    addClass("A");
    addClass("B");
    pHost->faults().failAt("next", 2);
    EXPECT_EQ(exported(repeated(sNameChild)), "<R><N>A</N></R>");
    EXPECT_EQ(state.lModErrNum, 1004);
}

} // namespace
} // namespace halvane::test
