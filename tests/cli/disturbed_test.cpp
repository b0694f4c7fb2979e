// What the program does when the system fails it, and when it is told to end, at every moment.

#include "cli/Samples.h"

#include <charconv>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <ogrsf_frmts.h>
#include <random>
#include <string>
#include <vector>

namespace halvane::test {

namespace {

constexpr std::string_view sOldDocument = "<Old/>";

void makeDatabase(const std::string& sPath) {
    GDALAllRegister();
    GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName("GPKG");
    const GDALDatasetUniquePtr pDataset(pDriver->Create(sPath.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    OGRLayer* pLayer = pDataset->CreateLayer("towns", nullptr, wkbPoint);
    OGRFieldDefn name("NAME", OFTString);
    ASSERT_EQ(pLayer->CreateField(&name), OGRERR_NONE);
    for (int n = 0; n < 50; ++n) {
        OGRFeature feature(pLayer->GetLayerDefn());
        feature.SetField("NAME", ("Town " + std::to_string(n)).c_str());
        OGRPoint point(n, n);
        feature.SetGeometry(&point);
        ASSERT_EQ(pLayer->CreateFeature(&feature), OGRERR_NONE);
    }
}

class Disturbed : public ExportFixture {
protected:
    void SetUp() override {
#ifdef __SANITIZE_ADDRESS__
        GTEST_SKIP() << "the sanitizer's own library must come first";
#endif
        makeDatabase(program.file("towns.gpkg"));
        program.write("shapes.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple">
      <F Name="Name" IdentityValue="NAME"/>
      <V Name="Vertex" DataSource="Geometry.Vertice" Entries="Multiple">
        <X Name="X" Target="Attribute" DataProperty="Geometry.X"/>
      </V>
    </E>
  </L>
</T>)");
        names_ = program.names();
    }

    struct Disturbance {
        std::string sCall;
        long lAt = 0;
        std::string sHow;
    };

    /// Exports the map over an old document while that happens.
    RunResult exportDisturbed(const std::string& sMap, const Disturbance& disturbance,
                              const std::vector<std::string>& options = {}) {
        program.write("out.xml", sOldDocument);
        RunSettings settings;
        settings.environment = {
            {"LD_PRELOAD", HALVANE_DISTURBANCE},
            {"HALVANE_DISTURB_CALL", disturbance.sCall},
            {"HALVANE_DISTURB_AT", std::to_string(disturbance.lAt)},
            {"HALVANE_DISTURB_HOW", disturbance.sHow},
            {"HALVANE_DISTURB_BELOW", std::filesystem::path(program.file("")).parent_path().string()},
            {"HALVANE_DISTURB_TELL", told_.file("calls")}};
        std::vector<std::string> arguments{"export", "--map", sMap, "shapes.xml", "out.xml"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return program.run(arguments, settings);
    }

    [[nodiscard]] long callsOf(const std::string& sMap, const std::string& sCall,
                               const std::vector<std::string>& options = {}) {
        EXPECT_EQ(exportDisturbed(sMap, {sCall, 0, "fail"}, options).lExitCode, 0);
        const std::string sCalls = told_.read("calls").value_or("");
        long lCalls = 0;
        std::from_chars(sCalls.data(), sCalls.data() + sCalls.size(), lCalls);
        return lCalls;
    }

    void expectNoLitter() const {
        EXPECT_EQ(program.names(), names_) << "the export left files, or took some away";
    }

    std::string sWhole; ///< the document of an export that nothing disturbs

private:
    std::vector<std::string> names_;
    TemporaryFolder told_;
};

class InputAndOutput : public Disturbed {
protected:
    /// The document is old or new, and what the program says and returns fits it.
    void expectHonest(const RunResult& result) const {
        const std::string sDocument = document("out.xml");
        switch (result.lExitCode) {
        case 0:
            EXPECT_EQ(sDocument, sWhole);
            break;
        case 2:
        case 4:
            EXPECT_EQ(sDocument, sOldDocument);
            EXPECT_NE(result.sErr, "");
            break;
        case 3:
            EXPECT_NE(sDocument, sOldDocument);
            EXPECT_TRUE(sDocument.ends_with("</Map>"));
            EXPECT_NE(result.sErr, "");
            break;
        default:
            ADD_FAILURE() << "exit code " << result.lExitCode;
        }
        expectNoLitter();
    }

    /// Each call of the kind fails once.
    void failEach(const std::string& sMap, const std::string& sCall, const std::string& sHow) {
        const long lCalls = callsOf(sMap, sCall);
        sWhole = document("out.xml");
        EXPECT_GT(lCalls, 0) << sCall;
        for (long lAt = 1; lAt <= lCalls; ++lAt) {
            SCOPED_TRACE(testing::Message()
                         << sMap << ": " << sCall << ' ' << lAt << " of " << lCalls << ' ' << sHow);
            expectHonest(exportDisturbed(sMap, {sCall, lAt, sHow}));
        }
    }
};

using Signals = Disturbed;

/// How many moments are tried: HALVANE_MOMENTS, else a few.
int moments() {
    const char* pWanted = std::getenv("HALVANE_MOMENTS");
    return pWanted == nullptr ? 12 : std::atoi(pWanted);
}

} // namespace

TEST_F(InputAndOutput, WaitForTheDiskUnlessToldNotTo) {
    EXPECT_EQ(callsOf("towns.gpkg", "fsync"), 2); // the document and its folder
    EXPECT_EQ(callsOf("towns.gpkg", "fsync", {"--no-sync"}), 0);
    EXPECT_NE(document("out.xml"), sOldDocument);
}

TEST_F(InputAndOutput, TellThatANameMayNotOutlastALossOfPower) {
    const auto warning = [&](const std::string& sPath) {
        return "\"" + sPath +
               "\" is written, but a loss of power may still take it: its folder could not be brought to the "
               "disk: Input/output error\n";
    };
    const auto ofDocument = exportDisturbed("towns.gpkg", {"fsync", 2, "fail"});
    EXPECT_EQ(ofDocument.lExitCode, 0);
    EXPECT_EQ(ofDocument.sErr, "halvane: warning: " + warning(program.file("out.xml")));
    EXPECT_EQ(ofDocument.sOut, "Wrote " + program.file("out.xml") + " (50 items)\n");
    EXPECT_NE(document("out.xml"), sOldDocument);
    const auto ofReport =
        exportDisturbed("towns.gpkg", {"fsync", 4, "fail"}, {"--report", program.file("report.json")});
    EXPECT_EQ(ofReport.lExitCode, 0);
    EXPECT_EQ(ofReport.sErr, "halvane: warning: --report: " + warning(program.file("report.json")));
}

TEST_F(InputAndOutput, OfADatabaseMayFailAtEachCall) {
    for (const char* sCall : {"open", "read", "write", "rename", "link", "close", "fsync"})
        failEach("towns.gpkg", sCall, "fail");
}

TEST_F(InputAndOutput, OfADatabaseMayBeShortAtEachCall) {
    for (const char* sCall : {"read", "write"})
        failEach("towns.gpkg", sCall, "short");
}

TEST_F(InputAndOutput, OfAFileMayFailAtEachCall) {
    for (const char* sCall : {"open", "close"})
        failEach("towns.geojson", sCall, "fail");
}

TEST_F(Signals, ThatEndTheProgramLeaveTheOldDocumentOrTheNewOne) {
    const long lCalls = callsOf("towns.gpkg", "allocate");
    sWhole = document("out.xml");
    std::mt19937 random(20); // NOLINT(cert-msc51-cpp): the same moments each time
    std::uniform_int_distribution<long> anyCall(1, lCalls);
    for (int n = 0; n < moments(); ++n) {
        for (const int lSignal : {SIGTERM, SIGINT, SIGHUP}) {
            const long lAt = anyCall(random);
            SCOPED_TRACE(testing::Message() << "signal " << lSignal << " at " << lAt << " of " << lCalls);
            const auto result = exportDisturbed("towns.gpkg", {"allocate", lAt, std::to_string(lSignal)});
            const std::string sDocument = document("out.xml");
            EXPECT_TRUE(sDocument == sOldDocument || sDocument == sWhole) << sDocument;
            if (sDocument == sWhole)
                EXPECT_TRUE(result.lExitCode == 0) << result.lExitCode << result.sErr;
            else
                EXPECT_TRUE(result.lExitCode == 4 || result.lExitCode == -1)
                    << result.lExitCode << result.sErr;
            expectNoLitter();
        }
    }
}

TEST_F(Signals, ThatKillTheProgramLeaveTheOldDocumentOrTheNewOne) {
    for (const std::string sCall : {"allocate", "write", "rename", "close", "fsync"}) {
        const long lCalls = callsOf("towns.gpkg", sCall);
        sWhole = document("out.xml");
        std::mt19937 random(21); // NOLINT(cert-msc51-cpp): the same moments each time
        std::uniform_int_distribution<long> anyCall(1, lCalls);
        for (int n = 0; n < moments(); ++n) {
            const long lAt = anyCall(random);
            SCOPED_TRACE(testing::Message() << sCall << ' ' << lAt << " of " << lCalls);
            const auto result = exportDisturbed("towns.gpkg", {sCall, lAt, std::to_string(SIGKILL)});
            const std::string sDocument = document("out.xml");
            EXPECT_TRUE(sDocument == sOldDocument || sDocument == sWhole) << sDocument;
            // How often files are closed at the very end is not always the same.
            EXPECT_TRUE(result.lExitCode == -1 || (lAt > lCalls / 2 && sDocument == sWhole))
                << result.lExitCode;
        }
    }
    EXPECT_GT(callsOf("towns.gpkg", "write"), 0); // what was left is removed by the next export
    expectNoLitter();
}

} // namespace halvane::test
