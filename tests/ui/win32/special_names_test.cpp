// What the dialog's strip tells of names that Windows takes for something else.

#include "engine/ExportState.h"
#include "support/TemporaryFolder.h"
#include "telling/dialog/DialogWatch.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

class NoMap : public DialogMap {
public:
    [[nodiscard]] std::string path() const override { return {}; }
    [[nodiscard]] Remedies remedies() const override { return {}; }
    [[nodiscard]] std::vector<std::string> dataWarnings(const ExportLog& /*log*/) const override {
        return {};
    }
};

class KeptOutcome : public ui::OutcomeView {
public:
    void begin() override {}
    [[nodiscard]] bool cancelledAfter(std::uint64_t /*lItems*/) override { return false; }
    void show(const ui::ExportOutcome& told) override { outcome = told; }

    ui::ExportOutcome outcome;
};

class SpecialNames : public ::testing::Test {
protected:
    /// What is told of an export under that name, and the box that it leads to.
    std::string refusalOf(const std::string& sName, std::optional<ui::Box>& box) {
        const ui::ExportRequest request{folder.write("control.xml", "<a Name='Out'><b Name='T'/></a>"),
                                        folder.path().string(), sName, "", ""};
        const bool bRefused = watch.exportBegins(request) == nullptr;
        watch.exportEnds();
        box = watch.refusedBox();
        return bRefused ? strip.outcome.sSummary : "(it begins)";
    }

    TemporaryFolder folder;
    NoMap map;
    KeptOutcome strip;
    DialogWatch watch{map, strip};
};

TEST_F(SpecialNames, AreRefusedBeforeAnExportAndLeadToTheirBox) {
    std::optional<ui::Box> box;
    for (const auto& [sName, sWhy] :
         {std::pair("CON", "\"CON\" is a device on Windows, whatever follows it; choose another name"),
          std::pair("a:b", "on Windows \":\" in a name leads into another file; choose a name without it"),
          std::pair("my.xml.", "Windows leaves out points and blanks at the end of a name")}) {
        const std::string sTold = refusalOf(sName, box);
        EXPECT_NE(sTold.find(std::string("Output XML File Name: ") + sWhy), std::string::npos) << sTold;
        EXPECT_EQ(box, ui::Box::Text3) << sName;
    }
}

TEST_F(SpecialNames, AreNoneThatOnlyBeginLikeThem) {
    std::optional<ui::Box> box;
    for (const char* sName : {"CONS", "my.", "a"})
        EXPECT_EQ(refusalOf(sName, box), "(it begins)") << sName;
    EXPECT_EQ(box, std::nullopt);
}

} // namespace
} // namespace halvane::test
