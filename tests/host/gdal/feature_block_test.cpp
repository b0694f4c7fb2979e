#include "SampleData.h"

#include "host/gdal/rows/FeatureBlock.h"
#include "host/gdal/source/Drivers.h"

#include <gtest/gtest.h>

#include <string>

namespace halvane::tests {
namespace {

using host::gdal::FeatureBlock;
using host::gdal::readFeatures;

class FeatureBlocks : public ::testing::Test {
protected:
    static void SetUpTestSuite() { host::gdal::prepareLibrary(); }

    void add(std::size_t nTextBytes) const {
        OGRFeature feature(pLayer_->GetLayerDefn());
        feature.SetField("T", std::string(nTextBytes, 'x').c_str());
        EXPECT_EQ(pLayer_->CreateFeature(&feature), OGRERR_NONE);
    }
    [[nodiscard]] FeatureBlock read() const {
        FeatureBlock block;
        host::gdal::MissingRows missing;
        readFeatures(*pLayer_, 512, "Reading", block, missing, nullptr, [] { return true; });
        return block;
    }

private:
    [[nodiscard]] GDALDatasetUniquePtr makeDataset() const {
        return GDALDatasetUniquePtr(GetGDALDriverManager()->GetDriverByName("GPKG")->Create(
            folder_.file("rows.gpkg").c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    }
    static OGRLayer* makeLayer(GDALDataset& dataset) {
        OGRLayer* pLayer = dataset.CreateLayer("rows", nullptr, wkbNone, nullptr);
        OGRFieldDefn field("T", OFTString);
        pLayer->CreateField(&field);
        return pLayer;
    }

    TemporaryFolder folder_;
    GDALDatasetUniquePtr pDataset_ = makeDataset();

protected:
    OGRLayer* pLayer_ = makeLayer(*pDataset_);
};

TEST_F(FeatureBlocks, HoldSoManyRows) {
    for (int lRow = 0; lRow < 600; ++lRow)
        add(10);
    const FeatureBlock first = read();
    EXPECT_EQ(first.features.size(), 512U);
    EXPECT_FALSE(first.bLast);
    const FeatureBlock last = read();
    EXPECT_EQ(last.features.size(), 88U);
    EXPECT_TRUE(last.bLast);
    EXPECT_FALSE(last.failure.has_value());
}

TEST_F(FeatureBlocks, HoldFewLargeRowsWhereverTheyStandAmongSmallOnes) {
    for (int lRow = 0; lRow < 40; ++lRow)
        add(lRow % 2 == 0 ? 10 : 1'000'000);
    EXPECT_LE(read().features.size(), 6U);
}

TEST_F(FeatureBlocks, HoldOneRowThatIsLargerThanAll) {
    add(10'000'000);
    add(10);
    EXPECT_EQ(read().features.size(), 1U);
}

TEST_F(FeatureBlocks, EndWhereNoMoreRowsAreWanted) {
    for (int lRow = 0; lRow < 10; ++lRow)
        add(10);
    FeatureBlock block;
    int lAsked = 0;
    host::gdal::MissingRows missing;
    readFeatures(*pLayer_, 512, "Reading", block, missing, nullptr, [&lAsked] { return ++lAsked <= 3; });
    EXPECT_EQ(block.features.size(), 3U);
    EXPECT_FALSE(block.bLast);
}

} // namespace
} // namespace halvane::tests
