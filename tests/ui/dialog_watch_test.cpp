// What the strip beneath the form tells of an export.

#include "base/Text.h"
#include "cli/dialog/DialogApplication.h"
#include "engine/ExportState.h"
#include "host/gdal/GdalHost.h"
#include "support/TemporaryFolder.h"
#include "telling/dialog/DialogWatch.h"
#include "ui/FormExporter.h"
#include "ui/ScriptedView.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <optional>

namespace halvane::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using ui::Box;
using ui::ExportOutcome;

constexpr const char* sPeople = "<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' "
                                "IdentityValue='people'><r Name='R' DataSource='Feature' Entries='Multiple'>"
                                "<n Name='N' IdentityValue='name'/></r></l></a>";

class StripOnPaper : public ui::OutcomeView {
public:
    void begin() override {
        ++lBegun;
        outcome.reset();
    }
    [[nodiscard]] bool cancelledAfter(std::uint64_t lItems) override {
        if (items.empty() || items.back() != lItems)
            items.push_back(lItems);
        return lCancelAfter != 0 && lItems == lCancelAfter;
    }
    void show(const ExportOutcome& told) override { outcome = told; }

    int lBegun = 0;
    std::uint64_t lCancelAfter = 0; ///< 0: never
    std::vector<std::uint64_t> items;
    std::optional<ExportOutcome> outcome;
};

class Strip : public ::testing::Test {
protected:
    Strip() {
        moduleState().release();
        folder.write("people.geojson", R"({"type": "FeatureCollection", "features": [
            {"type": "Feature", "geometry": {"type": "Point", "coordinates": [1, 2]},
             "properties": {"name": "Ada"}},
            {"type": "Feature", "geometry": {"type": "Point", "coordinates": [3, 4]},
             "properties": {"name": "Bo"}}]})");
        ExportArguments arguments;
        arguments.sMap = folder.file("people.geojson");
        EXPECT_THAT(openApplication(arguments, inputs), IsEmpty());
    }
    ~Strip() override { moduleState() = ExportState(); }

    /// Presses OK with that control file, and tells what the strip then shows.
    const ExportOutcome& exportWith(const std::string& sControl) {
        ExportOptions options{.bIgnoreComments = true};
        options.pSecondEdition = &inputs.secondEdition.edition();
        ui::FormExporter form(view, options, &watch);
        form.Load(std::make_shared<cli::DialogApplication>(inputs));
        view.boxes[Box::Text1] = sControlPath.empty() ? folder.write("control.xml", sControl) : sControlPath;
        view.boxes[Box::Text2] = sOutput.empty() ? folder.path().string() : sOutput;
        view.boxes[Box::Text3] = sName;
        view.boxes[Box::Text4] = sOptional;
        view.boxes[Box::Text5] = sNodePath;
        form.Command1_Click();
        EXPECT_TRUE(strip.outcome.has_value());
        return *strip.outcome;
    }

    TemporaryFolder folder;
    ScriptedView view;
    StripOnPaper strip;
    ExportInputs inputs{host::gdal::dataHosts()};
    cli::CommandLineMap map{inputs};
    DialogWatch watch{map, strip};
    std::string sControlPath;
    std::string sOutput;
    std::string sName = "out";
    std::string sOptional;
    std::string sNodePath = "//q";
};

TEST_F(Strip, TellsOfTheDocumentAsItWasNamed) {
    const auto& outcome = exportWith(sPeople);
    EXPECT_EQ(outcome.kind, ExportOutcome::Kind::Written);
    EXPECT_EQ(outcome.sDocument, folder.file("out.xml"));
    EXPECT_EQ(outcome.sSummary, "Wrote " + folder.file("out.xml") + " (2 items)");
    EXPECT_THAT(outcome.details, IsEmpty());
    EXPECT_TRUE(folder.read("out.xml").has_value());
}

TEST_F(Strip, HearsOfEveryItem) {
    exportWith(sPeople);
    EXPECT_EQ(strip.lBegun, 1);
    EXPECT_THAT(strip.items, ElementsAre(0, 1, 2));
}

