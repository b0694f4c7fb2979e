// A host that fails at any one of its calls, under control files of the second edition.

#include "exporters/second/SecondEditionTest.h"
#include "host/memory/Relationship.h"

#include <memory>
#include <string>

namespace halvane::test {

namespace {

using namespace host;
using namespace host::memory;

/// A town with all that h:ForEach goes over.
class SecondEditionFaults : public SecondEditionTest, public ::testing::WithParamInterface<const char*> {
protected:
    SecondEditionFaults() {
        const auto pRoutes = MemoryDomain::coded("Routes", FieldType::String,
                                                 {{std::string("R17"), "Ring"}, {std::string("R18"), "Out"}});
        auto pSubtypes = std::make_shared<MemorySubtypes>("LANES", 2);
        pSubtypes->addSubtype(2, "Street");
        pSubtypes->setDomain(2, "ROUTE_ID", pRoutes);
        world.pRoads->setSubtypes(pSubtypes);
        world.pWorkspace->add(pRoutes);
        world.pWorkspace->add(world.pSigns);
        world.pWorkspace->add(MemoryRelationshipClass::make({.sName = "RoadSigns",
                                                             .lCardinality = 2,
                                                             .sOriginClassName = "ROADS",
                                                             .sDestinationClassName = "SIGNS",
                                                             .sOriginPrimaryKey = "ROUTE_ID",
                                                             .sOriginForeignKey = "ROUTE_ID"}));
        world.pHost->faults().reset();
    }

    /// What an export of its own writes, `n`-th call of the host failing; 0: none does.
    std::string exported(std::int64_t n) {
        state = ExportState();
        world.pHost->faults().reset();
        if (n > 0)
            world.pHost->faults().failAtCall(n + 1); // the first call, for the shown map, is the component's
        return out(GetParam());
    }
};

TEST_P(SecondEditionFaults, LeaveADocumentWhoseGapsAreTold) {
    const std::string sWhole = exported(0);
    const std::int64_t nCalls = world.pHost->faults().callCount() - 1;
    ASSERT_EQ(failures(), "");
    ASSERT_TRUE(observer.aNotices.empty());
    ASSERT_GT(nCalls, 50);
    int nDifferent = 0;
    for (std::int64_t n = 1; n <= nCalls && !HasFailure(); ++n) {
        SCOPED_TRACE("call " + std::to_string(n));
        const std::string sWritten = exported(n);
        const bool bDifferent = sWritten != sWhole;
        nDifferent += bDifferent ? 1 : 0;
        EXPECT_TRUE(dom::Document::create()->loadXML(sWritten)) << sWritten;
        EXPECT_TRUE(!bDifferent || !observer.aFailures.empty() || !observer.aNotices.empty()) << sWritten;
        EXPECT_EQ(state.pItemScope, nullptr);
        EXPECT_EQ(state.pRowScope, nullptr);
        EXPECT_EQ(state.pGroup, nullptr);
    }
    EXPECT_GT(nDifferent, 20) << "the faults must have been met";
}

INSTANTIATE_TEST_SUITE_P(
    OfControlFiles, SecondEditionFaults,
    testing::Values(
        // Things of the map.
        "<m Name='M' h:ForEach='Map'><n Name='n' Target='Attribute' DataProperty='MapName'/></m>"
        "<w Name='W' h:ForEach='Workspace'><p Name='P' DataProperty='Path'/>"
        "<d Name='D' h:ForEach='Domain'><n Name='N' DataProperty='DomainName'/>"
        "<c Name='C' h:ForEach='Code'><v Name='V' DataProperty='DomainCodeValue'/></c></d>"
        "<r Name='R' h:ForEach='Relationship'><n Name='N' DataProperty='RelationshipName'/></r></w>"
        "<t Name='T' h:ForEach='Table'><n Name='N' DataProperty='TableName'/>"
        "<f Name='F' h:ForEach='Field'><n Name='N' DataProperty='FieldName'/></f></t>",
        // Layers, and what they are made of.
        "<l Name='L' h:ForEach='Layer'><n Name='N' DataProperty='LayerName'/>"
        "<a Name='A' DataProperty='LayerType'/><g Name='G' DataProperty='GeometryType'/></l>"
        "<l Name='L' h:ForEach='Layer' h:When=\"$Layer = 'Deep'\"><c Name='C' DataProperty='FeatureCount'/>"
        "<s Name='S' h:ForEach='Subtype'><n Name='N' DataProperty='SubTypeName'/></s>"
        "<f Name='F' h:ForEach='Field'><d Name='D' DataProperty='FieldDomain'/>"
        "<c Name='C' h:ForEach='Code'><v Name='V' DataProperty='DomainCodeName'/></c></f>"
        "<d Name='D' h:ForEach='Domain'><n Name='N' DataProperty='DomainName'/></d></l>",
        // Rows, their shapes and what is related to them.
        "<l DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' h:Omit='Self'>"
        "<r Name='R' DataSource='Feature' Entries='Multiple' h:Where='LANES &gt; 0' h:OrderBy='NAME' "
        "h:Limit='2'><n Name='n' Target='Attribute' h:Text='{NAME} {upper(ROUTE_ID)} {$Layer} {$Crs}'/>"
        "<p Name='P' h:ForEach='Part'><v Name='V' h:ForEach='Vertex'><x Name='x' Target='Attribute' "
        "DataProperty='X'/></v></p><g Name='G' h:Geometry='WKT'/>"
        "<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' h:Rows='Each' "
        "LinkField='ROUTE_ID' h:Text='{KIND} {../NAME}'/>"
        "<k Name='K' DataSource='RelatedTable' h:Rows='Each' h:Relationship='RoadSigns' h:Text='{KIND}'/>"
        "<f Name='F' h:ForEach='Field' h:Text='{$Value}'/></r>"
        "<g Name='G' DataSource='Feature' Entries='Multiple' h:Group='ROUTE_ID' h:Omit='Empty'>"
        "<c Name='C' h:Text='{$Count} {max(NAME)}'/></g></l>"));

} // namespace

} // namespace halvane::test
