#pragma once

#include "host/LostShapes.h"
#include "run/Sources.h"
#include "telling/ControlFileLint.h"
#include "telling/ExitCodes.h"
#include "telling/ExportLog.h"
#include "telling/SchemaErrors.h"

#include <chrono>
#include <string>
#include <vector>

namespace halvane {

/// What the report says of an export beside its log. docs/report.schema.json is the published form.
struct ReportFacts {
    ExitCode exitCode = ExitCode::NotWritten;
    bool bCancelled = false;
    std::string sControl;  ///< absolute path, a URL, or sStandardInput
    std::string sDocument; ///< absolute path, or sStandardOutput; "" unless it was written
    std::string sMap;      ///< absolute path; "" without a map
    std::string sSchema;   ///< absolute path; "" where none was asked for or none was reached
    std::vector<SchemaError> schemaErrors;
    std::vector<std::string> problems; ///< why nothing was written
    std::vector<std::string> warnings;
    std::vector<Finding> findings; ///< in the control file
    std::vector<host::LostShapes> lostShapes;
    Sources sources;
    std::chrono::duration<double> duration{};
};

/// The report as JSON, with a line break at its end. Passwords are masked; what is no UTF-8 is replaced.
/// @param pLog nothing when the export was not started.
[[nodiscard]] std::string reportJson(const ReportFacts& facts, const ExportLog* pLog);

} // namespace halvane
