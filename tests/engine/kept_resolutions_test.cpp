// What is kept of a resolution from item to item, and what is asked anew.

#include "engine/sources/Binding.h"
#include "support/ExportTest.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using host::memory::MemoryFeatureLayer;

class KeptResolution : public ExportTest {
protected:
    /// Two tags of the layer Roads; "Title" is another field below each.
    void listTwoTagsOfTheRoads() {
        state.oExternalDom = dom::Document::create();
        ASSERT_TRUE(state.oExternalDom->loadXML(
            "<v><q TagName='Street' Alias='Roads'><QvFields><QvField TagName='Title' Alias='Street name'/>"
            "</QvFields></q><q TagName='Way' Alias='Roads'><QvFields><QvField TagName='Title' Alias='Lanes'/>"
            "</QvFields></q></v>"));
        state.sExternalNodePath = "//q";
        state.dTagNames = dCollection::create();
        state.dTagNames->Add(std::string("ROADS"), "STREET");
        state.dTagNames->Add(std::string("ROADS"), "WAY");
    }

    /// A layer "Elsewhere" whose class lies in the database roads.mdb.
    void addLayerOfAnotherDatabase() {
        world.pTownMap->addLayer(MemoryFeatureLayer::make("Elsewhere", world.pRoadsOnDisk));
    }

    static std::string road(const std::string& sNodes) { return "<Road>" + sNodes + "</Road>"; }
    static std::string forEachRoad(const std::string& sNodes) {
        return group("<r Name='Road' DataSource='Feature' Entries='Multiple'>" + sNodes + "</r>");
    }
    static std::string bindLayer(const std::string& sName) {
        return "<b Name='B' DataSource='MapLayer' Identity='LayerName' IdentityValue='" + sName + "'/>";
    }
};

TEST_F(KeptResolution, TakesTheFieldsOfEachOfTwoTagsOfOneLayerInEveryItem) {
    listTwoTagsOfTheRoads();
    const std::string sTitle = "<n Name='N' DataSource='Feature' Identity='TagName' IdentityValue='Title'/>";
    EXPECT_EQ(run(forEachRoad(
                  "<g Name='S' DataSource='MapLayer' Identity='TagName' IdentityValue='Street'>" + sTitle +
                  "</g><h Name='W' DataSource='MapLayer' Identity='TagName' IdentityValue='Way'>" + sTitle +
                  "</h>")),
              "<Out><L>" + road("<S><N>High Street</N></S><W><N>2</N></W>") +
                  road("<S><N>Mill Lane</N></S><W><N>1</N></W>") + road("<S><N>Quay</N></S><W><N>4</N></W>") +
                  "</L></Out>");
}

TEST_F(KeptResolution, AsksTheWorkspaceAnewWhenAnotherLayerIsCurrent) {
    addLayerOfAnotherDatabase();
    EXPECT_EQ(
        run(forEachRoad("<w Name='W' DataSource='Workspace' DataProperty='Path'/>" + bindLayer("Elsewhere"))),
        "<Out><L>" + road("<W>C:\\data\\town.mdb</W><B/>") + road("<W>C:\\data\\roads.mdb</W><B/>") +
            road("<W>C:\\data\\roads.mdb</W><B/>") + "</L></Out>");
}

TEST_F(KeptResolution, HasNoWorkspaceWhereItFailsAlthoughItWasFoundBefore) {
    world.pTownMap->addLayer(MemoryFeatureLayer::make("Bare", nullptr));
    EXPECT_EQ(
        run(forEachRoad("<w Name='W' DataSource='Workspace' DataProperty='Path'/>" + bindLayer("Bare"))),
        "<Out><L>" + road("<W>C:\\data\\town.mdb</W><B/>") + road("<W>vemiLocalDatabaseWorkspace</W><B/>") +
            road("<W>vemiLocalDatabaseWorkspace</W><B/>") + "</L></Out>");
    ASSERT_EQ(observer.aFailures.size(), 2U);
    EXPECT_EQ(observer.aFailures[0].lNumber, 91);
    EXPECT_EQ(observer.aFailures[0].sName, "W");
}

