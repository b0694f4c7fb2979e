// Binding data sources to host objects.

#include "engine/sources/LayerSearch.h"
#include "engine/sources/ModOpenWOrkspace.h"
#include "support/ExportTest.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

class ResolutionTest : public ExportTest {
protected:
    ResolutionTest() { pMap = world.pTownMap; }

    Value resolve(std::string_view sKind, std::string_view sIdentity = "",
                  std::string_view sIdentityValue = "", std::string_view sDataLocation = "") {
        Value result;
        ResolveDataSource(state, result, sKind, pMap, pLayer, sIdentity, sIdentityValue, sDataLocation);
        return result;
    }

    static std::string nameOfLayer(const Value& result) {
        const auto pFound = objectAs<host::GisLayer>(result);
        return pFound == nullptr ? "(nothing)" : pFound->name();
    }
    static std::string nameOfTable(const Value& result) {
        const auto pFound = objectAs<host::GisTable>(result);
        return pFound == nullptr ? "(nothing)" : pFound->datasetName();
    }

    /// The tags TOWN -> Roads, POST -> SIGNS, as an external document and as the collection made of it.
    void listTags() {
        state.oExternalDom = dom::Document::create();
        ASSERT_TRUE(state.oExternalDom->loadXML("<v><q TagName='Street' Alias='Roads'/><q TagName='Post' "
                                                "Alias='Signs'/><q TagName='Hill' Alias='Relief'/></v>"));
        state.sExternalNodePath = "//q";
        state.dTagNames = dCollection::create();
        state.dTagNames->Add(std::string("ROADS"), "STREET");
        state.dTagNames->Add(std::string("SIGNS"), "POST");
        state.dTagNames->Add(std::string("RELIEF"), "HILL");
    }

    host::GisMapPtr pMap;
    host::GisFeatureLayerPtr pLayer;
};

TEST_F(ResolutionTest, GivesNothingForAKindOfBlanks) {
    EXPECT_TRUE(isEmpty(resolve("")));
    EXPECT_TRUE(isEmpty(resolve("   ")));
}

TEST_F(ResolutionTest, ComparesKindsExactly) {
    EXPECT_TRUE(isEmpty(resolve("map")));
    EXPECT_TRUE(isEmpty(resolve(" Map")));
    EXPECT_TRUE(isEmpty(resolve("Nothing")));
    EXPECT_TRUE(observer.aNotices.empty()) << "an unknown kind is not a name that was not found";
}

TEST_F(ResolutionTest, KnowsTheKindsThatYieldNothingByTheirWords) {
    EXPECT_EQ(dataSourceKindOf("FeatureClass"), DataSourceKind::FeatureClass);
    EXPECT_EQ(dataSourceKindOf("FeatureAttributes"), DataSourceKind::FeatureAttributes);
}

TEST_F(ResolutionTest, GivesTheShownMapForABlankIdentityValue) {
    EXPECT_EQ(objectAs<host::GisMap>(resolve("Map")), world.pTownMap);
    EXPECT_EQ(objectAs<host::GisMap>(resolve("Map", "", "  ")), world.pTownMap);
}

TEST_F(ResolutionTest, GivesTheMapNamedInAnyLetterCaseAndNothingForAnUnknownName) {
    EXPECT_EQ(objectAs<host::GisMap>(resolve("Map", "", "HARBOUR map")), world.pHarbourMap);
    EXPECT_TRUE(isEmpty(resolve("Map", "", "Nowhere")));
}

TEST_F(ResolutionTest, PassesAMapsNameUntrimmed) {
    EXPECT_TRUE(isEmpty(resolve("Map", "", " Harbour Map")));
}

TEST_F(ResolutionTest, GivesNoMapWithoutAMapDocument) {
    state.pMapDoc.reset();
    EXPECT_TRUE(isEmpty(resolve("Map")));
}

TEST_F(ResolutionTest, GivesTheSubtypesOfTheCurrentLayersClass) {
    EXPECT_TRUE(isEmpty(resolve("SubType")));
    pLayer = world.pRoadsLayer;
    EXPECT_NE(objectAs<host::GisSubtypes>(resolve("SubType")), nullptr);
}

