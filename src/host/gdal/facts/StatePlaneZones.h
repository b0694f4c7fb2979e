#pragma once

#include <optional>
#include <string_view>

namespace halvane::host::gdal {

/// The number of the state plane zone, of 1927 or of 1983, that a conversion is named after as the EPSG
/// register names them: "Texas CS27 Central zone", "SPCS83 Texas Central zone (meters)". None for every other
/// name. The unit at the end is left aside: its spelling differs from one edition of the register to the
/// next.
[[nodiscard]] std::optional<int> statePlaneZone(std::string_view sConversion);

} // namespace halvane::host::gdal
