#pragma once

// Which data formats may be opened, and how. Only formats whose drivers read local files are registered;
// none that follows references to other places (virtual datasets, web services).

namespace halvane::host::gdal {

/// Prepares the data library for this process, once: registers the allowed drivers, forbids the network and
/// files beside the data. Cheap when called again.
void prepareLibrary();

/// Null-terminated lists of driver names, for the library's open calls.
[[nodiscard]] const char* const* featureDrivers();
[[nodiscard]] const char* const* rasterDrivers();
/// Drivers for ".mdb" and ".accdb" files, which are reached through a local database connector.
[[nodiscard]] const char* const* localDatabaseDrivers();
/// Drivers that reach a database server: for connections that the map document names, and nothing else.
[[nodiscard]] const char* const* serverDrivers();

} // namespace halvane::host::gdal