TEST_F(ResolutionTest, FindsAMapLayerInTheMapInAnyLetterCase) {
    EXPECT_EQ(objectAs<host::GisFeatureLayer>(resolve("MapLayer", "LayerName", "rOADS")), world.pRoadsLayer);
    EXPECT_TRUE(isEmpty(resolve("MapLayer", "LayerName", "Nowhere")));
}

TEST_F(ResolutionTest, BuildsAMapLayerFromDiskWithoutACurrentMap) {
    pMap.reset();
    const auto pFound =
        objectAs<host::GisFeatureLayer>(resolve("MapLayer", "LayerName", "TREES", "C:\\data\\town.mdb"));
    ASSERT_NE(pFound, nullptr);
    EXPECT_EQ(pFound->featureClass()->datasetName(), "TREES");
}

TEST_F(ResolutionTest, BuildsAFeatureLayerFromDiskEvenWhenTheMapHoldsALayerOfThatName) {
    const auto pFound =
        objectAs<host::GisFeatureLayer>(resolve("FeatureLayer", "LayerName", "ROADS", "C:\\data\\roads.mdb"));
    ASSERT_NE(pFound, nullptr);
    EXPECT_NE(pFound, world.pRoadsLayer);
    EXPECT_EQ(pFound->featureClass(), world.pRoadsOnDisk);
}

TEST_F(ResolutionTest, FailsWhenAFeatureLayersWorkspaceCannotBeOpened) {
    EXPECT_TRUE(isEmpty(resolve("FeatureLayer", "LayerName", "ROADS", "C:\\nowhere")));
    EXPECT_EQ(state.lModErrNum, 91);
}

TEST_F(ResolutionTest, FailsWhenTheWorkspaceDoesNotHoldTheFeatureClass) {
    EXPECT_TRUE(isEmpty(resolve("FeatureLayer", "LayerName", "NOWHERE", "C:\\data\\town.mdb")));
    EXPECT_NE(state.lModErrNum, 0);
}

TEST_F(ResolutionTest, FailsWithATypeMismatchForAMapLayerThatIsNoFeatureLayer) {
    EXPECT_TRUE(isEmpty(resolve("MapLayer", "LayerName", "photo")));
    EXPECT_EQ(state.lModErrNum, 13);
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(
        observer.aFailures[0].sContext,
        "\"Photo\" is a raster layer: ask for it with DataSource=\"RasterLayer\" Identity=\"LayerName\"");
}

TEST_F(ResolutionTest, GivesNoLayerForAnotherIdentity) {
    EXPECT_TRUE(isEmpty(resolve("MapLayer", "TableName", "Roads")));
    EXPECT_TRUE(isEmpty(resolve("MapLayer", "layername", "Roads")));
    EXPECT_TRUE(isEmpty(resolve("FeatureLayer", "", "ROADS", "C:\\data\\town.mdb")));
}

TEST_F(ResolutionTest, FindsALayerByItsTagAndKeepsTheTagNode) {
    listTags();
    EXPECT_EQ(objectAs<host::GisFeatureLayer>(resolve("MapLayer", "TagName", "street")), world.pRoadsLayer);
    ASSERT_TRUE(state.oSharedNode);
    EXPECT_EQ(state.oSharedNode.getAttribute("TagName"), "Street");
    EXPECT_EQ(objectAs<host::GisFeatureLayer>(resolve("FeatureLayer", "TagName", "STREET")),
              world.pRoadsLayer);
}

TEST_F(ResolutionTest, FindsALayerByTheTagItselfWhenTheTagIsNotListed) {
    listTags();
    EXPECT_EQ(objectAs<host::GisFeatureLayer>(resolve("MapLayer", "TagName", "roads")), world.pRoadsLayer);
    EXPECT_FALSE(state.oSharedNode);
}

TEST_F(ResolutionTest, GivesNoLayerByTagWithoutACurrentMapButKeepsTheTagNode) {
    listTags();
    pMap.reset();
    EXPECT_TRUE(isEmpty(resolve("MapLayer", "TagName", "street")));
    EXPECT_TRUE(state.oSharedNode);
}

