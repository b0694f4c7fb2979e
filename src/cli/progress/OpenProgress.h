#pragma once

#include "run/ExportArguments.h"
#include "telling/Progress.h"

#include <memory>
#include <string_view>

namespace halvane::cli {

/// What the person wants to see of how far it is, on standard error; a line only on a terminal where it can
/// be written anew.
/// @param sUnit what is counted; stays.
[[nodiscard]] std::unique_ptr<Progress> openProgress(const ExportArguments& arguments,
                                                     std::string_view sUnit = "rows");

} // namespace halvane::cli
