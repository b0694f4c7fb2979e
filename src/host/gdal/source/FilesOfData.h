#pragma once

#include "host/gdal/source/HandlePool.h"

#include <string>

namespace halvane::host::gdal {

/// Whether a file is part of the data at a location, so that writing it would change or end that data: the
/// file itself, what its driver reads beside it, what a database keeps beside it while it is open, any file
/// of a file database's folder, any file of a folder that a driver reads or knows for its own.
/// @param sFile,sLocation absolute; the file need not exist.
[[nodiscard]] bool isPartOfData(HandlePool& pool, const std::string& sFile, const std::string& sLocation);

/// Whether a connection's text names the file, as that of a password or a certificate.
[[nodiscard]] bool isNamedInConnection(const std::string& sFile, const std::string& sConnection);

} // namespace halvane::host::gdal
