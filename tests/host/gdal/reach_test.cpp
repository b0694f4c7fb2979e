// What data and control files must not make the host reach: the network, other files, code.

#include "Listener.h"
#include "SampleData.h"
#include "base/Text.h"
#include "host/Fields.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/SpatialReference.h"
#include "host/Workspace.h"
#include "host/gdal/source/Drivers.h"
#include "support/OpenCounter.h"

#include <gmock/gmock.h>

#include <cpl_error.h>
#include <ogrsf_frmts.h>

#include <arpa/inet.h>
#include <array>
#include <filesystem>
#include <fstream>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace halvane::tests {
namespace {

using host::gdal::prepareLibrary;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

TEST(ListenerItself, NoticesACaller) {
    Listener listener;
    const int caller = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(std::stoi(listener.port())));
    ASSERT_EQ(::connect(caller, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    ::close(caller);
    EXPECT_EQ(listener.callers(), 1);
}

class Reach : public ::testing::Test {
protected:
    std::string address(const std::string& sPath) {
        return "http://127.0.0.1:" + listener.port() + "/" + sPath;
    }

    TemporaryFolder folder;
    Listener listener;
};

TEST_F(Reach, OfSchemaReferencesInMarkupEndsAtTheFile) {
    const std::string sPath =
        folder.write("lines.gml", "<ogr:FeatureCollection xmlns:ogr='http://ogr.maptools.org/' "
                                  "xmlns:gml='http://www.opengis.net/gml' "
                                  "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
                                  "xsi:schemaLocation='http://ogr.maptools.org/ " +
                                      address("lines.xsd") +
                                      "'><gml:featureMember><ogr:lines fid='l.0'><ogr:A>x</ogr:A></ogr:lines>"
                                      "</gml:featureMember></ogr:FeatureCollection>");
    EXPECT_THAT(texts(*openWorkspace(sPath)->openTable("lines"), "A"), ElementsAre("x"));
    EXPECT_EQ(listener.callers(), 0);
    EXPECT_THAT(folder.names(), SizeIs(1));
}

TEST_F(Reach, OfTheLibrarysOwnRequestsEndsHere) {
    const auto pHost = host::gdal::GdalHost::create();
    const CPLErrorHandlerPusher quiet(&CPLQuietErrorHandler);
    const GDALDatasetUniquePtr pDataset(
        GDALDataset::Open(("/vsicurl/" + address("a.geojson")).c_str(), GDAL_OF_VECTOR));
    EXPECT_EQ(pDataset, nullptr);
    EXPECT_EQ(listener.callers(), 0);
}

class ReachOfDatabases : public Reach, public ::testing::WithParamInterface<const char*> {
protected:
    std::string make() {
        const std::string sCity = makeCity(folder);
        const std::string sPath = folder.file(GetParam());
        return sPath == sCity ? sCity : convert(sCity, sPath, "SQLite");
    }
};

INSTANTIATE_TEST_SUITE_P(Formats, ReachOfDatabases, ::testing::Values("city.gpkg", "roads.sqlite"),
                         [](const auto& test) {
                             const std::string sFile = test.param;
                             return sFile.substr(sFile.find('.') + 1);
                         });

TEST_P(ReachOfDatabases, FunctionsThatOpenOtherDataOrServicesAreRejectedInFilters) {
    const auto pRoads = openWorkspace(make())->openTable("roads");
    const std::string sOther = folder.write("other.csv", "A,B\n1,2\n");
    for (const std::string& sWhere :
         {"ogr_datasource_load_layers('" + sOther + "') = 1", std::string("OGR_GEOCODE('Paris') IS NOT NULL"),
          std::string("load_extension('/tmp/x.so') IS NULL"),
          "XB_Create('<a/>', 1, '" + address("s.xsd") + "') IS NULL"}) {
        const host::GisQueryFilter filter{sWhere};
        EXPECT_NE(failureOf([&] { static_cast<void>(pRoads->search(&filter)); }), "") << sWhere;
    }
    EXPECT_EQ(listener.callers(), 0);
    EXPECT_THAT(texts(*pRoads, "NAME", "N = 10 AND length(NAME) = 2 AND NAME LIKE 'r%'"), ElementsAre("R1"));
}

TEST_F(Reach, OfVirtualTablesInADatabaseEndsAtTheFile) {
    const std::string sCity = makeCity(folder);
    const std::string sPath = convert(sCity, folder.file("c.sqlite"), "SQLite");
    runSql(sPath, {"CREATE VIRTUAL TABLE stolen USING VirtualOGR('" + sCity + "', 0, 'signs')",
                   "CREATE VIEW thief AS SELECT * FROM stolen"});
    const auto pWorkspace = openWorkspace(sPath);
    EXPECT_EQ(texts(*pWorkspace->openTable("roads"), "NAME").size(), 5U);
    for (const char* pName : {"stolen", "thief"}) {
        std::size_t nRows = 0;
        failureOf([&] { nRows = texts(*pWorkspace->openTable(pName), "KIND").size(); });
        EXPECT_EQ(nRows, 0U) << pName;
    }
}

// Each names a file that a definition of a reference system would make the projection library open.
constexpr std::array aDefinitions{
    "+init=SECRET:1",
    "+proj=pipeline +step +proj=hgridshift +grids=SECRET",
    "+proj=pipeline +step +proj=defmodel +model=SECRET",
    "+proj=longlat +ellps=intl +nadgrids=SECRET +type=crs",
    "+proj=utm +zone=32 +ellps=GRS80 +geoidgrids=SECRET +vunits=m +type=crs",
};

std::string boundTo(const std::string& sGrid) {
    const std::string sAxes =
        R"(PRIMEM["Greenwich",0,ANGLEUNIT["degree",0.0174532925199433]],CS[ellipsoidal,2],)"
        R"(AXIS["latitude",north,ORDER[1],ANGLEUNIT["degree",0.0174532925199433]],)"
        R"(AXIS["longitude",east,ORDER[2],ANGLEUNIT["degree",0.0174532925199433]])";
    return R"(BOUNDCRS[SOURCECRS[GEOGCRS["a",DATUM["d",ELLIPSOID["GRS 1980",6378137,298.257222101]],)" +
           sAxes + R"(,USAGE[SCOPE["x"],AREA["w"],BBOX[-10,-10,10,10]]]],)" +
           R"(TARGETCRS[GEOGCRS["WGS 84",DATUM["World Geodetic System 1984",)"
           R"(ELLIPSOID["WGS 84",6378137,298.257223563]],)" +
           sAxes + R"(,ID["EPSG",4326]]],)" +
           R"(ABRIDGEDTRANSFORMATION["t",METHOD["NTv2",ID["EPSG",9615]],PARAMETERFILE[)"
           R"("Latitude and longitude difference file",")" +
           sGrid + R"(",ID["EPSG",8656]]]])";
}

