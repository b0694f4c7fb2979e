#include "cli/Samples.h"

#include <filesystem>

namespace halvane::test {

namespace {

/// A drawing in a format whose driver crashes once HALVANE_CRASHING_DRIVER is loaded.
constexpr std::string_view sDrawing = R"(<?xml version="1.0"?>
<JCSDataFile xmlns:gml="http://www.opengis.net/gml"><JCSGMLInputTemplate><CollectionElement>a</CollectionElement>
</JCSGMLInputTemplate></JCSDataFile>)";

class Crashes : public ExportFixture {
protected:
    Crashes() {
#ifdef __SANITIZE_ADDRESS__
        bHandledElsewhere_ = true;
#endif
        program.write("a.jml", sDrawing);
    }

    void SetUp() override {
        if (bHandledElsewhere_)
            GTEST_SKIP() << "the sanitizer handles crashes itself";
    }

    [[nodiscard]] RunResult exportWith(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"export", "--processor", HALVANE_CRASHING_DRIVER});
        return program.run(arguments);
    }

private:
    bool bHandledElsewhere_ = false;
};

} // namespace

TEST_F(Crashes, OfADriverEndWithItsFileAndTheOldDocument) {
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Layer" DataSource="FeatureLayer" Identity="LayerName" IdentityValue="a" DataLocation="a.jml">
    <F Name="Count" DataSource="FeatureLayer" DataProperty="FeatureCount"/></L></T>)");
    program.write("report.json", "");
    const auto before = program.names();
    const auto result = exportWith({"--report", "report.json", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 4);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr, "halvane: the data library crashed (SIGSEGV) on \"" + program.file("a.jml") +
                               "\" in its driver \"JML\"; convert the file, or leave it out; nothing was "
                               "written\n");
    EXPECT_EQ(program.read("out.xml"), "<Old/>");
    EXPECT_EQ(program.names(), before);
}

TEST_F(Crashes, OutsideTheDataLibraryBlameNoFile) {
    program.write("control.xml", controlWithProcessor("Test.Crash"));
    const auto result = exportWith({"--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 4);
    EXPECT_EQ(result.sErr, "halvane: the program crashed (SIGSEGV); nothing was written\n");
    EXPECT_EQ(program.read("out.xml"), "<Old/>");
}

TEST_F(Crashes, AfterTheDocumentWasWrittenLeaveIt) {
    // What was not found makes the program open all data of the map, to tell why.
    program.write("map.xml",
                  R"(<MapDocument><Map name="M"><FeatureLayer source="a.jml"/></Map></MapDocument>)");
    program.write(
        "control.xml",
        R"(<T Name="Map"><L Name="L" DataSource="MapLayer" Identity="LayerName" IdentityValue="b"/></T>)");
    const auto result = exportWith({"--map", "map.xml", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_EQ(result.sErr,
              "halvane: the data library crashed (SIGSEGV) on \"" + program.file("a.jml") +
                  "\" in its driver \"JML\"; convert the file, or leave it out; the document was "
                  "written before\n");
    EXPECT_NE(program.read("out.xml"), "<Old/>");
}

} // namespace halvane::test