TEST_F(Strip, CancelsTheExport) {
    strip.lCancelAfter = 1;
    const auto& outcome = exportWith(sPeople);
    EXPECT_EQ(outcome.kind, ExportOutcome::Kind::NotWritten);
    EXPECT_EQ(outcome.sSummary, "Nothing was written to \"" + folder.file("out.xml") + "\": cancelled");
    EXPECT_THAT(outcome.details, IsEmpty());
    EXPECT_EQ(outcome.sDocument, "");
    EXPECT_EQ(folder.read("out.xml"), std::nullopt);
    strip.lCancelAfter = 0;
    EXPECT_EQ(exportWith(sPeople).kind, ExportOutcome::Kind::Written) << "the next one is whole";
}

TEST_F(Strip, TellsOfShapesThatCannotBeReadOfThisExportOnly) {
    folder.write("people.geojson", R"({"type": "FeatureCollection", "features": [
        {"type": "Feature", "geometry": {"type": "Point", "coordinates": [1, 2]},
         "properties": {"name": "Bo"}},
        {"type": "Feature", "geometry": {"type": "Point", "coordinates": ["x", 2]},
         "properties": {"name": "Ada"}}]})");
    ExportArguments arguments;
    arguments.sMap = folder.file("people.geojson");
    ASSERT_THAT(openApplication(arguments, inputs), IsEmpty());
    const std::string sWithShape =
        "<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='people'>"
        "<r Name='R' DataSource='Geometry.Point' Entries='Multiple'><x Name='X' "
        "DataProperty='Geometry.X'/></r></l></a>";
    for (int lTime = 0; lTime < 2; ++lTime) {
        const auto& outcome = exportWith(sWithShape);
        EXPECT_EQ(outcome.kind, ExportOutcome::Kind::Incomplete);
        EXPECT_EQ(outcome.sSummary, "Wrote " + folder.file("out.xml") +
                                        " (2 items). 1 shape cannot be read; the document is incomplete");
        EXPECT_THAT(outcome.details, ElementsAre(StartsWith("error: 1 shape of \"people\" in \"" +
                                                            folder.file("people.geojson") +
                                                            "\" cannot be read and is left out: ")));
    }
    EXPECT_EQ(exportWith(sPeople).kind, ExportOutcome::Kind::Written);
}

TEST_F(Strip, TellsWhatFailedNodeByNodeWithItsLine) {
    const auto& outcome =
        exportWith("<a Name='Out'>\n<!-- c -->\n<p Name='P' DataSource='External' IdentityValue='No.One'/>\n"
                   "<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='nobody'/></a>");
    EXPECT_EQ(outcome.kind, ExportOutcome::Kind::Incomplete);
    EXPECT_EQ(outcome.sSummary, "Wrote " + folder.file("out.xml") +
                                    " (0 items). 1 control node failed; the document is incomplete");
    ASSERT_EQ(outcome.details.size(), 2U);
    EXPECT_THAT(outcome.details[0], StartsWith("control.xml:3: error: \"P\": "));
    EXPECT_THAT(outcome.details[0], HasSubstr("No.One"));
    EXPECT_THAT(outcome.details[1], StartsWith("control.xml:4: note: \"L\": no MapLayer with LayerName "
                                               "\"nobody\" was found"));
}

TEST_F(Strip, TellsWhatTheControlFileSaysInVain) {
    const auto& outcome = exportWith("<a Name='Out'>\n<b Name='B' entries='Multiple'/></a>");
    EXPECT_EQ(outcome.kind, ExportOutcome::Kind::Written);
    EXPECT_THAT(outcome.details,
                ElementsAre("control.xml:2: note: \"B\": the attribute entries is not read; write Entries"));
}

TEST_F(Strip, TellsOfPrefixesThatNothingDeclares) {
    const auto& outcome = exportWith("<a Name='Out'>\n<b Name='x:B'/>\n<b Name='B'/></a>");
    EXPECT_EQ(outcome.kind, ExportOutcome::Kind::Incomplete);
    EXPECT_EQ(outcome.sDocument, folder.file("out.xml"));
    EXPECT_EQ(outcome.sSummary, "Wrote " + folder.file("out.xml") +
                                    " (0 items). Programs that know namespaces cannot read the document");
    EXPECT_THAT(outcome.details,
                ElementsAre("control.xml:2: error: Name=\"x:B\" of <b>: nothing declares the prefix \"x\"; "
                            "leave it out, or give this element or one around it a node Name=\"xmlns:x\" "
                            "Target=\"Attribute\" whose value is the namespace"));
}

TEST_F(Strip, ForgetsTheExportBefore) {
    exportWith("<a Name='Out'><p Name='P' DataSource='External' IdentityValue='No.One'/></a>");
    EXPECT_THAT(exportWith(sPeople).details, IsEmpty());
}

