// Rows that relationship classes relate.

#include "exporters/second/SecondEditionTest.h"
#include "host/memory/Relationship.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>

namespace halvane::test {

namespace {

using host::FieldType;
using host::memory::field;
using host::memory::MemoryTable;

class SecondEditionRelationships : public SecondEditionTest {
protected:
    SecondEditionRelationships() {
        pLamps =
            MemoryTable::make("LAMPS", {field("OID", FieldType::Oid), field("LAMP", FieldType::String),
                                        field("ROAD", FieldType::String), field("NEXT", FieldType::Integer)});
        pLamps->addRow({std::int64_t{1}, std::string("a"), std::string("Quay"), std::int32_t{2}});
        pLamps->addRow({std::int64_t{2}, std::string("b"), std::string("Quay"), Null()});
        pLamps->addRow({std::int64_t{3}, std::string("c"), std::string("Mill Lane"), std::int32_t{2}});
        pLinks =
            MemoryTable::make("LINKS", {field("OID", FieldType::Oid), field("FROM_NAME", FieldType::String),
                                        field("TO_LAMP", FieldType::String)});
        pLinks->addRow({std::int64_t{1}, std::string("Quay"), std::string("c")});
        pLinks->addRow({std::int64_t{2}, std::string("Quay"), std::string("b")});
        pLinks->addRow({std::int64_t{3}, std::string("Mill Lane"), std::string("b")});
        world.pWorkspace->add(pLamps);
        world.pWorkspace->add(pLinks);
        add({.sName = "RoadLamps",
             .lCardinality = 2,
             .sOriginClassName = "ROADS",
             .sDestinationClassName = "LAMPS",
             .sOriginPrimaryKey = "NAME",
             .sOriginForeignKey = "ROAD"});
        add(linked("Shared", "LINKS"));
        add({.sName = "Chain",
             .lCardinality = 2,
             .sOriginClassName = "LAMPS",
             .sDestinationClassName = "LAMPS",
             .sOriginPrimaryKey = "OID",
             .sOriginForeignKey = "NEXT"});
        add(linked("Hidden", ""));
    }

    static host::memory::RelationshipDefinition linked(std::string sName, std::string sLinkTableName) {
        return {.sName = std::move(sName),
                .lCardinality = 3,
                .sOriginClassName = "ROADS",
                .sDestinationClassName = "LAMPS",
                .sOriginPrimaryKey = "NAME",
                .sOriginForeignKey = "FROM_NAME",
                .sDestinationPrimaryKey = "LAMP",
                .sDestinationForeignKey = "TO_LAMP",
                .sLinkTableName = std::move(sLinkTableName)};
    }

    void add(host::memory::RelationshipDefinition definition) {
        world.pWorkspace->add(host::memory::MemoryRelationshipClass::make(std::move(definition)));
    }
    static std::string related(const std::string& sName, const std::string& sWhat) {
        return "<s Name='S' DataSource='RelatedTable' h:Rows='Each' h:Relationship='" + sName + "'" + sWhat;
    }
    std::string inLamps(const std::string& sNodes) {
        world.pTownMap->addTable(pLamps);
        return in(
            "<r Name='R' DataSource='Table' Identity='TableName' IdentityValue='LAMPS' Entries='Multiple' "
            "h:Rows='Each'>" +
            sNodes + "</r>");
    }

