// Lengths, nodes and vertices of features.

#include "exporters/GeometryTest.h"

namespace halvane::test {
namespace {

using host::ShapeType;
using host::memory::MemoryGeometry;
using host::memory::Part;

// ---- The driver ----

TEST_F(GeometryTest, WritesOneElementPerFeatureBesideTheFirst) {
    addRoad(straightLine(5));
    addRoad(straightLine(7.5));
    EXPECT_EQ(
        exported(
            "<g Name='Len' DataSource='Geometry.Length'><v Name='L' DataProperty='Geometry.Length'/></g>"),
        "<Len><L>5</L></Len><Len><L>7.5</L></Len>");
    EXPECT_EQ(observer.lItems, 2);
}

TEST_F(GeometryTest, WritesALeafsLengthAsTheTextOfTheFeaturesElement) {
    addRoad(straightLine(5));
    addRoad(straightLine(7.5));
    EXPECT_EQ(exported("<g Name='Len' DataSource='Geometry.Length' DataProperty='Geometry.Length'/>"),
              "<Len>5</Len><Len>7.5</Len>");
}

TEST_F(GeometryTest, CallsTheWriterForEachChildInOrder) {
    addRoad(straightLine(5), std::string("High Street"));
    EXPECT_EQ(
        exported("<g Name='Len' DataSource='Geometry.Length'><v Name='L' DataProperty='Geometry.Length'/>"
                 "<n Name='Name' DataSource='FeatureAttributes' DataProperty='NAME'/>"
                 "<v Name='again' Target='Attribute' DataProperty='Geometry.Length'/></g>"),
        "<Len again=\"5\"><L>5</L><Name>High Street</Name></Len>");
}

TEST_F(GeometryTest, WritesOnlySelectedFeaturesInSelectionOrder) {
    addRoad(straightLine(1));
    addRoad(straightLine(2));
    addRoad(straightLine(3));
    pLayer->select({3, 1});
    EXPECT_EQ(exported(lengthControl), "<Len>3</Len><Len>1</Len>");
}

TEST_F(GeometryTest, WritesOnlyTheFeatureHandedIn) {
    addRoad(straightLine(1));
    addRoad(straightLine(2));
    EXPECT_EQ(exported(lengthControl, row(1)), "<Len>2</Len>");
    EXPECT_EQ(observer.lItems, 0) << "the feature is the item of the node that handed it in";
}

TEST_F(GeometryTest, WritesNothingWithoutACurrentLayer) {
    addRoad(straightLine(1));
    state.pFeatureLayer.reset();
    EXPECT_EQ(exported(lengthControl), "<Len/>");
    EXPECT_EQ(exported(lengthControl, row(0)), "<Len/><Len/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(GeometryTest, MakesEmptyElementsForAKindInOtherLetterCaseAndTellsSo) {
    addRoad(straightLine(1));
    addRoad(straightLine(2));
    EXPECT_EQ(exported("<g Name='Len' DataSource='geometry.length' DataProperty='Geometry.Length'/>"),
              "<Len/><Len/>");
    EXPECT_TRUE(observer.noticed("Len", Notice::RepeatIsSilent));
}

TEST_F(GeometryTest, LeavesTheHandedInElementWithoutFeatures) {
    EXPECT_EQ(exported(lengthControl), "<Len/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(GeometryTest, InheritsTheKindTheMeasureFieldAndTheDecimalPlaces) {
    addRoad(straightLine(1.0 / 3));
    OutputElement oElement = element("Len");
    ControlAttributes inherited;
    inherited.sDataSource = "Geometry.Length";
    inherited.sDecimalPlace = "2";
    ExportGeometry(state, control("<g Name='Len' DataProperty='Geometry.Length'/>", inherited), oElement,
                   nullptr);
    EXPECT_EQ(written(), "<Len>0.33</Len>");
}

TEST_F(GeometryTest, NamesTheLastCopyToItsCaller) {
    addRoad(straightLine(1));
    addRoad(straightLine(2));
    OutputElement oElement = element("Len");
    ExportGeometry(state, control(lengthControl), oElement, nullptr);
    EXPECT_EQ(oElement.node(), oRoot.lastChild());
    EXPECT_EQ(oElement.node().text(), "2");
}

TEST_F(GeometryTest, EndsWithAnOverflowAfterTheItemThatPassesTheLimit) {
    state.options.lItemLimit = 2;
    for (int i = 1; i <= 5; ++i)
        addRoad(straightLine(i));
    EXPECT_EQ(exported(lengthControl), "<Len>1</Len><Len>2</Len><Len>3</Len>");
    EXPECT_EQ(state.lModErrNum, 6);
}

TEST_F(GeometryTest, EndsWhenTheCursorFailsAndKeepsWhatWasWritten) {
    addRoad(straightLine(1));
    addRoad(straightLine(2));
    pHost->faults().failAt("nextRow", 2);
    EXPECT_EQ(exported(lengthControl), "<Len>1</Len>");
    EXPECT_EQ(state.lModErrNum, 1004);
}

TEST_F(GeometryTest, EndsAtTheSecondFeatureWhenItsElementCannotBeMade) {
    addRoad(straightLine(1));
    addRoad(straightLine(2));
    EXPECT_EQ(
        exported("<g Name='1' DataSource='Geometry.Length' DataProperty='Geometry.Length'/>", nullptr, "Len"),
        "<Len>1</Len>");
    EXPECT_NE(state.lModErrNum, 0);
}

// ---- Lengths ----

struct LengthCase {
    const char* sName;
    host::GisGeometryPtr pShape;
    const char* sLength;
};

class ShapeLength : public GeometryTest, public ::testing::WithParamInterface<LengthCase> {};

TEST_P(ShapeLength, DependsOnTheKindOfShape) {
    addRoad(GetParam().pShape);
    EXPECT_EQ(
        exported(
            "<g Name='Len' DataSource='Geometry.Length'><v Name='L' DataProperty='Geometry.Length'/></g>"),
        std::string("<Len>") + GetParam().sLength + "</Len>");
    EXPECT_EQ(state.lModErrNum, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ShapeLength,
    ::testing::Values(
        LengthCase{"Polyline", MemoryGeometry::polyline({{{0, 0}, {3, 4}}, {{0, 0}, {0, 2}}}), "<L>7</L>"},
        LengthCase{"Polygon", MemoryGeometry::polygon({{{0, 0}, {0, 1}, {1, 1}, {1, 0}, {0, 0}}}),
                   "<L>4</L>"},
        LengthCase{"Line",
                   std::make_shared<MemoryGeometry>(ShapeType::Line, std::vector<Part>{{{0, 0}, {3, 4}}}),
                   "<L>5</L>"},
        LengthCase{"Point", MemoryGeometry::point({1, 2}), "<L/>"},
        LengthCase{"Multipoint", MemoryGeometry::multipoint({{1, 2}, {5, 6}}), "<L/>"},
        LengthCase{"NullShape", MemoryGeometry::empty(ShapeType::Null), "<L/>"},
        LengthCase{
            "UnknownKind",
            std::make_shared<MemoryGeometry>(static_cast<ShapeType>(99), std::vector<Part>{{{0, 0}, {3, 4}}}),
            "<L/>"},
        LengthCase{"NoShape", nullptr, "<L/>"}),
    nameOfParameter<LengthCase>);

TEST_F(GeometryTest, FormatsLengthsWithTheDecimalPlacesAskedFor) {
    addRoad(straightLine(2.0 / 3));
    EXPECT_EQ(
        exported(
            "<g Name='Len' DecimalPlace='3' DataSource='Geometry.Length' DataProperty='Geometry.Length'/>"),
        "<Len>0.667</Len>");
}

TEST_F(GeometryTest, IgnoresDecimalPlacesThatAreNotNumeric) {
    addRoad(straightLine(2.0 / 3));
    EXPECT_EQ(
        exported(
            "<g Name='Len' DecimalPlace='abc' DataSource='Geometry.Length' DataProperty='Geometry.Length'/>"),
        "<Len>0.666666666666667</Len>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(GeometryTest, WritesAnEmptyLengthForAPropertyInOtherLetterCaseAndTellsSo) {
    addRoad(straightLine(2));
    EXPECT_EQ(
        exported(
            "<g Name='Len' DataSource='Geometry.Length'><v Name='L' DataProperty='geometry.length'/></g>"),
        "<Len><L/></Len>");
    EXPECT_TRUE(observer.noticed("L", Notice::UnknownProperty));
}

TEST_F(GeometryTest, WritesALeafsLengthThatTargetsAnAttributeAsOne) {
    addRoad(straightLine(5));
    EXPECT_EQ(
        exported(
            "<g Name='len' Target='Attribute' DataSource='Geometry.Length' DataProperty='Geometry.Length'/>",
            nullptr, "Road"),
        "<Road len=\"5\"/>");
}

// ---- The feature's attributes ----

struct AttributeCase {
    const char* sName;
    const char* sDataSource;
    const char* sKind;
};

class AttributeOfFeature : public GeometryTest, public ::testing::WithParamInterface<AttributeCase> {
protected:
    std::string attribute(const std::string& sProperty) {
        exported(std::string("<g Name='G' DecimalPlace='1' DataSource='") + GetParam().sKind +
                 "'><v Name='V' DataSource='" + GetParam().sDataSource + "' DataProperty='" + sProperty +
                 "'/></g>");
        const Node oValue = oRoot.selectSingleNode("//V");
        return oValue ? oValue.text() : "(not written)";
    }
};

TEST_P(AttributeOfFeature, IsWrittenAsTextOrAsAFormattedNumber) {
    addRoad(straightLine(5), std::string("High Street"), 12.34);
    EXPECT_EQ(attribute("name"), "High Street");
}

TEST_P(AttributeOfFeature, IsFormattedWithTheDecimalPlacesWhenItIsANumberWithDecimals) {
    addRoad(straightLine(5), std::string("High Street"), 12.34);
    EXPECT_EQ(attribute("KM"), "12.3");
}

TEST_P(AttributeOfFeature, IsEmptyWhenItIsNull) {
    addRoad(straightLine(5), Null{}, Null{});
    EXPECT_EQ(attribute("KM"), "");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_P(AttributeOfFeature, IsEmptyWhenThereIsNoSuchField) {
    addRoad(straightLine(5));
    EXPECT_EQ(attribute("NOSUCH"), "");
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_TRUE(observer.noticed("V", Notice::FieldNotFound));
}

INSTANTIATE_TEST_SUITE_P(
    Writers, AttributeOfFeature,
    ::testing::Values(AttributeCase{"LengthAttributes", "FeatureAttributes", "Geometry.Length"},
                      AttributeCase{"LengthTable", "FeatureTable", "Geometry.Length"},
                      AttributeCase{"NodeAttributes", "FeatureAttributes", "Geometry.FromNode"},
                      AttributeCase{"NodeTable", "FeatureTable", "Geometry.FromNode"},
                      AttributeCase{"VertexAttributes", "FeatureAttributes", "Geometry.Vertice"},
                      AttributeCase{"VertexTable", "FeatureTable", "Geometry.Vertice"}),
    nameOfParameter<AttributeCase>);

// ---- Nodes ----

struct NodeCase {
    const char* sName;
    const char* sXml;
};

class NodeOfShape : public GeometryTest, public ::testing::WithParamInterface<NodeCase> {
protected:
    std::string node() {
        return exported(std::string("<g Name='N' DataSource='Geometry.") + GetParam().sName +
                        "'><x Name='X' DataProperty='Geometry.X'/><y Name='Y' DataProperty='Geometry.Y'/>"
                        "<z Name='Z' DataProperty='Geometry.Z'/></g>");
    }
};

TEST_P(NodeOfShape, IsAnEndOfALine) {
    addRoad(MemoryGeometry::polyline({{{1, 2, 3}, {4, 5, 6}}, {{7, 8, 9}, {10, 11, 12}}}));
    EXPECT_EQ(node(), GetParam().sXml);
}

TEST_P(NodeOfShape, IsThePointItselfForAPoint) {
    addRoad(MemoryGeometry::point({1.5, 2.5, 3.5}));
    EXPECT_EQ(node(), "<N><X>1.5</X><Y>2.5</Y><Z>3.5</Z></N>");
}

TEST_P(NodeOfShape, HasAnEmptyZWhereTheShapeHasNone) {
    addRoad(MemoryGeometry::point({1.5, 2.5}));
    EXPECT_EQ(node(), "<N><X>1.5</X><Y>2.5</Y><Z/></N>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_P(NodeOfShape, IsEmptyForAFeatureWithoutAShapeOrWithAnEmptyOne) {
    addRoad(nullptr);
    addRoad(MemoryGeometry::empty(ShapeType::Polyline));
    EXPECT_EQ(node(), "<N><X/><Y/><Z/></N><N><X/><Y/><Z/></N>");
    EXPECT_EQ(state.lModErrNum, 0);
}

INSTANTIATE_TEST_SUITE_P(Kinds, NodeOfShape,
                         ::testing::Values(NodeCase{"Point", "<N><X>1</X><Y>2</Y><Z>3</Z></N>"},
                                           NodeCase{"FromNode", "<N><X>1</X><Y>2</Y><Z>3</Z></N>"},
                                           NodeCase{"ToNode", "<N><X>10</X><Y>11</Y><Z>12</Z></N>"},
                                           NodeCase{"EndPoint", "<N><X>10</X><Y>11</Y><Z>12</Z></N>"}),
                         nameOfParameter<NodeCase>);

TEST_F(GeometryTest, LetsAChildNameTheOtherEndOfTheLine) {
    addRoad(MemoryGeometry::polyline({{{1, 2}, {4, 5}}}));
    EXPECT_EQ(exported("<g Name='N' DataSource='Geometry.ToNode'><a Name='A' DataSource='Geometry.FromNode' "
                       "DataProperty='Geometry.X'/><b Name='B' DataProperty='Geometry.X'/>"
                       "<c Name='C' DataSource='Geometry.Point' DataProperty='Geometry.Y'/></g>"),
              "<N><A>1</A><B>4</B><C>2</C></N>");
    oRoot.setText("");
    EXPECT_EQ(exported("<g Name='N' DataSource='Geometry.FromNode'><a Name='A' DataSource='Geometry.ToNode' "
                       "DataProperty='Geometry.X'/><b Name='B' DataProperty='Geometry.X'/></g>"),
              "<N><A>4</A><B>1</B></N>");
}

TEST_F(GeometryTest, WritesALeafNodesCoordinateAsAnElementOfTheSameNameInside) {
    addRoad(MemoryGeometry::point({1, 2}));
    addRoad(MemoryGeometry::point({3, 4}));
    EXPECT_EQ(exported("<g Name='X' DataSource='Geometry.Point' DataProperty='Geometry.X'/>"),
              "<X><X>1</X></X><X><X>3</X></X>");
}

TEST_F(GeometryTest, FormatsCoordinatesWithTheDecimalPlacesAskedFor) {
    addRoad(MemoryGeometry::point({1.0 / 3, 2.0 / 3}));
    EXPECT_EQ(
        exported("<g Name='N' DecimalPlace='4' DataSource='Geometry.Point'>"
                 "<x Name='x' Target='Attribute' DataProperty='Geometry.X'/><y Name='Y' DecimalPlace='1' "
                 "DataProperty='Geometry.Y'/></g>"),
        "<N x=\"0.3333\"><Y>0.6667</Y></N>")
        << "only vertices heed a child's own decimal places";
}

TEST_F(GeometryTest, WritesAnEmptyValueForAMeasureOfANodeAndTellsSo) {
    addRoad(MemoryGeometry::point({1, 2, 3, 4}));
    EXPECT_EQ(
        exported("<g Name='N' DataSource='Geometry.Point'><m Name='M' DataProperty='Geometry.Measure'/></g>"),
        "<N><M/></N>");
    EXPECT_TRUE(observer.noticed("M", Notice::UnknownProperty));
}

// ---- Failures of writers ----

struct FailingWriter {
    const char* sName;
    const char* sOperation;
    const char* sControl;
    const char* sXml;
};

class WriterFailure : public GeometryTest, public ::testing::WithParamInterface<FailingWriter> {};

TEST_P(WriterFailure, LosesOneValueAndIsRecordedAtItsNode) {
    addRoad(straightLine(5), std::string("High Street"));
    pHost->faults().failAt(GetParam().sOperation);
    EXPECT_EQ(exported(GetParam().sControl), GetParam().sXml);
    EXPECT_EQ(state.lModErrNum, 1004);
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures[0].sName, "A");
}

INSTANTIATE_TEST_SUITE_P(
    Writers, WriterFailure,
    ::testing::Values(
        FailingWriter{"Length", "GisGeometry.length",
                      "<g Name='G' DataSource='Geometry.Length'><a Name='A' DataProperty='Geometry.Length'/>"
                      "<b Name='B' DataProperty='Geometry.Length'/></g>",
                      "<G><B>5</B></G>"},
        FailingWriter{"Node", "GisPoint.x",
                      "<g Name='G' DataSource='Geometry.ToNode'><a Name='A' DataProperty='Geometry.X'/>"
                      "<b Name='B' DataProperty='Geometry.X'/></g>",
                      "<G><B>5</B></G>"},
        FailingWriter{"Vertex", "GisPoint.y",
                      "<g Name='G' DataSource='Geometry.Vertice'><a Name='A' DataProperty='Geometry.Y'/>"
                      "<b Name='B' DataProperty='Geometry.X'/></g>",
                      "<G><Part><G><B>0</B></G><G><A>0</A><B>5</B></G></Part></G>"}),
    nameOfParameter<FailingWriter>);

TEST_F(GeometryTest, WritesNothingForALayerWithoutAFeatureClass) {
    addRoad(straightLine(1));
    state.pFeatureClass.reset();
    EXPECT_EQ(exported(lengthControl), "<Len/>");
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_EQ(observer.lItems, 0);
}

} // namespace
} // namespace halvane::test