/// A folder of somebody else, whose opened files are counted.
class ReachOfFiles : public Reach {
protected:
    void SetUp() override {
        ASSERT_TRUE(opens.works());
        std::ifstream(sSecret).close();
        ASSERT_EQ(opens.opens(), 1) << "the counter counts";
    }

    [[nodiscard]] std::string fromDataFolder() const {
        return std::filesystem::relative(sSecret, folder.path()).string();
    }
    void expectNothingOpened(const std::string& sMap) const {
        failureOf([&] {
            const auto pMap = host::gdal::GdalHost::create()->openMapDocument(sMap)->focusMap();
            const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(0));
            ASSERT_NE(pLayer, nullptr);
            static_cast<void>(texts(*pLayer->featureClass(), "A"));
        });
        EXPECT_EQ(opens.opens(), 0) << sMap;
    }

    TemporaryFolder secrets;
    std::string sSecret = secrets.write("secret", "no grid");
    test::OpenCounter opens{secrets.path()};
};

constexpr const char* sLines =
    "<ogr:FeatureCollection xmlns:ogr='http://ogr.maptools.org/' xmlns:gml='http://www.opengis.net/gml'>"
    "<gml:featureMember><ogr:lines fid='l.0'><ogr:A>x</ogr:A></ogr:lines></gml:featureMember>"
    "</ogr:FeatureCollection>";

