#pragma once

#include "run/describe/MapDescription.h"

#include <string>

namespace halvane {

/// The description as JSON in the form of docs/describe.schema.json, with a line break at its end. Passwords
/// are masked; what is no UTF-8 is replaced.
/// Where the shapes were read, layers have a member beyond that: "extent", the four bounds, or null.
/// @param sPath the map's absolute path.
[[nodiscard]] std::string descriptionJson(const MapDescription& description, const std::string& sPath);

} // namespace halvane
