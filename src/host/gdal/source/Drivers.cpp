#include "host/gdal/source/Drivers.h"

#include "host/gdal/source/ConfinedFiles.h"
#include "host/gdal/source/ProjFiles.h"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <gdal_frmts.h>
#include <ogr_srs_api.h>
#include <ogrsf_frmts.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace halvane::host::gdal {

namespace {

enum class Opens : std::uint8_t { Features, Rasters, Both, LocalDatabases, Servers };

struct Driver {
    const char* pName;
    Opens opens;
    void (*pRegister)();
};

// A file is tried with them in this order.
constexpr std::array<Driver, 36> aDrivers{{
    {"GPKG", Opens::Both, &RegisterOGRGeoPackage},
    {"SQLite", Opens::Features, &RegisterOGRSQLite},
    {"ESRI Shapefile", Opens::Features, &RegisterOGRShape},
    {"OpenFileGDB", Opens::Features, &RegisterOGROpenFileGDB},
    {"CSV", Opens::Features, &RegisterOGRCSV},
    {"GeoJSON", Opens::Features, &RegisterOGRGeoJSON},
    {"GeoJSONSeq", Opens::Features, &RegisterOGRGeoJSONSeq},
    {"TopoJSON", Opens::Features, &RegisterOGRTopoJSON},
    {"FlatGeobuf", Opens::Features, &RegisterOGRFlatGeobuf},
    {"GML", Opens::Features, &RegisterOGRGML},
    {"LIBKML", Opens::Features, &RegisterOGRLIBKML},
    {"KML", Opens::Features, &RegisterOGRKML},
    {"GPX", Opens::Features, &RegisterOGRGPX},
    {"DXF", Opens::Features, &RegisterOGRDXF},
    {"MapInfo File", Opens::Features, &RegisterOGRTAB},
    {"XLSX", Opens::Features, &RegisterOGRXLSX},
    {"ODS", Opens::Features, &RegisterOGRODS},
    {"JML", Opens::Features, &RegisterOGRJML},
    {"GTiff", Opens::Rasters, &GDALRegister_GTiff},
    {"HFA", Opens::Rasters, &GDALRegister_HFA},
    {"AAIGrid", Opens::Rasters, &GDALRegister_AAIGrid},
    {"AIG", Opens::Rasters, &GDALRegister_AIGrid},
    {"PNG", Opens::Rasters, &GDALRegister_PNG},
    {"JPEG", Opens::Rasters, &GDALRegister_JPEG},
    {"GIF", Opens::Rasters, &GDALRegister_GIF},
    {"BMP", Opens::Rasters, &GDALRegister_BMP},
    {"JP2OpenJPEG", Opens::Rasters, &GDALRegister_JP2OpenJPEG},
    {"WEBP", Opens::Rasters, &GDALRegister_WEBP},
    {"DTED", Opens::Rasters, &GDALRegister_DTED},
    {"SRTMHGT", Opens::Rasters, &GDALRegister_SRTMHGT},
    {"USGSDEM", Opens::Rasters, &GDALRegister_USGSDEM},
    {"EHdr", Opens::Rasters, &GDALRegister_EHdr},
    {"ENVI", Opens::Rasters, &GDALRegister_ENVI},
    {"PGeo", Opens::LocalDatabases, &RegisterOGRPGeo},
    {"ODBC", Opens::LocalDatabases, &RegisterOGRODBC},
    {"PostgreSQL", Opens::Servers, &RegisterOGRPG},
}};

// Null-terminated, as the library takes them.
template<Opens... kinds>
const char* const* namesOf() {
    static const auto aNames = [] {
        std::array<const char*, aDrivers.size() + 1> aList{};
        std::size_t nNames = 0;
        for (const Driver& driver : aDrivers)
            if (((driver.opens == kinds) || ...))
                aList.at(nNames++) = driver.pName;
        return aList;
    }();
    return aNames.data();
}

void prepareOnce() {
    // What stands beside a raster is read (never written: see tryOpen).
    CPLSetConfigOption("GDAL_PAM_ENABLED", "YES");
    // A folder of thousands of files must not be listed again for each of them.
    CPLSetConfigOption("GDAL_DISABLE_READDIR_ON_OPEN", "TRUE");
    // The drivers leave out columns beyond 2,000 and tables beyond 10,000, with a warning alone.
    for (const char* pLimit : {"OGR_CSV_MAX_FIELD_COUNT", "OGR_XLSX_MAX_FIELD_COUNT",
                               "OGR_ODS_MAX_FIELD_COUNT", "OGR_TABLE_LIMIT"})
        CPLSetConfigOption(pLimit, "1000000");
    // References inside the data to other places are not followed: every request of the library ends here.
    CPLSetConfigOption("GDAL_HTTP_PROXY", "127.0.0.1:9");
    CPLSetConfigOption("GDAL_HTTPS_PROXY", "127.0.0.1:9");
    CPLSetConfigOption("GDAL_HTTP_TIMEOUT", "1");
    CPLSetConfigOption("GDAL_HTTP_MAX_RETRY", "0");
    // This parser opens no entities.
    CPLSetConfigOption("GML_PARSER", "EXPAT");
    // Neither are those of virtual tables, nor is code loaded into a database.
    CPLSetConfigOption("OGR_SQLITE_LIST_VIRTUAL_OGR", "NO");
    CPLSetConfigOption("OGR_SQLITE_LOAD_EXTENSIONS", "");
    // A view that calls a function which reaches out is refused alone, by its function, not with its
    // database.
    CPLSetConfigOption("ALLOW_OGR_SQL_FUNCTIONS_FROM_TRIGGER_AND_VIEW", "YES");
    // Beside tables with shapes a server's others are datasets too.
    CPLSetConfigOption("PG_LIST_ALL_TABLES", "YES");
    confineProjections();
    confineFiles();
    OSRSetPROJEnableNetwork(FALSE);
    // Threads of the library that read ahead would write to standard error: what fails there is read, and
    // told, again by the thread that asked.
    CPLSetErrorHandler(&CPLQuietErrorHandler);
    for (const Driver& driver : aDrivers)
        driver.pRegister();
}

} // namespace

void prepareLibrary() {
    static std::once_flag once;
    std::call_once(once, &prepareOnce);
}

const char* const* featureDrivers() {
    return namesOf<Opens::Features, Opens::Both>();
}

const char* const* rasterDrivers() {
    return namesOf<Opens::Rasters, Opens::Both>();
}

const char* const* localDatabaseDrivers() {
    return namesOf<Opens::LocalDatabases>();
}

const char* const* serverDrivers() {
    return namesOf<Opens::Servers>();
}

} // namespace halvane::host::gdal
