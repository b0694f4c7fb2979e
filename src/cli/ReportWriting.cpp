#include "cli/ReportWriting.h"

#include "base/Failure.h"
#include "run/Overwriting.h"
#include "telling/Outcome.h"
#include "telling/Paths.h"

#include <fmt/format.h>

#include <filesystem>

namespace halvane::cli {

std::unique_ptr<ReportFile> openReport(const ExportArguments& arguments, const Console& console) {
    const std::string& sReport = *arguments.sReport;
    const std::string sPath = absolutePath(sReport);
    std::error_code error;
    if (sPath.empty() || std::filesystem::is_directory(sPath, error)) {
        console.failure(fmt::format("halvane: --report: \"{}\" is not the path of a file", sReport));
        return nullptr;
    }
    if (const auto problems = checkReportReplacesNothing(arguments); !problems.empty()) {
        for (const auto& sProblem : problems)
            console.failure("halvane: " + sProblem);
        return nullptr;
    }
    try {
        return std::make_unique<ReportFile>(sPath);
    } catch (const Failure& failure) {
        console.failure(fmt::format("halvane: --report: {}", failure.description()));
        return nullptr;
    }
}

ExitCode writeReport(ReportFile& file, const std::string& sJson, const ExportArguments& arguments,
                     ExitCode exitCode, const Console& console) {
    try {
        const std::string sNotDurable = file.commit(sJson, arguments.durability);
        if (!sNotDurable.empty())
            console.note("halvane: warning: --report: " +
                         notDurableWarning(absolutePath(*arguments.sReport), sNotDurable));
        return exitCode;
    } catch (const Failure& failure) {
        console.failure(fmt::format("halvane: --report: {}", failure.description()));
        return exitCode == ExitCode::Written ? ExitCode::WrittenIncomplete : exitCode;
    }
}

} // namespace halvane::cli
