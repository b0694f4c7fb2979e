#pragma once

#include "cli/Arguments.h"
#include "cli/Console.h"
#include "cli/ExportInputs.h"
#include "cli/ExportLog.h"
#include "cli/ProgressLine.h"
#include "cli/Report.h"
#include "cli/StandardStreams.h"

namespace halvane::cli {

/// One export from its arguments to what the person is told; the report is left to the caller.
class ExportRun {
public:
    /// @param arguments,console borrowed.
    ExportRun(const ExportArguments& arguments, const Console& console);

    /// Call once.
    void run();

    [[nodiscard]] ReportFacts& facts() noexcept { return facts_; }
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
    void tell();

    const ExportArguments& arguments_;
    const Console& console_;
    ExportInputs inputs_;
    LibraryLines libraryLines_;
    ProgressLine progress_;
    ExportLog log_;
    ReportFacts facts_;
    bool bStarted_ = false;
};

} // namespace halvane::cli
