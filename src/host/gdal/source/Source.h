#pragma once

#include "host/gdal/source/DataInUse.h"

#include <gdal.h>

#include <memory>
#include <string>
#include <vector>

namespace halvane::host::gdal {

class MendedShapes;

/// How a data source is opened. Every handle on it is opened alike.
struct Source {
    Source() = default;
    Source(const Source&) = default;
    Source& operator=(const Source&) = default;
    Source(Source&&) = default;
    Source& operator=(Source&&) = default;
    ~Source() { forgetDataInUse(this); }

    std::string sOpenName;    ///< a path, a connection string or a driver's name for a part of a file
    std::string sDisplayName; ///< for messages and paths in the output; no password
    std::string sDriver;
    std::vector<std::string> openOptions;
    unsigned int lOpenKind = GDAL_OF_VECTOR;     ///< GDAL_OF_VECTOR or GDAL_OF_RASTER
    std::shared_ptr<const void> pKept;           ///< what must stay while the source may be opened
    std::shared_ptr<const MendedShapes> pMended; ///< where shapes were taken out of what is opened
};
[[nodiscard]] inline bool isServer(const Source& source) {
    return source.sDriver == "PostgreSQL";
}
using SourcePtr = std::shared_ptr<const Source>;

} // namespace halvane::host::gdal
