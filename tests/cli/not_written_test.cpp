#include "cli/Samples.h"

#include <gmock/gmock.h>

namespace halvane::test {

using ::testing::HasSubstr;

namespace {

class NothingWritten : public ExportFixture {
protected:
    /// Expects exit code 4, the old document and nothing new in the folder.
    void expectUntouched(const RunResult& result, const std::vector<std::string>& before) const {
        EXPECT_EQ(result.lExitCode, 4);
        EXPECT_EQ(result.sOut, "");
        EXPECT_EQ(program.read("out.xml"), "<Old/>");
        EXPECT_EQ(program.names(), before);
    }
};

} // namespace

TEST_F(NothingWritten, WhenTheRootHasNoChildren) {
    program.write("control.xml", "<T Name=\"T\"/>");
    const auto before = program.names();
    const auto result = program.run({"export", "control.xml", "out.xml"});
    expectUntouched(result, before);
    EXPECT_EQ(result.sErr, "halvane: nothing was written to \"" + program.file("out.xml") +
                               "\": the control file's root has no children\n");
}

TEST_F(NothingWritten, WhenTheRootHoldsOnlyAComment) {
    program.write("control.xml", "<T Name=\"T\"><!-- later --></T>");
    const auto before = program.names();
    const auto result = program.run({"export", "--quiet", "control.xml", "out.xml"});
    expectUntouched(result, before);
    EXPECT_EQ(result.sErr, "halvane: nothing was written to \"" + program.file("out.xml") +
                               "\": the control file's root has no children\n");
}

TEST_F(NothingWritten, WhenTheDiskIsFull) {
    std::string sControl = "<T Name=\"T\">";
    for (int i = 0; i < 1000; ++i)
        sControl += "<A Name=\"quite_a_long_name\"/>";
    program.write("control.xml", sControl + "</T>");
    const auto before = program.names();
    const auto result = program.run({"export", "control.xml", "out.xml"}, {{}, 4096, false});
    expectUntouched(result, before);
    EXPECT_EQ(result.sErr, "halvane: nothing was written: " + program.file("out.xml") + ": File too large\n");
}

TEST_F(NothingWritten, WhenTheDiskIsFullBeforeTheDocumentIsComplete) {
    std::string sRows = "NAME,A\n";
    for (int i = 0; i < 30000; ++i)
        sRows += std::string(400, 'x') + ",1\n";
    program.write("rows.csv", sRows);
    program.write("control.xml", R"(<T Name="Map">
  <R Name="Row" DataSource="Table" Identity="TableName" IdentityValue="rows" Entries="Multiple">
    <F Name="Name" DataSource="Record" IdentityValue="NAME"/></R></T>)");
    const auto before = program.names();
    const auto result =
        program.run({"export", "--map", "rows.csv", "control.xml", "out.xml"}, {{}, 100000, false});
    expectUntouched(result, before);
    EXPECT_THAT(result.sErr, HasSubstr("File too large"));
}

TEST_F(NothingWritten, WhenTheFolderTakesNoFiles) {
    const auto before = program.names();
    // Nobody, not even the superuser, creates files there.
    const auto result = program.run({"export", "--map", "towns.geojson", "control.xml", "/proc/out.xml"});
    expectUntouched(result, before);
    EXPECT_EQ(result.sErr, "halvane: nothing was written: /proc/out.xml: No such file or directory\n");
}

TEST_F(NothingWritten, WhenTheExportIsInterrupted) {
    for (const char* sProgId : {"Test.Interrupt", "Test.Terminate"}) {
        program.write("control.xml", controlWithProcessor(sProgId));
        const auto before = program.names();
        const auto result = program.run({"export", "--processor", HALVANE_PROCESSORS, "--map",
                                         "towns.geojson", "control.xml", "out.xml"});
        expectUntouched(result, before);
        EXPECT_EQ(result.sErr,
                  "halvane: nothing was written to \"" + program.file("out.xml") + "\": cancelled\n");
    }
}

TEST_F(NothingWritten, WhenASecondInterruptEndsTheProgramAtOnce) {
    program.write("control.xml", controlWithProcessor("Test.InterruptTwice"));
    const auto before = program.names();
    const auto result = program.run(
        {"export", "--processor", HALVANE_PROCESSORS, "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, -1);
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(program.read("out.xml"), "<Old/>");
    EXPECT_EQ(program.names(), before);
}

} // namespace halvane::test
