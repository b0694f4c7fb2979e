// Shapes of real data in the forms of the second edition.

#include "cli/Samples.h"

#include <gtest/gtest.h>

namespace halvane::test {

namespace {

/// In metres of a zone; the first area's rings run the wrong way.
constexpr std::string_view sParcels = R"({"type": "FeatureCollection", "name": "parcels",
"crs": {"type": "name", "properties": {"name": "urn:ogc:def:crs:EPSG::25832"}}, "features": [
{"type": "Feature", "id": 1, "properties": {"NR": 1}, "geometry": {"type": "Polygon", "coordinates": [
[[500000, 0], [500000, 40], [500040, 40], [500040, 0], [500000, 0]],
[[500010, 10], [500020, 10], [500020, 20], [500010, 20], [500010, 10]]]}},
{"type": "Feature", "id": 2, "properties": {"NR": 2}, "geometry": {"type": "MultiPolygon", "coordinates": [
[[[500000, 0], [500010, 0], [500010, 10], [500000, 0]]], [[[500020, 0], [500030, 0], [500030, 10], [500020, 0]]]]}},
{"type": "Feature", "id": 3, "properties": {"NR": 3}, "geometry": {"type": "LineString", "coordinates": [
[500000, 0, 100.5], [500003, 4, 101]]}},
{"type": "Feature", "id": 4, "properties": {"NR": 4}, "geometry": null}
]})";

class SecondEditionShapesOfData : public ExportFixture {
protected:
    SecondEditionShapesOfData() { program.write("parcels.geojson", sParcels); }

    static std::string control(const std::string& sLayer, const std::string& sNodes,
                               const std::string& sAttributes = "") {
        return "<T xmlns:h=\"urn:halvane:control:2\" Name=\"Map\" " + sAttributes +
               ">\n<L DataSource=\"MapLayer\" Identity=\"LayerName\" IdentityValue=\"" + sLayer +
               "\" h:Omit=\"Self\">\n" + sNodes + "\n</L></T>";
    }
    static std::string rows(const std::string& sNodes) {
        return "<E Name=\"E\" DataSource=\"Feature\" Entries=\"Multiple\">\n" + sNodes + "\n</E>";
    }
    /// The document without its line breaks; what is told must be nothing.
    std::string exported(const std::string& sLayer, const std::string& sNodes,
                         const std::string& sAttributes = "", std::vector<std::string> options = {}) {
        program.write("second.xml", control(sLayer, sNodes, sAttributes));
        std::vector<std::string> arguments{"export", "--map", sLayer + ".geojson"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        arguments.insert(arguments.end(), {"second.xml", "out.xml"});
        const auto result = program.run(arguments);
        EXPECT_EQ(result.sErr, "");
        EXPECT_EQ(result.lExitCode, 0);
        std::string sAll = document("out.xml");
        std::erase_if(sAll, [](char c) { return c == '\r' || c == '\n'; });
        return sAll;
    }
};

} // namespace

TEST_F(SecondEditionShapesOfData, AreTransformed) {
    // By the formulas of the projection on a sphere of 6,378,137 m.
    EXPECT_EQ(
        exported("towns",
                 rows("<P Name=\"P\" h:Geometry=\"pos\"/><Q Name=\"Q\" h:Axes=\"yx\" h:Geometry=\"pos\"/>"
                      "<C Name=\"C\" h:Text=\"{$Crs}\"/><O Name=\"O\" h:Crs=\"EPSG:4326\" "
                      "h:Axes=\"authority\" h:Geometry=\"pos\"/>"),
                 "h:Crs=\"EPSG:3857\" DecimalPlace=\"2\"", {"--select", "towns=1"}),
        "<Map><E><P>111319.49 222684.21</P><Q>222684.21 111319.49</Q><C>EPSG:3857</C><O>2 1</O></E></Map>");
    // The zone's meridian is nine degrees to the east.
    EXPECT_EQ(
        exported("parcels", rows("<X Name=\"X\" h:Geometry=\"xmin\"/><Y Name=\"Y\" h:Geometry=\"ymin\"/>"),
                 "h:Crs=\"EPSG:4258\" DecimalPlace=\"9\""),
        "<Map><E><X>9</X><Y>0</Y></E><E><X>9</X><Y>0</Y></E><E><X>9</X><Y>0</Y></E><E><X/><Y/></E></Map>");
}

