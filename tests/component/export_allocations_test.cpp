// An export in which memory runs out, at each of its allocations in turn: the whole document, one that lacks
// what the observer heard of, or the old one as it was; and the next export is as good as any.

#include "component/clsExport.h"
#include "engine/ExportState.h"
#include "engine/second/SecondEdition.h"
#include "expression/sqlite/SqliteEvaluator.h"
#include "support/AllocationFaults.h"
#include "support/CountingObserver.h"
#include "support/TemporaryFolder.h"
#include "support/TownWorld.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>

namespace halvane::test {
namespace {

struct Outcome {
    std::optional<std::string> sDocument;
    CountingObserver told;
    bool bStruck = false;
    std::int32_t lErrNum = 0;
};

class ExportAllocations : public testing::TestWithParam<const char*> {
protected:
    static void SetUpTestSuite() { AllocationFaults::install(); }
    ~ExportAllocations() override { moduleState() = ExportState(); }

    /// @param nSkipped the allocation after so many fails; nothing: none does.
    void exportWith(std::optional<std::size_t> nSkipped, Outcome& outcome) {
        const TownWorld world;
        ExportOptions options;
        options.pSecondEdition = &edition;
        options.pObserver = &outcome.told;
        clsExport component(world.pHost, options);
        std::string sName = "out.xml";
        std::string sErrMsg;
        {
            std::optional<AllocationFaults> faults;
            if (nSkipped.has_value())
                faults.emplace(*nSkipped);
            component.Export2XML(world.pMapDocument, sControlPath, sFolder, sName, nullptr, "",
                                 outcome.lErrNum, sErrMsg);
        }
        outcome.bStruck = nSkipped.has_value() && AllocationFaults::haveStruck();
        outcome.sDocument = folder.read("out.xml");
    }

    void expectOldOrNewOrTold(const Outcome& outcome) const {
        if (outcome.sDocument == sWhole)
            return;
        if (outcome.sDocument == sOld) {
            EXPECT_TRUE(outcome.told.bToldNotSaved);
            EXPECT_FALSE(outcome.told.bSaved);
            return;
        }
        EXPECT_TRUE(outcome.told.bSaved);
        EXPECT_GT(outcome.told.lFailures, 0) << "what is missing is not told";
        const auto oDocument = dom::Document::create();
        EXPECT_TRUE(oDocument->loadXML(outcome.sDocument.value_or("")))
            << outcome.sDocument.value_or("no file");
    }

    [[nodiscard]] std::ptrdiff_t fileCount() const {
        return std::distance(std::filesystem::directory_iterator(folder.path()), {});
    }

