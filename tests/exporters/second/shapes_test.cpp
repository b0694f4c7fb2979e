// Shapes in the forms that schemas prescribe.

#include "exporters/second/ShapesTest.h"

#include <limits>

namespace halvane::test {
namespace {

using namespace host::memory;
using host::FieldType;
using host::PartRole;
using host::ShapeType;

class SecondEditionShapes : public ShapesTest {};

TEST_F(SecondEditionShapes, AreListsOfPositions) {
    add(point(1.5, 2));
    add(MemoryGeometry::polyline({{{0, 0}, {3, 4.25}}}));
    add(MemoryGeometry::polyline({{{0, 0, 7}, {3, 4, 8.5}}}));
    EXPECT_EQ(shapes("h:Geometry='posList'"), "<G>1.5 2</G><G>0 0 3 4.25</G><G>0 0 7 3 4 8.5</G>");
    EXPECT_EQ(shapes("h:Geometry='coordinates'"), "<G>1.5,2</G><G>0,0 3,4.25</G><G>0,0,7 3,4,8.5</G>");
    EXPECT_EQ(failures(), "");
    EXPECT_EQ(shapes("h:Geometry='pos'"), "<G>1.5 2</G><G/><G/>");
    EXPECT_EQ(failures(), "G: a LineString has no position of its own; write its centroid, or a posList\n"
                          "G: a LineString has no position of its own; write its centroid, or a posList\n");
}

TEST_F(SecondEditionShapes, AreInTheCoordinatesOfEachNodeThatWritesThem) {
    add(point(2, 4));
    add(point(6, 8));
    EXPECT_EQ(inLayer("<g Name='G' DataSource='Feature' Entries='Multiple'>"
                      "<a Name='A' h:Geometry='pos'/><b Name='B' h:Geometry='pos' h:Crs='EPSG:4258'/>"
                      "<c Name='C' h:Geometry='xmin'/></g>"),
              "<G><A>2 4</A><B>24 8</B><C>2</C></G><G><A>6 8</A><B>32 16</B><C>6</C></G>");
}

TEST_F(SecondEditionShapes, AreThereOrNotForExpressions) {
    add(point(1, 2), "with");
    add(ObjectPtr(), "without");
    EXPECT_EQ(
        inLayer(
            "<g Name='G' DataSource='Feature' Entries='Multiple' h:Where='SHAPE is not null' "
            "h:Text='{NAME}'/><g Name='N' DataSource='Feature' Entries='Multiple' h:Where='SHAPE is null' "
            "h:Text='{NAME}'/>"),
        "<G>with</G><N>without</N>");
    EXPECT_EQ(inLayer("<g Name='G' DataSource='Feature' Entries='Multiple'>"
                      "<n Name='N' h:When='SHAPE is null' h:Text='{NAME}{SHAPE}'/></g>"),
              "<G/><G><N>without</N></G>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionShapes, AreNoListWhereSeveralPartsWouldRunIntoEachOther) {
    add(twoSquares());
    EXPECT_EQ(shapes("h:Geometry='posList'"), "<G/>");
    EXPECT_EQ(failures(),
              "G: a MultiPolygon of 2 parts is more than one list of positions can tell; write it as "
              "GML, KML, GeoJSON or WKT\n");
}

TEST_F(SecondEditionShapes, HaveBordersCounterClockwiseAndHolesClockwise) {
    add(frame());
    add(square());
    EXPECT_EQ(shapes("h:Geometry='WKT'"),
              "<G>POLYGON ((0 0, 4 0, 4 4, 0 4, 0 0), (1 1, 1 3, 3 3, 3 1, 1 1))</G>"
              "<G>POLYGON ((0 0, 4 0, 4 4, 0 4, 0 0))</G>");
}

TEST_F(SecondEditionShapes, HaveRingsThatEndWhereTheyBegin) {
    add(MemoryGeometry::polygon({{{0, 0}, {0, 4}, {4, 4}}}));
    EXPECT_EQ(shapes("h:Geometry='posList'"), "<G>4 4 0 4 0 0 4 4</G>");
    EXPECT_EQ(shapes("h:Geometry='area'"), "<G>8</G>");
}

TEST_F(SecondEditionShapes, AreWellKnownTextsOfEveryKind) {
    add(MemoryGeometry::point({1, 2, 3, 4}));
    add(MemoryGeometry::multipoint({{1, 2}, {3, 4}}));
    add(MemoryGeometry::multipoint({{1, 2}}));
    const double dNone = std::numeric_limits<double>::quiet_NaN();
    add(MemoryGeometry::polyline({{{0, 0, dNone, 5}, {1, 1, dNone, 6}}}));
    add(MemoryGeometry::polyline({{{0, 0}, {1, 1}}, {{2, 2}, {3, 3}}}));
    add(twoSquares());
    add(collection());
    EXPECT_EQ(
        shapes("h:Geometry='WKT'"),
        "<G>POINT ZM (1 2 3 4)</G><G>MULTIPOINT ((1 2), (3 4))</G><G>MULTIPOINT ((1 2))</G>"
        "<G>LINESTRING M (0 0 5, 1 1 6)</G><G>MULTILINESTRING ((0 0, 1 1), (2 2, 3 3))</G>"
        "<G>MULTIPOLYGON (((0 0, 1 0, 1 1, 0 0)), ((5 5, 6 5, 6 6, 5 5)))</G>"
        "<G>GEOMETRYCOLLECTION (POINT (1 2), LINESTRING (0 0, 3 4), POLYGON ((0 0, 1 0, 1 1, 0 0)))</G>");
    EXPECT_EQ(shapes("h:Geometry='type'"),
              "<G>Point</G><G>MultiPoint</G><G>MultiPoint</G><G>LineString</G><G>MultiLineString</G>"
              "<G>MultiPolygon</G><G>GeometryCollection</G>");
}

TEST_F(SecondEditionShapes, HaveHeightsOnlyWhereAllPointsDo) {
    add(MemoryGeometry::polyline({{{0, 0, 7}, {3, 4}}}));
    EXPECT_EQ(shapes("h:Geometry='posList'"), "<G>0 0 3 4</G>");
}

TEST_F(SecondEditionShapes, HaveFiguresInTheirOwnUnits) {
    add(frame());
    add(MemoryGeometry::polyline({{{0, 0}, {3, 4}}, {{10, 10}, {10, 12}}}));
    add(point(1, 2));
    EXPECT_EQ(shapes("h:Geometry='area'"), "<G>12</G><G/><G/>");
    EXPECT_EQ(shapes("h:Geometry='length'"), "<G>24</G><G>7</G><G/>");
    EXPECT_EQ(shapes("h:Geometry='xmin'"), "<G>0</G><G>0</G><G>1</G>");
    EXPECT_EQ(shapes("h:Geometry='ymin'"), "<G>0</G><G>0</G><G>2</G>");
    EXPECT_EQ(shapes("h:Geometry='xmax'"), "<G>4</G><G>10</G><G>1</G>");
    EXPECT_EQ(shapes("h:Geometry='ymax'"), "<G>4</G><G>12</G><G>2</G>");
    EXPECT_EQ(shapes("h:Geometry='area' h:Crs='EPSG:4258'"), "<G>48</G><G/><G/>");
    EXPECT_EQ(shapes("h:Geometry='length' h:Crs='EPSG:4258'"), "<G>48</G><G>14</G><G/>");
}

TEST_F(SecondEditionShapes, HaveACentreOfGravity) {
    add(MemoryGeometry::polygon(
        {{{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}}, {{2, 0}, {4, 0}, {4, 4}, {2, 4}, {2, 0}}}));
    add(MemoryGeometry::polyline({{{0, 0}, {4, 0}, {4, 2}}}));
    add(MemoryGeometry::multipoint({{0, 0}, {1, 4}}));
    // Seen from far away, and without any extent.
    add(MemoryGeometry::polygon(
        {{{500000, 6000000}, {500002, 6000000}, {500002, 6000002}, {500000, 6000000}}}));
    add(MemoryGeometry::polygon({{{1, 1}, {0.1, 0.1}, {0.3, 0.3}, {1, 1}}}));
    add(MemoryGeometry::polyline({{{2, 2}, {2, 2}}}));
    EXPECT_EQ(
        shapes("h:Geometry='centroid' DecimalPlace='3'"),
        "<G>1 2</G><G>2.667 0.333</G><G>0.5 2</G><G>500001.333 6000000.667</G><G>0.55 0.55</G><G>2 2</G>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionShapes, AreWrittenWithoutExponentsAndWithTheDecimalsAskedFor) {
    add(point(1234567890123.25, 0.00000012345));
    add(point(-0.04, 1e20));
    EXPECT_EQ(shapes("h:Geometry='pos'"),
              "<G>1234567890123.25 0.00000012345</G><G>-0.04 100000000000000000000</G>");
    EXPECT_EQ(shapes("h:Geometry='pos' DecimalPlace='1'"),
              "<G>1234567890123.3 0</G><G>0 100000000000000000000</G>");
}

TEST_F(SecondEditionShapes, AreTransformedAndOrderedForAllNodesBeneath) {
    add(point(1, 2));
    const auto named = [&](std::string sAttributes) {
        return inLayer("<g Name='G' DataSource='Feature' Entries='Multiple' " + sAttributes +
                       "><p Name='P' h:Geometry='pos'/></g>");
    };
    EXPECT_EQ(named("h:Crs='EPSG:4258'"), "<G><P>22 4</P></G>");
    EXPECT_EQ(named("h:Crs='EPSG:4258' h:Axes='yx'"), "<G><P>4 22</P></G>");
    EXPECT_EQ(named("h:Crs='EPSG:4258' h:Axes='authority'"), "<G><P>4 22</P></G>");
    EXPECT_EQ(named("h:Axes='authority'"), "<G><P>1 2</P></G>");
    EXPECT_EQ(inLayer("<g Name='G' DataSource='Feature' Entries='Multiple'>"
                      "<p Name='P' h:Geometry='pos'/><p Name='Q' h:Axes='xy' h:Geometry='pos'/></g>",
                      "h:Crs='EPSG:4258' h:Axes='yx'"),
              "<G><P>4 22</P><Q>22 4</Q></G>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionShapes, StandInAttributesAndBesideOtherContent) {
    add(point(1, 2));
    EXPECT_EQ(inLayer("<g Name='G' DataSource='Feature' Entries='Multiple' h:Geometry='pos'>"
                      "<n Name='N' IdentityValue='NAME'/>"
                      "<x Name='x' Target='Attribute' h:Geometry='xmin'/></g>"),
              "<G x=\"1\">1 2<N>S</N></G>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionShapes, ThatAreMissingOrEmptyWriteNothing) {
    add(ObjectPtr());
    add(MemoryGeometry::empty(ShapeType::Polygon));
    for (const char* pForm :
         {"posList", "WKT", "GeoJSON", "SVG", "xmin", "centroid", "area", "type", "GML", "KML"}) {
        EXPECT_EQ(shapes("h:Geometry='" + std::string(pForm) + "'"), "<G/><G/>") << pForm;
        EXPECT_EQ(inLayer("<r Name='R' DataSource='Feature' Entries='Multiple'><g Name='G' h:Omit='Empty' "
                          "h:Geometry='" +
                          std::string(pForm) + "'/></r>"),
                  "<R/><R/>")
            << pForm;
    }
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionShapes, ThatHaveNoPlaceAreToldAndNeverWritten) {
    add(MemoryGeometry::polyline({{{0, 0}, {5e6, 0}}}));
    add(MemoryGeometry::polyline({{{0, 0}, {1, 1}}}));
    for (const char* pForm : {"posList", "GML", "KML"}) {
        const std::string sAll = shapes("h:Crs='EPSG:4258' h:Geometry='" + std::string(pForm) + "'");
        EXPECT_TRUE(sAll.starts_with("<G/><G>")) << sAll;
        EXPECT_EQ(failures(), "G: the point lies outside the world\n");
        EXPECT_EQ(observer.aFailures.at(0).sContext, "the shape of row 1");
    }
}

TEST_F(SecondEditionShapes, WithoutAReferenceAreNotTransformed) {
    pShapes->setSpatialReference(nullptr);
    add(point(1, 2));
    EXPECT_EQ(shapes("h:Geometry='pos' h:Crs='EPSG:4258'"), "<G/>");
    EXPECT_EQ(failures(),
              "G: the data tells no spatial reference, so that its shapes cannot be brought to EPSG:4258; "
              "give it one in the map document\n");
    EXPECT_EQ(shapes("h:Geometry='pos'"), "<G>1 2</G>");
}

TEST_F(SecondEditionShapes, HaveFiguresAndBoundsThatAskForNoOrderOfAxes) {
    pShapes->setSpatialReference(nullptr);
    add(square());
    const std::string sAxes = "h:Axes='authority' h:Geometry=";
    EXPECT_EQ(shapes(sAxes + "'area'"), "<G>16</G>");
    EXPECT_EQ(shapes(sAxes + "'type'"), "<G>Polygon</G>");
    EXPECT_EQ(shapes(sAxes + "'xmax'"), "<G>4</G>");
    EXPECT_EQ(inLayer("<x Name='X' " + sAxes + "'ymax'/>"), "<X>4</X>");
    EXPECT_EQ(failures(), "");
    EXPECT_EQ(shapes(sAxes + "'posList'"), "<G/>");
    EXPECT_EQ(failures(),
              "G: the data tells no spatial reference, so that the order of its authority is not known; name "
              "one by h:Crs, or write h:Axes=\"xy\"\n");
}

TEST_F(SecondEditionShapes, OfManyPointsAreReadInPieces) {
    Part border;
    for (int n = 0; n < 5000; ++n)
        border.push_back({n / 10.0, 0});
    border.push_back({500, 100});
    border.push_back({0, 0});
    auto pForward = MemoryGeometry::polygon({border});
    Part backwards(border.rbegin(), border.rend());
    auto pBackward = MemoryGeometry::polygon({backwards});
    pBackward->keepAtHand(100);
    add(pForward);
    add(pBackward);
    const std::string sAll = shapes("h:Geometry='posList'");
    const auto nMiddle = sAll.size() / 2;
    EXPECT_EQ(sAll.substr(0, nMiddle), sAll.substr(nMiddle)) << "the same ring, however it runs in the data";
    EXPECT_TRUE(sAll.starts_with("<G>0 0 0.1 0 0.2 0")) << sAll.substr(0, 40);
    EXPECT_TRUE(sAll.ends_with("499.9 0 500 100 0 0</G>"));
    EXPECT_EQ(shapes("h:Geometry='area'"), "<G>24995</G><G>24995</G>");
}

TEST_F(SecondEditionShapes, AreGeoJsonInLongitudeAndLatitude) {
    add(point(1, 2));
    add(frame());
    add(twoSquares());
    add(collection());
    EXPECT_EQ(
        shapes("h:Geometry='GeoJSON' h:Crs='EPSG:4258' h:Axes='yx'"),
        "<G>{\"type\":\"Point\",\"coordinates\":[0,2]}</G>"
        "<G>{\"type\":\"Polygon\",\"coordinates\":[[[-1,0],[3,0],[3,4],[-1,4],[-1,0]],"
        "[[0,1],[0,3],[2,3],[2,1],[0,1]]]}</G>"
        "<G>{\"type\":\"MultiPolygon\",\"coordinates\":[[[[-1,0],[0,0],[0,1],[-1,0]]],"
        "[[[4,5],[5,5],[5,6],[4,5]]]]}</G>"
        "<G>{\"type\":\"GeometryCollection\",\"geometries\":[{\"type\":\"Point\",\"coordinates\":[0,2]},"
        "{\"type\":\"LineString\",\"coordinates\":[[-1,0],[2,4]]},"
        "{\"type\":\"Polygon\",\"coordinates\":[[[-1,0],[0,0],[0,1],[-1,0]]]}]}</G>");
}

TEST_F(SecondEditionShapes, AreDataOfPathsWhoseYRunsDownwards) {
    add(point(1, 2));
    add(MemoryGeometry::polyline({{{0, 0}, {3, 4}}, {{5, 5}, {6, 6}}}));
    add(frame());
    EXPECT_EQ(shapes("h:Geometry='SVG' h:Axes='yx'"),
              "<G>M 1 -2 h 0</G><G>M 0 0 L 3 -4 M 5 -5 L 6 -6</G>"
              "<G>M 0 0 L 4 0 L 4 -4 L 0 -4 L 0 0 Z M 1 -1 L 1 -3 L 3 -3 L 3 -1 L 1 -1 Z</G>");
}

TEST_F(SecondEditionShapes, AreElementsOfGml) {
    add(MemoryGeometry::point({1, 2, 3}));
    add(frame());
    add(twoSquares());
    const std::string sGml = "xmlns:gml=\"http://www.opengis.net/gml/3.2\"";
    const std::string sSrs = "srsName=\"http://www.opengis.net/def/crs/EPSG/0/25832\"";
    EXPECT_EQ(
        shapes("h:Geometry='GML' h:Id='g.{OID}'"),
        "<G><gml:Point " + sGml + " gml:id=\"g.1\" " + sSrs +
            "><gml:pos srsDimension=\"3\">1 2 3</gml:pos></gml:Point></G>"
            "<G><gml:Polygon " +
            sGml + " gml:id=\"g.2\" " + sSrs +
            "><gml:exterior><gml:LinearRing><gml:posList>0 0 4 0 4 4 0 4 0 0</gml:posList></gml:LinearRing>"
            "</gml:exterior><gml:interior><gml:LinearRing><gml:posList>1 1 1 3 3 3 3 1 1 1</gml:posList>"
            "</gml:LinearRing></gml:interior></gml:Polygon></G>"
            "<G><gml:MultiSurface " +
            sGml + " gml:id=\"g.3\" " + sSrs +
            "><gml:surfaceMember><gml:Polygon gml:id=\"g.3.1\"><gml:exterior><gml:LinearRing><gml:posList>"
            "0 0 1 0 1 1 0 0</gml:posList></gml:LinearRing></gml:exterior></gml:Polygon></gml:surfaceMember>"
            "<gml:surfaceMember><gml:Polygon gml:id=\"g.3.2\"><gml:exterior><gml:LinearRing><gml:posList>"
            "5 5 6 5 6 6 5 5</gml:posList></gml:LinearRing></gml:exterior></gml:Polygon></gml:surfaceMember>"
            "</gml:MultiSurface></G>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionShapes, OfGmlTellTheirReferenceByTheOrderOfTheirAxes) {
    add(point(1, 2));
    const auto srsName = [&](const std::string& sAttributes) {
        const std::string sAll = shapes("h:Geometry='GML' " + sAttributes);
        const auto nBegin = sAll.find("srsName=\"");
        return nBegin == std::string::npos ? ""
                                           : sAll.substr(nBegin + 9, sAll.find('"', nBegin + 9) - nBegin - 9);
    };
    EXPECT_EQ(srsName("h:Crs='EPSG:4258'"), "EPSG:4258") << "the authority has the latitude first";
    EXPECT_EQ(srsName("h:Crs='EPSG:4258' h:Axes='authority'"), "http://www.opengis.net/def/crs/EPSG/0/4258");
    EXPECT_EQ(srsName("h:Crs='EPSG:4258' h:Axes='yx'"), "http://www.opengis.net/def/crs/EPSG/0/4258");
    EXPECT_EQ(srsName("h:Crs='OGC:CRS84'"), "http://www.opengis.net/def/crs/OGC/1.3/CRS84");
    EXPECT_EQ(srsName("h:Axes='yx'"), "") << "no name has the northing first there";
    pOwn->setCode("");
    EXPECT_EQ(srsName(""), "");
}

TEST_F(SecondEditionShapes, TakeThePrefixOfTheControlFile) {
    add(point(1, 2));
    const std::string sNode =
        "<l DataSource='MapLayer' Identity='LayerName' IdentityValue='Shapes' h:Omit='Self'>"
        "<g Name='G' DataSource='Feature' Entries='Multiple' h:Geometry='KML'/></l>";
    EXPECT_EQ(out(sNode, "xmlns:k='http://www.opengis.net/kml/2.2'"),
              "<Out xmlns:k=\"http://www.opengis.net/kml/2.2\"><G><k:Point><k:coordinates>0,2</k:coordinates>"
              "</k:Point></G></Out>");
    EXPECT_EQ(out(sNode, "xmlns='http://www.opengis.net/kml/2.2'"),
              "<Out xmlns=\"http://www.opengis.net/kml/2.2\"><G><Point><coordinates>0,2</coordinates></Point>"
              "</G></Out>");
    EXPECT_EQ(out(sNode, "xmlns:kml='urn:other'"),
              "<Out xmlns:kml=\"urn:other\"><G><kml:Point xmlns:kml=\"http://www.opengis.net/kml/2.2\">"
              "<kml:coordinates>0,2</kml:coordinates></kml:Point></G></Out>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionShapes, AreElementsOfKml) {
    add(frame());
    add(collection());
    const std::string sAll = shapes("h:Geometry='KML' h:Axes='yx'");
    EXPECT_EQ(
        sAll,
        "<G><kml:Polygon xmlns:kml=\"http://www.opengis.net/kml/2.2\"><kml:outerBoundaryIs><kml:LinearRing>"
        "<kml:coordinates>-1,0 3,0 3,4 -1,4 -1,0</kml:coordinates></kml:LinearRing></kml:outerBoundaryIs>"
        "<kml:innerBoundaryIs><kml:LinearRing><kml:coordinates>0,1 0,3 2,3 2,1 0,1</kml:coordinates>"
        "</kml:LinearRing></kml:innerBoundaryIs></kml:Polygon></G>"
        "<G><kml:MultiGeometry xmlns:kml=\"http://www.opengis.net/kml/2.2\"><kml:Point><kml:coordinates>0,2"
        "</kml:coordinates></kml:Point><kml:LineString><kml:coordinates>-1,0 2,4</kml:coordinates>"
        "</kml:LineString><kml:Polygon><kml:outerBoundaryIs><kml:LinearRing><kml:coordinates>"
        "-1,0 0,0 0,1 -1,0</kml:coordinates></kml:LinearRing></kml:outerBoundaryIs></kml:Polygon>"
        "</kml:MultiGeometry></G>");
}

TEST_F(SecondEditionShapes, HaveIdentifiersThatXmlAllows) {
    add(point(1, 2));
    EXPECT_EQ(shapes("h:Geometry='GML' h:Id='{OID}'"), "<G/>");
    EXPECT_EQ(failures(), "G: the identifier \"1\" is no name that XML allows; let it begin with a letter\n");
}

TEST_F(SecondEditionShapes, OfACurrentLayerHaveBounds) {
    add(square());
    add(point(10, -2));
    add(ObjectPtr());
    const std::string sBounds = "<x Name='X' h:Geometry='xmin'/><y Name='Y' h:Geometry='ymin'/>"
                                "<u Name='U' h:Geometry='xmax'/><v Name='V' h:Geometry='ymax'/>";
    EXPECT_EQ(inLayer(sBounds), "<X>0</X><Y>-2</Y><U>10</U><V>4</V>");
    EXPECT_EQ(inLayer(sBounds, "h:Crs='EPSG:4258'"), "<X>20</X><Y>-4</Y><U>40</U><V>8</V>");
    EXPECT_EQ(
        inLayer("<e Name='E' h:Geometry='GML'/>", "h:Crs='EPSG:4258' h:Axes='authority'"),
        "<E><gml:Envelope xmlns:gml=\"http://www.opengis.net/gml/3.2\" "
        "srsName=\"http://www.opengis.net/def/crs/EPSG/0/4258\"><gml:lowerCorner>-4 20</gml:lowerCorner>"
        "<gml:upperCorner>8 40</gml:upperCorner></gml:Envelope></E>");
    pLayer->select({1});
    EXPECT_EQ(inLayer(sBounds), "<X>0</X><Y>0</Y><U>4</U><V>4</V>") << "those of the selection";
    EXPECT_EQ(failures(), "");
    EXPECT_EQ(inLayer("<w Name='W' h:Geometry='WKT'/>"), "");
    EXPECT_EQ(failures(),
              "W: no row is at hand whose shape could be written; without a row there are xmin, ymin, "
              "xmax, ymax, and GML for an envelope\n");
}

TEST_F(SecondEditionShapes, AreReadOnceForAllBounds) {
    add(square());
    world.pHost->faults().reset();
    EXPECT_EQ(inLayer("<x Name='X' h:Geometry='xmin'/><y Name='Y' h:Geometry='ymax'/>"), "<X>0</X><Y>4</Y>");
    EXPECT_EQ(world.pHost->faults().callCount("search"), 1);
}

TEST_F(SecondEditionShapes, OfAnEmptyLayerHaveNoBounds) {
    EXPECT_EQ(inLayer("<x Name='X' h:Geometry='xmin'/><y Name='Y' h:Omit='Empty' h:Geometry='GML'/>"),
              "<X/>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionShapes, OfRelatedRowsAreInTheReferenceOfTheirTable) {
    const auto pParts =
        MemoryFeatureClass::make("PARTS", ShapeType::Point,
                                 {field("OID", FieldType::Oid), field("SHAPE", FieldType::Geometry),
                                  field("NAME", FieldType::String)});
    pParts->setSpatialReference(pDegrees);
    pParts->addRow({std::int64_t{1}, ObjectPtr(point(22, 4)), std::string("S")});
    world.pTownMap->addTable(pParts);
    add(point(0, 0));
    EXPECT_EQ(
        inLayer(
            "<r Name='R' DataSource='Feature' Entries='Multiple'><p Name='P' DataSource='RelatedTable' "
            "Identity='LayerName' IdentityValue='PARTS' h:Rows='Each' h:Link='NAME=NAME' h:Crs='OGC:CRS84' "
            "h:Geometry='pos'/><q Name='Q' h:Geometry='pos'/></r>"),
        "<R><P>0 2</P><Q>0 0</Q></R>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionShapes, OfTheFirstEditionFollowTheReference) {
    add(MemoryGeometry::polyline({{{0, 0, 5}, {3, 4, 6}}}));
    add(MemoryGeometry::polyline({{{5e6, 0}, {3, 4}}}));
    add(MemoryGeometry::polyline({{{1, 1}, {1, 2}}}));
    EXPECT_EQ(inLayer("<v Name='V' DataSource='Geometry.Vertice' Entries='Multiple' h:Crs='EPSG:4258'>"
                      "<x Name='X' DataProperty='Geometry.X'/><z Name='Z' DataProperty='Geometry.Z'/></v>"),
              "<V><Part><V><X>20</X><Z>5</Z></V><V><X>26</X><Z>6</Z></V></Part></V><V/>"
              "<V><Part><V><X>22</X><Z/></V><V><X>22</X><Z/></V></Part></V>");
    EXPECT_EQ(failures(), "V: the point lies outside the world\n");
    EXPECT_EQ(inLayer("<v Name='V' DataSource='Geometry.Length' Entries='Multiple' h:Crs='EPSG:4258'>"
                      "<l Name='L' DataProperty='Geometry.Length'/></v>"),
              "<V><L>10</L></V><V/><V><L>2</L></V>");
    EXPECT_EQ(inLayer("<v Name='V' DataSource='Geometry.ToNode' Entries='Multiple' h:Crs='EPSG:4258'>"
                      "<x Name='X' DataProperty='Geometry.X'/></v>"),
              "<V><X>26</X></V><V><X>26</X></V><V><X>22</X></V>");
}

TEST_F(SecondEditionShapes, HaveTheCodeOfTheirReferenceInTexts) {
    add(point(1, 2));
    EXPECT_EQ(inLayer("<c Name='C' h:Text='{$Crs}'/><d Name='D' h:Crs='EPSG:4258' h:Text='{$Crs}'/>"
                      "<e Name='E' h:Text=\"{coalesce($Crs, '-')}\"/>"),
              "<C>EPSG:25832</C><D>EPSG:4258</D><E>EPSG:25832</E>");
    pOwn->setCode("");
    EXPECT_EQ(inLayer("<c Name='C' h:Text='{$Crs}'/><e Name='E' h:Text=\"{coalesce($Crs, '-')}\"/>"),
              "<C/><E>-</E>");
    EXPECT_EQ(in("<c Name='C' h:Crs='EPSG:4258'><d Name='D' h:Text='{$Crs}'/></c>"),
              "<C><D>EPSG:4258</D></C>");
}

TEST_F(SecondEditionShapes, AreRefusedBeforeTheExportWhereTheyCannotBeMeant) {
    const auto refused = [&](const std::string& sAttributes) {
        return in("<g Name='G' " + sAttributes + "/>");
    };
    EXPECT_EQ(
        refused("h:Geometry='poslist'"),
        "not saved: h:Geometry=\"poslist\": no form of a shape has this name: did you mean \"posList\"?");
    EXPECT_EQ(refused("h:Geometry='WKT' h:Text=''"),
              "not saved: h:Text and h:Geometry both say what the node writes; leave one out");
    EXPECT_EQ(refused("h:Geometry='KML' Target='Attribute'"),
              "not saved: \"KML\" is made of elements, which no attribute holds");
    EXPECT_EQ(refused("h:Geometry='WKT' h:Id='a'"),
              "not saved: h:Id belongs to a node with h:Geometry=\"GML\"");
    EXPECT_EQ(refused("h:Id='a'"), "not saved: h:Id belongs to a node with h:Geometry=\"GML\"");
    EXPECT_EQ(refused("h:Axes='XY'"), "not saved: h:Axes=\"XY\": it is \"xy\", \"yx\" or \"authority\"");
    EXPECT_EQ(refused("h:Crs='EPSG:1'"),
              "not saved: h:Crs=\"EPSG:1\": no reference is registered as \"EPSG:1\"");
}

} // namespace
} // namespace halvane::test
