#include "SampleData.h"

#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Locations.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sys/stat.h>

namespace halvane::tests {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class Refused : public ::testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(
    Locations, Refused,
    ::testing::Values("/vsicurl/http://example.org/a.csv", "/VSIZIP/a.zip", "\\vsimem\\x", "//vsistdin/",
                      "/./vsimem/x", "/data/../vsimem/x", " /vsimem/x", "http://example.org/a.geojson",
                      "PG:dbname=x", "pg:dbname=x", "MYSQL:db", "WFS:http://example.org", "ODBC:u/p@d",
                      "GPKG:city.gpkg:roads", "file:///etc/passwd", "<OGRVRTDataSource/>", " <VRTDataset/>",
                      "{\"type\":\"FeatureCollection\"}", "[1]", "a.vrt", "a.VRT", "", "  "));

TEST_P(Refused, BeforeAnythingIsOpened) {
    EXPECT_THAT(failureOf([] { openWorkspace(GetParam()); }), HasSubstr("is refused"));
    EXPECT_THAT(
        failureOf([] { static_cast<void>(host::gdal::GdalHost::create()->openMapDocument(GetParam())); }),
        HasSubstr("is refused"));
}

TEST(Location, OfWhatIsNeitherAFileNorAFolderIsRefused) {
    const TemporaryFolder folder;
    const std::string sPipe = folder.file("pipe.gpkg");
    ASSERT_EQ(::mkfifo(sPipe.c_str(), 0600), 0);
    for (const std::string& sPath : {sPipe, std::string("/proc/version"), std::string("/dev/null")}) {
        EXPECT_FALSE(host::gdal::isFile(sPath)) << sPath;
        EXPECT_THAT(
            failureOf([&] { static_cast<void>(host::gdal::GdalHost::create()->openMapDocument(sPath)); }),
            HasSubstr("\"" + sPath + "\" is neither a file nor a folder that holds data"));
        EXPECT_THAT(failureOf([&] { openWorkspace(sPath); }), HasSubstr("is neither a file nor a folder"));
    }
    EXPECT_TRUE(host::gdal::isFile(folder.write("empty.csv", "")));
}

TEST(Location, OfAFileOfTheKernelIsRefusedWhateverItsSize) {
    const std::string sPath = "/sys/devices/system/cpu/online";
    std::error_code error;
    if (std::filesystem::file_size(sPath, error) == 0 || error)
        GTEST_SKIP() << "this system shows no such file, or no size of it";
    EXPECT_FALSE(host::gdal::isFile(sPath));
    EXPECT_THAT(failureOf([&] { openWorkspace(sPath); }), HasSubstr("is neither a file nor a folder"));
}

TEST(Location, OfAFolderOfTheKernelsHoldsNoData) {
    EXPECT_THAT(
        failureOf([] { static_cast<void>(host::gdal::GdalHost::create()->openMapDocument("/proc/self")); }),
        HasSubstr("holds no data"));
}

TEST(Location, WithANulCharacterIsRefused) {
    using namespace std::string_literals;
    EXPECT_THAT(failureOf([] { openWorkspace("a.csv\0.gpkg"s); }), HasSubstr("NUL"));
}

TEST(Location, OfAFileWrittenAsAnAddressIsRefusedWithItsOwnRemedy) {
    EXPECT_THAT(failureOf([] { openWorkspace("FILE:///data/city.gpkg"); }),
                HasSubstr("is refused: addresses are not read; give the path of the file or the folder"));
}

TEST(Location, ThatIsRefusedDoesNotShowItsPassword) {
    const std::string sText = failureOf([] { openWorkspace("PG:host=h user=u password=hush dbname=d"); });
    EXPECT_THAT(sText, HasSubstr("refused"));
    EXPECT_THAT(sText, Not(HasSubstr("hush")));
}

TEST(Location, OfAVirtualDatasetIsNotReadUnderAnotherNameEither) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    const std::string sPath =
        folder.write("innocent.xml", "<OGRVRTDataSource><OGRVRTLayer name=\"roads\"><SrcDataSource>" + sCity +
                                         "</SrcDataSource></OGRVRTLayer></OGRVRTDataSource>");
    EXPECT_NE(failureOf([&] { openWorkspace(sPath); }), "");
    EXPECT_NE(failureOf([&] { static_cast<void>(host::gdal::GdalHost::create()->openMapDocument(sPath)); }),
              "");
}

TEST(Location, IsMadeAbsoluteFromTheBaseFolder) {
    using host::gdal::filePathOf;
    EXPECT_EQ(filePathOf("a/b.csv", "/base"), "/base/a/b.csv");
    EXPECT_EQ(filePathOf("..\\b.csv", "/base/x"), "/base/b.csv");
    EXPECT_EQ(filePathOf("/data/./c/", "/base"), "/data/c");
    EXPECT_EQ(filePathOf("C:\\data\\x.mdb", "/base"), "/base/C:/data/x.mdb");
    EXPECT_EQ(filePathOf("\\\\server\\share\\x.csv", "/base"), "/server/share/x.csv");
    EXPECT_EQ(filePathOf("vsidata/a.csv", "/base"), "/base/vsidata/a.csv");
}

TEST(Location, MayHoldAColonAfterItsFirstFolder) {
    EXPECT_EQ(host::gdal::filePathOf("./a:b.csv", "/base"), "/base/a:b.csv");
}

TEST(Passwords, AreTakenOutOfEveryText) {
    using halvane::withoutPasswords;
    EXPECT_EQ(withoutPasswords("PG:host=h password=hush dbname=d"), "PG:host=h password=*** dbname=d");
    EXPECT_EQ(withoutPasswords("password='a b\\'c' x"), "password=*** x");
    EXPECT_EQ(withoutPasswords("PWD = hush;UID=u"), "PWD = ***");
    EXPECT_EQ(withoutPasswords("postgresql://u:hush@h/d"), "postgresql://u:***@h/d");
    EXPECT_EQ(withoutPasswords("nothing here"), "nothing here");
}

} // namespace
} // namespace halvane::tests
