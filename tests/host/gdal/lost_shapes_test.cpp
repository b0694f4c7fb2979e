// Shapes that are stored and cannot be read: they are counted where somebody asks for them.

#include "SampleData.h"

#include "host/Geometry.h"
#include "host/Layers.h"
#include "host/Map.h"

#include <gmock/gmock.h>

#include <array>
#include <fstream>

namespace halvane::tests {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

void patch(const std::string& sFile, std::streamoff lPlace, std::string_view sBytes) {
    std::fstream file(sFile, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(lPlace);
    file.write(sBytes.data(), static_cast<std::streamsize>(sBytes.size()));
}

std::uint32_t wholeAt(const std::string& sFile, std::streamoff lPlace) {
    std::ifstream file(sFile, std::ios::binary);
    file.seekg(lPlace);
    std::array<char, 4> aBytes{};
    file.read(aBytes.data(), 4);
    std::uint32_t lNumber = 0;
    for (const char c : aBytes)
        lNumber = (lNumber << 8U) + static_cast<unsigned char>(c);
    return lNumber;
}

// Gives a record of a shapefile another kind of shape, or other numbers in it.
void patchRecord(const std::string& sFile, std::int64_t lId, std::streamoff lPlace, std::string_view sBytes) {
    const std::string sIndex = sFile.substr(0, sFile.size() - 3) + "shx";
    patch(sFile, std::streamoff{2} * wholeAt(sIndex, 100 + 8 * lId) + 8 + lPlace, sBytes);
}

class LostShapes : public ::testing::Test {
protected:
    // Lines in a file: as many as wanted, every seventh without a shape from the start.
    [[nodiscard]] std::string makeLines(const std::string& sFormat, const std::string& sName,
                                        int lCount) const {
        std::string sRows = "WKT,NAME,N\n";
        for (int lRow = 0; lRow < lCount; ++lRow) {
            const std::string sX = std::to_string(lRow);
            const std::string sLine = "\"LINESTRING (" + sX + " 0, " + sX + " 5, 9 9)\"";
            sRows += (lRow % 7 == 6 ? "" : sLine) + ",n" + sX + "," + std::to_string(lRow % 5) + "\n";
        }
        folder.write("made.csvt", "String,String,Integer");
        return convert(folder.write("made.csv", sRows), folder.file(sName), sFormat);
    }

    void open(const std::string& sPath) { pLayer = layerOf(sPath); }
    // Asks each row of a reading for its shape. @returns how many rows have one.
    static int askForShapes(host::GisCursor& cursor) {
        int lShapes = 0;
        while (const auto pRow = cursor.nextRow())
            lShapes += pRow->shape() == nullptr ? 0 : 1;
        return lShapes;
    }
    [[nodiscard]] int askForShapes(const std::string& sWhere = {}) const {
        const host::GisQueryFilter filter{sWhere};
        return askForShapes(*pLayer->featureClass()->search(sWhere.empty() ? nullptr : &filter));
    }
    [[nodiscard]] std::vector<host::LostShapes> take() const { return pHost->takeLostShapes(); }
    void expectLost(std::size_t nCount, const std::string& sReason) const {
        const auto lost = take();
        ASSERT_EQ(lost.size(), 1U);
        EXPECT_EQ(lost.front().nCount, nCount);
        EXPECT_THAT(lost.front().sReason, HasSubstr(sReason));
    }

    TemporaryFolder folder;
    std::shared_ptr<host::gdal::GdalHost> pHost = host::gdal::GdalHost::create();
    host::GisMapDocumentPtr pDocument;
    host::GisFeatureLayerPtr pLayer;

private:
    host::GisFeatureLayerPtr layerOf(const std::string& sPath) {
        pDocument = pHost->openMapDocument(sPath);
        return std::dynamic_pointer_cast<host::GisFeatureLayer>(pDocument->focusMap()->layer(0));
    }
};

constexpr std::string_view sHuge("\xFF\xFF\xFF\x0F", 4);
constexpr std::string_view sNoKind("\x4D\x00\x00\x00", 4);

class LostShapesOfAShapefile : public LostShapes {
protected:
    // Rows 1 and 3 cannot be read, which the driver tells; nor can row 4, which it does not.
    void damage(int lCount) {
        const std::string sPath = makeLines("ESRI Shapefile", "made.shp", lCount);
        patchRecord(sPath, 1, 40, sHuge);
        patchRecord(sPath, 3, 36, sHuge);
        patchRecord(sPath, 4, 0, sNoKind);
        open(sPath);
    }
};

TEST_F(LostShapesOfAShapefile, AreCountedOnceEachWithTheReasonOfTheFirst) {
    damage(21);
    EXPECT_EQ(askForShapes(), 15);
    EXPECT_EQ(askForShapes(), 15);
    const auto lost = take();
    ASSERT_EQ(lost.size(), 1U);
    EXPECT_EQ(lost.front().sLayer, "made");
    EXPECT_EQ(lost.front().sLocation, folder.file("made.shp"));
    EXPECT_EQ(lost.front().nCount, 3U);
    EXPECT_THAT(lost.front().sReason, HasSubstr("shape 1, nPoints="));
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(LostShapesOfAShapefile, DoNotCountWhereNobodyAsksForThem) {
    damage(21);
    EXPECT_EQ(texts(*pLayer->featureClass(), "NAME").size(), 21U);
    EXPECT_EQ(askForShapes(*pLayer->featureClass()->searchWithoutShapes()), 0);
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(LostShapesOfAShapefile, AreCountedAmongSelectedAndRelatedRowsToo) {
    damage(21);
    pHost->selectFeatures(pDocument, "made", "0,1,2");
    EXPECT_EQ(askForShapes(*pLayer->searchSelection()), 2);
    expectLost(1, "shape 1, ");
    for (int lTime = 0; lTime < 3; ++lTime) {
        EXPECT_EQ(askForShapes("N=3"), 2);
    }
    expectLost(1, "shape 3, ");
    EXPECT_EQ(askForShapes("NAME = 'n4'"), 0);
    expectLost(1, "");
}

// The rest of a long table is read on a thread.
TEST_F(LostShapesOfAShapefile, AreCountedFarFromTheBeginning) {
    const std::string sPath = makeLines("ESRI Shapefile", "made.shp", 3000);
    patchRecord(sPath, 0, 40, sHuge);
    patchRecord(sPath, 2000, 40, sHuge);
    patchRecord(sPath, 2800, 0, sNoKind);
    open(sPath);
    EXPECT_EQ(askForShapes(), 3000 - 428 - 3);
    expectLost(3, "shape 0, ");
}

TEST_F(LostShapesOfAShapefile, AreCountedWhereTheFileEndsTooEarly) {
    const std::string sPath = makeLines("ESRI Shapefile", "made.shp", 21);
    const std::streamoff lPlace = std::streamoff{2} * wholeAt(folder.file("made.shx"), 100 + 8 * 14);
    std::filesystem::resize_file(sPath, static_cast<std::uintmax_t>(lPlace) + 20);
    open(sPath);
    EXPECT_EQ(askForShapes(), 12);
    expectLost(7, ".shp file");
}

class LostShapesOfAGeoPackage : public LostShapes {
protected:
    void damage(int lCount, const std::string& sRows) {
        const std::string sPath = makeLines("GPKG", "made.gpkg", lCount);
        runSql(sPath, {"UPDATE made SET geom = x'00' WHERE fid IN (" + sRows + ")"});
        open(sPath);
    }
};

TEST_F(LostShapesOfAGeoPackage, AreCountedByRowAndByColumn) {
    damage(5000, "2, 1500, 3000, 3001, 4990");
    EXPECT_EQ(askForShapes(), 5000 - 714 - 5);
    expectLost(5, "Unable to read geometry");
    EXPECT_EQ(askForShapes("N >= 0"), 5000 - 714 - 5);
    expectLost(5, "Unable to read geometry");
}

TEST_F(LostShapesOfAGeoPackage, AreCountedAmongRelatedRows) {
    damage(50, "3");
    for (int lTime = 0; lTime < 3; ++lTime) {
        EXPECT_EQ(askForShapes("N=2"), 8);
    }
    expectLost(1, "Unable to read geometry");
}

// Drivers warn of odd values; a row of such a value may have no shape at all.
TEST_F(LostShapesOfAGeoPackage, AreNotThoseOfRowsOfWhichAWarningIsTold) {
    const std::string sPath = makeLines("GPKG", "made.gpkg", 10);
    runSql(sPath,
           {"ALTER TABLE made ADD COLUMN D DATETIME", "UPDATE made SET D = '2020-01-02', geom = NULL"});
    open(sPath);
    EXPECT_EQ(askForShapes(), 0);
    EXPECT_THAT(take(), IsEmpty());
}

// This driver says nothing of any of them.
TEST_F(LostShapes, OfAnSqliteFileAreCounted) {
    const std::string sPath = makeLines("SQLite", "made.sqlite", 21);
    runSql(sPath, {"UPDATE made SET geometry = x'00' WHERE ogc_fid IN (2, 3)"});
    open(sPath);
    EXPECT_EQ(askForShapes(), 16);
    expectLost(2, "");
}

TEST_F(LostShapes, OfTextsAreCountedWithTheText) {
    open(folder.write("t.csv", "WKT,NAME\n\"POINT (1 2)\",a\n\"POINT (1\",b\n,c\nnonsense,b\n"));
    EXPECT_EQ(askForShapes(), 1);
    expectLost(2, "\"POINT (1\" is not a shape");
    for (int lTime = 0; lTime < 3; ++lTime) {
        EXPECT_EQ(askForShapes("NAME='b'"), 0);
        expectLost(2, "\"POINT (1\" is not a shape");
    }
    pHost->selectFeatures(pDocument, "t", "3,4");
    EXPECT_EQ(askForShapes(*pLayer->searchSelection()), 0);
    expectLost(1, "\"nonsense\" is not a shape");
}

// Their driver tells of them while it reads the whole file, not with their rows.
TEST_F(LostShapes, OfGeoJsonAreCounted) {
    const auto feature = [](const std::string& sShape) {
        return R"({"type": "Feature", "properties": {"N": 1}, "geometry": )" + sShape + "}";
    };
    open(folder.write("t.geojson", R"({"type": "FeatureCollection", "features": [)" +
                                       feature(R"({"type": "Point", "coordinates": [1, 2]})") + "," +
                                       feature(R"({"type": "Point", "coordinates": ["x", 2]})") + "," +
                                       feature("null") + "," +
                                       feature(R"({"type": "Dot", "coordinates": [1, 2]})") + "]}"));
    EXPECT_EQ(askForShapes(), 1);
    expectLost(2, "Invalid");
}

TEST_F(LostShapes, OfGeoJsonAreCountedWhereThereIsNoOther) {
    int lFile = 0;
    for (const char* sShape :
         {R"({"type": "Point", "coordinates": ["x", 2]})", R"({"type": "Dot", "coordinates": [1, 2]})",
          R"({"type": "Point"})", R"({"type": "Polygon", "coordinates": [[1, 2], [3, 4]]})", "5"}) {
        SCOPED_TRACE(sShape);
        open(folder.write("t" + std::to_string(lFile++) + ".geojson",
                          std::string(R"({"type": "FeatureCollection", "features": [)"
                                      R"({"type": "Feature", "properties": {"N": 1}, "geometry": )") +
                              sShape + "}]}"));
        EXPECT_EQ(askForShapes(), 0);
        expectLost(1, "");
    }
}

// Some of them their driver tells of with their rows, and of others it does not.
TEST_F(LostShapes, OfRecordsOfGeoJsonAreCounted) {
    const std::vector<std::string> lost{R"({"type": "Dot", "coordinates": [1, 2]})",
                                        R"({"type": "Point", "coordinates": ["x", 2]})",
                                        R"({"type": "LineString", "coordinates": [[1, 2], [3]]})", "5"};
    for (const std::string sBegin : {"", "\x1E"}) {
        std::string sText;
        const auto add = [&](const std::string& sShape, const std::string& sId) {
            sText += sBegin + R"({"type": "Feature", )" + sId + R"("properties": {"N": 1}, "geometry": )" +
                     sShape + "}\n";
        };
        add(R"({"type": "Point", "coordinates": [1, 2]})", "");
        for (const std::string& sShape : lost) {
            add("null", "");
            add(sShape, sText.size() % 2 == 0 ? "" : R"("id": )" + std::to_string(sText.size()) + ", ");
        }
        sText += sBegin + R"({"type": "Point", "coordinates": [1, 2]})" + "\n";
        sText += sBegin + R"({"type": "Feature", "properties": {"N": 1}})" + "\n";
        open(folder.write(sBegin.empty() ? "lines.geojsonl" : "records.geojsons", sText));
        EXPECT_EQ(askForShapes(), 2);
        expectLost(lost.size(), "");
        EXPECT_EQ(askForShapes("N = 1"), 1);
        expectLost(lost.size(), "");
    }
}

class LostShapesOfMarkup : public LostShapes {
protected:
    static std::string gml(const std::vector<std::string>& shapes, bool bIds = true) {
        std::string sText = R"(<c:All xmlns:c="http://c" xmlns:gml="http://www.opengis.net/gml">)";
        for (std::size_t nRow = 0; nRow < shapes.size(); ++nRow) {
            const std::string sId = bIds ? " gml:id=\"road." + std::to_string(nRow + 1) + "\"" : "";
            sText += "\n<gml:featureMember><c:road" + sId + "><c:line>" + shapes[nRow] + "</c:line><c:N>" +
                     std::to_string(nRow % 2) + "</c:N></c:road></gml:featureMember>";
        }
        return sText + "\n</c:All>\n";
    }
    static std::string line(const std::string& sNumbers, const std::string& sMore = "") {
        return "<gml:LineString" + sMore + "><gml:posList>" + sNumbers + "</gml:posList></gml:LineString>";
    }
    static std::string kml(const std::vector<std::string>& shapes) {
        std::string sText = R"(<?xml version="1.0"?>)"
                            R"(<kml xmlns="http://www.opengis.net/kml/2.2"><Document><name>d</name>)";
        for (const std::string& sShape : shapes)
            sText += "\n<Placemark><name>p</name>" + sShape + "</Placemark>";
        return sText + "\n</Document></kml>\n";
    }
    static std::string path(const std::string& sPlaces) {
        return "<LineString><coordinates>" + sPlaces + "</coordinates></LineString>";
    }
    // As long as the lines are together, that nobody's coordinates are others.
    [[nodiscard]] double lengths() const {
        double dLength = 0;
        const auto pRows = pLayer->featureClass()->search(nullptr);
        while (const auto pRow = pRows->nextRow()) {
            const auto pShape = pRow->shape();
            dLength += pShape == nullptr ? 0 : pShape->length();
        }
        return dLength;
    }
};

TEST_F(LostShapesOfMarkup, InGmlAreCountedAndTheirRowsStay) {
    for (const bool bIds : {true, false}) {
        open(folder.write(bIds ? "a.gml" : "b.gml",
                          gml({line("0 0 0 3"), line("1 2 3"), line("1 2 x y"), "", line("0 0 0 4"),
                               "<gml:Point><gml:pos>1</gml:pos></gml:Point>",
                               "<gml:Point><gml:coordinates>1,x</gml:coordinates></gml:Point>",
                               "<gml:Curve><gml:segments><gml:Bow/></gml:segments></gml:Curve>",
                               "<gml:LineString></gml:LineString>"},
                              bIds)));
        EXPECT_EQ(texts(*pLayer->featureClass(), "N").size(), 9U);
        EXPECT_EQ(lengths(), 7);
        expectLost(6, "line 3: \"1 2 3\" are no coordinates");
        EXPECT_EQ(askForShapes("N = 0"), 2);
        expectLost(3, "line 4: \"1 2 x y\" are no coordinates");
    }
}

TEST_F(LostShapesOfMarkup, InGmlAreNoShapesOfThreeDimensions) {
    open(folder.write("a.gml", gml({line("0 0 1 0 3 1", R"( srsDimension="3")"),
                                    line("0 0 1 0 3 1 0 3 1", R"( srsDimension="3")"),
                                    "<gml:Point><gml:pos>1 2 3</gml:pos></gml:Point>",
                                    "<!-- <gml:posList>x</gml:posList> --><gml:Point><gml:coordinates "
                                    "decimal=\",\" cs=\" \">1,5 2,5</gml:coordinates></gml:Point>"})));
    EXPECT_EQ(askForShapes(), 4);
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(LostShapesOfMarkup, InKmlAreCountedAndTheirRowsStay) {
    open(folder.write("a.kml", kml({path("0,0 0,3"), path("xx 1,2 3,4"), path("1,2 3"), path("1,2 xx,4"), "",
                                    "<Point><coordinates>xx 1,2</coordinates></Point>",
                                    "<Point><coordinates>7</coordinates></Point>", path("0,0,5 0, 4,5\n")})));
    EXPECT_EQ(texts(*pLayer->featureClass(), "Name").size(), 8U);
    EXPECT_EQ(lengths(), 7);
    expectLost(5, "line 3: \"xx 1,2 3,4\" are no coordinates");
}

TEST_F(LostShapes, AreNotThoseThatAreMissingInTheData) {
    for (const auto& [sFormat, sName] : {std::pair{"GPKG", "a.gpkg"},
                                         {"SQLite", "b.sqlite"},
                                         {"ESRI Shapefile", "c.shp"},
                                         {"GeoJSON", "d.geojson"},
                                         {"GeoJSONSeq", "h.geojsonl"},
                                         {"CSV", "e.csv"},
                                         {"MapInfo File", "f.tab"},
                                         {"GML", "g.gml"},
                                         {"LIBKML", "k.kml"}}) {
        open(makeLines(sFormat, sName, 21));
        static_cast<void>(askForShapes());
        EXPECT_THAT(take(), IsEmpty()) << sFormat;
    }
}

} // namespace
} // namespace halvane::tests