std::string schemaWith(const std::string& sReferences) {
    return "<xs:schema targetNamespace='http://ogr.maptools.org/' xmlns:ogr='http://ogr.maptools.org/' "
           "xmlns:xs='http://www.w3.org/2001/XMLSchema' xmlns:gml='http://www.opengis.net/gml' "
           "elementFormDefault='qualified'>" +
           sReferences + "</xs:schema>";
}

// Of a field that is a number, and one that is a text although it looks like one.
constexpr const char* sTypes =
    "<xs:element name='lines' type='ogr:lines_Type' substitutionGroup='gml:_Feature'/>"
    "<xs:complexType name='lines_Type'><xs:complexContent><xs:extension base='gml:AbstractFeatureType'>"
    "<xs:sequence><xs:element name='A' type='xs:string' minOccurs='0'/></xs:sequence></xs:extension>"
    "</xs:complexContent></xs:complexType>";

TEST_F(ReachOfFiles, OfSchemasBesideMarkupEndsAtTheirFolder) {
    const std::string sPath = folder.write("lines.gml", sLines);
    for (const char* pTag : {"include", "import"}) {
        for (const std::string& sTarget : {sSecret, fromDataFolder(), "file://" + sSecret}) {
            folder.write("lines.xsd", schemaWith("<xs:" + std::string(pTag) + " schemaLocation='" + sTarget +
                                                 "'/>" + sTypes));
            EXPECT_THAT(texts(*openWorkspace(sPath)->openTable("lines"), "A"), ElementsAre("x")) << sTarget;
            EXPECT_EQ(opens.opens(), 0) << pTag << ' ' << sTarget;
        }
    }
}

TEST_F(ReachOfFiles, OfSchemasBesideMarkupHasTheirOwnFolder) {
    std::filesystem::create_directory(folder.file("types"));
    folder.write("types/lines.xsd", schemaWith(sTypes));
    const std::string sPath = folder.write("lines.gml", replaceAll(sLines, ">x<", ">7<"));
    const auto typeOfA = [&] {
        const auto pFields = openWorkspace(sPath)->openTable("lines")->fields();
        return pFields->field(pFields->findField("A")).typeCode();
    };
    const auto lNumber = typeOfA();
    folder.write("lines.xsd", schemaWith("<xs:include schemaLocation='types/lines.xsd'/>"));
    EXPECT_NE(typeOfA(), lNumber);
}

TEST_F(ReachOfFiles, OfEntitiesOfMarkupEndsAtTheFileInEachEncoding) {
    // The driver has another parser for those that its first one does not know.
    for (const char* pEncoding :
         {"UTF-8", "ISO-8859-1", "ISO-8859-2", "windows-1251", "Shift_JIS", "KOI8-R"}) {
        expectNothingOpened(
            folder.write("lines.gml", "<?xml version='1.0' encoding='" + std::string(pEncoding) +
                                          "'?>\n<!DOCTYPE x SYSTEM '" + sSecret + "' [<!ENTITY % p SYSTEM '" +
                                          sSecret + "'> %p; <!ENTITY e SYSTEM '" + sSecret + "'>]>\n" +
                                          replaceAll(sLines, ">x<", ">x&e;<")));
        expectNothingOpened(folder.write("lines.gml", "<?xml version='1.0' encoding='" +
                                                          std::string(pEncoding) +
                                                          "'?>\n<!DOCTYPE x [<!ENTITY % p SYSTEM '" +
                                                          address("p.ent") + "'> %p;]>\n" + sLines));
        EXPECT_EQ(listener.callers(), 0) << pEncoding;
    }
}

