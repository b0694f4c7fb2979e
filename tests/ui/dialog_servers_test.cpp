// The servers of a map while the dialog exports. Needs a PostgreSQL database that may be written to:
// HALVANE_TEST_POSTGRES="host=... dbname=... user=...".

#include "base/Failure.h"
#include "base/Owned.h"
#include "cli/dialog/DialogApplication.h"
#include "host/Map.h"
#include "host/Rows.h"
#include "host/Tables.h"
#include "host/gdal/GdalHost.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <libpq-fe.h>

#include <cstdlib>

namespace halvane::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class ServersStrip : public ui::OutcomeView {
public:
    void begin() override {}
    [[nodiscard]] bool cancelledAfter(std::uint64_t /*lItems*/) override { return bCancelled; }
    void show(const ui::ExportOutcome& told) override { outcome = told; }

    bool bCancelled = false;
    ui::ExportOutcome outcome;
};

class DialogServers : public ::testing::Test {
protected:
    void SetUp() override {
        const char* pDatabase = std::getenv("HALVANE_TEST_POSTGRES");
        if (pDatabase == nullptr)
            GTEST_SKIP() << "HALVANE_TEST_POSTGRES names no database";
        sDatabase = pDatabase;
        run("DROP SCHEMA IF EXISTS halvane_dialog CASCADE; CREATE SCHEMA halvane_dialog; "
            "CREATE TABLE halvane_dialog.roads (id int PRIMARY KEY, name text); "
            "INSERT INTO halvane_dialog.roads VALUES (1, 'as it was')");
        folder.write("map.xml",
                     "<MapDocument><Connection name='Server' database='PG:" + sDatabase +
                         " application_name=halvane_dialog'/><Map name='M'><Table "
                         "connection='Server' dataset='halvane_dialog.roads'/></Map></MapDocument>");
        ExportArguments arguments;
        arguments.sMap = folder.file("map.xml");
        ASSERT_THAT(openApplication(arguments, inputs), IsEmpty());
    }

    void run(const char* pStatements) const {
        const Owned<PGconn, PQfinish> pConnection(PQconnectdb(sDatabase.c_str()));
        const Owned<PGresult, PQclear> pResult(PQexec(pConnection.get(), pStatements));
        EXPECT_STREQ(PQresultErrorMessage(pResult.get()), "");
    }

    /// Begins an export, whose observer is returned.
    ExportObserver* begin() {
        return watch.exportBegins({folder.file("control.xml"), folder.path().string(), "out", "", ""});
    }
    [[nodiscard]] std::string name() const {
        const auto pRows = inputs.pMapDocument->focusMap()->standaloneTable(0)->search(nullptr);
        return toText(pRows->nextRow()->value(1));
    }

    TemporaryFolder folder;
    std::string sDatabase;
    ServersStrip strip;
    ExportInputs inputs{host::gdal::dataHosts()};
    cli::CommandLineMap map{inputs};
    DialogWatch watch{map, strip};
};

TEST_F(DialogServers, AreReadAsTheyWereUntilTheExportEnds) {
    ASSERT_NE(begin(), nullptr);
    EXPECT_EQ(name(), "as it was");
    run("UPDATE halvane_dialog.roads SET name = 'as it is'");
    EXPECT_EQ(name(), "as it was");
    watch.exportEnds();
    EXPECT_EQ(name(), "as it is");
}

TEST_F(DialogServers, AreLetGoWhereTheExportIsCancelled) {
    ExportObserver* pObserver = begin();
    ASSERT_NE(pObserver, nullptr);
    EXPECT_EQ(name(), "as it was");
    run("UPDATE halvane_dialog.roads SET name = 'as it is'");
    strip.bCancelled = true;
    EXPECT_FALSE(pObserver->goesOn());
    watch.exportEnds();
    EXPECT_THAT(strip.outcome.sSummary, HasSubstr("cancelled"));
    EXPECT_EQ(name(), "as it is");
}

TEST_F(DialogServers, AreNotHeldForAnExportThatMayNotBegin) {
    EXPECT_EQ(watch.exportBegins({folder.file("control.xml"), folder.file("none"), "out", "", ""}), nullptr);
    EXPECT_EQ(name(), "as it was");
    run("UPDATE halvane_dialog.roads SET name = 'as it is'");
    EXPECT_EQ(name(), "as it is");
    watch.exportEnds();
}

TEST_F(DialogServers, ThatAreLostEndTheExport) {
    ExportObserver* pObserver = begin();
    ASSERT_NE(pObserver, nullptr);
    EXPECT_EQ(name(), "as it was");
    run("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE application_name = 'halvane_dialog'");
    EXPECT_TRUE(pObserver->goesOn()) << "nothing has failed";
    pObserver->nodeFailed({}, Failure(FailureNumber::HostFailure, "no rows"));
    EXPECT_FALSE(pObserver->goesOn());
    watch.exportEnds();
    EXPECT_EQ(strip.outcome.kind, ui::ExportOutcome::Kind::NotWritten);
    EXPECT_THAT(strip.outcome.sSummary, HasSubstr("was lost"));
}

} // namespace
} // namespace halvane::test
