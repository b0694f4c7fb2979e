#pragma once

#include "run/describe/MapDescription.h"

#include <string>

namespace halvane::cli {

/// The description as a page of text. What could not be read says so in its place. Passwords are masked, and
/// foreign texts cannot steer a terminal.
/// @param sPath the map's absolute path.
[[nodiscard]] std::string descriptionPage(const MapDescription& description, const std::string& sPath);

} // namespace halvane::cli
