// What data and control files must not make the host reach: the network, other files, code.

#include "Listener.h"
#include "SampleData.h"
#include "host/Workspace.h"

#include <gmock/gmock.h>

#include <cpl_error.h>
#include <ogrsf_frmts.h>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

namespace halvane::tests {
namespace {

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
        std::size_t lRows = 0;
        failureOf([&] { lRows = texts(*pWorkspace->openTable(pName), "KIND").size(); });
        EXPECT_EQ(lRows, 0U) << pName;
    }
}

TEST_F(Reach, OfSpatialFiltersOnAnIndexStaysPossible) {
    const auto pRoads = openWorkspace(makeCity(folder))->openTable("roads");
    EXPECT_THAT(texts(*pRoads, "NAME", "fid IN (SELECT id FROM rtree_roads_geom WHERE miny >= 3.5)"),
                ElementsAre("R4"));
}

} // namespace
} // namespace halvane::tests
