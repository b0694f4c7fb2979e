#pragma once

#include "host/gdal/source/HandlePool.h"

#include <optional>
#include <string>
#include <vector>

namespace halvane::host::gdal {

/// A table or feature class of a data source.
struct DatasetEntry {
    SourcePtr pSource;
    std::string sName;
    bool bFeatures = false; ///< whether its rows have shapes
};

/// A raster of a data source: opening the source gives it.
struct RasterEntry {
    SourcePtr pSource;
    std::string sName;
};

/// Whether a file's name is one of those that drivers read along with another file.
[[nodiscard]] bool isSideFile(const std::string& sFile);
/// Whether a driver's data sources are databases rather than files of a folder.
[[nodiscard]] bool isDatabaseDriver(const std::string& sDriver);

/// What came of opening a file.
struct Opening {
    SourcePtr pSource;           ///< nothing when no allowed driver reads it
    std::string sExpectedDriver; ///< that the file's beginning speaks of; "" for none
    std::string sErrors;         ///< what was reported, also of a file that was opened
};
/// Opens a file or a folder that is itself a dataset (a file database) for its tables and feature classes.
[[nodiscard]] Opening openFeatures(HandlePool& pool, const std::string& sPath);
/// The same for a file or a file database in an archive.
/// @param sName for the library. @param sArchive its path: the library may reach no further than its folder.
[[nodiscard]] Opening openMember(HandlePool& pool, const std::string& sName, const std::string& sArchive);
/// The same for a raster.
[[nodiscard]] Opening openRaster(HandlePool& pool, const std::string& sPath);

/// How a file or a folder that is itself a dataset (a file database) is opened for its tables and feature
/// classes; nothing when no allowed driver reads it.
[[nodiscard]] SourcePtr featureSourceOf(HandlePool& pool, const std::string& sPath);
/// The same for a raster.
[[nodiscard]] SourcePtr rasterSourceOf(HandlePool& pool, const std::string& sPath);
/// How a raster of a database file is opened; whether there is such a one is not asked.
[[nodiscard]] SourcePtr rasterSourceOf(const std::string& sPath, const std::string& sRaster);
/// How a database server is opened. @param sConnection the text after the map document, "PG:...".
/// @throws Failure when it cannot be reached.
[[nodiscard]] SourcePtr serverSourceOf(HandlePool& pool, const std::string& sConnection);

/// The datasets of a source, in its own order.
[[nodiscard]] std::vector<DatasetEntry> datasetsOf(HandlePool& pool, const SourcePtr& pSource);
/// The rasters that a database file holds, also beside its tables.
[[nodiscard]] std::vector<RasterEntry> rastersOf(HandlePool& pool, const SourcePtr& pSource);
/// The rasters of any file, a database's by their own names; none when no allowed driver reads it as a
/// raster.
[[nodiscard]] std::vector<RasterEntry> rastersOfFile(HandlePool& pool, const std::string& sPath);

/// The files and database folders of a folder that may hold data, sorted by name; files that belong to
/// another (the parts of a shapefile set, side files) are left out.
[[nodiscard]] std::vector<std::string> dataFilesIn(const std::string& sFolder);

} // namespace halvane::host::gdal
