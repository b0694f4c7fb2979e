#pragma once

#include <string>
#include <vector>

namespace halvane::cli {

/// Rows as lines with aligned columns, two blanks between them. The first row is the heading; a column that
/// is empty in all other rows is left out. A cell longer than any sensible column pushes only its own row.
[[nodiscard]] std::vector<std::string> alignedColumns(const std::vector<std::vector<std::string>>& rows);

} // namespace halvane::cli
