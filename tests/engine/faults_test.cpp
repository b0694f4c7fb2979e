// A host that fails at any one of its calls.

#include "support/ExportTest.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

constexpr const char* wideControl =
    "<a Name='Out'><w Name='When' DataSource='Time'/>"
    "<m Name='M' DataSource='Map' DataProperty='SPATIALREFERENCE.XMIN'/>"
    "<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
    "<c Name='c' Target='Attribute' DataProperty='FeatureCount'/>"
    "<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='NAME'/>"
    "<i Name='id' Target='Attribute' IdentityValue='OID'/><f Name='F' IdentityValue='WIDTH' "
    "DecimalPlace='1'/>"
    "<g Name='G' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' LinkField='ROUTE_ID'>"
    "<s Name='S' DataSource='RelatedRecord' IdentityValue='KIND'/></g></r></l>"
    "<p Name='P' DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo' DataProperty='Path'/>"
    "<t Name='T' DataSource='TinLayer' Identity='LayerName' IdentityValue='Relief' DataProperty='LayerName'/>"
    "<x Name='X' DataSource='External' IdentityValue='Test.Processor'/>"
    "<d Name='D' DataLocation='C:\\data\\town.mdb'><e Name='E' DataSource='Table' Identity='TableName' "
    "IdentityValue='PARKS' Entries='Multiple'><n Name='N' IdentityValue='NAME'/></e>"
    "<y Name='Y' DataSource='FeatureLayer' Identity='LayerName' IdentityValue='TREES' "
    "DataProperty='LayerName'/></d></a>";

class FailingHost : public ExportTest {};

TEST_F(FailingHost, NeverKeepsTheDocumentFromBeingWrittenWhicheverCallFails) {
    world.registerSpy("Test.Processor", "computed");
    world.pHost->faults().reset();
    const auto sWhole = run(wideControl);
    ASSERT_TRUE(sWhole.has_value());
    // The first call, for the shown map, is the component's: the engine makes the others.
    const auto nCalls = world.pHost->faults().callCount() - 1;
    ASSERT_GT(nCalls, 100);
    ASSERT_EQ(state.lModErrNum, 0) << state.sModErrMsg;

    int nDifferent = 0;
    for (std::int64_t n = 1; n <= nCalls; ++n) {
        std::filesystem::remove(folder.file("out.xml"));
        state = ExportState();
        observer.aFailures.clear();
        observer.aNotices.clear();
        prepare();
        world.pHost->faults().reset();
        world.pHost->faults().failAtCall(n);
        state.sControlPath = folder.file("control.xml");
        state.sOutputPath = folder.file("out.xml");
        ExportEntry(state);
        const auto sOutput = folder.read("out.xml");
        ASSERT_TRUE(sOutput.has_value()) << "call " << n;
        EXPECT_TRUE(sOutput->starts_with("<Out>")) << "call " << n;
        EXPECT_TRUE(sOutput->ends_with("</Out>")) << "call " << n;
        const bool bDifferent = replaceAll(*sOutput, ">\r\n<", "><") != *sWhole;
        nDifferent += bDifferent ? 1 : 0;
        const bool bTold = !observer.aFailures.empty() || observer.noticed("E", Notice::WorkspaceNotOpened) ||
                           observer.noticed("Y", Notice::WorkspaceNotOpened);
        // What is asked for a note alone may fail in silence.
        EXPECT_TRUE(bTold || !bDifferent) << "nobody was told of the failure of call " << n;
        EXPECT_EQ(state.pMapDoc, nullptr);
    }
    EXPECT_GT(nDifferent, 10) << "the faults must have been met";
}

} // namespace
} // namespace halvane::test