TEST_F(ReachOfFiles, OfNamesInDataEndsAtTheirFolder) {
    const std::string sPoint = R"({"type":"Point","coordinates":[1,2]})";
    expectNothingOpened(folder.write(
        "name.geojson",
        R"({"type":"FeatureCollection","crs":{"type":"name","properties":{"name":")" + sSecret +
            R"("}},"features":[{"type":"Feature","properties":{"A":1},"geometry":)" + sPoint + "}]}"));
    expectNothingOpened(folder.write("place.gml", replaceAll(sLines, "<ogr:A>",
                                                             "<ogr:p><gml:Point srsName='" + sSecret +
                                                                 "'><gml:coordinates>1,2</gml:coordinates>"
                                                                 "</gml:Point></ogr:p><ogr:A>")));
    folder.write("part.csv", "A\n1\n");
    expectNothingOpened(folder.write(
        "view.tab", "!table\n!version 100\n\nopen table \"" + fromDataFolder() + "\" Hide\nopen table \"" +
                        sSecret + "\" Hide\n\ncreate view view as\nSelect * from secret\n"));
}

TEST_F(ReachOfFiles, BesideDataHasPlainFilesAlone) {
    const std::string sPath = folder.write("lines.gml", sLines);
    ASSERT_EQ(::mkfifo(folder.file("lines.xsd").c_str(), 0600), 0);
    EXPECT_THAT(texts(*openWorkspace(sPath)->openTable("lines"), "A"), ElementsAre("x"));
    std::filesystem::remove(folder.file("lines.xsd"));
    std::filesystem::create_symlink("/proc/version", folder.file("lines.xsd"));
    EXPECT_THAT(texts(*openWorkspace(sPath)->openTable("lines"), "A"), ElementsAre("x"));
}

TEST_F(ReachOfFiles, BesideADatabaseHasNoPipes) {
    const std::string sPath = makeCity(folder);
    for (const char* pEnd : {"-wal", "-shm", "-journal"}) {
        const std::string sPipe = sPath + pEnd;
        ASSERT_EQ(::mkfifo(sPipe.c_str(), 0600), 0);
        EXPECT_THAT(failureOf([&] { openWorkspace(sPath); }),
                    HasSubstr("\"" + sPipe + "\" beside it is no plain file; remove it"));
        EXPECT_TRUE(std::filesystem::remove(sPipe)) << "it is still there";
    }
    EXPECT_EQ(texts(*openWorkspace(sPath)->openTable("roads"), "NAME").size(), 5U);
}

TEST_F(ReachOfFiles, OfOtherFileSystemsIsGone) {
    prepareLibrary();
    const std::string sInside = "/vsizip/" + folder.file("a.zip") + "/a.txt";
    VSIFCloseL(VSIFOpenL(sInside.c_str(), "wb"));
    VSIStatBufL facts{};
    EXPECT_EQ(VSIStatL(sInside.c_str(), &facts), 0) << "those inside files stay";
    for (const char* pPath : {"/vsistdin/", "/vsicurl/file:///etc/hostname", "/vsitar//etc/hostname"}) {
        EXPECT_EQ(VSIFOpenL(pPath, "rb"), nullptr) << pPath;
        EXPECT_NE(VSIStatL(pPath, &facts), 0) << pPath;
    }
}

class ReachOfReferences : public ReachOfFiles {
protected:
    std::string naming(std::string sDefinition) const {
        return sDefinition.replace(sDefinition.find("SECRET"), 6, sSecret);
    }
    static void askForAll(const std::string& sMap) {
        failureOf([&] {
            const auto pMap = host::gdal::GdalHost::create()->openMapDocument(sMap)->focusMap();
            const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(0));
            ASSERT_NE(pLayer, nullptr);
            for (const auto& pReference : {pLayer->spatialReference(), pMap->spatialReference()}) {
                static_cast<void>(pReference == nullptr || pReference->xyDomain());
                static_cast<void>(pReference == nullptr || pReference->description().empty());
            }
        });
    }
};

