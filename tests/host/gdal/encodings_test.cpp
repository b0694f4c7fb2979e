#include "SampleData.h"

#include "host/Fields.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Workspace.h"
#include "host/gdal/source/Encodings.h"

#include <cpl_vsi.h>
#include <gmock/gmock.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr const char* pZurich = "Z\xfcrich"; // in ISO-8859-1

class Encodings : public ::testing::Test {
protected:
    host::GisMapPtr openMap(const std::string& sContent) {
        pHost = host::gdal::GdalHost::create();
        pDocument = pHost->openMapDocument(
            folder.write("map.xml", "<MapDocument><Map name='M'>\n" + sContent + "</Map></MapDocument>"));
        return pDocument->focusMap();
    }
    std::string failureOfMap(const std::string& sContent) {
        return failureOf([&] { static_cast<void>(openMap(sContent)); });
    }
    // A shapefile's table whose only text is that in ISO-8859-1, and whose encoding nothing tells.
    void makeTowns(const std::string& sFile) const {
        const std::string sPlain =
            folder.write("plain.geojson", R"({"type":"FeatureCollection","features":[)"
                                          R"({"type":"Feature","properties":{"NAME":"Z_rich"},)"
                                          R"("geometry":{"type":"Point","coordinates":[1,2]}}]})");
        convert(sPlain, folder.file(sFile), "ESRI Shapefile");
        const std::string sTable = folder.file(sFile.substr(0, sFile.size() - 3) + "dbf");
        std::string sBytes = bytesOf(sTable);
        sBytes.replace(sBytes.find("Z_rich"), 6, pZurich);
        constexpr std::size_t nPlaceOfEncoding = 29;
        sBytes[nPlaceOfEncoding] = '\0';
        folder.write(sFile.substr(0, sFile.size() - 3) + "dbf", sBytes);
        std::filesystem::remove(folder.file(sFile.substr(0, sFile.size() - 3) + "cpg"));
        std::filesystem::remove(sPlain);
    }
    static std::string bytesOf(const std::string& sPath) {
        std::ifstream stream(sPath, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    TemporaryFolder folder;
    std::shared_ptr<host::gdal::GdalHost> pHost;
    host::GisMapDocumentPtr pDocument;
};

TEST_F(Encodings, OfACsvFileAreToldInTheMapDocument) {
    folder.write("t.csv", std::string("Gr\xf6\xdf"
                                      "e,NAME\n7,") +
                              pZurich + "\n8,x\n");
    folder.write("t.csvt", "\"Integer\",\"String\"\n");
    const auto pTable = openMap("<Table source='t.csv' encoding='iso-8859-1'/>")->standaloneTable(0);
    EXPECT_EQ(pTable->datasetName(), "t");
    EXPECT_EQ(pTable->fields()->field(1).name(), "Größe");
    EXPECT_EQ(pTable->fields()->field(1).typeCode(), 1);
    EXPECT_THAT(texts(*pTable, "NAME"), ElementsAre("Zürich", "x"));
    EXPECT_THAT(texts(*pTable, "Größe", "NAME = 'Zürich'"), ElementsAre("7"));
    EXPECT_EQ(pTable->workspace()->pathName(), folder.path());
}

TEST_F(Encodings, OfTwoBytesAreReadToo) {
    folder.write("t.csv", std::string("A\0,\0B\0\n\0001\0,\0\xfc\0\n\0", 16));
    EXPECT_THAT(texts(*openMap("<Table source='t.csv' encoding='UTF-16LE'/>")->standaloneTable(0), "B"),
                ElementsAre("ü"));
}

TEST_F(Encodings, OfADbaseTableAreToldInTheMapDocument) {
    makeTowns("towns.shp");
    const auto nameIn = [&](const std::string& sEncoding) {
        const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(
            openMap("<FeatureLayer source='towns.shp'" + sEncoding + "/>")->layer(0));
        return texts(*pLayer->asTable(), "NAME");
    };
    EXPECT_THAT(nameIn(" encoding='ISO-8859-1'"), ElementsAre("Zürich"));
    EXPECT_THAT(nameIn(" encoding='CP437'"), ElementsAre("Zⁿrich"));
}

TEST_F(Encodings, OfAFolderAreThoseOfItsFiles) {
    folder.write("data/t.csv", std::string("A,NAME\n1,") + pZurich + "\n");
    folder.write("data/u.geojson", R"({"type":"FeatureCollection","features":[{"type":"Feature",)"
                                   R"("properties":{"NAME":"ü"},"geometry":null}]})");
    const auto pMap = openMap("<Table source='data' dataset='t' encoding='ISO-8859-1'/>"
                              "<Table source='data' dataset='u'/>");
    EXPECT_THAT(texts(*pMap->standaloneTable(0), "NAME"), ElementsAre("Zürich"));
    const auto pFactory = pHost->newWorkspaceFactory(host::WorkspaceFactoryKind::Default);
    EXPECT_THAT(texts(*pFactory->openFromFile("data/t.csv", 0)->openTable("t"), "NAME"),
                ElementsAre("Zürich"));
    EXPECT_THAT(texts(*pFactory->openFromFile("data", 0)->openTable("u"), "NAME"), ElementsAre("ü"));
}

TEST_F(Encodings, ThatAreUnknownOrOutOfPlaceAreRefusedAtTheirLine) {
    folder.write("t.csv", "A,B\n1,2\n");
    EXPECT_THAT(failureOfMap("\n<Table source='t.csv' encoding='latin-nine-and-a-half'/>"),
                HasSubstr("map.xml, line 3: encoding=\"latin-nine-and-a-half\" is not known here"));
    EXPECT_THAT(failureOfMap("<Table source='t.gpkg' encoding='UTF-8'/>"),
                HasSubstr("map.xml, line 2: encoding=\"...\" is for CSV files"));
    EXPECT_THAT(
        failureOfMap("<Table source='t.csv' encoding='UTF-8'/>\n<Table source='t.csv' encoding='CP437'/>"),
        HasSubstr("map.xml, line 3: encoding=\"CP437\", but \"UTF-8\" is said of the same source"));
}

TEST_F(Encodings, ThatAFileIsNotInAreAFailureThatTellsTheByte) {
    folder.write("t.csv", std::string("A,B\n1,") + pZurich + "\n");
    openMap("<Table source='t.csv' encoding='UTF-8'/>");
    EXPECT_THAT(pHost->problems(pDocument),
                ElementsAre(HasSubstr("map.xml, line 2: \"" + folder.file("t.csv") +
                                      "\" is no text in UTF-8: byte 8")));
}

TEST_F(Encodings, LeaveNothingInMemoryBehind) {
    const std::string sPath = folder.write("t.csv", "A,B\n1,2\n");
    VSIStatBufL status{};
    std::string sCopy;
    {
        const host::gdal::Utf8Copy copy(sPath, "CP437");
        sCopy = copy.path();
        EXPECT_EQ(VSIStatL(sCopy.c_str(), &status), 0);
    }
    EXPECT_NE(VSIStatL(sCopy.c_str(), &status), 0);
}

TEST_F(Encodings, OfMarkupAreThoseThatItStates) {
    constexpr std::array<std::pair<const char*, const char*>, 4> aTexts{
        {{"windows-1251", "\xCC\xE8\xF0"},
         {"KOI8-R", "\xED\xC9\xD2"},
         {"ISO-8859-5", "\xBC\xD8\xE0"},
         {"UTF-8", "\xD0\x9C\xD0\xB8\xD1\x80"}}};
    for (const auto& [pEncoding, pText] : aTexts) {
        const std::string sPath = folder.write(
            "lines.gml",
            "<?xml version='1.0' encoding='" + std::string(pEncoding) +
                "'?><ogr:FeatureCollection xmlns:ogr='http://ogr.maptools.org/' "
                "xmlns:gml='http://www.opengis.net/gml'><gml:featureMember><ogr:lines fid='l.0'><ogr:A>" +
                pText + "</ogr:A></ogr:lines></gml:featureMember></ogr:FeatureCollection>");
        EXPECT_THAT(texts(*openWorkspace(sPath)->openTable("lines"), "A"), ElementsAre("Мир")) << pEncoding;
    }
}

TEST_F(Encodings, OfMarkupThatAreNotItsOwnAreRefused) {
    const std::string sPath = folder.write(
        "lines.gml", "<?xml version='1.0' encoding='EUC-JP'?><ogr:FeatureCollection "
                     "xmlns:ogr='http://ogr.maptools.org/' xmlns:gml='http://www.opengis.net/gml'>"
                     "<gml:featureMember><ogr:lines fid='l.0'><ogr:A>\xFF</ogr:A></ogr:lines>"
                     "</gml:featureMember></ogr:FeatureCollection>");
    EXPECT_THAT(failureOf([&] { static_cast<void>(host::gdal::GdalHost::create()->openMapDocument(sPath)); }),
                HasSubstr("\"" + sPath + "\" cannot be read by the driver \"GML\""));
}

} // namespace
} // namespace halvane::tests
