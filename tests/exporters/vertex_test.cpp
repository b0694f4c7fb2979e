// The parts and vertices of features.

#include "exporters/GeometryTest.h"
#include "host/IExternalProcessor.h"
#include "host/Rows.h"

namespace halvane::test {
namespace {

using host::memory::MemoryGeometry;

class VertexTest : public GeometryTest {
protected:
    /// The vertices of every road, each with the values that the children name.
    std::string vertices(const std::string& sChildren, const std::string& sAttributes = "") {
        return exported("<g Name='P' DataSource='Geometry.Vertice' " + sAttributes + ">" + sChildren +
                        "</g>");
    }
    static constexpr const char* sX = "<x Name='X' DataProperty='Geometry.X'/>";
    static constexpr const char* sMeasure = "<m Name='M' DataProperty='Geometry.Measure'/>";
};

TEST_F(VertexTest, WritesOneElementPerPartHoldingOnePerVertex) {
    addRoad(MemoryGeometry::polyline({{{1, 2}, {3, 4}, {5, 6}}, {{7, 8}, {9, 10}, {11, 12}}}));
    EXPECT_EQ(vertices(sX), "<P><Part><P><X>1</X></P><P><X>3</X></P><P><X>5</X></P></Part>"
                            "<Part><P><X>7</X></P><P><X>9</X></P><P><X>11</X></P></Part></P>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(VertexTest, CallsTheWriterForEachChildAtEachVertexInOneWalk) {
    addRoad(MemoryGeometry::polyline({{{1, 2, 3, 4}, {5, 6, 7, 8}}}));
    EXPECT_EQ(
        vertices("<x Name='x' Target='Attribute' DataProperty='Geometry.X'/>"
                 "<y Name='Y' DataProperty='Geometry.Y'/><z Name='Z' DataProperty='Geometry.Z'/>"
                 "<m Name='M' DataProperty='Geometry.Measure'/>"),
        "<P><Part><P x=\"1\"><Y>2</Y><Z>3</Z><M>4</M></P><P x=\"5\"><Y>6</Y><Z>7</Z><M>8</M></P></Part></P>");
}

TEST_F(VertexTest, WritesALeafsValueAsAnElementOfTheSameNameInTheVertex) {
    addRoad(MemoryGeometry::point({1, 2}));
    EXPECT_EQ(exported("<g Name='Y' DataSource='Geometry.Vertice' DataProperty='Geometry.Y'/>"),
              "<Y><Part><Y><Y>2</Y></Y></Part></Y>");
}

TEST_F(VertexTest, WritesTheVerticesOfPointsMultipointsAndRings) {
    addRoad(MemoryGeometry::point({1, 2}));
    addRoad(MemoryGeometry::multipoint({{1, 2}, {3, 4}}));
    addRoad(MemoryGeometry::polygon({{{0, 0}, {0, 1}, {1, 1}, {0, 0}}}));
    EXPECT_EQ(vertices(sX),
              "<P><Part><P><X>1</X></P></Part></P><P><Part><P><X>1</X></P><P><X>3</X></P></Part></P>"
              "<P><Part><P><X>0</X></P><P><X>0</X></P><P><X>1</X></P><P><X>0</X></P></Part></P>");
}

TEST_F(VertexTest, ReplacesWhatTheElementHeldBefore) {
    addRoad(MemoryGeometry::point({1, 2}));
    OutputElement oElement = element("P");
    oElement.node().setAttribute("kept", "yes");
    oElement.node().appendChild(newOutputElement(state, "Old"));
    oElement.node().appendChild(newOutputElement(state, "Older"));
    ExportGeometry(
        state,
        control("<g Name='P' DataSource='Geometry.Vertice'><x Name='X' DataProperty='Geometry.X'/></g>"),
        oElement, nullptr);
    EXPECT_EQ(written(), "<P kept=\"yes\"><Part><P><X>1</X></P></Part></P>");
}

TEST_F(VertexTest, KeepsWhatTheElementHeldWhenTheShapeHasNoPart) {
    addRoad(nullptr);
    OutputElement oElement = element("P");
    oElement.node().appendChild(newOutputElement(state, "Old"));
    ExportGeometry(state, control("<g Name='P' DataSource='Geometry.Vertice' DataProperty='Geometry.X'/>"),
                   oElement, nullptr);
    EXPECT_EQ(written(), "<P><Old/></P>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(VertexTest, PutsALaterFeatureUnderTheParentThatTheFirstHad) {
    addRoad(MemoryGeometry::point({1, 2}));
    addRoad(MemoryGeometry::point({3, 4}));
    EXPECT_EQ(vertices(sX), "<P><Part><P><X>1</X></P></Part></P><P><Part><P><X>3</X></P></Part></P>");
}

TEST_F(VertexTest, NamesTheLastVertexToItsCaller) {
    addRoad(MemoryGeometry::polyline({{{1, 2}, {3, 4}}}));
    OutputElement oElement = element("P");
    ExportGeometry(
        state,
        control("<g Name='P' DataSource='Geometry.Vertice'><x Name='X' DataProperty='Geometry.X'/></g>"),
        oElement, nullptr);
    EXPECT_EQ(oElement.node().xml(), "<P><X>3</X></P>");
}

TEST_F(VertexTest, WritesTheOneFeatureHandedIn) {
    addRoad(MemoryGeometry::point({1, 2}));
    addRoad(MemoryGeometry::point({3, 4}));
    EXPECT_EQ(
        exported("<g Name='P' DataSource='Geometry.Vertice'><x Name='X' DataProperty='Geometry.X'/></g>",
                 row(1)),
        "<P><Part><P><X>3</X></P></Part></P>");
}

// ---- Measures ----

TEST_F(VertexTest, TakesTheMeasureOfTheMeasureFieldForEveryVertex) {
    addRoad(MemoryGeometry::polyline({{{1, 2, 3, 4}, {5, 6, 7, 8}}}), Null{}, 12.5);
    addRoad(MemoryGeometry::point({1, 2}), Null{}, 3.25);
    EXPECT_EQ(
        vertices(sMeasure, "MeasureField='km'"),
        "<P><Part><P><M>12.5</M></P><P><M>12.5</M></P></Part></P><P><Part><P><M>3.25</M></P></Part></P>");
}

TEST_F(VertexTest, ConvertsAMeasureThatIsText) {
    addRoad(MemoryGeometry::point({1, 2}), Null{}, Null{}, std::string(" 7.50 "));
    EXPECT_EQ(vertices(sMeasure, "MeasureField='CODE'"), "<P><Part><P><M>7.5</M></P></Part></P>");
}

TEST_F(VertexTest, EndsAtAFeatureWhoseMeasureIsNoNumber) {
    addRoad(MemoryGeometry::point({1, 2}), Null{}, 1.0);
    addRoad(MemoryGeometry::point({1, 2}), Null{}, Null{});
    addRoad(MemoryGeometry::point({1, 2}), Null{}, 3.0);
    EXPECT_EQ(vertices(sMeasure, "MeasureField='KM'"), "<P><Part><P><M>1</M></P></Part></P><P/>");
    EXPECT_EQ(state.lModErrNum, 13);
}

TEST_F(VertexTest, TakesTheVerticesOwnMeasureWithoutAMeasureField) {
    addRoad(MemoryGeometry::polyline({{{1, 2, 3, 4}, {5, 6}}}));
    EXPECT_EQ(vertices(sMeasure), "<P><Part><P><M>4</M></P><P><M/></P></Part></P>");
    EXPECT_TRUE(observer.aNotices.empty());
}

TEST_F(VertexTest, TakesTheVerticesOwnMeasureWhenTheMeasureFieldIsNotFoundAndTellsSo) {
    addRoad(MemoryGeometry::point({1, 2, 3, 4}));
    EXPECT_EQ(vertices(sMeasure, "MeasureField='NOSUCH'"), "<P><Part><P><M>4</M></P></Part></P>");
    EXPECT_TRUE(observer.noticed("P", Notice::FieldNotFound));
}

// ---- Decimal places ----

TEST_F(VertexTest, PrefersAChildsOwnDecimalPlacesWhenTheyAreNumeric) {
    addRoad(MemoryGeometry::point({2.0 / 3, 2.0 / 3, 2.0 / 3}));
    EXPECT_EQ(vertices("<x Name='X' DecimalPlace='1' DataProperty='Geometry.X'/>"
                       "<y Name='Y' DecimalPlace='abc' DataProperty='Geometry.Y'/>"
                       "<z Name='Z' DecimalPlace='0' DataProperty='Geometry.Z'/>",
                       "DecimalPlace='3'"),
              "<P><Part><P><X>0.7</X><Y>0.667</Y><Z>0.666666666666667</Z></P></Part></P>");
}

TEST_F(VertexTest, WritesAnEmptyValueForAnUnknownPropertyAndTellsSo) {
    addRoad(MemoryGeometry::point({1, 2}));
    EXPECT_EQ(vertices("<x Name='X' DataProperty='geometry.x'/>"), "<P><Part><P><X/></P></Part></P>");
    EXPECT_TRUE(observer.noticed("X", Notice::UnknownProperty));
}

// ---- External processors ----

/// Tells what it finds among the resolved objects.
class VertexTeller : public IExternalProcessor {
public:
    std::string Process(dCollection& dObjects) override {
        const auto pFeature = std::dynamic_pointer_cast<host::GisRow>(dObjects.Item(std::string("Feature")));
        const auto pPoint = std::dynamic_pointer_cast<host::GisPoint>(dObjects.Item(std::string("Point")));
        return "feature " + std::to_string(pFeature->objectId()) + " x " + toText(ValueView(pPoint->x()));
    }
};

TEST_F(VertexTest, HandsTheFeatureAndThePointToAnExternalProcessor) {
    pHost->registerComponent("Test.Vertex", [] { return std::make_shared<VertexTeller>(); });
    addRoad(MemoryGeometry::polyline({{{1, 2}, {3, 4}}}));
    addRoad(MemoryGeometry::point({5, 6}));
    EXPECT_EQ(vertices("<e Name='E' DataSource='External' IdentityValue='Test.Vertex'/>"),
              "<P><Part><P><E>feature 1 x 1</E></P><P><E>feature 1 x 3</E></P></Part></P>"
              "<P><Part><P><E>feature 2 x 5</E></P></Part></P>");
}

TEST_F(VertexTest, HandsThePointOfEachVertexToAProcessorWhereNumbersAreAtHand) {
    pHost->registerComponent("Test.Vertex", [] { return std::make_shared<VertexTeller>(); });
    const auto pShape = MemoryGeometry::polyline({{{1, 2}, {3, 4}, {5, 6}}, {{7, 8}}});
    pShape->keepAtHand(2);
    addRoad(pShape);
    EXPECT_EQ(vertices("<e Name='E' DataSource='External' IdentityValue='Test.Vertex'/>"),
              "<P><Part><P><E>feature 1 x 1</E></P><P><E>feature 1 x 3</E></P><P><E>feature 1 x 5</E></P>"
              "</Part><Part><P><E>feature 1 x 7</E></P></Part></P>");
}

TEST_F(VertexTest, MakesNoPointOfNumbersAtHandButTheLast) {
    const auto pShape = MemoryGeometry::polyline({{{1, 2}, {3, 4}, {5, 6}}, {{7, 8}}});
    pShape->keepAtHand(2);
    addRoad(pShape);
    EXPECT_EQ(vertices(sX), "<P><Part><P><X>1</X></P><P><X>3</X></P><P><X>5</X></P></Part>"
                            "<Part><P><X>7</X></P></Part></P>");
    EXPECT_EQ(pHost->faults().callCount("GisGeometry.readPoints"), 3);
    EXPECT_EQ(pHost->faults().callCount("GisGeometry.point"), 1);
}

TEST_F(VertexTest, LeavesTheLastFeatureAndPointAmongTheResolvedObjectsOnce) {
    addRoad(MemoryGeometry::polyline({{{1, 2}, {3, 4}}}));
    vertices(sX);
    EXPECT_EQ(state.dCurrentObjects.collection().Count(), 2);
    const auto pPoint = objectAs<host::GisPoint>(state.dCurrentObjects.collection().GetValue("Point"));
    ASSERT_NE(pPoint, nullptr);
    EXPECT_EQ(pPoint->x(), 3);
    EXPECT_NE(objectAs<host::GisRow>(state.dCurrentObjects.collection().GetValue("Feature")), nullptr);
}

TEST_F(VertexTest, WritesAnEmptyValueForAComponentThatIsNoProcessor) {
    pHost->registerComponent("Test.Other", [] { return dCollection::create(); });
    addRoad(MemoryGeometry::point({1, 2}));
    EXPECT_EQ(vertices("<e Name='E' DataSource='External' IdentityValue='Test.Other'/>"),
              "<P><Part><P><E/></P></Part></P>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(VertexTest, LosesTheValueOfAComponentThatCannotBeCreatedAndGoesOn) {
    addRoad(MemoryGeometry::point({1, 2}));
    EXPECT_EQ(vertices(std::string("<e Name='E' DataSource='External' IdentityValue='No.Such'/>") + sX),
              "<P><Part><P><X>1</X></P></Part></P>");
    EXPECT_EQ(state.lModErrNum, 429);
}

// ---- Failures ----

TEST_F(VertexTest, EndsWhenAVertexCannotBeReadAndKeepsWhatWasWritten) {
    addRoad(MemoryGeometry::polyline({{{1, 2}, {3, 4}}, {{5, 6}}}));
    addRoad(MemoryGeometry::point({7, 8}));
    pHost->faults().failAt("GisGeometry.point", 2);
    EXPECT_EQ(vertices(sX), "<P><Part><P><X>1</X></P></Part></P>");
    EXPECT_EQ(state.lModErrNum, 1004);
    const auto pPoint = objectAs<host::GisPoint>(state.dCurrentObjects.collection().GetValue("Point"));
    ASSERT_NE(pPoint, nullptr) << "the last vertex that was read";
    EXPECT_EQ(pPoint->x(), 1);
}

TEST_F(VertexTest, WritesTheNumbersThatTheHostHasAtHandAsThoseOfItsPoints) {
    for (const std::size_t nAtHand : {0U, 1U, 2U, 3U, 10U}) {
        const auto pShape = MemoryGeometry::polyline(
            {{{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 16}, {17, 18, 19, 20}},
             {{1, 1, 2, 2}, {3, 3, 4, 4}}});
        pShape->keepAtHand(nAtHand);
        addRoad(pShape);
    }
    const std::string sAll =
        vertices("<x Name='X' DataProperty='Geometry.X'/><y Name='Y' DataProperty='Geometry.Y'/>"
                 "<z Name='Z' DataProperty='Geometry.Z'/>" +
                 std::string(sMeasure));
    const std::string sOneByOne = sAll.substr(0, sAll.size() / 5);
    EXPECT_NE(sOneByOne.find("<P><X>17</X><Y>18</Y><Z>19</Z><M>20</M></P>"), std::string::npos) << sAll;
    EXPECT_EQ(sAll, sOneByOne + sOneByOne + sOneByOne + sOneByOne + sOneByOne);
    EXPECT_EQ(state.lModErrNum, 0);
}

} // namespace
} // namespace halvane::test
