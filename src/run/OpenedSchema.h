#pragma once

#include "run/ExportArguments.h"
#include "run/OutputTarget.h"
#include "xml/schema/Schema.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace halvane {

/// The schema of an export, read with all its parts before the export begins.
struct OpenedSchema {
    std::string sShown;                   ///< as it was typed
    std::string sPath;                    ///< absolute
    std::vector<std::string> files;       ///< absolute: it, its parts and its catalogue
    std::unique_ptr<dom::Schema> pSchema; ///< nothing when none was asked for, or it is unfit
};

/// A schema with all its parts, found fit. @param problems gets a line for each reason why it cannot be used:
/// it or a part of it cannot be read, is no schema, or lies elsewhere. @returns nothing useful then.
[[nodiscard]] std::optional<dom::SchemaFiles> readSchema(const std::string& sSchema,
                                                         const std::optional<std::string>& sCatalog,
                                                         std::vector<std::string>& problems);

/// @param problems as of readSchema(); also where the schema would be replaced by the document.
[[nodiscard]] OpenedSchema openSchema(const ExportArguments& arguments, const OutputTarget& output,
                                      std::vector<std::string>& problems);

} // namespace halvane
