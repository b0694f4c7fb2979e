#pragma once

#include "run/describe/MapDescription.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace halvane {

/// How many points a layer is drawn with.
inline constexpr std::size_t nSketchPointsOfPage = 400;

/// The description as one page of HTML that needs nothing from elsewhere: what maps are made of, searchable,
/// with drawings of layers and relationship classes.
/// @param description with sketches. @param sPath the map's absolute path.
[[nodiscard]] std::string mapPage(const MapDescription& description, const std::string& sPath);

/// Whether a file that begins so is such a page, and may be replaced by another one.
[[nodiscard]] bool beginsAsMapPage(std::string_view sBeginning) noexcept;

} // namespace halvane
