// An export that nobody listens to, as the component's callers make it.

#include "support/ExportTest.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

class UnobservedExport : public ExportTest {
protected:
    struct Ended {
        std::optional<std::string> sDocument;
        std::int32_t lErrNum;
        std::string sErrMsg;

        bool operator==(const Ended&) const = default;
    };

    Ended ended(const std::string& sControl, ExportObserver* pObserver) {
        std::filesystem::remove(folder.file(sOutputName));
        state = ExportState();
        prepare();
        state.options.pObserver = pObserver;
        state.sControlPath = folder.write("control.xml", sControl);
        state.sOutputPath = folder.file(sOutputName);
        ExportEntry(state);
        return {folder.read(sOutputName), state.lModErrNum, state.sModErrMsg};
    }

    /// @returns how the export ended.
    Ended expectTheSameUnobserved(const std::string& sControl) {
        const Ended observed = ended(sControl, &observer);
        const Ended unobserved = ended(sControl, nullptr);
        EXPECT_EQ(unobserved, observed) << sControl;
        return unobserved;
    }
};

TEST_F(UnobservedExport, WritesTheSameDocument) {
    const Ended whole = expectTheSameUnobserved(
        group("<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='NAME'/>"
              "<i Name='I' IdentityValue='OID'/><b Name='x' Target='Attribute' IdentityValue='LANES'/></r>"));
    EXPECT_EQ(whole.lErrNum, 0);
    EXPECT_NE(whole.sDocument.value_or("").find("<N>High Street</N>"), std::string::npos);
}

TEST_F(UnobservedExport, EndsAlikeWhereAnObserverIsToldOfAFailureThatIsNoneToTheComponent) {
    const Ended whole = expectTheSameUnobserved(
        "<a Name='Out'><b Name='xmlns:xml' Target='Attribute' DataSource='Time'/></a>");
    EXPECT_EQ(whole.lErrNum, 0);
    EXPECT_EQ(observer.aFailures.size(), 1U) << "it was told when somebody listened";
}

TEST_F(UnobservedExport, EndsAlikeWhereAnObserverIsToldSomething) {
    // Attributes of one name, a field that is not there, a layer of another kind, rows written in silence.
    expectTheSameUnobserved("<a Name='Out'><b Name='x' Target='Attribute' DataSource='Time'/>"
                            "<c Name='x' Target='Attribute' IdentityValue=''/></a>");
    expectTheSameUnobserved(group("<r Name='Road' DataSource='Feature' Entries='Multiple'>"
                                  "<n Name='N' IdentityValue='NOWHERE'/></r>"));
    EXPECT_NE(expectTheSameUnobserved("<a Name='Out'><l Name='L' DataSource='MapLayer' "
                                      "Identity='LayerName' IdentityValue='Photo'/></a>")
                  .lErrNum,
              0);
    expectTheSameUnobserved(group("<r Name='G' DataSource='Geometry' Entries='Multiple'/>"));
}

TEST_F(UnobservedExport, WritesNothingWhereThereIsNothingToWrite) {
    EXPECT_EQ(expectTheSameUnobserved("<a Name='Out'/>").sDocument, std::nullopt);
    EXPECT_EQ(expectTheSameUnobserved("<a><b Name='x'/></a>").sDocument, std::nullopt);
    EXPECT_EQ(expectTheSameUnobserved("<a Name='Out'").sDocument, std::nullopt);
}

} // namespace
} // namespace halvane::test