TEST_F(SecondEditionShapesOfData, AreGmlWithHolesPartsAndHeights) {
    const std::string sGml = " xmlns:gml=\"http://www.opengis.net/gml/3.2\"";
    const std::string sSrs = " srsName=\"http://www.opengis.net/def/crs/EPSG/0/25832\"";
    EXPECT_EQ(
        exported("parcels", rows("<G Name=\"G\" h:Geometry=\"GML\" h:Id=\"p{NR}\" h:Omit=\"Empty\"/>")),
        "<Map><E><G><gml:Polygon" + sGml + " gml:id=\"p1\"" + sSrs +
            "><gml:exterior><gml:LinearRing><gml:posList>500000 0 500040 0 500040 40 500000 40 500000 0"
            "</gml:posList></gml:LinearRing></gml:exterior><gml:interior><gml:LinearRing><gml:posList>"
            "500010 10 500010 20 500020 20 500020 10 500010 10</gml:posList></gml:LinearRing></gml:interior>"
            "</gml:Polygon></G></E><E><G><gml:MultiSurface" +
            sGml + " gml:id=\"p2\"" + sSrs +
            "><gml:surfaceMember><gml:Polygon gml:id=\"p2.1\"><gml:exterior><gml:LinearRing><gml:posList>"
            "500000 0 500010 0 500010 10 500000 0</gml:posList></gml:LinearRing></gml:exterior></gml:Polygon>"
            "</gml:surfaceMember><gml:surfaceMember><gml:Polygon gml:id=\"p2.2\"><gml:exterior>"
            "<gml:LinearRing><gml:posList>500020 0 500030 0 500030 10 500020 0</gml:posList></gml:LinearRing>"
            "</gml:exterior></gml:Polygon></gml:surfaceMember></gml:MultiSurface></G></E>"
            "<E><G><gml:LineString" +
            sGml + " gml:id=\"p3\"" + sSrs +
            "><gml:posList srsDimension=\"3\">500000 0 100.5 500003 4 101</gml:posList></gml:LineString></G>"
            "</E><E/></Map>");
}

TEST_F(SecondEditionShapesOfData, HaveFiguresInTheUnitsOfTheReference) {
    EXPECT_EQ(
        exported("parcels", rows("<A Name=\"A\" h:Geometry=\"area\"/><L Name=\"L\" h:Geometry=\"length\"/>"
                                 "<T Name=\"T\" h:Geometry=\"type\"/>")),
        "<Map><E><A>1500</A><L>200</L><T>Polygon</T></E><E><A>100</A><L>68.2842712474619</L>"
        "<T>MultiPolygon</T></E><E><A/><L>5</L><T>LineString</T></E><E><A/><L/><T/></E></Map>");
}

TEST_F(SecondEditionShapesOfData, AreGeoJsonAndKmlInLongitudeAndLatitude) {
    EXPECT_EQ(
        exported("towns",
                 rows("<J Name=\"J\" h:Geometry=\"GeoJSON\"/>"
                      "<K Name=\"K\" h:Crs=\"EPSG:3857\" h:Geometry=\"KML\"/>"),
                 "xmlns:k=\"http://www.opengis.net/kml/2.2\"", {"--select", "towns=2"}),
        "<Map xmlns:k=\"http://www.opengis.net/kml/2.2\"><E><J>{\"type\":\"Point\",\"coordinates\":[3,4]}</J>"
        "<K><k:Point><k:coordinates>3,4</k:coordinates></k:Point></K></E></Map>");
}