TEST_F(ResolutionTest, FindsTinAndRasterLayersOfTheirKindOnly) {
    EXPECT_EQ(nameOfLayer(resolve("TinLayer", "LayerName", "RELIEF")), "Relief");
    EXPECT_EQ(nameOfLayer(resolve("RasterLayer", "LayerName", "photo")), "Photo");
    EXPECT_TRUE(isEmpty(resolve("RasterLayer", "LayerName", "Roads")));
    EXPECT_TRUE(isEmpty(resolve("TinLayer", "LayerName", "Photo")));
    EXPECT_TRUE(isEmpty(resolve("TinLayer", "TableName", "Relief")));
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ResolutionTest, DoesNotEnterGroupsForARasterLayer) {
    EXPECT_TRUE(isEmpty(resolve("RasterLayer", "LayerName", "Paper")));
}

TEST_F(ResolutionTest, FindsATinLayerByItsTagOnlyWhenTheTagIsListed) {
    listTags();
    EXPECT_EQ(nameOfLayer(resolve("TinLayer", "TagName", "Hill")), "Relief");
    EXPECT_TRUE(isEmpty(resolve("TinLayer", "TagName", "Relief")));
}

TEST_F(ResolutionTest, GivesNoTinOrRasterLayerWithoutACurrentMap) {
    pMap.reset();
    EXPECT_TRUE(isEmpty(resolve("TinLayer", "LayerName", "Relief")));
    EXPECT_TRUE(isEmpty(resolve("RasterLayer", "LayerName", "Photo", "C:\\data\\town.mdb")));
}

TEST_F(ResolutionTest, GivesTheFeatureClassOfTheCurrentLayer) {
    EXPECT_TRUE(isEmpty(resolve("Feature")));
    EXPECT_TRUE(isEmpty(resolve("FeatureTable")));
    pLayer = world.pRoadsLayer;
    EXPECT_EQ(nameOfTable(resolve("Feature")), "ROADS");
    EXPECT_EQ(nameOfTable(resolve("FeatureTable")), "ROADS");
}

TEST_F(ResolutionTest, FindsATableOfTheMapInAnyLetterCase) {
    EXPECT_EQ(objectAs<host::GisTable>(resolve("Table", "TableName", "signs")), world.pSigns);
}

TEST_F(ResolutionTest, PassesOverATableOfTheMapWhoseDataIsGone) {
    world.pTownMap->addTable(nullptr);
    world.pTownMap->addTable(world.pPosts);
    EXPECT_EQ(objectAs<host::GisTable>(resolve("Table", "TableName", "POSTS")), world.pPosts);
}

TEST_F(ResolutionTest, OpensATableAtTheLocationWhenTheMapHasNone) {
    EXPECT_EQ(nameOfTable(resolve("Table", "TableName", "PARKS", "C:\\data\\town.mdb")), "PARKS");
    pMap.reset();
    EXPECT_EQ(nameOfTable(resolve("Table", "TableName", "PARKS", "C:\\data\\town.mdb")), "PARKS");
}

TEST_F(ResolutionTest, GivesNoTableFromALocationThatDoesNotOpen) {
    EXPECT_TRUE(isEmpty(resolve("Table", "TableName", "PARKS", "C:\\nowhere")));
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_TRUE(observer.noticed("", Notice::WorkspaceNotOpened));
}

TEST_F(ResolutionTest, NeverOpensATableFromAnEmptyIdentityValue) {
    EXPECT_TRUE(isEmpty(resolve("Table", "TableName", "", "C:\\data\\town.mdb")));
    EXPECT_TRUE(isEmpty(resolve("RelatedTable", "LayerName", "", "C:\\data\\town.mdb")));
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ResolutionTest, GivesNoTableForAnotherIdentity) {
    EXPECT_TRUE(isEmpty(resolve("Table", "LayerName", "SIGNS")));
    EXPECT_TRUE(isEmpty(resolve("RelatedTable", "TableName", "SIGNS")));
}

