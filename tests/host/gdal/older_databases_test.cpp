// File databases of an older version: the library tells nothing of how their tables are defined.

#include "AreaByHand.h"
#include "SampleData.h"
#include "host/Subtypes.h"
#include "host/Workspace.h"

#include "host/gdal/source/Drivers.h"

#include <gmock/gmock.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <fstream>
#include <iterator>

namespace halvane::tests {
namespace {

struct Attribute {
    const char* pName;
    const char* pValue;
};

void addTable(GDALDataset& dataset, const char* pName, OGRFieldType type,
              const std::vector<Attribute>& attributes) {
    OGRLayer& layer = *dataset.CreateLayer(pName, nullptr, wkbNone, nullptr);
    for (const Attribute& attribute : attributes) {
        OGRFieldDefn field(attribute.pName, type);
        ASSERT_EQ(layer.CreateField(&field), OGRERR_NONE);
    }
    OGRFeature feature(layer.GetLayerDefn());
    for (const Attribute& attribute : attributes)
        feature.SetField(attribute.pName, attribute.pValue);
    ASSERT_EQ(layer.CreateFeature(&feature), OGRERR_NONE);
}

void addPoints(GDALDataset& dataset) {
    OGRSpatialReference reference;
    reference.importFromEPSG(25832);
    OGRLayer& layer = *dataset.CreateLayer("points", &reference, wkbPoint25D, nullptr);
    OGRFeature feature(layer.GetLayerDefn());
    const OGRPoint point(500000, 5500000, 12);
    feature.SetGeometry(&point);
    ASSERT_EQ(layer.CreateFeature(&feature), OGRERR_NONE);
}

// Other names of the same length in the catalogue of a database.
void renameInCatalogue(const std::string& sDatabase,
                       const std::vector<std::pair<std::string, std::string>>& names) {
    const std::string sPath = sDatabase + "/a00000001.gdbtable";
    std::ifstream stream(sPath, std::ios::binary);
    std::string sBytes{std::istreambuf_iterator<char>(stream), {}};
    for (const auto& [sOld, sNew] : names) {
        const std::size_t nAt = sBytes.find(sOld);
        ASSERT_NE(nAt, std::string::npos) << sOld;
        sBytes.replace(nAt, sOld.size(), sNew);
    }
    std::ofstream(sPath, std::ios::binary) << sBytes;
}

// A database of the newer version that has the tables of the older one, and those of the newer no longer.
std::string makeOlderDatabase(const TemporaryFolder& folder) {
    host::gdal::prepareLibrary();
    const std::string sPath = folder.file("old.gdb");
    {
        GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName("OpenFileGDB");
        const GDALDatasetUniquePtr pDataset(pDriver->Create(sPath.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        addPoints(*pDataset);
        addTable(*pDataset, "XXX_ObjectClasses", OFTString,
                 {{"Name", "points"}, {"CLSID", "{52353152-891A-11D0-BEC6-00805F7C4268}"}});
        addTable(*pDataset, "XXX_FeatureClasses", OFTInteger,
                 {{"ObjectClassID", "1"}, {"FeatureType", "1"}, {"GeometryType", "1"}});
    }
    renameInCatalogue(sPath, {{"XXX_ObjectClasses", "GDB_ObjectClasses"},
                              {"XXX_FeatureClasses", "GDB_FeatureClasses"},
                              {"GDB_Items", "OLD_Items"}});
    return sPath;
}

TEST(AnOlderFileDatabase, HasTheDerivedDomainsOfItsReference) {
    const TemporaryFolder folder;
    const auto pClass = openWorkspace(makeOlderDatabase(folder))->openFeatureClass("points");
    const auto pReference = pClass->spatialReference();
    EXPECT_THAT(pReference->description(), ::testing::HasSubstr("UTM"));
    const auto xy = pReference->xyDomain();
    ASSERT_TRUE(xy.has_value());
    OGRSpatialReference system;
    ASSERT_EQ(system.importFromEPSG(25832), OGRERR_NONE);
    EXPECT_NEAR(xy->dXMin, areaByHand(system).dXMin, 1);
    EXPECT_EQ(xy->dFalseX, std::floor(xy->dXMin));
    EXPECT_EQ(xy->dScale, 10'000);
    const auto z = pReference->zDomain();
    ASSERT_TRUE(z.has_value());
    EXPECT_EQ(z->dMin, 12);
    EXPECT_EQ(pReference->mDomain(), std::nullopt);
}

TEST(AnOlderFileDatabase, HasNoSubtypes) {
    const TemporaryFolder folder;
    const auto pSubtypes = openWorkspace(makeOlderDatabase(folder))->openFeatureClass("points")->subtypes();
    EXPECT_FALSE(pSubtypes->hasSubtypes());
}

} // namespace
} // namespace halvane::tests