TEST_F(Strip, TellsWhatIsWrongWithAControlFileThatLedToNoDocument) {
    const auto& unfinished = exportWith("<a Name='Out'>\n<b>");
    EXPECT_EQ(unfinished.kind, ExportOutcome::Kind::NotWritten);
    EXPECT_THAT(unfinished.sSummary,
                StartsWith("Nothing was written to \"" + folder.file("out.xml") + "\": control.xml:2:"));
    sControlPath = folder.file("missing.xml");
    EXPECT_THAT(exportWith("").sSummary, HasSubstr("missing.xml: there is no such file"));
}

TEST_F(Strip, TellsOfAnEditionThatTheRootDoesNotDeclare) {
    const auto& outcome =
        exportWith("<a Name='Out'>\n<b xmlns:h='urn:halvane:control:2' Name='B' h:Text='x'/></a>");
    EXPECT_EQ(outcome.kind, ExportOutcome::Kind::NotWritten);
    EXPECT_THAT(outcome.sSummary,
                HasSubstr("control.xml:2: h:Text=\"x\": attributes of the second edition are read "
                          "where the root declares their namespace"));
}

TEST_F(Strip, AsksForAFullPathOfTheControlFile) {
    sControlPath = "control.xml";
    EXPECT_THAT(exportWith(sPeople).sSummary,
                HasSubstr("Control XML File: \"control.xml\" is no full path; begin with \"/\""));
}

TEST_F(Strip, TellsThatTheOutputFolderIsNotThere) {
    sOutput = folder.file("missing");
    const auto& outcome = exportWith(sPeople);
    EXPECT_EQ(outcome.kind, ExportOutcome::Kind::NotWritten);
    EXPECT_EQ(outcome.sSummary, "Nothing was written to \"" + folder.file("missing/out.xml") +
                                    "\": Output Directory: there is no folder \"" + folder.file("missing") +
                                    "\"; create it first");
    EXPECT_THAT(strip.items, IsEmpty()) << "the export does not begin";
    EXPECT_THAT(view.focused, ElementsAre(Box::Text2));
}

TEST_F(Strip, TellsThatAFileIsWhereTheOutputFolderIsToBe) {
    sOutput = folder.write("taken", "kept");
    EXPECT_THAT(exportWith(sPeople).sSummary,
                HasSubstr("Output Directory: there is no folder \"" + sOutput + "\"; create it first"));
    EXPECT_EQ(folder.read("taken"), "kept");
}

TEST_F(Strip, TellsThatTheFolderInTheFileNameIsNotThere) {
    sName = "a/b";
    EXPECT_THAT(exportWith(sPeople).sSummary, HasSubstr("Output XML File Name: there is no folder \"" +
                                                        folder.file("a") + "\"; create it first"));
}

TEST_F(Strip, LeadsToTheBoxThatAnExportWasRefusedFor) {
    sName = "a/b";
    exportWith(sPeople);
    EXPECT_THAT(view.focused, ElementsAre(Box::Text3));
    sName = "out";
    exportWith(sPeople);
    EXPECT_THAT(view.focused, ElementsAre(Box::Text3)) << "nothing was refused";
}

TEST_F(Strip, TellsThatAFolderIsWhereTheDocumentIsToBe) {
    std::filesystem::create_directory(folder.path() / "out.xml");
    EXPECT_EQ(exportWith(sPeople).sSummary, "Nothing was written: Output XML File Name: \"" +
                                                folder.file("out.xml") +
                                                "\" is a folder; add the name of a file");
}

TEST_F(Strip, TakesASlashInTheFileNameForAFolderBeneath) {
    std::filesystem::create_directory(folder.path() / "sub");
    sName = "sub/out";
    EXPECT_EQ(exportWith(sPeople).sDocument, folder.file("sub/out.xml"));
    EXPECT_TRUE(folder.read("sub/out.xml").has_value());
}

TEST_F(Strip, WarnsOfADocumentThatReplacedWhatTheExportRead) {
    sName = "control.xml";
    EXPECT_THAT(exportWith(sPeople).details, ElementsAre("warning: the document replaced the control file"));
    EXPECT_EQ(strip.outcome->kind, ExportOutcome::Kind::Warned);
    sName = "tags.xml";
    sOptional = folder.write("tags.xml", "<v><q TagName='A' Alias='B'/></v>");
    EXPECT_THAT(exportWith(sPeople).details, ElementsAre("warning: the document replaced the optional XML"));
    sName = "people.geojson.xml";
    sOptional = "";
    inputs.sMapPath = folder.write(sName, "");
    EXPECT_THAT(exportWith(sPeople).details, ElementsAre("warning: the document replaced the map document"));
}

