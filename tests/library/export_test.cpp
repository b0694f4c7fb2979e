#include "library/ExportHandle.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <filesystem>

namespace halvane::test {

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class LibraryExport : public LibraryFixture {
protected:
    [[nodiscard]] json report() const { return json::parse(halvane_export_report(pExport.get())); }

    /// The report that the program writes of the same export.
    [[nodiscard]] json reportOfProgram(std::vector<std::string> arguments, int lExitCode) const {
        arguments.insert(arguments.begin(), {"export", "--report", "report.json"});
        EXPECT_EQ(program.run(arguments).lExitCode, lExitCode);
        return json::parse(program.read("report.json").value_or("null"));
    }

    static json withoutDuration(json report) {
        EXPECT_GT(report["durationSeconds"], 0);
        report.erase("durationSeconds");
        return report;
    }
};

struct Told {
    int nLevel;
    std::string sText;
    bool operator==(const Told&) const = default;
};

void remember(void* pUser, int nLevel, const char* pText) {
    static_cast<std::vector<Told>*>(pUser)->push_back({nLevel, pText});
}

std::vector<std::string> linesOf(const std::vector<Told>& told, bool bResults) {
    std::vector<std::string> lines;
    for (const Told& one : told) {
        if ((one.nLevel == HALVANE_RESULT) == bResults)
            lines.push_back(one.sText);
    }
    return lines;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string sText;
    for (const auto& sLine : lines)
        sText += sLine + "\n";
    return sText;
}

} // namespace

TEST_F(LibraryExport, WritesTheDocument) {
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_WRITTEN);
    EXPECT_EQ(document("out.xml"), sTownsDocument);
    EXPECT_STREQ(halvane_export_error(pExport.get()), "");
}

TEST_F(LibraryExport, ReportsWhatTheProgramReports) {
    EXPECT_STREQ(halvane_export_report(pExport.get()), "");
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_WRITTEN);
    EXPECT_EQ(withoutDuration(report()),
              withoutDuration(reportOfProgram({"--map", "towns.geojson", "control.xml", "out.xml"}, 0)));
}

TEST_F(LibraryExport, RunsAgainWithWhatWasSetSince) {
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_WRITTEN);
    EXPECT_EQ(halvane_export_select(pExport.get(), "towns=3"), 0);
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_WRITTEN);
    EXPECT_EQ(report()["items"], 1);
    EXPECT_EQ(document("out.xml"),
              "<Map>\r\n<Towns>\r\n<Town>\r\n<Name>Corinth</Name>\r\n</Town>\r\n</Towns>\r\n</Map>");
}

TEST_F(LibraryExport, IsIncompleteWhereAnItemIsBeyondTheLimit) {
    EXPECT_EQ(halvane_export_set_item_limit(pExport.get(), 2), 0);
    EXPECT_EQ(halvane_export_set_sync(pExport.get(), 0), 0);
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_INCOMPLETE);
    EXPECT_EQ(withoutDuration(report()),
              withoutDuration(reportOfProgram(
                  {"--item-limit", "2", "--map", "towns.geojson", "control.xml", "out.xml"}, 3)));
}

TEST_F(LibraryExport, IsRefusedWithTheReasonWhereAnInputIsUnfit) {
    std::filesystem::remove(program.file("towns.geojson"));
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_REFUSED);
    EXPECT_THAT(halvane_export_error(pExport.get()), HasSubstr("towns.geojson"));
    EXPECT_EQ(report()["outcome"], "refused");
    EXPECT_EQ(report()["problems"][0], halvane_export_error(pExport.get()));
    EXPECT_EQ(document("out.xml"), "<Old/>");
}

TEST_F(LibraryExport, ForgetsTheReasonOfTheRunBefore) {
    std::filesystem::rename(program.file("towns.geojson"), program.file("towns.later"));
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_REFUSED);
    std::filesystem::rename(program.file("towns.later"), program.file("towns.geojson"));
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_WRITTEN);
    EXPECT_STREQ(halvane_export_error(pExport.get()), "");
}

