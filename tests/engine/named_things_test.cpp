#include "engine/sources/NamedThings.h"

#include "support/TownWorld.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

class LayerOfNoKind : public host::GisLayer {
public:
    [[nodiscard]] std::string name() const override { return "Sketch"; }
};

TEST(KindOfALayer, IsThatOfItsRole) {
    const TownWorld world;
    EXPECT_EQ(kindOf(*world.pRoadsLayer), ThingKind::FeatureLayer);
    EXPECT_EQ(kindOf(*world.pRasterLayer), ThingKind::RasterLayer);
    EXPECT_EQ(kindOf(*world.pTinLayer), ThingKind::TinLayer);
    EXPECT_EQ(kindOf(*world.pBaseGroup), ThingKind::GroupLayer);
    EXPECT_EQ(kindOf(LayerOfNoKind()), ThingKind::OtherLayer);
}

TEST(AskingForAThing, TellsItsSourceIdentityAndWhatPeopleCallIt) {
    const auto textOf = [](ThingKind kind) {
        const Asking& asking = askingFor(kind);
        std::string sText(asking.sDataSource);
        for (const std::string_view sPart : {asking.sIdentity, asking.sOne, asking.sMany})
            sText.append("|").append(sPart);
        return sText;
    };
    EXPECT_EQ(textOf(ThingKind::FeatureLayer), "MapLayer|LayerName|feature layer|feature layers");
    EXPECT_EQ(textOf(ThingKind::RasterLayer), "RasterLayer|LayerName|raster layer|raster layers");
    EXPECT_EQ(textOf(ThingKind::TinLayer), "TinLayer|LayerName|TIN layer|TIN layers");
    EXPECT_EQ(textOf(ThingKind::GroupLayer), "||group layer|group layers");
    EXPECT_EQ(textOf(ThingKind::OtherLayer), "||layer of another kind|layers of another kind");
    EXPECT_EQ(textOf(ThingKind::Table), "Table|TableName|table|tables");
}

TEST(OtherKind, SaysHowToAskForTheThing) {
    EXPECT_EQ(otherKind("Photo", ThingKind::RasterLayer),
              "\"Photo\" is a raster layer: ask for it with DataSource=\"RasterLayer\" "
              "Identity=\"LayerName\"");
    EXPECT_EQ(otherKind("SIGNS", ThingKind::Table),
              "\"SIGNS\" is a table: ask for it with DataSource=\"Table\" Identity=\"TableName\"");
}

TEST(OtherKind, SaysOnlyWhatItIsWhereNothingAsksForIt) {
    EXPECT_EQ(otherKind("Sketch", ThingKind::OtherLayer), "\"Sketch\" is a layer of another kind");
    EXPECT_EQ(otherKind("Base", ThingKind::GroupLayer),
              "\"Base\" is a group layer: name a layer in it; one in a group of a group is not found");
}

} // namespace
} // namespace halvane::test
