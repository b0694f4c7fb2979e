#include "run/ExportRun.h"

#include "component/clsExport.h"
#include "run/DataWarnings.h"
#include "telling/Interruption.h"
#include "telling/LogListing.h"
#include "telling/Outcome.h"
#include "telling/check/MapNeed.h"

#include <iterator>
#include <utility>

namespace halvane {

ExportRun::ExportRun(const ExportArguments& arguments, const RunSurroundings& around)
    : arguments_(arguments), around_(around), inputs_(around.hosts), log_(around.progress) {}

void ExportRun::run() {
    auto problems = openInputs(arguments_, inputs_);
    facts_.sControl = inputs_.sControlPath;
    facts_.sMap = inputs_.sMapPath;
    facts_.warnings = inputs_.warnings;
    if (interruptionRequested())
        giveUp();
    else if (!problems.empty())
        refuse(std::move(problems));
    else if (arguments_.bRehearses && !arguments_.sMap &&
             asksForMap(inputs_.oControlDocument->documentElement()))
        facts_.exitCode =
            ExitCode::Written; // each node that looks in the map would be told that there is none
    else
        exportDocument();
}

ReportFacts& ExportRun::factsWithSources() {
    facts_.sources = sourcesOf(arguments_, inputs_);
    return facts_;
}

void ExportRun::addWarnings(std::vector<std::string> warnings) {
    facts_.warnings.insert(facts_.warnings.end(), std::make_move_iterator(warnings.begin()),
                           std::make_move_iterator(warnings.end()));
}

void ExportRun::tellWarnings() {
    if (around_.pLibraryLines != nullptr)
        addWarnings(libraryWarnings(around_.pLibraryLines->take()));
    for (const auto& sWarning : facts_.warnings)
        around_.console.note("halvane: warning: " + sWarning);
}

void ExportRun::refuse(std::vector<std::string> problems) {
    tellWarnings();
    for (const auto& sProblem : problems)
        around_.console.failure("halvane: " + sProblem);
    facts_.problems = std::move(problems);
    facts_.exitCode = ExitCode::InvalidInput;
}

// Whatever failed since the request was ended by it.
void ExportRun::giveUp() {
    const std::string sReason = "cancelled";
    facts_.exitCode = ExitCode::NotWritten;
    facts_.bCancelled = true;
    facts_.problems = {sReason};
    tellWarnings();
    around_.console.failure("halvane: " + notWrittenSentence(inputs_.output.shown(), sReason));
}

void ExportRun::exportDocument() {
    facts_.findings = lintControlFile(inputs_.oControlDocument->documentElement());
    listOnConsole(facts_.findings, arguments_.sControl, around_.console);
    if (inputs_.schema.pSchema != nullptr)
        check_.emplace(inputs_.schema, inputs_.oControlDocument->documentElement(), log_);
    ExportOptions options;
    options.lItemLimit = arguments_.lItemLimit;
    options.bIgnoreComments = true;
    options.durability = arguments_.durability;
    options.pObserver = &log_;
    options.pTrace = around_.pTrace;
    options.bExactName = inputs_.output.bExactName;
    if (inputs_.output.bStandardOutput)
        options.pDocumentSink = &stream_.emplace(*around_.pStandardOutput, check_ ? &*check_ : nullptr);
    options.pSecondEdition = &inputs_.secondEdition.edition();
    options.oControlDocument = inputs_.oControlDocument; // as it was checked, whatever becomes of the file
    clsExport exporter(inputs_.pHost, options);
    std::int32_t lErrNum = 0;
    std::string sErrMsg;
    bStarted_ = true;
    const auto pServers = inputs_.pHost->holdServers();
    log_.watchServersOf(*inputs_.pHost);
    around_.progress.setRows([pHost = inputs_.pHost] { return pHost->rowsUnderWay(); });
    exporter.Export2XML(inputs_.pMapDocument, inputs_.sControlPath, inputs_.output.sFolder,
                        inputs_.output.sName, inputs_.oExternalDocument, inputs_.sNodePath, lErrNum, sErrMsg);
    around_.progress.clear();
    around_.progress.setRows({});
    facts_.lostShapes = inputs_.pHost->takeLostShapes();
    settleOutcome(sErrMsg);
    addWarnings(dataWarnings(log_, *inputs_.pHost, inputs_.pMapDocument));
    tell();
}

void ExportRun::settleOutcome(const std::string& sErrMsg) {
    if (log_.saved()) {
        if (around_.pDocumentStands != nullptr)
            around_.pDocumentStands();
        facts_.sDocument = inputs_.output.shown();
        if (!log_.notDurableReason().empty())
            addWarnings({notDurableWarning(facts_.sDocument, log_.notDurableReason())});
        checkDocument();
        facts_.exitCode = log_.failures() == 0 && facts_.lostShapes.empty() && (!check_ || check_->valid())
                              ? ExitCode::Written
                              : ExitCode::WrittenIncomplete;
        return;
    }
    facts_.exitCode = ExitCode::NotWritten;
    facts_.bCancelled = log_.givenUp() && log_.lostServer().empty();
    facts_.problems.push_back(whyNotSaved(log_, sErrMsg));
}

void ExportRun::checkDocument() {
    facts_.sSchema = inputs_.schema.sPath;
    if (!check_)
        return;
    if (!inputs_.output.bStandardOutput)
        check_->read(facts_.sDocument);
    check_->finish();
    if (check_->errors() != nullptr)
        facts_.schemaErrors = check_->errors()->errors();
    if (!check_->whyBrokenOff().empty())
        addWarnings({notCheckedWarning(inputs_.schema.sShown, check_->whyBrokenOff())});
}

void ExportRun::tellValidity() {
    if (!check_ || check_->errors() == nullptr || check_->errors()->count() == 0)
        return;
    listOnConsole(*check_->errors(), {inputs_.output.shown(), arguments_.sControl}, around_.console);
    around_.console.note("halvane: " + invalidSentence(inputs_.schema.sShown, check_->errors()->count()));
}

void ExportRun::tell() {
    tellWarnings();
    listOnConsole(log_,
                  {arguments_.sControl, {inputs_.pMapDocument == nullptr ? sGiveAMap : ""}, facts_.findings},
                  around_.console);
    for (const auto& sLine : lostShapesLines(facts_.lostShapes))
        around_.console.failure("halvane: error: " + sLine);
    if (!log_.saved()) {
        const std::string& sReason = facts_.problems.back();
        around_.console.failure("halvane: " + (stream_ && stream_->begun()
                                                   ? brokenOffSentence(sReason)
                                                   : notWrittenSentence(inputs_.output.shown(), sReason)));
        return;
    }
    for (const auto& sWarning : repairWarnings(log_.repairs()))
        around_.console.note("halvane: warning: " + sWarning);
    if (const std::string sIncomplete = incompleteSentence(log_, facts_.lostShapes); !sIncomplete.empty())
        around_.console.note("halvane: " + sIncomplete);
    tellValidity();
    if (around_.pTrace != nullptr)
        return;
    const std::string sWritten = writtenSentence(facts_.sDocument, log_) +
                                 (check_ && check_->valid() ? validAddition(inputs_.schema.sShown) : "");
    if (inputs_.output.bStandardOutput)
        around_.console.note("halvane: " + sWritten); // standard output holds the document alone
    else
        around_.console.result(sWritten);
}

} // namespace halvane
