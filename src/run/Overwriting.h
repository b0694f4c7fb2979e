#pragma once

#include "host/DataHost.h"
#include "run/ExportArguments.h"
#include "run/OutputTarget.h"
#include "xml/dom/Dom.h"

#include <string>
#include <vector>

namespace halvane {

/// A line for each file that an export reads and that its document would replace.
[[nodiscard]] std::vector<std::string> checkDocumentReplacesNothing(const ExportArguments& arguments,
                                                                    const OutputTarget& output);

/// The same for the files of its schema, beside those that the arguments name, and of the catalogue.
[[nodiscard]] std::vector<std::string> checkSchemaIsNotReplaced(const OutputTarget& output,
                                                                const std::vector<std::string>& schemaFiles,
                                                                const std::vector<std::string>& catalogFiles);

/// Why a path may not be written: the data that the map names, or that the control file locates, and that
/// would be replaced there; or any database, or what one keeps beside itself. "" for none. @param
/// oControlDocument may be nothing.
[[nodiscard]] std::string dataProblem(const std::string& sPath, const dom::DocumentPtr& oControlDocument,
                                      const host::DataHost& host);

/// A line for the document and one for the report where they would replace data that the map document names
/// or that the control file locates, or what a database keeps beside it.
struct DataProblems {
    std::vector<std::string> ofDocument;
    std::vector<std::string> ofReport;
};
[[nodiscard]] DataProblems checkDataIsNotReplaced(const ExportArguments& arguments,
                                                  const OutputTarget& output,
                                                  const dom::DocumentPtr& oControlDocument,
                                                  const host::DataHost& host);

/// A line for each file that the report would replace: those that the export reads, its document, any
/// database and what one keeps beside itself, and whatever is no report.
[[nodiscard]] std::vector<std::string> checkReportReplacesNothing(const ExportArguments& arguments);

} // namespace halvane
