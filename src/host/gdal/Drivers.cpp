#include "host/gdal/Drivers.h"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <gdal_frmts.h>
#include <ogr_srs_api.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <array>
#include <mutex>

namespace halvane::host::gdal {

namespace {

constexpr std::array aFeatureDrivers{
    "GPKG",       "SQLite",   "ESRI Shapefile", "OpenFileGDB", "CSV",    "GeoJSON",
    "GeoJSONSeq", "TopoJSON", "FlatGeobuf",     "GML",         "LIBKML", "KML",
    "GPX",        "DXF",      "MapInfo File",   "XLSX",        "ODS",    "JML"};

struct RasterDriver {
    const char* pName;
    void (*pRegister)();
};

// GeoPackage holds features and rasters; it is registered with the feature drivers.
constexpr std::array aRasterDrivers{
    RasterDriver{"GPKG", nullptr},
    RasterDriver{"GTiff", &GDALRegister_GTiff},
    RasterDriver{"HFA", &GDALRegister_HFA},
    RasterDriver{"AAIGrid", &GDALRegister_AAIGrid},
    RasterDriver{"AIG", &GDALRegister_AIGrid},
    RasterDriver{"PNG", &GDALRegister_PNG},
    RasterDriver{"JPEG", &GDALRegister_JPEG},
    RasterDriver{"GIF", &GDALRegister_GIF},
    RasterDriver{"BMP", &GDALRegister_BMP},
    RasterDriver{"JP2OpenJPEG", &GDALRegister_JP2OpenJPEG},
    RasterDriver{"WEBP", &GDALRegister_WEBP},
    RasterDriver{"DTED", &GDALRegister_DTED},
    RasterDriver{"SRTMHGT", &GDALRegister_SRTMHGT},
    RasterDriver{"USGSDEM", &GDALRegister_USGSDEM},
    RasterDriver{"EHdr", &GDALRegister_EHdr},
    RasterDriver{"ENVI", &GDALRegister_ENVI},
};

void registerFeatureDrivers() {
    RegisterOGRGeoPackage();
    RegisterOGRSQLite();
    RegisterOGRShape();
    RegisterOGROpenFileGDB();
    RegisterOGRCSV();
    RegisterOGRGeoJSON();
    RegisterOGRGeoJSONSeq();
    RegisterOGRTopoJSON();
    RegisterOGRFlatGeobuf();
    RegisterOGRGML();
    RegisterOGRLIBKML();
    RegisterOGRKML();
    RegisterOGRGPX();
    RegisterOGRDXF();
    RegisterOGRTAB();
    RegisterOGRXLSX();
    RegisterOGRODS();
    RegisterOGRJML();
    RegisterOGRPGeo();
    RegisterOGRODBC();
    RegisterOGRPG();
}

void prepareOnce() {
    // What stands beside a raster is read (never written: see tryOpen).
    CPLSetConfigOption("GDAL_PAM_ENABLED", "YES");
    // A folder of thousands of files must not be listed again for each of them.
    CPLSetConfigOption("GDAL_DISABLE_READDIR_ON_OPEN", "TRUE");
    // The drivers leave out columns beyond 2,000 and tables beyond 10,000, with a warning alone.
    for (const char* pLimit : {"OGR_CSV_MAX_FIELD_COUNT", "OGR_XLSX_MAX_FIELD_COUNT",
                               "OGR_ODS_MAX_FIELD_COUNT", "OGR_TABLE_LIMIT"}) {
        CPLSetConfigOption(pLimit, "1000000");
    }
    // References inside the data to other places are not followed: every request of the library ends here.
    CPLSetConfigOption("GDAL_HTTP_PROXY", "127.0.0.1:9");
    CPLSetConfigOption("GDAL_HTTPS_PROXY", "127.0.0.1:9");
    CPLSetConfigOption("GDAL_HTTP_TIMEOUT", "1");
    CPLSetConfigOption("GDAL_HTTP_MAX_RETRY", "0");
    // Neither are those of virtual tables, nor is code loaded into a database.
    CPLSetConfigOption("OGR_SQLITE_LIST_VIRTUAL_OGR", "NO");
    CPLSetConfigOption("OGR_SQLITE_LOAD_EXTENSIONS", "");
    // A view that calls a function which reaches out is refused alone, by its function, not with its
    // database.
    CPLSetConfigOption("ALLOW_OGR_SQL_FUNCTIONS_FROM_TRIGGER_AND_VIEW", "YES");
    // Beside tables with shapes a server's others are datasets too.
    CPLSetConfigOption("PG_LIST_ALL_TABLES", "YES");
    OSRSetPROJEnableNetwork(FALSE);
    // Threads of the library that read ahead would write to standard error: what fails there is read, and
    // told, again by the thread that asked.
    CPLSetErrorHandler(&CPLQuietErrorHandler);
    registerFeatureDrivers();
    for (const RasterDriver& driver : aRasterDrivers) {
        if (driver.pRegister != nullptr) {
            driver.pRegister();
        }
    }
}

} // namespace

void prepareLibrary() {
    static std::once_flag once;
    std::call_once(once, &prepareOnce);
}

const char* const* featureDrivers() {
    static const auto aNames = [] {
        std::array<const char*, aFeatureDrivers.size() + 1> aList{};
        std::copy(aFeatureDrivers.begin(), aFeatureDrivers.end(), aList.begin());
        return aList;
    }();
    return aNames.data();
}

const char* const* rasterDrivers() {
    static const auto aNames = [] {
        std::array<const char*, aRasterDrivers.size() + 1> aList{};
        std::transform(aRasterDrivers.begin(), aRasterDrivers.end(), aList.begin(),
                       [](const RasterDriver& driver) { return driver.pName; });
        return aList;
    }();
    return aNames.data();
}

const char* const* localDatabaseDrivers() {
    static const std::array<const char*, 3> aNames{"PGeo", "ODBC", nullptr};
    return aNames.data();
}

const char* const* serverDrivers() {
    static const std::array<const char*, 2> aNames{"PostgreSQL", nullptr};
    return aNames.data();
}

} // namespace halvane::host::gdal