TEST_F(ResolutionTest, ComparesTheMapsTablesWithATagsNameButOpensTheLocationsByTheTagItself) {
    listTags();
    EXPECT_EQ(objectAs<host::GisTable>(resolve("Table", "TagName", "Post")), world.pSigns);
    EXPECT_TRUE(isEmpty(resolve("Table", "TagName", "SIGNS")));
    state.dTagNames->Add(std::string("SOMETHING ELSE"), "PARKS");
    EXPECT_EQ(nameOfTable(resolve("Table", "TagName", "PARKS", "C:\\data\\town.mdb")), "PARKS");
}

TEST_F(ResolutionTest, FindsARelatedTableAmongTheMapsTablesThenItsLayersThenAtTheLocation) {
    EXPECT_EQ(objectAs<host::GisTable>(resolve("RelatedTable", "LayerName", "signs")), world.pSigns);
    EXPECT_EQ(nameOfTable(resolve("RelatedTable", "LayerName", "roads")), "ROADS");
    EXPECT_EQ(nameOfTable(resolve("RelatedTable", "LayerName", "PARKS", "C:\\data\\town.mdb")), "PARKS");
}

TEST_F(ResolutionTest, LooksForARelatedTablesLayerByTheTagItself) {
    listTags();
    EXPECT_EQ(objectAs<host::GisTable>(resolve("RelatedTable", "TagName", "Post")), world.pSigns);
    EXPECT_TRUE(isEmpty(resolve("RelatedTable", "TagName", "Street"))) << "the layer Roads is not looked for";
    EXPECT_EQ(nameOfTable(resolve("RelatedTable", "TagName", "Roads")), "ROADS");
}

TEST_F(ResolutionTest, FailsWithATypeMismatchForARelatedTableThatIsARasterLayer) {
    EXPECT_TRUE(isEmpty(resolve("RelatedTable", "LayerName", "Photo")));
    EXPECT_EQ(state.lModErrNum, 13);
}

TEST_F(ResolutionTest, GivesTheRelationshipClassesOfTheLayersWorkspaceElseOfTheLocations) {
    EXPECT_NE(objectAs<host::GisEnumRelationshipClass>(resolve("Relationship", "", "", "C:\\data\\town.mdb")),
              nullptr);
    pLayer = world.pRoadsLayer;
    EXPECT_NE(objectAs<host::GisEnumRelationshipClass>(resolve("Relationship", "", "", "C:\\nowhere")),
              nullptr);
}

TEST_F(ResolutionTest, FailsForTheRelationshipClassesOfALocationThatDoesNotOpen) {
    EXPECT_TRUE(isEmpty(resolve("Relationship", "", "", "C:\\nowhere")));
    EXPECT_EQ(state.lModErrNum, 91);
}

TEST_F(ResolutionTest, GivesTheDomainsOfTheLayersWorkspaceElseOfTheLocations) {
    EXPECT_NE(objectAs<host::GisWorkspaceDomains>(resolve("WorkspaceDomain", "", "", "C:\\data\\town.mdb")),
              nullptr);
    pLayer = world.pRoadsLayer;
    EXPECT_NE(objectAs<host::GisWorkspaceDomains>(resolve("WorkspaceDomain", "", "", "C:\\nowhere")),
              nullptr);
}

TEST_F(ResolutionTest, FailsForTheDomainsOfALocationThatDoesNotOpen) {
    for (const auto* sLocation : {"C:\\nowhere", "C:\\data\\town.sde", ""}) {
        state.lModErrNum = 0;
        EXPECT_TRUE(isEmpty(resolve("WorkspaceDomain", "", "", sLocation)));
        EXPECT_EQ(state.lModErrNum, 91) << sLocation;
    }
}

TEST_F(ResolutionTest, GivesTheWorkspaceOfTheLayersClassElseTheOneAtTheLocation) {
    pLayer = world.pRoadsLayer;
    EXPECT_EQ(objectAs<host::GisWorkspace>(resolve("Workspace", "", "", "C:\\nowhere")), world.pWorkspace);
    pLayer.reset();
    EXPECT_EQ(objectAs<host::GisWorkspace>(resolve("Workspace", "", "", "C:\\data\\town.mdb")),
              world.pWorkspace);
}