TEST_F(ReachOfReferences, OfDataEndsAtTheProjectionLibrarysOwnFiles) {
    for (const char* pDefinition : aDefinitions) {
        askForAll(folder.write(
            "points.geojson",
            R"({"type":"FeatureCollection","crs":{"type":"name","properties":{"name":")" +
                naming(pDefinition) +
                R"("}},"features":[{"type":"Feature","properties":{},"geometry":{"type":"Point",)"
                R"("coordinates":[1,2]}}]})"));
        EXPECT_EQ(opens.opens(), 0) << pDefinition;
    }
}

TEST_F(ReachOfReferences, OfMapDocumentsEndsAtTheProjectionLibrarysOwnFiles) {
    makeCity(folder);
    for (const char* pDefinition : aDefinitions) {
        askForAll(folder.write("map.xml", "<MapDocument><Map name='M'><FeatureLayer source='city.gpkg' "
                                          "dataset='roads'><SpatialReference definition='" +
                                              naming(pDefinition) +
                                              "'/></FeatureLayer></Map></MapDocument>"));
        EXPECT_EQ(opens.opens(), 0) << pDefinition;
    }
}

/// The library does not give back a shape that it cannot transform; that is its own.
struct LeaksOfTheLibrary {
#ifdef __SANITIZE_ADDRESS__
    __lsan::ScopedDisabler disabler;
#endif
};

TEST_F(ReachOfReferences, OfTransformationsEndsAtTheProjectionLibrarysOwnFiles) {
    const std::string sCity = makeCity(folder);
    const auto add = [&](const std::string& sView, const std::string& sTransformed) {
        runSql(sCity,
               {"CREATE VIEW " + sView + " AS SELECT fid, ST_AsText(" + sTransformed + ") AS T FROM signs",
                "INSERT INTO gpkg_contents (table_name, identifier, data_type) VALUES ('" + sView + "', '" +
                    sView + "', 'attributes')"});
    };
    runSql(sCity, {"INSERT INTO gpkg_spatial_ref_sys VALUES ('g', 999999, 'G', 999999, '" + boundTo(sSecret) +
                   "', '')"});
    add("by_table", "ST_Transform(geom, 999999)");
    add("by_text", "ST_Transform(geom, 4326, NULL, '" + naming(aDefinitions[1]) + "')");
    const auto pWorkspace = openWorkspace(sCity);
    [[maybe_unused]] const LeaksOfTheLibrary leaks;
    for (const char* pView : {"by_text", "by_table"}) {
        failureOf([&] { static_cast<void>(texts(*pWorkspace->openTable(pView), "T")); });
        EXPECT_EQ(opens.opens(), 0) << pView;
    }
}

TEST_F(ReachOfReferences, OfTransformationsReachesTheProjectionLibrarysOwnFiles) {
    const std::string sCity = makeCity(folder);
    runSql(sCity,
           {"CREATE VIEW lonlat AS SELECT fid, ST_X(ST_Transform(geom, 4326)) > -181 AS T FROM signs",
            "INSERT INTO gpkg_contents (table_name, identifier, data_type) VALUES ('lonlat', 'lonlat', "
            "'attributes')"});
    EXPECT_THAT(texts(*openWorkspace(sCity)->openTable("lonlat"), "T"), ElementsAre("1", "1", "1"));
}

TEST_F(Reach, OfSpatialFiltersOnAnIndexStaysPossible) {
    const auto pRoads = openWorkspace(makeCity(folder))->openTable("roads");
    EXPECT_THAT(texts(*pRoads, "NAME", "fid IN (SELECT id FROM rtree_roads_geom WHERE miny >= 3.5)"),
                ElementsAre("R4"));
}

} // namespace
} // namespace halvane::tests
