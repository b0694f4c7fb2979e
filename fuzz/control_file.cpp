// A control file: what the command line says of it beforehand, the whole export on a map in memory, what it
// tells, and that the document can be read again.

#include "engine/ModExporter.h"
#include "engine/second/SecondEdition.h"
#include "expression/sqlite/SqliteEvaluator.h"
#include "fuzz/Check.h"
#include "fuzz/Target.h"
#include "support/TemporaryFolder.h"
#include "support/TownWorld.h"
#include "telling/ControlFileChecks.h"
#include "telling/ControlFileLint.h"
#include "telling/LogListing.h"
#include "telling/Outcome.h"

#include <string>

namespace halvane::fuzz {
namespace {

/// Gives up what would take long: an input of some hundred bytes can nest repeated nodes.
class BoundedLog : public ExportLog {
public:
    using ExportLog::ExportLog;
    bool goesOn() override { return ++lVisits_ < 20'000 && ExportLog::goesOn(); }

protected:
    bool endRequested() override { return items() > 2'000; }

private:
    int lVisits_ = 0;
};

/// What an attribute declares is known only once it is written.
bool isToldUnreadable(const ExportLog& log) {
    for (const auto& [nPosition, record] : log.records()) {
        for (const NodeEvent& event : record.events) {
            if (event.sText.find("no parser that knows namespaces") != std::string::npos)
                return true;
        }
    }
    return false;
}

void checkDocument(const std::string& sText, const std::string& sControl, bool bToldUnreadable) {
    const auto oDocument = dom::Document::create();
    check(oDocument->loadXML(sText) || bToldUnreadable, "The document of a fit control file is well-formed",
          oDocument->parseError().reason + "\n" + sControl + "\n" + sText);
}

const SecondEdition& secondEdition() {
    static expression::sqlite::SqliteEvaluator evaluator(1'700'000'000);
    static const SecondEdition edition{evaluator, "2023-11-14", "2023-11-14T22:13:20Z", {{"who", "Jo"}}};
    return edition;
}

void exportWith(const test::TemporaryFolder& folder, const std::string& sControlPath, bool bFit,
                const std::string& sControl) {
    test::TownWorld world;
    world.registerSpy("Town.Spy", "told");
    NoProgress progress;
    BoundedLog log(progress);
    ExportState state;
    state.pHost = world.pHost;
    state.pMapDoc = world.pMapDocument;
    state.pMap = world.pMapDocument->focusMap();
    state.options.pObserver = &log;
    state.options.pSecondEdition = &secondEdition();
    state.options.bIgnoreComments = sControl.size() % 2 == 0;
    state.sControlPath = sControlPath;
    state.sOutputPath = folder.file("out.xml");
    ExportEntry(state);
    for (const ListedLine& line : listing(log, {"control.xml", {}, {}}))
        check(line.sText.starts_with("control.xml") || line.sText.starts_with("halvane"),
              "A line names its place", line.sText);
    check(incompleteSentence(log, {}).empty() == (log.failures() == 0), "Failures are told", sControl);
    if (log.saved() && bFit)
        checkDocument(folder.read("out.xml").value_or(""), sControl, isToldUnreadable(log));
    state.release();
}

} // namespace
} // namespace halvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t nSize) {
    using namespace halvane;
    static const test::TemporaryFolder folder;
    const std::string sControl(reinterpret_cast<const char*>(pBytes), nSize);
    const std::string sPath = folder.write("control.xml", sControl);
    dom::DocumentPtr oControl;
    const bool bFit = checkControlFile(sPath, "control.xml", oControl, &fuzz::secondEdition()).empty();
    if (oControl != nullptr && oControl->documentElement()) {
        for (const Finding& finding : lintControlFile(oControl->documentElement()))
            fuzz::check(!listed(finding, "control.xml").empty(), "A finding is told");
    }
    fuzz::exportWith(folder, sPath, bFit, sControl);
    return 0;
}