TEST_F(ResolutionTest, GivesNoWorkspaceAndDoesNotFailForALocationThatDoesNotOpen) {
    EXPECT_TRUE(isEmpty(resolve("Workspace", "", "", "C:\\nowhere")));
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_TRUE(observer.noticed("", Notice::WorkspaceNotOpened));
}

TEST_F(ResolutionTest, GivesTheTinsWorkspaceOnlyOnceATinLayerIsCurrent) {
    EXPECT_TRUE(isEmpty(resolve("TinWorkspace", "", "", "C:\\data\\town.mdb")));
    state.pTinLayer = world.pTinLayer;
    EXPECT_EQ(objectAs<host::GisWorkspace>(resolve("TinWorkspace")), world.pTinWorkspace);
}

TEST_F(ResolutionTest, TellsTheObserverOfANameThatIsNotFound) {
    (void)resolve("MapLayer", "LayerName", "Nowhere");
    ASSERT_EQ(observer.aNotices.size(), 1U);
    EXPECT_EQ(observer.aNotices[0].notice, Notice::ResolvedToNothing);
}

TEST_F(ResolutionTest, PrefersATopLevelLayerToAMemberOfAGroup) {
    EXPECT_EQ(FindLayerByName(*pMap, "ROADS"), world.pRoadsLayer);
}

TEST_F(ResolutionTest, FindsAMemberOfTheLastGroupThatHasOne) {
    EXPECT_EQ(FindLayerByName(*pMap, "water"), world.pLastWater);
}

TEST_F(ResolutionTest, FindsTheFirstOfTwoMembersOfOneGroup) {
    EXPECT_EQ(FindLayerByName(*pMap, "Twin"), world.pFirstTwin);
}

TEST_F(ResolutionTest, FindsAGroupByItsOwnName) {
    EXPECT_EQ(FindLayerByName(*pMap, "base"), world.pBaseGroup);
}

TEST_F(ResolutionTest, FindsAMemberByItsGroupsNameInTheLastOfSeveralGroups) {
    EXPECT_EQ(FindLayerByName(*pMap, "BASE:roads"), world.pRoadsInBase);
    EXPECT_EQ(FindLayerByName(*pMap, "Base:Water"), world.pLastWater);
    EXPECT_EQ(FindLayerByName(*pMap, "Base:Nowhere"), nullptr);
    EXPECT_EQ(FindLayerByName(*pMap, "Roads:Roads"), nullptr);
}

TEST_F(ResolutionTest, EntersGroupsOneLevelOnly) {
    EXPECT_EQ(FindLayerByName(*pMap, "Deep"), nullptr);
}

struct PathChoice {
    const char* sPath;
    host::WorkspaceFactoryKind kind;
};
class WorkspaceOpening : public ExportTest, public ::testing::WithParamInterface<PathChoice> {};

TEST_P(WorkspaceOpening, ChoosesTheFactoryByThePathsText) {
    (void)OpenWorkspaceFromPath(state, GetParam().sPath, 7);
    ASSERT_EQ(world.pHost->openings().size(), 1U);
    const auto& opened = world.pHost->openings().front();
    EXPECT_EQ(opened.kind, GetParam().kind);
    EXPECT_EQ(opened.sPath, GetParam().sPath);
    EXPECT_EQ(opened.lWindowHandle, 7);
    EXPECT_FALSE(opened.bFromFile);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, WorkspaceOpening,
    ::testing::Values(PathChoice{"C:\\data\\town.mdb", host::WorkspaceFactoryKind::LocalDatabase},
                      PathChoice{"C:\\data\\TOWN.MdB", host::WorkspaceFactoryKind::LocalDatabase},
                      PathChoice{"C:\\x.mdb\\folder", host::WorkspaceFactoryKind::LocalDatabase},
                      PathChoice{"\\\\server\\x.mdb", host::WorkspaceFactoryKind::LocalDatabase},
                      PathChoice{"\\\\server\\share", host::WorkspaceFactoryKind::Share},
                      PathChoice{"C:\\data\\\\x", host::WorkspaceFactoryKind::Share},
                      PathChoice{"C:\\data", host::WorkspaceFactoryKind::Default},
                      PathChoice{"", host::WorkspaceFactoryKind::Default}));

