// What a leaf writes of maps, layers and workspaces.

#include "ElementPropertyTest.h"

#include <string>

namespace halvane::test {
namespace {

using MapAndLayerValues = ElementPropertyTest;

TEST_F(MapAndLayerValues, WritesASpatialReferencePropertyOfTheMap) {
    EXPECT_EQ(leaf("DataSource='Map' DataProperty='SPATIALREFERENCE.XMIN'"), "<Out><V>-12.5</V></Out>");
    EXPECT_EQ(leaf("DataSource='Map' DataProperty='SpatialReference.xmin'"), "<Out><V>-12.5</V></Out>");
}

TEST_F(MapAndLayerValues, FailsForAMapPropertyWithoutADot) {
    EXPECT_EQ(leaf("DataSource='Map' DataProperty='SPATIALREFERENCE'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 5);
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures[0].sContext,
              "the DataProperty \"SPATIALREFERENCE\" of a map has no \".\", as in "
              "\"SPATIALREFERENCE.UNITS\"");
}

TEST_F(MapAndLayerValues, WritesNothingForAnotherMapProperty) {
    EXPECT_EQ(leaf("DataSource='Map' DataProperty='Some.Thing'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_TRUE(observer.noticed("V", Notice::UnknownProperty));
}

TEST_F(MapAndLayerValues, WritesNothingForAMapThatIsNotThere) {
    EXPECT_EQ(leaf("DataSource='Map' IdentityValue='Nowhere' DataProperty='noDot'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(MapAndLayerValues, DoesNotRecogniseTheMapInLowerCase) {
    EXPECT_EQ(leaf("DataSource='map' DataProperty='SPATIALREFERENCE'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(MapAndLayerValues, WritesALayersNameAndCountByPropertiesInAnyLetterCase) {
    EXPECT_EQ(
        leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='roads' DataProperty='LAYERNAME'"),
        "<Out><V>Roads</V></Out>");
    EXPECT_EQ(
        leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='roads' DataProperty='featurecount'"),
        "<Out><V>3</V></Out>");
}

TEST_F(MapAndLayerValues, CountsAllFeaturesWhateverIsSelected) {
    world.pRoadsLayer->select({2});
    EXPECT_EQ(
        leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='roads' DataProperty='FeatureCount'"),
        "<Out><V>3</V></Out>");
}

TEST_F(MapAndLayerValues, WritesALayersSpatialReference) {
    EXPECT_EQ(leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='roads' "
                   "DataProperty='SPATIALREFERENCE.XMAX'"),
              "<Out><V>12.5</V></Out>");
}

TEST_F(MapAndLayerValues, ReachesTheLayerPropertiesByTheKindInAnyLetterCase) {
    EXPECT_EQ(leafBelowRoads("DataSource='featurelayer' DataProperty='LayerName'"),
              "<Out><L><V>Roads</V></L></Out>");
    EXPECT_EQ(leafBelowRoads("DataSource='MAPLAYER' DataProperty='LayerName'"),
              "<Out><L><V>Roads</V></L></Out>");
}

TEST_F(MapAndLayerValues, TellsOfAPropertyThatItsKindDoesNotKnow) {
    const std::string sBound =
        "<r Name='R' DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo'/>"
        "<t Name='T' DataSource='TinLayer' Identity='LayerName' IdentityValue='Relief'/>";
    for (const auto* sSource :
         {"DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'",
          "DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo'",
          "DataSource='TinLayer' Identity='LayerName' IdentityValue='Relief'", "DataSource='RasterWorkspace'",
          "DataSource='TinWorkspace'", "DataSource='Workspace' DataLocation='C:\\data\\town.mdb'"}) {
        observer.aNotices.clear();
        run("<a Name='Out'>" + sBound + "<v Name='V' DataProperty='Colour' " + sSource + "/></a>");
        EXPECT_TRUE(observer.noticed("V", Notice::UnknownProperty)) << sSource;
    }
}

TEST_F(MapAndLayerValues, WritesNothingForALayerThatIsNotThereOrAnUnknownProperty) {
    EXPECT_EQ(
        leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='Nowhere' DataProperty='LayerName'"),
        "<Out><V/></Out>");
    EXPECT_EQ(leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' DataProperty='Colour'"),
              "<Out><V/></Out>");
    EXPECT_TRUE(observer.noticed("V", Notice::UnknownProperty));
}

TEST_F(MapAndLayerValues, WritesATinLayersName) {
    EXPECT_EQ(
        leaf("DataSource='TinLayer' Identity='LayerName' IdentityValue='relief' DataProperty='layername'"),
        "<Out><V>Relief</V></Out>");
    EXPECT_EQ(
        leaf("DataSource='TinLayer' Identity='LayerName' IdentityValue='Nowhere' DataProperty='LayerName'"),
        "<Out><V/></Out>");
}

TEST_F(MapAndLayerValues, WritesARasterLayersNameAndItsFoldersPath) {
    EXPECT_EQ(
        leaf("DataSource='RasterLayer' Identity='LayerName' IdentityValue='photo' DataProperty='LayerName'"),
        "<Out><V>Photo</V></Out>");
    EXPECT_EQ(leaf("DataSource='RasterLayer' Identity='LayerName' IdentityValue='photo' DataProperty='PATH'"),
              "<Out><V>D:\\data\\</V></Out>");
}

TEST_F(MapAndLayerValues, WritesAnEmptyPathForARasterWithoutAFolder) {
    world.setPhotoPath("dem.img");
    EXPECT_EQ(leaf("DataSource='RasterLayer' Identity='LayerName' IdentityValue='photo' DataProperty='Path'"),
              "<Out><V/></Out>");
    EXPECT_FALSE(observer.noticed("V", Notice::UnknownProperty));
}

TEST_F(MapAndLayerValues, CutsARastersPathAtTheHostsOwnSeparator) {
    world.pHost->setPathSeparator('/');
    world.setPhotoPath("/data/back\\slash/dem.img");
    EXPECT_EQ(leaf("DataSource='RasterLayer' Identity='LayerName' IdentityValue='photo' DataProperty='Path'"),
              "<Out><V>/data/back\\slash/</V></Out>");
}

TEST_F(MapAndLayerValues, WritesTheFolderOfTheCurrentRasterAsItsWorkspace) {
    EXPECT_EQ(
        run("<a Name='Out'><l Name='L' DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo'>"
            "<v Name='V' DataSource='RasterWorkspace' DataProperty='path'/></l></a>"),
        "<Out><L><V>D:\\data\\</V></L></Out>");
    EXPECT_EQ(leaf("DataSource='RasterWorkspace' DataProperty='Path'"), "<Out><V/></Out>");
}

TEST_F(MapAndLayerValues, WritesALocalDatabaseForEveryPropertyWithoutAWorkspace) {
    EXPECT_EQ(leaf("DataSource='Workspace' DataLocation='C:\\nowhere' DataProperty='Path'"),
              "<Out><V>vemiLocalDatabaseWorkspace</V></Out>");
    EXPECT_EQ(leaf("DataSource='Workspace' DataLocation='C:\\nowhere' DataProperty='Anything'"),
              "<Out><V>vemiLocalDatabaseWorkspace</V></Out>");
}

TEST_F(MapAndLayerValues, WritesAWorkspacesPath) {
    EXPECT_EQ(leafBelowRoads("DataSource='Workspace' DataProperty='path'"),
              "<Out><L><V>C:\\data\\town.mdb</V></L></Out>");
}

TEST_F(MapAndLayerValues, WritesAWorkspacesTypeByItsCode) {
    const auto typeText = [&](std::int32_t lCode) {
        world.replaceWorkspace(lCode);
        return leafBelowRoads("DataSource='Workspace' DataProperty='workspacetype'");
    };
    EXPECT_EQ(typeText(0), "<Out><L><V>vemiFileSystemWorkspace</V></L></Out>");
    EXPECT_EQ(typeText(1), "<Out><L><V>vemiLocalDatabaseWorkspace</V></L></Out>");
    EXPECT_EQ(typeText(2), "<Out><L><V>vemiRemoteDatabaseWorkspace</V></L></Out>");
    EXPECT_EQ(typeText(3), "<Out><L><V/></L></Out>");
}

TEST_F(MapAndLayerValues, WritesATinWorkspacesPathOnly) {
    const auto tin = [&](const std::string& sProperty) {
        return run(
            "<a Name='Out'><l Name='L' DataSource='TinLayer' Identity='LayerName' IdentityValue='Relief'>"
            "<v Name='V' DataSource='TinWorkspace' DataProperty='" +
            sProperty + "'/></l></a>");
    };
    EXPECT_EQ(tin("Path"), "<Out><L><V>E:\\tins</V></L></Out>");
    EXPECT_EQ(tin("WorkspaceType"), "<Out><L><V/></L></Out>");
    EXPECT_EQ(leaf("DataSource='TinWorkspace' DataProperty='Path'"), "<Out><V/></Out>");
}

TEST_F(MapAndLayerValues, FailsForTheCountOfALayerWithoutAFeatureClass) {
    world.pTownMap->addLayer(host::memory::MemoryFeatureLayer::make("Bare", nullptr));
    EXPECT_EQ(
        leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='Bare' DataProperty='FeatureCount'"),
        "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 91);
}

TEST_F(MapAndLayerValues, RecognisesALayersSpatialReferenceInAnyLetterCase) {
    EXPECT_EQ(leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='roads' "
                   "DataProperty='SpatialReference.xMax'"),
              "<Out><V>12.5</V></Out>");
}

TEST_F(MapAndLayerValues, WritesAPropertyOfTheSubtypesForALeafBelowALayer) {
    const auto pSubtypes = host::memory::MemorySubtypes::make("KIND", 5);
    pSubtypes->addSubtype(5, "Track");
    world.pRoads->setSubtypes(pSubtypes);
    EXPECT_EQ(leafBelowRoads("DataSource='SubType' DataProperty='SubTypeFieldName'"),
              "<Out><L><V>KIND</V></L></Out>");
}

TEST_F(MapAndLayerValues, WritesNothingForAPropertyThatARastersFolderDoesNotHave) {
    EXPECT_EQ(run("<a Name='Out'><p Name='P' DataSource='RasterLayer' Identity='LayerName' "
                  "IdentityValue='Photo' DataProperty='Path'/>"
                  "<w Name='W' DataSource='RasterWorkspace' DataProperty='Path'/>"
                  "<o Name='O' DataSource='RasterWorkspace' DataProperty='LayerName'/></a>"),
              "<Out><P>D:\\data\\</P><W>D:\\data\\</W><O/></Out>");
}

} // namespace
} // namespace halvane::test
