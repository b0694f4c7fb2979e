#pragma once

#include "run/ExportArguments.h"
#include "run/ExportRun.h"
#include "run/preview/PreviewPage.h"

#include <string>

namespace halvane {

struct PreviewOutcome {
    ExitCode exitCode = ExitCode::Written; ///< as an export's
    std::string sPage;                     ///< "" when there is no document
};

/// Exports the first items of each repeated node, writes no file, and lays the document out for people.
/// @param arguments those of the export; its output is not heeded.
/// @param around its standard output is not heeded; the console is told what the export would tell.
[[nodiscard]] PreviewOutcome runPreview(const ExportArguments& arguments, const RunSurroundings& around,
                                        const PreviewForm& form);

} // namespace halvane