class ConnectionFile : public ExportTest {
protected:
    void addConnectionBelow(const std::string& sCategoryOfParent) {
        using host::memory::MemoryCatalogObject;
        auto pParent = MemoryCatalogObject::make("Connections", "Connections", sCategoryOfParent);
        world.pHost->addCatalogObject(
            MemoryCatalogObject::make("town.sde", "Connections\\town.SDE", "Connection", pParent));
    }
};

TEST_F(ConnectionFile, NeverYieldsAWorkspaceAlthoughItIsOpened) {
    addConnectionBelow("Database Connections");
    EXPECT_EQ(OpenWorkspaceFromPath(state, "Connections\\town.SDE\\ROADS", 0), nullptr);
    ASSERT_EQ(world.pHost->openings().size(), 1U);
    const auto& opened = world.pHost->openings().front();
    EXPECT_EQ(opened.kind, host::WorkspaceFactoryKind::RemoteDatabase);
    EXPECT_EQ(opened.sPath, "Connections\\town.sde");
    EXPECT_TRUE(opened.bFromFile);
    EXPECT_EQ(opened.lWindowHandle, 0) << "it is opened without a window";
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ConnectionFile, IsNotOpenedWhenItsParentIsTheCatalogItself) {
    addConnectionBelow("Catalog");
    EXPECT_EQ(OpenWorkspaceFromPath(state, "Connections\\town.SDE", 0), nullptr);
    ASSERT_EQ(observer.aNotices.size(), 1U);
    EXPECT_EQ(observer.aNotices[0].sDetail, "a \".SDE\" connection never yields a workspace");
    EXPECT_EQ(world.pHost->askedCatalogNames(), std::vector<std::string>{"Connections\\town.SDE"});
    EXPECT_TRUE(world.pHost->openings().empty());
}

TEST_F(ConnectionFile, YieldsNothingWhenTheCatalogDoesNotKnowIt) {
    EXPECT_EQ(OpenWorkspaceFromPath(state, "town.sde", 0), nullptr);
    EXPECT_TRUE(observer.noticed("", Notice::WorkspaceNotOpened));
}

TEST_F(ConnectionFile, WinsOverALocalDatabase) {
    EXPECT_EQ(OpenWorkspaceFromPath(state, "C:\\x.mdb\\y.sde", 0), nullptr);
    EXPECT_TRUE(world.pHost->openings().empty());
}

TEST_F(ResolutionTest, ForgetsTheTagNodeForATagThatIsNotFound) {
    listTags();
    (void)resolve("MapLayer", "TagName", "street");
    ASSERT_TRUE(state.oSharedNode);
    (void)resolve("MapLayer", "TagName", "nowhere");
    EXPECT_FALSE(state.oSharedNode);
}

TEST_F(ResolutionTest, LooksForTheTagItselfWhenItsAliasIsEmpty) {
    listTags();
    state.dTagNames->Add(std::string(), "ROADS");
    EXPECT_EQ(objectAs<host::GisFeatureLayer>(resolve("MapLayer", "TagName", "Roads")), world.pRoadsLayer);
}

TEST_F(ResolutionTest, NeverOpensALocationForATag) {
    listTags();
    pMap.reset();
    EXPECT_TRUE(isEmpty(resolve("FeatureLayer", "TagName", "TREES", "C:\\data\\town.mdb")));
    EXPECT_TRUE(world.pHost->openings().empty());
}

TEST_F(ResolutionTest, FindsARasterLayerByItsTag) {
    listTags();
    state.dTagNames->Add(std::string("PHOTO"), "PICTURE");
    EXPECT_EQ(nameOfLayer(resolve("RasterLayer", "TagName", "picture")), "Photo");
}

TEST_F(ResolutionTest, TakesTheFirstOfTwoTinLayersAndOfTwoTablesOfOneName) {
    world.pTownMap->addLayer(host::memory::MemoryTinLayer::make("RELIEF", nullptr));
    world.pTownMap->addTable(host::memory::MemoryTable::make("signs", {}));
    EXPECT_EQ(objectAs<host::GisTinLayer>(resolve("TinLayer", "LayerName", "relief")), world.pTinLayer);
    EXPECT_EQ(objectAs<host::GisTable>(resolve("Table", "TableName", "Signs")), world.pSigns);
}