    expression::sqlite::SqliteEvaluator evaluator{1'700'000'000};
    SecondEdition edition{evaluator, "2023-11-14", "2023-11-14T22:13:20Z", {{"who", "Jo"}}};
    TemporaryFolder folder;
    std::string sFolder = folder.path().string();
    std::string sControlPath = folder.write("control.xml", GetParam());
    const std::string sOld = "<old/>";
    std::string sWhole;
};

TEST_P(ExportAllocations, FailOneByOneAndLeaveAnOldOrANewDocument) {
    Outcome whole;
    exportWith(std::nullopt, whole);
    ASSERT_TRUE(whole.told.bSaved);
    ASSERT_EQ(whole.told.lFailures, 0);
    sWhole = whole.sDocument.value_or("");
    std::size_t nFaults = 0;
    for (bool bStruck = true; bStruck && !HasFailure(); ++nFaults) {
        SCOPED_TRACE("allocation " + std::to_string(nFaults));
        folder.write("out.xml", sOld);
        Outcome outcome;
        exportWith(nFaults, outcome);
        bStruck = outcome.bStruck;
        expectOldOrNewOrTold(outcome);
        EXPECT_EQ(fileCount(), 2);
        Outcome next;
        exportWith(std::nullopt, next);
        EXPECT_EQ(next.sDocument, sWhole);
        EXPECT_EQ(next.told.lFailures, 0);
    }
    EXPECT_GT(nFaults, 100U);
}

INSTANTIATE_TEST_SUITE_P(
    OfControlFiles, ExportAllocations,
    testing::Values(
        // Rows with their vertices and related rows.
        "<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
        "<p Name='P' DataSource='Feature' Entries='Multiple'>"
        "<n Name='n' DataSource='Feature' Identity='FieldName' IdentityValue='NAME' Target='Attribute'/>"
        "<g Name='G' DataSource='Geometry.Vertice' Entries='Multiple'><x Name='x' "
        "DataProperty='Geometry.X'/></g>"
        "<r Name='R' DataSource='RelatedTable' Identity='LayerName' IdentityValue='Signs' LinkField='ROUTE'>"
        "<t Name='t' DataSource='RelatedRecord' IdentityValue='TEXT'/></r></p></l></a>",
        // What describes the data.
        "<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
        "<s Name='s' DataProperty='SPATIALREFERENCE.XMIN'/>"
        "<f Name='F' DataSource='Field' Entries='Multiple'><g Name='g'><q Name='q' "
        "DataProperty='FieldName'/></g></f>"
        "<u Name='U' DataSource='SubType' Entries='Multiple'><c Name='c' DataProperty='SubTypeCode'/></u>"
        "<d Name='D' DataSource='WorkspaceDomain' Entries='Multiple'><n Name='n' "
        "DataProperty='DomainName'/></d>"
        "<h Name='H' DataSource='Relationship' Entries='Multiple'><n Name='n' "
        "DataProperty='RelationshipName'/></h>"
        "</l><t Name='T' DataSource='Table' Identity='TableName' IdentityValue='Signs'>"
        "<c Name='C' DataSource='Record' Entries='Multiple'><v Name='v' IdentityValue='TEXT'/></c></t></a>",
        // Texts, conditions, related and grouped rows in an order, in a layout.
        "<a xmlns:h='urn:halvane:control:2' xmlns='urn:out' Name='Out' h:Declaration='UTF-8' h:Indent='2' "
        "h:Format='xs'><l DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' h:Omit='Self'>"
        "<p Name='P' DataSource='Feature' Entries='Multiple' h:Where='OBJECTID &gt; 0' h:OrderBy='NAME desc'>"
        "<n Name='n' Target='Attribute' h:Text='{upper(NAME)} {$who}'/>"
        "<w Name='W' h:When='WIDTH &gt; 1' h:Omit='Empty' h:Text='{WIDTH}'/>"
        "<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' h:Rows='Each' "
        "LinkField='ROUTE_ID' h:Text='{KIND} {../NAME}'/></p>"
        "<g Name='G' DataSource='Feature' Entries='Multiple' h:Group='ROUTE_ID' h:Omit='Empty'>"
        "<c Name='C' h:Text='{$Count} {max(NAME)}'/></g></l></a>",
        // Things of the map, shapes, and texts that are XML.
        "<a xmlns:h='urn:halvane:control:2' Name='Out' h:Doctype='Out'><m Name='M' h:ForEach='Map'>"
        "<t Name='T' h:ForEach='Layer' h:When=\"$Layer = 'Deep'\"><n Name='N' DataProperty='LayerName'/>"
        "<f Name='F' h:ForEach='Field' h:Omit='Empty'><d Name='D' DataProperty='FieldAlias'/></f>"
        "<p Name='P' DataSource='Feature' h:Rows='Each' h:Indent='none'><g Name='G' h:Geometry='WKT'/>"
        "<k h:Omit='Self' h:Geometry='GML' h:Id='r.{OBJECTID}'/><v Name='V' h:ForEach='Vertex'>"
        "<x Name='x' Target='Attribute' DataProperty='X'/></v>"
        "<x Name='X' h:As='xml' h:Text='&lt;b&gt;{NAME}&lt;/b&gt;'/><c Name='C' h:As='cdata' "
        "h:Text='{NAME}'/>"
        "</p></t></m></a>"));

} // namespace
} // namespace halvane::test
