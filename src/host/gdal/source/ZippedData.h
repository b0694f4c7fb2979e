#pragma once

#include "host/gdal/source/HandlePool.h"

#include <string>
#include <vector>

namespace halvane::host::gdal {

/// Whether a path is that of a zipped archive (".zip").
[[nodiscard]] bool isZippedData(const std::string& sPath);

/// The data of an archive: its shapefile sets, dBASE tables, GeoPackages and file databases, at any depth,
/// sorted by their names. Archives in the archive are not entered.
/// @throws Failure for an archive that cannot be read, that is too large (ArchiveMembers) or holds none of
///         these, and for data that cannot be opened.
[[nodiscard]] std::vector<SourcePtr> sourcesInArchive(HandlePool& pool, const std::string& sPath);

} // namespace halvane::host::gdal
