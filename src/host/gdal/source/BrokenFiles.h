#pragma once

#include "host/gdal/source/HandlePool.h"

#include <optional>
#include <string>

namespace halvane::host::gdal {

/// A file that a driver should read, by its contents or by its name, and does not.
struct BrokenFile {
    enum class Kind { Layer, Table, Raster };
    Kind kind = Kind::Layer; ///< what a map of its folder lists it as
    std::string sReason;     ///< the file, the driver and what that reported: a message by itself
};

/// Tries the drivers of tables and feature classes.
/// @returns nothing for a file that is none of theirs, and for one that is read without an error.
[[nodiscard]] std::optional<BrokenFile> brokenFeatureFile(HandlePool& pool, const std::string& sPath);
/// The same with the drivers of rasters.
[[nodiscard]] std::optional<BrokenFile> brokenRasterFile(HandlePool& pool, const std::string& sPath);

} // namespace halvane::host::gdal
