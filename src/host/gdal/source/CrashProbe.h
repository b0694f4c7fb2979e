#pragma once

#include <string>

namespace halvane::host::gdal {

/// Reads all of a file in a process of its own, if it is of a kind that is known to crash the library: KML
/// with tracks, and all KMZ. Other files are not looked at. A crash there costs nobody anything.
/// @returns why the file cannot be read, a message by itself; "" where nothing speaks against it.
[[nodiscard]] std::string crashOnReading(const std::string& sPath);

} // namespace halvane::host::gdal