TEST_F(ResolutionTest, FailsForATableThatTheLocationDoesNotHold) {
    EXPECT_TRUE(isEmpty(resolve("Table", "TableName", "NOWHERE", "C:\\data\\town.mdb")));
    EXPECT_NE(state.lModErrNum, 0);
}

TEST_F(ResolutionTest, GivesNoTableFromAConnectionFile) {
    EXPECT_TRUE(isEmpty(resolve("Table", "TableName", "PARKS", "C:\\data\\town.Sde")));
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ResolutionTest, FailsForARelatedTableThatIsAGroup) {
    EXPECT_TRUE(isEmpty(resolve("RelatedTable", "LayerName", "Base")));
    EXPECT_EQ(state.lModErrNum, 13);
}

TEST_F(ResolutionTest, OpensARelatedTableAtTheLocationByTheTagItself) {
    listTags();
    state.dTagNames->Add(std::string("SOMETHING ELSE"), "PARKS");
    EXPECT_EQ(nameOfTable(resolve("RelatedTable", "TagName", "PARKS", "C:\\data\\town.mdb")), "PARKS");
}

TEST_F(ResolutionTest, FailsWhenTheCurrentLayerHasNoFeatureClass) {
    pLayer = host::memory::MemoryFeatureLayer::make("Bare", nullptr);
    for (const auto* sKind : {"SubType", "Relationship", "WorkspaceDomain", "Workspace"}) {
        state.lModErrNum = 0;
        EXPECT_TRUE(isEmpty(resolve(sKind)));
        EXPECT_EQ(state.lModErrNum, 91) << sKind;
    }
    EXPECT_TRUE(isEmpty(resolve("Feature")));
}

TEST_F(ResolutionTest, FailsForATinLayerWithoutADataset) {
    state.pTinLayer = host::memory::MemoryTinLayer::make("Bare", nullptr);
    EXPECT_TRUE(isEmpty(resolve("TinWorkspace")));
    EXPECT_EQ(state.lModErrNum, 91);
}

TEST_F(ResolutionTest, FindsAMapLayerInANamedGroup) {
    EXPECT_EQ(objectAs<host::GisLayer>(resolve("MapLayer", "LayerName", "base:Roads")), world.pRoadsInBase);
}

TEST_F(ResolutionTest, HeedsTheFirstTwoPiecesOfALayersName) {
    EXPECT_EQ(FindLayerByName(*pMap, "Base:Roads:More"), world.pRoadsInBase);
    EXPECT_EQ(FindLayerByName(*pMap, ":Roads"), nullptr);
}

TEST_F(ResolutionTest, PassesOverALayerThatTheHostDoesNotGive) {
    world.pTownMap->addLayer(nullptr);
    EXPECT_EQ(FindLayerByName(*pMap, "Nowhere"), nullptr);
}

TEST_F(ResolutionTest, OpensLocationsWithoutAWindow) {
    (void)resolve("Workspace", "", "", "C:\\data\\town.mdb");
    EXPECT_EQ(world.pHost->openings().at(0).lWindowHandle, 0);
}

TEST_F(ResolutionTest, SaysNothingOfALocationThatWasNotGiven) {
    (void)resolve("Table", "TableName", "NOWHERE");
    EXPECT_FALSE(observer.noticed("", Notice::WorkspaceNotOpened));
    EXPECT_TRUE(observer.noticed("", Notice::ResolvedToNothing));
}

TEST_F(ConnectionFile, ReportsNoFailureWhenItsOpeningFails) {
    addConnectionBelow("Database Connections");
    world.pHost->faults().failAt("openFromFile");
    EXPECT_EQ(OpenWorkspaceFromPath(state, "Connections\\town.SDE", 0), nullptr);
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ConnectionFile, IsNamedByItsPathUpToTheSecondBackslash) {
    (void)OpenWorkspaceFromPath(state, "a\\b.sde\\c\\d", 0);
    (void)OpenWorkspaceFromPath(state, "b.sde", 0);
    (void)OpenWorkspaceFromPath(state, "a\\\\b.sde", 0);
    EXPECT_EQ(world.pHost->askedCatalogNames(), (std::vector<std::string>{"a\\b.sde", "b.sde", "a\\"}));
}

