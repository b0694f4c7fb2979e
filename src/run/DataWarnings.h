#pragma once

#include "host/DataHost.h"
#include "telling/ExportLog.h"

#include <string>
#include <vector>

namespace halvane {

/// A warning for each piece of the map's data that cannot be opened, if something was not found: the engine
/// is told that a table is not there, not why; the host knows.
/// @param pMapDocument may be nothing.
[[nodiscard]] std::vector<std::string> dataWarnings(const ExportLog& log, const host::DataHost& host,
                                                    const host::GisMapDocumentPtr& pMapDocument);

} // namespace halvane
