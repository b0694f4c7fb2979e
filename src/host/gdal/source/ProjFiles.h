#pragma once

namespace halvane::host::gdal {

/// Lets the projection library open files of its own folders alone, as they are now: its database, grids and
/// definitions. Other files that a reference system names (a grid, a file of definitions) are not there for
/// it. Contexts that the library makes later are confined from the first file on that they seek by its name,
/// in the whole process.
void confineProjections();

} // namespace halvane::host::gdal