TEST_F(LibraryExport, WritesNothingWhereTheFolderIsGone) {
    const ExportHandle pElsewhere = townsInto("gone/out.xml");
    EXPECT_EQ(halvane_export_run(pElsewhere.get()), HALVANE_REFUSED);
    EXPECT_THAT(halvane_export_error(pElsewhere.get()), HasSubstr("gone"));
}

TEST_F(LibraryExport, FindsLayersByTheTagsOfASecondDocument) {
    program.write("tags.xml", R"(<Tags><Layer TagName="Settlements" Alias="towns"/></Tags>)");
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="TagName" IdentityValue="Settlements">
    <E Name="Town" DataSource="Feature" Entries="Multiple"><F Name="Id" IdentityValue="OID"/></E></L></T>)");
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_WRITTEN);
    EXPECT_EQ(report()["items"], 0);
    EXPECT_EQ(halvane_export_set_tags(pExport.get(), program.file("tags.xml").c_str(), "//Layer"), 0);
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_WRITTEN);
    EXPECT_EQ(report()["items"], 3);
}

TEST_F(LibraryExport, AsksProcessorsThatAreLoaded) {
    program.write("control.xml", controlWithProcessor("Test.Greeting"));
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_INCOMPLETE);
    EXPECT_EQ(halvane_export_add_processor(pExport.get(), HALVANE_PROCESSORS), 0);
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_WRITTEN) << halvane_export_report(pExport.get());
    EXPECT_THAT(document("out.xml"), HasSubstr("good morning"));
}

TEST_F(LibraryExport, TellsTheLinesOfTheProgram) {
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="twons">
    <E Name="Town" DataSource="Feature" Entries="Multiple"><F Name="Name" IdentityValue="NAME"/></E></L></T>)");
    std::vector<Told> told;
    EXPECT_EQ(halvane_export_on_message(pExport.get(), &remember, &told), 0);
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_WRITTEN);
    const auto result = program.run({"export", "--map", program.file("towns.geojson"),
                                     program.file("control.xml"), program.file("out.xml")});
    EXPECT_EQ(joined(linesOf(told, true)), result.sOut);
    EXPECT_EQ(joined(linesOf(told, false)), result.sErr);
    EXPECT_THAT(result.sErr, HasSubstr("twons"));
}

TEST_F(LibraryExport, SpeaksOfAFailureAsOne) {
    std::filesystem::remove(program.file("control.xml"));
    std::vector<Told> told;
    EXPECT_EQ(halvane_export_on_message(pExport.get(), &remember, &told), 0);
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_REFUSED);
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].nLevel, HALVANE_FAILURE);
    EXPECT_EQ(told[0].sText, std::string("halvane: ") + halvane_export_error(pExport.get()));
}

TEST_F(LibraryExport, WritesNothingToTheStandardStreams) {
    program.write("control.xml", controlWithProcessor("Acme.Missing"));
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_INCOMPLETE);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST_F(LibraryExport, LeavesSignalsAsTheyAre) {
    const auto handlers = [] {
        std::vector<void (*)(int)> all;
        for (int nSignal = 1; nSignal < 32; ++nSignal) {
            struct sigaction action = {};
            sigaction(nSignal, nullptr, &action);
            all.push_back(action.sa_handler);
        }
        return all;
    };
    const auto before = handlers();
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_WRITTEN);
    EXPECT_EQ(handlers(), before);
}

TEST_F(LibraryExport, MasksPasswords) {
    EXPECT_EQ(halvane_export_set_map(pExport.get(), "PG:host=h password=hush dbname=x"), 0);
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_REFUSED);
    EXPECT_THAT(halvane_export_error(pExport.get()), Not(HasSubstr("hush")));
    EXPECT_THAT(halvane_export_error(pExport.get()), HasSubstr("PG:"));
    EXPECT_THAT(halvane_export_report(pExport.get()), Not(HasSubstr("hush")));
}

} // namespace halvane::test