TEST_F(SecondEditionShapesOfData, OfALayerHaveBoundsOfItsSelection) {
    const std::string sNodes = "<W Name=\"W\" h:Geometry=\"xmin\"/><E Name=\"E\" h:Geometry=\"xmax\"/>"
                               "<S Name=\"S\" h:Geometry=\"ymin\"/><N Name=\"N\" h:Geometry=\"ymax\"/>";
    EXPECT_EQ(exported("towns", sNodes), "<Map><W>1</W><E>5</E><S>2</S><N>6</N></Map>");
    EXPECT_EQ(exported("towns", sNodes, "", {"--select", "towns=1,2"}),
              "<Map><W>1</W><E>3</E><S>2</S><N>4</N></Map>");
    EXPECT_EQ(exported("towns", "<B Name=\"B\" h:Axes=\"authority\" h:Geometry=\"GML\"/>"),
              "<Map><B><gml:Envelope xmlns:gml=\"http://www.opengis.net/gml/3.2\" "
              "srsName=\"http://www.opengis.net/def/crs/EPSG/0/4326\"><gml:lowerCorner>2 1</gml:lowerCorner>"
              "<gml:upperCorner>6 5</gml:upperCorner></gml:Envelope></B></Map>");
}

TEST_F(SecondEditionShapesOfData, OfTheFirstEditionFollowTheReference) {
    EXPECT_EQ(
        exported("towns",
                 "<V Name=\"V\" DataSource=\"Geometry.Vertice\" Entries=\"Multiple\" h:Crs=\"EPSG:3857\" "
                 "DecimalPlace=\"1\"><X Name=\"X\" DataProperty=\"Geometry.X\"/></V>",
                 "", {"--select", "towns=1"}),
        "<Map><V><Part><V><X>111319.5</X></V></Part></V></Map>");
}

TEST_F(SecondEditionShapesOfData, ThatHaveNoPlaceAreToldWithTheRow) {
    program.write("far.geojson",
                  R"({"type": "FeatureCollection", "name": "far", "features": [{"type": "Feature", "id": 7,
"properties": {}, "geometry": {"type": "Point", "coordinates": [0, 95]}}]})");
    program.write("second.xml",
                  control("far", rows("<P Name=\"P\" h:Crs=\"EPSG:3857\" h:Geometry=\"pos\"/>")));
    const auto result = program.run({"export", "--map", "far.geojson", "second.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_EQ(
        result.sErr,
        "second.xml:4: error: \"P\": a point of EPSG:4326 has no place in EPSG:3857: the shape of row 7, "
        "the point 0 95 (error 1004)\n"
        "halvane: 1 control node failed; the document is incomplete\n");
    EXPECT_EQ(document("out.xml"), "<Map>\r\n<E/>\r\n</Map>");
}

TEST_F(SecondEditionShapesOfData, AreNotIdentifiedByAFieldThatRowsLack) {
    program.write("second.xml",
                  control("towns", rows("<G Name=\"G\" h:Geometry=\"GML\" h:Id=\"t.{NAMES}\"/>")));
    const auto result = program.run({"export", "--map", "towns.geojson", "second.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_NE(result.sErr.find("second.xml:4"), std::string::npos) << result.sErr;
    EXPECT_NE(result.sErr.find("NAMES"), std::string::npos) << result.sErr;
}

TEST_F(SecondEditionShapesOfData, AreNotWrittenInAReferenceThatNoRegisterHas) {
    const auto refused = [&](const std::string& sCrs, const std::string& sWhy) {
        program.write("second.xml",
                      control("towns", rows("<P Name=\"P\" h:Geometry=\"pos\" h:Crs=\"" + sCrs + "\"/>")));
        expectRefused({"--map", "towns.geojson", "second.xml", "out.xml"},
                      "halvane: second.xml:4: h:Crs=\"" + sCrs + "\": " + sWhy + "\n");
    };
    refused("EPSG:99999", "the register of coordinate systems has no \"EPSG:99999\"");
    refused("+proj=longlat", "\"+proj=longlat\" is no code of a spatial reference, as \"EPSG:4258\" is one");
    refused("/etc/passwd", "\"/etc/passwd\" is no code of a spatial reference, as \"EPSG:4258\" is one");
}

} // namespace halvane::test
