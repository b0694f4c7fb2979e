#pragma once

#include "engine/ExportTrace.h"
#include "run/DocumentCheck.h"
#include "run/DocumentStream.h"
#include "run/ExportArguments.h"
#include "run/ExportInputs.h"
#include "run/Report.h"
#include "telling/Console.h"
#include "telling/ExportLog.h"
#include "telling/Progress.h"
#include "telling/StandardStreams.h"

#include <optional>

namespace halvane {

/// What an export runs in.
struct RunSurroundings {
    const host::DataHosts& hosts; ///< stays
    const Console& console;       ///< borrowed; is told in the words of the command line
    Progress& progress;           ///< borrowed
    /// Borrowed; what libraries wrote to the process's standard error becomes warnings. May be nothing.
    LibraryLines* pLibraryLines = nullptr;
    /// Borrowed; takes the document that is to go to standard output. May be nothing otherwise.
    io::ByteSink* pStandardOutput = nullptr;
    /// Called once the document stands; may be nothing.
    void (*pDocumentStands)() noexcept = nullptr;
    /// Borrowed; then the document is one to look at, and nobody is told that it was written. May be nothing.
    ExportTrace* pTrace = nullptr;
};

/// One export from its arguments to what the person is told; the report is left to the caller.
class ExportRun {
public:
    /// @param arguments borrowed.
    ExportRun(const ExportArguments& arguments, const RunSurroundings& around);

    /// Call once.
    void run();

    [[nodiscard]] ReportFacts& facts() noexcept { return facts_; }
    /// With what the export read: looking that up takes a while where there is much data.
    [[nodiscard]] ReportFacts& factsWithSources();
    /// As far as they were opened.
    [[nodiscard]] const ExportInputs& inputs() const noexcept { return inputs_; }
    /// False where the report would replace data.
    [[nodiscard]] bool mayReport() const noexcept { return !inputs_.bReportIsData; }
    /// Nothing when the export was not started.
    [[nodiscard]] const ExportLog* log() const noexcept { return bStarted_ ? &log_ : nullptr; }

private:
    void addWarnings(std::vector<std::string> warnings);
    /// What libraries wrote included: from here on they are no longer listened to.
    void tellWarnings();
    void giveUp();
    void refuse(std::vector<std::string> problems);
    void exportDocument();
    void settleOutcome(const std::string& sErrMsg);
    void checkDocument();
    void tellValidity();
    void tell();

    const ExportArguments& arguments_;
    RunSurroundings around_;
    ExportInputs inputs_;
    ExportLog log_;
    ReportFacts facts_;
    std::optional<DocumentCheck> check_;   ///< where a schema is given
    std::optional<DocumentStream> stream_; ///< to standard output
    bool bStarted_ = false;
};

} // namespace halvane
