#pragma once

#include "base/Owned.h"

#include <cpl_vsi.h>

#include <functional>
#include <string>
#include <string_view>

namespace halvane::host::gdal {

using FilePtr = Owned<VSILFILE, VSIFCloseL>;

/// Hands over a file's bytes, block by block; none of a file that cannot be read. Ends when an orderly end is
/// asked for.
void readBlocks(const std::string& sPath, const std::function<void(std::string_view)>& take);

/// Hands over the records of newline-delimited GeoJSON, blank ones apart: its lines, or what follows a record
/// separator up to the next one.
void readJsonRecords(const std::string& sPath, const std::function<void(std::string_view)>& take);

} // namespace halvane::host::gdal