TEST_F(Strip, RefusesToReplaceDataAndLeavesIt) {
    const std::string sRaster = "P2 1 1 1 1\n";
    folder.write("xml.pgm", sRaster);
    sName = "xml.pgm";
    const auto& outcome =
        exportWith(R"(<a><b DataSource="Record" DataLocation=")" + folder.file("xml.pgm") + R"("/></a>)");
    EXPECT_EQ(outcome.kind, ExportOutcome::Kind::NotWritten);
    EXPECT_EQ(outcome.sSummary, "Nothing was written: \"" + folder.file("xml.pgm") +
                                    "\" is part of the data \"" + folder.file("xml.pgm") +
                                    "\"; give another name");
    EXPECT_EQ(folder.read("xml.pgm"), sRaster);
}

TEST_F(Strip, SaysNothingOfWhatAnExportWithoutADocumentLeftAlone) {
    sName = "control.xml";
    EXPECT_THAT(exportWith("<a><b>").sSummary, StartsWith("Nothing was written"));
    EXPECT_THAT(strip.outcome->details, IsEmpty());
    EXPECT_EQ(folder.read("control.xml"), "<a><b>");
}

TEST_F(Strip, WarnsOfTheOptionalDocument) {
    sOptional = folder.write("tags.xml", "<v>\n<q");
    EXPECT_THAT(exportWith(sPeople).details, ElementsAre(::testing::AllOf(StartsWith("warning: tags.xml:2:"),
                                                                          HasSubstr("; no tags are known"))));
    folder.write("tags.xml", "<v/>");
    EXPECT_THAT(
        exportWith(sPeople).details,
        ElementsAre("warning: XML Node Path: \"//q\" selects nothing in tags.xml; no tags are known"));
    folder.write("tags.xml", "<v>\n<q TagName='A'/></v>");
    EXPECT_THAT(exportWith(sPeople).details,
                ElementsAre(StartsWith("warning: tags.xml:2: <q> has no Alias")));
    EXPECT_EQ(strip.outcome->kind, ExportOutcome::Kind::Warned);
    sNodePath = "[";
    EXPECT_THAT(exportWith(sPeople).details, ElementsAre(HasSubstr("is no XPath that selects nodes")));
    sOptional = "";
    EXPECT_THAT(exportWith(sPeople).details, IsEmpty()) << "without a document the path does not matter";
}

TEST_F(Strip, TellsOnceWhichOptionalDocumentIsMissing) {
    for (const std::string& sPath : {std::string("missing.xml"), folder.file("missing.xml")}) {
        sOptional = sPath;
        EXPECT_THAT(exportWith(sPeople).details,
                    ElementsAre("warning: missing.xml: there is no such file; no tags are known"));
    }
}

TEST_F(Strip, TellsThatAnOptionalDocumentNeedsANodePath) {
    sOptional = folder.write("tags.xml", "<v/>");
    sNodePath = " ";
    const auto& outcome = exportWith(sPeople);
    EXPECT_EQ(outcome.kind, ExportOutcome::Kind::NotWritten);
    EXPECT_THAT(outcome.sSummary, HasSubstr("no node path"));
}

TEST_F(Strip, WarnsOfCharactersThatWereMended) {
    folder.write("people.geojson", R"({"type": "FeatureCollection", "features": [
        {"type": "Feature", "geometry": {"type": "Point", "coordinates": [1, 2]},
         "properties": {"name": "A\u0001da"}}]})");
    ExportArguments arguments;
    arguments.sMap = folder.file("people.geojson");
    ASSERT_THAT(openApplication(arguments, inputs), IsEmpty());
    EXPECT_THAT(exportWith(sPeople).details,
                ElementsAre("warning: 1 character that XML forbids was dropped from the data"));
    EXPECT_EQ(strip.outcome->kind, ExportOutcome::Kind::Warned);
}

TEST_F(Strip, MasksPasswords) {
    EXPECT_THAT(exportWith("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' "
                           "IdentityValue='PG:password=secret'/></a>")
                    .details,
                ElementsAre(::testing::Not(HasSubstr("secret"))));
}

} // namespace
} // namespace halvane::test
