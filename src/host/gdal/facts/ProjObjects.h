#pragma once

// Reference systems as the projection library has them, for what the data library does not hand on.

#include "base/Owned.h"

#include <ogr_spatialref.h>
#include <proj.h>

namespace halvane::host::gdal {

using ProjPtr = Owned<PJ, proj_destroy>;

/// The library's context of this thread: silent and without network.
[[nodiscard]] PJ_CONTEXT* projContext();

/// Whether the library's database of coordinate systems is there and can be read.
[[nodiscard]] bool isRegisterReadable();

/// The system that the library's database has under the reference's code; without a code, the system of the
/// reference's definition. Empty when there is neither.
[[nodiscard]] ProjPtr projOf(const OGRSpatialReference& reference);

/// The horizontal and the vertical part of a system; either may be empty.
struct ProjParts {
    ProjPtr pHorizontal;
    ProjPtr pVertical;
};
/// @param pCrs not empty.
[[nodiscard]] ProjParts partsOf(ProjPtr pCrs);

} // namespace halvane::host::gdal
