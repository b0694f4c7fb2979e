// Shapes as some data has them: with coordinates that are no numbers, in parts of all kinds, without a place.

#include "exporters/second/ShapesTest.h"

#include <gmock/gmock.h>

#include <limits>

namespace halvane::test {

namespace {

using namespace host::memory;
using host::FieldType;
using host::PartRole;
using host::ShapeType;
using ::testing::HasSubstr;

constexpr double dInfinite = std::numeric_limits<double>::infinity();
constexpr double dUnknown = std::numeric_limits<double>::quiet_NaN();

class OddShapes : public ShapesTest {
protected:
    static MemoryGeometryPtr ofParts(std::vector<Part> parts, std::vector<PartRole> roles) {
        auto pShape = std::make_shared<MemoryGeometry>(ShapeType::Null, std::move(parts));
        pShape->setRoles(std::move(roles));
        return pShape;
    }
};

TEST_F(OddShapes, AreToldWhereACoordinateIsNoNumber) {
    add(MemoryGeometry::point({dInfinite, 1}));
    add(MemoryGeometry::point({1, dUnknown}));
    add(MemoryGeometry::point({1, 2, -dInfinite}));
    add(MemoryGeometry::point({1, 2, dUnknown, dInfinite}));
    EXPECT_EQ(shapes("h:Geometry='WKT'"), "<G/><G/><G/><G>POINT (1 2)</G>");
    EXPECT_EQ(failures(), "G: a shape has a coordinate that is no number\n"
                          "G: a shape has a coordinate that is no number\n"
                          "G: a shape has a coordinate that is no number\n");
    EXPECT_EQ(observer.aFailures.at(0).sContext, "the shape of row 1");
    EXPECT_EQ(inLayer("<b Name='B' h:Geometry='xmax'/>"), "");
    EXPECT_EQ(failures(), "B: a shape has a coordinate that is no number\n");
}

TEST_F(OddShapes, AreToldWhereAHoleHasNoAreaAroundIt) {
    const Part ring{{0, 0}, {1, 0}, {1, 1}, {0, 0}};
    add(ofParts({ring}, {PartRole::InnerRing}));
    add(ofParts({{{5, 5}}, ring}, {PartRole::Points, PartRole::InnerRing}));
    add(ofParts({{{0, 0}, {9, 9}}, ring}, {PartRole::Line, PartRole::InnerRing}));
    EXPECT_EQ(shapes("h:Geometry='area'"), "<G/><G/><G/>");
    EXPECT_EQ(failures(), "G: a shape has a hole without an area around it\n"
                          "G: a shape has a hole without an area around it\n"
                          "G: a shape has a hole without an area around it\n");
}

TEST_F(OddShapes, PassOverPartsWithoutPoints) {
    add(ofParts({{}, {{0, 0}, {3, 4}}, {}}, {PartRole::OuterRing, PartRole::Line, PartRole::Points}));
    EXPECT_EQ(shapes("h:Geometry='WKT'"), "<G>LINESTRING (0 0, 3 4)</G>");
    EXPECT_EQ(shapes("h:Geometry='length'"), "<G>5</G>");
    EXPECT_EQ(inLayer("<b Name='B' h:Geometry='ymax'/>"), "<B>4</B>");
}

TEST_F(OddShapes, AreCollectionsWhereTheirPartsAreOfSeveralKinds) {
    const Part ring{{0, 0}, {1, 0}, {1, 1}, {0, 0}};
    add(ofParts({{{1, 2}}, {{0, 0}, {3, 4}}}, {PartRole::Points, PartRole::Line}));
    add(ofParts({{{1, 2}}, ring}, {PartRole::Points, PartRole::OuterRing}));
    add(ofParts({{{0, 0}, {3, 4}}, ring}, {PartRole::Line, PartRole::OuterRing}));
    add(ofParts({{{1, 2}, {3, 4}}}, {PartRole::Points}));
    EXPECT_EQ(shapes("h:Geometry='type'"), "<G>GeometryCollection</G><G>GeometryCollection</G>"
                                           "<G>GeometryCollection</G><G>MultiPoint</G>");
    EXPECT_EQ(
        shapes("h:Geometry='GeoJSON' h:Limit='1'"),
        "<G>{\"type\":\"GeometryCollection\",\"geometries\":[{\"type\":\"Point\",\"coordinates\":[0,2]},"
        "{\"type\":\"LineString\",\"coordinates\":[[-1,0],[2,4]]}]}</G>");
}

TEST_F(OddShapes, AreMembersOfGmlOfEachKind) {
    add(MemoryGeometry::multipoint({{1, 2}, {3, 4}}));
    add(MemoryGeometry::polyline({{{0, 0}, {1, 1}}, {{2, 2}, {3, 3}}}));
    add(collection());
    const std::string sNamespace = "xmlns:gml=\"http://www.opengis.net/gml/3.2\"";
    pShapes->setSpatialReference(nullptr);
    EXPECT_EQ(shapes("h:Geometry='GML' h:Limit='2'"),
              "<G><gml:MultiPoint " + sNamespace +
                  "><gml:pointMember><gml:Point><gml:pos>1 2</gml:pos></gml:Point></gml:pointMember>"
                  "<gml:pointMember><gml:Point><gml:pos>3 4</gml:pos></gml:Point></gml:pointMember>"
                  "</gml:MultiPoint></G><G><gml:MultiCurve " +
                  sNamespace +
                  "><gml:curveMember><gml:LineString><gml:posList>0 0 1 1</gml:posList></gml:LineString>"
                  "</gml:curveMember><gml:curveMember><gml:LineString><gml:posList>2 2 3 3</gml:posList>"
                  "</gml:LineString></gml:curveMember></gml:MultiCurve></G>");
    EXPECT_EQ(shapes("h:Geometry='GML' h:Id='s{OID}' h:Where='OID = 3'"),
              "<G><gml:MultiGeometry " + sNamespace +
                  " gml:id=\"s3\"><gml:geometryMember><gml:Point gml:id=\"s3.1\"><gml:pos>1 2</gml:pos>"
                  "</gml:Point></gml:geometryMember><gml:geometryMember><gml:LineString gml:id=\"s3.2\">"
                  "<gml:posList>0 0 3 4</gml:posList></gml:LineString></gml:geometryMember>"
                  "<gml:geometryMember><gml:Polygon gml:id=\"s3.3\"><gml:exterior><gml:LinearRing>"
                  "<gml:posList>0 0 1 0 1 1 0 0</gml:posList></gml:LinearRing></gml:exterior></gml:Polygon>"
                  "</gml:geometryMember></gml:MultiGeometry></G>");
    EXPECT_EQ(failures(), "");
}

TEST_F(OddShapes, HaveIdentifiersWithoutAPrefix) {
    add(point(1, 2));
    for (const std::string sId : {"a:b", "1", "{OID}", ""}) {
        EXPECT_EQ(shapes("h:Geometry='GML' h:Id='" + sId + "'"), "<G/>") << sId;
        EXPECT_THAT(failures(), HasSubstr("is no name that XML allows; let it begin with a letter")) << sId;
    }
}

TEST_F(OddShapes, FollowFormatsOfNumbers) {
    add(MemoryGeometry::polyline({{{0, 0.125}, {3, 4.125}}}));
    EXPECT_EQ(shapes("h:Geometry='posList' h:Format='0.00'"), "<G>0.00 0.13 3.00 4.13</G>");
    EXPECT_EQ(shapes("h:Geometry='length' h:Format='000.0'"), "<G>005.0</G>");
    EXPECT_EQ(shapes("h:Geometry='posList' h:Format='yyyy'"), "<G>0 0.125 3 4.125</G>")
        << "a form of dates is none of numbers";
}

TEST_F(OddShapes, OfALayerThatIsNoneHaveNoBounds) {
    EXPECT_EQ(in("<b Name='B' h:Geometry='xmin'/><e Name='E' h:Geometry='GML'/>"), "<B/><E/>");
    EXPECT_TRUE(observer.noticed("B", Notice::NoCurrentLayer));
    EXPECT_TRUE(observer.noticed("E", Notice::NoCurrentLayer));
    EXPECT_EQ(in("<w Name='W' h:Geometry='WKT'/>"), "");
    EXPECT_THAT(failures(), HasSubstr("W: "));
}

TEST_F(OddShapes, HaveTheBoundsOfWhatIsSelected) {
    add(point(1, 2));
    add(point(10, 20));
    add(point(-5, 7));
    add(ObjectPtr());
    const std::string sBounds = "<b Name='B' h:Geometry='xmin'/><b Name='B' h:Geometry='ymin'/>"
                                "<b Name='B' h:Geometry='xmax'/><b Name='B' h:Geometry='ymax'/>";
    EXPECT_EQ(inLayer(sBounds), "<B>-5</B><B>2</B><B>10</B><B>20</B>");
    pLayer->select({1, 2});
    EXPECT_EQ(inLayer(sBounds), "<B>1</B><B>2</B><B>10</B><B>20</B>");
    pLayer->select({4});
    EXPECT_EQ(inLayer(sBounds), "<B/><B/><B/><B/>");
}

TEST_F(OddShapes, AreReadForBoundsUntilTheObserverEndsTheExport) {
    for (int n = 0; n < 5; ++n)
        add(point(n, n));
    (void)inLayer("<b Name='B' h:Geometry='xmin'/>");
    const int lVisits = observer.lVisits;
    ASSERT_GE(lVisits, 5);
    observer.lVisits = 0;
    observer.lCancelAtVisit = lVisits - 1;
    EXPECT_THAT(inLayer("<b Name='B' h:Geometry='xmin'/>"), HasSubstr("not saved: "));
}

TEST_F(OddShapes, WithoutAPlaceInTheCoordinatesAskedForAreNotGoneOver) {
    add(MemoryGeometry::polyline({{{0, 0}, {5e6, 0}}}));
    add(MemoryGeometry::polyline({{{0, 0}, {2, 1}}}));
    const std::string sVertices = "<r Name='R' DataSource='Feature' Entries='Multiple' h:Crs='EPSG:4258'>"
                                  "<v Name='V' h:ForEach='Vertex' DataProperty='X'/></r>";
    EXPECT_EQ(inLayer(sVertices), "<R/><R><V>20</V><V>24</V></R>");
    EXPECT_THAT(failures(), HasSubstr("V: "));
    EXPECT_THAT(observer.aFailures.at(0).sContext, HasSubstr("the shape of row 1"));
    pShapes->setSpatialReference(pDegrees);
    EXPECT_EQ(inLayer(sVertices), "<R><V>0</V><V>5000000</V></R><R><V>0</V><V>2</V></R>")
        << "nothing is transformed into what it is in";
    EXPECT_EQ(failures(), "");
}

TEST_F(OddShapes, AreMeasuredInTheCoordinatesOfTheNode) {
    add(MemoryGeometry::polyline({{{0, 0}, {3, 4}}, {{0, 0}, {0, 1}}}));
    pShapes->setSpatialReference(pOwn);
    const auto first = [&](const std::string& sKind, const std::string& sProperty) {
        return inLayer("<r Name='R' DataSource='Geometry." + sKind +
                       "' Entries='Multiple' h:Crs='EPSG:4258'><v Name='V' DataProperty='Geometry." +
                       sProperty + "'/></r>");
    };
    EXPECT_EQ(first("Length", "Length"), "<R><V>12</V></R>");
    EXPECT_EQ(first("FromNode", "X"), "<R><V>20</V></R>");
    EXPECT_EQ(first("EndPoint", "Y"), "<R><V>2</V></R>");
    EXPECT_EQ(shapes("h:Geometry='length' h:Crs='EPSG:4258'"), "<G>12</G>");
    pShapes->addRow({++lLast, ObjectPtr(MemoryGeometry::empty(ShapeType::Polyline))});
    EXPECT_EQ(first("FromNode", "X"), "<R><V>20</V></R><R><V/></R>");
    EXPECT_EQ(failures(), "");
}

} // namespace

} // namespace halvane::test