TEST_F(ResolutionTest, FailsForALayerOfAnotherKindAlsoWhereItsNameCannotBeHadForTheMessage) {
    auto& faults = world.pHost->faults();
    (void)resolve("RelatedTable", "LayerName", "Photo");
    faults.reset();
    (void)resolve("RelatedTable", "LayerName", "Photo");
    const std::int64_t nCalls = faults.callCount("GisLayer.name");
    ASSERT_GT(nCalls, 1);
    faults.reset();
    faults.failAt("GisLayer.name", nCalls);
    observer.aFailures.clear();
    EXPECT_TRUE(isEmpty(resolve("RelatedTable", "LayerName", "Photo")));
    EXPECT_EQ(state.lModErrNum, 13);
}

TEST_F(ResolutionTest, SaysNothingMoreOfAMapWhoseSearchFailed) {
    world.pHost->faults().failAt("GisMapDocument.mapCount");
    EXPECT_TRUE(isEmpty(resolve("Map", "", "Harbour")));
    EXPECT_EQ(observer.aFailures.size(), 1U);
    EXPECT_TRUE(observer.aNotices.empty());
}

TEST_F(ResolutionTest, TellsEachFailureOfANodesSourceOnce) {
    const auto oControl = dom::Document::create();
    ASSERT_TRUE(oControl->loadXML("<a><b/></a>"));
    state.oActiveControlNode = oControl->documentElement();
    (void)resolve("RelatedTable", "LayerName", "Photo");
    (void)resolve("RelatedTable", "LayerName", "Photo");
    EXPECT_EQ(observer.aFailures.size(), 1U);
    (void)resolve("Relationship", "", "", "C:\\nowhere");
    EXPECT_EQ(observer.aFailures.size(), 2U) << "another number";
    (void)resolve("TinWorkspace");
    state.pTinLayer = host::memory::MemoryTinLayer::make("Bare", nullptr);
    (void)resolve("TinWorkspace");
    EXPECT_EQ(observer.aFailures.size(), 3U) << "the same number with another text";
    state.oActiveControlNode = oControl->documentElement().firstChild();
    (void)resolve("RelatedTable", "LayerName", "Photo");
    EXPECT_EQ(observer.aFailures.size(), 4U) << "another node";
}

TEST_F(ResolutionTest, FindsNoTagsNameWithoutTags) {
    EXPECT_EQ(LookupTagLayerName(state, "Street"), "");
    EXPECT_EQ(LookupFieldAlias(state, Node(), "Street"), "");
}

TEST_F(ResolutionTest, PassesOverAMapThatTheHostDoesNotGive) {
    const auto pDocument =
        host::memory::MemoryMapDocument::make({nullptr, host::memory::MemoryMap::make("Lake", {})});
    const auto pFound = FindMapByName(state, pDocument, "lake");
    ASSERT_NE(pFound, nullptr);
    EXPECT_EQ(pFound->name(), "Lake");
    EXPECT_EQ(FindMapByName(state, pDocument, "Nowhere"), nullptr);
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ConnectionFile, IsNotOpenedWhenItStandsNowhere) {
    using host::memory::MemoryCatalogObject;
    world.pHost->addCatalogObject(MemoryCatalogObject::make("town.sde", "town.SDE", "Connection", nullptr));
    EXPECT_EQ(OpenWorkspaceFromPath(state, "town.SDE", 0), nullptr);
    EXPECT_TRUE(world.pHost->openings().empty());
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ResolutionTest, KnowsTheKindOfSubtypesFieldsInAnyLetterCase) {
    EXPECT_EQ(dataSourceKindOf("SUBTYPEFIELDINFO"), DataSourceKind::SubTypeFieldInfo);
    EXPECT_EQ(dataSourceKindOf("subtype"), DataSourceKind::SubTypeInOtherCase);
}

} // namespace
} // namespace halvane::test
