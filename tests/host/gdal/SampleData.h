#pragma once

// Data for the tests, made by the data library itself in a temporary folder.

#include "host/Rows.h"
#include "host/Tables.h"
#include "host/gdal/GdalHost.h"
#include "support/TemporaryFolder.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class OGRSpatialReference;

class OGRLayer;
class GDALDataset;

namespace halvane::tests {

/// A folder that goes away with the object, also when a test has made it read-only.
class TemporaryFolder {
public:
    TemporaryFolder() : sPath_(folder_.path().string()) {}
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return sPath_; }
    [[nodiscard]] std::string file(std::string_view sName) const { return sPath_ + "/" + std::string(sName); }
    /// Writes a text file and returns its path.
    std::string write(std::string_view sName, std::string_view sContent) const;
    /// The names in the folder, sorted.
    [[nodiscard]] std::vector<std::string> names() const;

private:
    test::TemporaryFolder folder_;
    std::string sPath_;
};

/// A GeoPackage with the lines "roads" (5 features: NAME 'R1' to 'R5', N 10 to 50, BIG, LEN, W, BUILT, SEEN,
/// OPEN, RAW; R5 has nulls only), the points "signs" (3) and the table "notes" (ROAD 1, 1, 2; TEXT).
std::string makeCity(const TemporaryFolder& folder, std::string_view sName = "city.gpkg");
/// One layer of that GeoPackage in another format.
std::string convertLayer(const std::string& sFrom, const std::string& sLayer, const std::string& sTo,
                         const std::string& sFormat);
/// The whole of it in another format.
std::string convert(const std::string& sFrom, const std::string& sTo, const std::string& sFormat);
/// A raster of 4 by 3 cells.
std::string makeRaster(const TemporaryFolder& folder, std::string_view sName, const std::string& sFormat);
/// A GeoPackage with one layer of triangulated surfaces.
std::string makeTin(const TemporaryFolder& folder, std::string_view sName, const std::string& sLayer);
/// Runs statements on a GeoPackage or SQLite file.
void runSql(const std::string& sFile, const std::vector<std::string>& statements);

/// The feature class of a new host's workspace at a location.
host::GisWorkspacePtr openWorkspace(const std::string& sLocation);
/// The texts of a column of all rows of a cursor.
std::vector<std::string> texts(host::GisCursor& cursor, std::string_view sField);
std::vector<std::string> texts(host::GisTable& table, std::string_view sField, std::string_view sWhere = {});
/// The reference that a definition of any form makes.
OGRSpatialReference systemOf(const std::string& sDefinition);
/// The description of the failure that a call ends with; "" when it ends without one.
std::string failureOf(const std::function<void()>& call);

} // namespace halvane::tests
