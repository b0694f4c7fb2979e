// Files beside a raster that say where it lies.

#include "SampleData.h"

#include "support/OpenCounter.h"

#include "host/Map.h"
#include "host/gdal/objects/Layers.h"
#include "host/gdal/source/Drivers.h"
#include "host/gdal/source/HandlePool.h"

#include <gdal_priv.h>
#include <gmock/gmock.h>

#include <filesystem>

namespace halvane::tests {
namespace {

using ::testing::HasSubstr;

constexpr const char* sSideFile = "<PAMDataset><SRS>EPSG:25832</SRS><GeoTransform>500000, 10, 0, 5500000, 0, "
                                  "-10</GeoTransform></PAMDataset>";

// A raster in a format that cannot say where it lies.
std::string makePicture(const TemporaryFolder& folder, const std::string& sFile, const char* pFormat) {
    const TemporaryFolder from;
    const GDALDatasetUniquePtr pCells(GDALDataset::Open(makeRaster(from, "cells.tif", "GTiff").c_str()));
    GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName(pFormat);
    const std::string sPath = folder.file(sFile);
    pDriver->CreateCopy(sPath.c_str(), pCells.get(), 0, nullptr, nullptr, nullptr)->Release();
    std::filesystem::remove(sPath + ".aux.xml");
    return sPath;
}

std::shared_ptr<host::gdal::GdalRasterLayer> rasterOf(const std::string& sPath) {
    return std::dynamic_pointer_cast<host::gdal::GdalRasterLayer>(
        host::gdal::GdalHost::create()->openMapDocument(sPath)->focusMap()->layer(0));
}

class SideFilesOf : public ::testing::TestWithParam<const char*> {
protected:
    [[nodiscard]] std::string name() const {
        return std::string(GetParam()) == "AAIGrid" ? "cells.asc" : "cells." + std::string(GetParam());
    }

    TemporaryFolder folder;
    std::string sPath = makePicture(folder, name(), GetParam());
};
INSTANTIATE_TEST_SUITE_P(Formats, SideFilesOf, ::testing::Values("PNG", "JPEG", "AAIGrid"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(SideFilesOf, HoldTheReference) {
    EXPECT_EQ(rasterOf(sPath)->spatialReference(std::nullopt), nullptr);
    folder.write(name() + ".aux.xml", sSideFile);
    const auto pReference = rasterOf(sPath)->spatialReference(std::nullopt);
    ASSERT_NE(pReference, nullptr);
    EXPECT_THAT(pReference->description(), HasSubstr("Zone          32"));
}

TEST_P(SideFilesOf, LeadToNoOtherFile) {
    const TemporaryFolder others;
    const std::string sOther = others.write("other.tif", "no raster");
    folder.write(name() + ".aux.xml", "<PAMDataset><Metadata domain='OVERVIEWS'><MDI key='OVERVIEW_FILE'>" +
                                          sOther + "</MDI></Metadata></PAMDataset>");
    const test::OpenCounter opens(others.path());
    ASSERT_TRUE(opens.works());
    EXPECT_EQ(rasterOf(sPath)->filePath(), sPath);
    EXPECT_EQ(rasterOf(sPath)->spatialReference(std::nullopt), nullptr);
    EXPECT_EQ(opens.opens(), 0);
}

TEST_P(SideFilesOf, AreNeverWritten) {
    const std::vector<std::string> before = folder.names();
    {
        const auto pLayer = rasterOf(sPath);
        EXPECT_EQ(pLayer->filePath(), sPath);
        static_cast<void>(pLayer->spatialReference(std::nullopt));
    }
    EXPECT_EQ(folder.names(), before);
    {
        // What the library is told, or finds out, about a raster it keeps until the handle is closed.
        host::gdal::Source source;
        source.sOpenName = sPath;
        source.sDisplayName = sPath;
        source.sDriver = GetParam();
        source.lOpenKind = GDAL_OF_RASTER;
        host::gdal::MissingRows missing;
        const GDALDatasetUniquePtr pDataset = host::gdal::openDataset(source, missing);
        pDataset->SetMetadataItem("KEY", "VALUE");
        pDataset->GetRasterBand(1)->ComputeStatistics(0, nullptr, nullptr, nullptr, nullptr, nullptr,
                                                      nullptr);
    }
    EXPECT_EQ(folder.names(), before);
}

TEST_P(SideFilesOf, AreReadInAFolderThatNobodyMayWriteTo) {
    folder.write(name() + ".aux.xml", sSideFile);
    std::filesystem::permissions(folder.path(),
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    const std::vector<std::string> before = folder.names();
    EXPECT_NE(rasterOf(sPath)->spatialReference(std::nullopt), nullptr);
    EXPECT_EQ(folder.names(), before);
}

} // namespace
} // namespace halvane::tests
