#include "cli/progress/OpenProgress.h"

#include "cli/progress/ProgressJson.h"
#include "cli/progress/ProgressLine.h"
#include "telling/StandardStreams.h"

#include <cstdlib>
#include <unistd.h>

namespace halvane::cli {

namespace {

bool terminalOnStandardError() {
    const char* sTerminal = std::getenv("TERM");
    return ::isatty(standardErrorDescriptor()) == 1 &&
           (sTerminal == nullptr || std::string_view(sTerminal) != "dumb");
}

template<class Kind>
std::unique_ptr<Progress> make(std::string_view sUnit) {
    auto pProgress = std::make_unique<Kind>(standardError(), &std::chrono::steady_clock::now);
    pProgress->setUnit(sUnit);
    return pProgress;
}

} // namespace

std::unique_ptr<Progress> openProgress(const ExportArguments& arguments, std::string_view sUnit) {
    if (arguments.progress == ProgressForm::Json)
        return make<ProgressJson>(sUnit);
    if (arguments.progress == ProgressForm::Line && !arguments.bQuiet && terminalOnStandardError())
        return make<ProgressLine>(sUnit);
    return std::make_unique<NoProgress>();
}

} // namespace halvane::cli