TEST_F(KeptResolution, IsEmptyAfterAFailureWhateverItWas) {
    Value result = ObjectPtr(world.pRoadsLayer);
    ResolveDataSource(state, result, "FeatureLayer", world.pTownMap, nullptr, "LayerName", "ROADS",
                      "C:\\nowhere");
    EXPECT_TRUE(isEmpty(result));
    EXPECT_EQ(state.lModErrNum, 91);
    result = ObjectPtr(world.pRoadsLayer);
    ResolveDataSource(state, result, " ", world.pTownMap, nullptr, "", "", "");
    EXPECT_TRUE(isEmpty(result));
}

TEST_F(KeptResolution, FindsALayerInTheMapThatIsCurrentNow) {
    ControlAttributes attributes;
    attributes.sDataSource = "MapLayer";
    attributes.sIdentity = "LayerName";
    attributes.sIdentityValue = "Piers";
    const Binding binding(attributes);
    EXPECT_TRUE(isEmpty(resolveBinding(state, binding)));
    state.pMap = world.pHarbourMap;
    EXPECT_FALSE(isEmpty(resolveBinding(state, binding)));
    state.pMap = world.pTownMap;
    EXPECT_TRUE(isEmpty(resolveBinding(state, binding)));
}

TEST_F(KeptResolution, CountsTheFeaturesOfEachLayerThatIsCurrent) {
    addLayerOfAnotherDatabase();
    const auto count = [](const std::string& sLayer) {
        return "<c Name='" + sLayer +
               "' DataSource='MapLayer' Identity='LayerName' DataProperty='FeatureCount' IdentityValue='" +
               sLayer + "'/>";
    };
    EXPECT_EQ(run("<a Name='Out'>" + count("Roads") + count("Elsewhere") + count("Roads") + "</a>"),
              "<Out><Roads>3</Roads><Elsewhere>0</Elsewhere><Roads>3</Roads></Out>");
}

TEST_F(KeptResolution, IsFoundAgainForALayerAfterOneThatHadNothing) {
    ControlAttributes attributes;
    attributes.sDataSource = "Feature";
    const Binding binding(attributes);
    state.pFeatureLayer = world.pRoadsLayer;
    EXPECT_FALSE(isEmpty(resolveBinding(state, binding)));
    state.pFeatureLayer = MemoryFeatureLayer::make("Bare", nullptr);
    EXPECT_TRUE(isEmpty(resolveBinding(state, binding)));
    state.pFeatureLayer = world.pRoadsLayer;
    EXPECT_FALSE(isEmpty(resolveBinding(state, binding)));
}

TEST_F(KeptResolution, IsNoneOfAWorkspaceThatFollowsTheTinLayer) {
    ControlAttributes attributes;
    attributes.sDataSource = "TinWorkspace";
    const Binding binding(attributes);
    const auto workspaceOf = [&](const host::memory::MemoryWorkspacePtr& pWorkspace) {
        state.pTinLayer =
            host::memory::MemoryTinLayer::make("Relief", host::memory::MemoryDataset::make(pWorkspace));
        return objectAs<host::GisWorkspace>(resolveBinding(state, binding));
    };
    EXPECT_EQ(workspaceOf(world.pTinWorkspace), world.pTinWorkspace);
    EXPECT_EQ(workspaceOf(world.pWorkspace), world.pWorkspace);
}

TEST_F(KeptResolution, OfATinLayerLeavesTheRasterLayerCurrent) {
    EXPECT_EQ(run("<a Name='Out'>"
                  "<r Name='R' DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo'/>"
                  "<t Name='T' DataSource='TinLayer' Identity='LayerName' IdentityValue='Relief'/>"
                  "<p Name='P' DataSource='RasterWorkspace' DataProperty='Path'/></a>"),
              "<Out><R/><T/><P>D:\\data\\</P></Out>");
}

TEST_F(KeptResolution, IsTheSameObjectAsLongAsNothingChanges) {
    ControlAttributes attributes;
    attributes.sDataSource = "FeatureLayer";
    attributes.sIdentity = "LayerName";
    attributes.sIdentityValue = "ROADS";
    attributes.sDataLocation = "C:\\data\\town.mdb";
    const Binding binding(attributes);
    const auto pFirst = objectAs<host::GisLayer>(resolveBinding(state, binding));
    ASSERT_NE(pFirst, nullptr);
    EXPECT_EQ(objectAs<host::GisLayer>(resolveBinding(state, binding)), pFirst);
    ++state.nGeneration;
    EXPECT_NE(objectAs<host::GisLayer>(resolveBinding(state, binding)), pFirst)
        << "a layer from disk is built anew";
}

} // namespace
} // namespace halvane::test