    host::memory::MemoryTablePtr pLamps;
    host::memory::MemoryTablePtr pLinks;
    int lKeys = 0;
};

TEST_F(SecondEditionRelationships, AreFollowedFromEitherSide) {
    EXPECT_EQ(inRoads(related("roadlamps", " h:Text='{LAMP}'/>")),
              "<R/><R><S>c</S></R><R><S>a</S><S>b</S></R>");
    EXPECT_EQ(inLamps(related("RoadLamps", " h:Text='{NAME}'/>")),
              "<R><S>Quay</S></R><R><S>Quay</S></R><R><S>Mill Lane</S></R>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionRelationships, AreFollowedThroughTheirLinkTable) {
    EXPECT_EQ(inRoads(related("Shared", " h:OrderBy='LAMP' h:Text='{LAMP}'/>")),
              "<R/><R><S>b</S></R><R><S>b</S><S>c</S></R>");
    EXPECT_EQ(inLamps(related("Shared", " h:Text='{NAME} {../LAMP}'/>")),
              "<R/><R><S>Quay b</S><S>Mill Lane b</S></R><R><S>Quay c</S></R>");
}

TEST_F(SecondEditionRelationships, NestToAnyDepth) {
    EXPECT_EQ(inRoads(related(
                  "RoadLamps",
                  " h:Where=\"LAMP = 'a'\">" +
                      related("RoadLamps", ">" + related("Shared", " h:Text='{LAMP}'/>") + "</s>") + "</s>")),
              "<R/><R/><R><S><S><S>c</S><S>b</S></S></S></R>");
}

TEST_F(SecondEditionRelationships, OfATableWithItselfNeedADirection) {
    EXPECT_EQ(inLamps(related("Chain", " h:Direction='Backward' h:Text='{LAMP}'/>")),
              "<R><S>b</S></R><R/><R><S>b</S></R>");
    EXPECT_EQ(inLamps(related("Chain", " h:Direction='Forward' h:Text='{LAMP}'/>")),
              "<R/><R><S>a</S><S>c</S></R><R/>");
    EXPECT_EQ(inLamps(related("Chain", " h:Text='{LAMP}'/>")), "<R/><R/><R/>");
    EXPECT_THAT(failures(),
                ::testing::HasSubstr("S: the relationship class \"Chain\" relates a table with itself; add "
                                     "h:Direction=\"Forward\" or \"Backward\"\n"));
}

TEST_F(SecondEditionRelationships, TellWhatIsMissing) {
    inRoads(related("RoadLamp", "/>"));
    EXPECT_THAT(failures(), ::testing::HasSubstr(
                                "knows no relationship class \"RoadLamp\"; did you mean \"RoadLamps\"?"));
    inRoads(related("Chain", "/>"));
    EXPECT_THAT(failures(),
                ::testing::HasSubstr("relates \"LAMPS\" and \"LAMPS\"; the row around is of \"ROADS\""));
    inRoads(related("Hidden", "/>"));
    EXPECT_THAT(failures(),
                ::testing::HasSubstr("the table that holds the links of \"Hidden\" is not available"));
    add({.sName = "Keyless",
         .lCardinality = 2,
         .sOriginClassName = "ROADS",
         .sDestinationClassName = "LAMPS",
         .sOriginPrimaryKey = "NAME"});
    inRoads(related("Keyless", "/>"));
    EXPECT_THAT(failures(),
                ::testing::HasSubstr(
                    "the relationship class \"Keyless\" does not tell which fields relate its rows"));
    EXPECT_EQ(in(related("Chain", " h:Link='a=b'/>")),
              "not saved: h:Relationship tells which fields relate rows; take h:Link away");
    EXPECT_EQ(in("<s Name='S' DataSource='RelatedTable' h:Rows='Each' h:Link='a=b' h:Direction='Forward'/>"),
              "not saved: h:Direction belongs to h:Relationship; add it");
    EXPECT_EQ(in("<s Name='S' DataSource='Feature' h:Rows='Each' h:Relationship='Chain'/>"),
              "not saved: h:Relationship belongs to a node with the DataSource RelatedTable");
}

TEST_F(SecondEditionRelationships, MayRelateByKeysOfSeveralFields) {
    const auto related = [&](const std::string& sOrigin, const std::string& sDestination) {
        const std::string sName = "Keys" + std::to_string(++lKeys);
        add({.sName = sName,
             .lCardinality = 1,
             .sOriginClassName = "ROADS",
             .sDestinationClassName = "SIGNS",
             .sOriginPrimaryKey = sOrigin,
             .sOriginForeignKey = sDestination});
        return inRoads(SecondEditionRelationships::related(sName, " h:Text='{KIND}'/>"));
    };
    world.pWorkspace->add(world.pSigns);
    EXPECT_EQ(related("ROUTE_ID, LANES", "ROUTE_ID,LANES"), "<R><S>Stop</S></R><R/><R><S>Yield</S></R>");
    EXPECT_EQ(failures(), "");
    for (const auto& [sOrigin, sDestination] :
         std::vector<std::pair<std::string, std::string>>{{"ROUTE_ID,LANES", "ROUTE_ID"}, {"", "ROUTE_ID"}}) {
        EXPECT_EQ(related(sOrigin, sDestination), "<R/><R/><R/>");
        EXPECT_THAT(failures(), ::testing::HasSubstr("does not tell which fields relate its rows"));
    }
}

TEST_F(SecondEditionRelationships, FollowALinkTableThatTheyNeedNotHave) {
    auto attributed = linked("Attributed", "LINKS");
    attributed.bAttributed = true;
    attributed.lCardinality = 2;
    add(std::move(attributed));
    EXPECT_EQ(inRoads(related("Attributed", " h:Text='{LAMP}'/>")),
              "<R/><R><S>b</S></R><R><S>c</S><S>b</S></R>");
}

TEST_F(SecondEditionRelationships, NeedARowOfATableInADatabase) {
    EXPECT_EQ(in(related("RoadLamps", " h:Text='{LAMP}'/>")), "");
    EXPECT_THAT(failures(),
                ::testing::HasSubstr("S: no row of a table is at hand that rows could be related to"));
    EXPECT_EQ(in("<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS' "
                 "Entries='Multiple' h:Rows='Each' h:Limit='1'>" +
                 related("RoadLamps", " h:Text='{LAMP}'/></t>")),
              "<T/>");
    EXPECT_EQ(failures(), "S: the row around is of no workspace, which knows relationship classes\n");
}

TEST_F(SecondEditionRelationships, AreLookedUpForEachTableThatTheNodeStandsIn) {
    auto pPaths = host::memory::MemoryFeatureClass::make(
        "PATHS", host::ShapeType::Polyline, {field("OID", FieldType::Oid), field("NAME", FieldType::String)});
    pPaths->addRow({std::int64_t{1}, std::string("a")});
    world.pWorkspace->add(pPaths);
    const auto pMap =
        host::memory::MemoryMap::make("M", {host::memory::MemoryFeatureLayer::make("Roads", world.pRoads),
                                            host::memory::MemoryFeatureLayer::make("Paths", pPaths)});
    world.pMapDocument = host::memory::MemoryMapDocument::make({pMap});
    add({.sName = "RoadLamps",
         .lCardinality = 2,
         .sOriginClassName = "PATHS",
         .sDestinationClassName = "LAMPS",
         .sOriginPrimaryKey = "NAME",
         .sOriginForeignKey = "LAMP"});
    EXPECT_EQ(in("<l Name='L' h:ForEach='Layer'><r DataSource='Feature' h:Rows='Each' h:Omit='Self'>" +
                 related("RoadLamps", " h:Text='{LAMP}'/></r></l>")),
              "<L><S>c</S><S>a</S><S>b</S></L><L/>")
        << "the first class of the name is of roads";
    EXPECT_THAT(failures(), ::testing::HasSubstr("the row around is of \"PATHS\""));
}

TEST_F(SecondEditionRelationships, AreLookedUpAnewAfterOthersHaveActed) {
    const std::string sBoth =
        "<x Name='X' DataSource='External' IdentityValue='Test.Processor'/>" + related("RoadLamps", "/>");
    const auto lookUps = [&](const std::string& sNodes) {
        world.registerSpy("Test.Processor", "done");
        world.pHost->faults().reset();
        EXPECT_NE(inRoads(sNodes), "");
        EXPECT_EQ(failures(), "");
        return world.pHost->faults().callCount("GisRelationshipClass.originPrimaryKey");
    };
    EXPECT_EQ(lookUps(related("RoadLamps", "/>")), 1);
    EXPECT_EQ(lookUps(sBoth), 3);
}

} // namespace

} // namespace halvane::test
