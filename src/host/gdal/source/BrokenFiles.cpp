#include "host/gdal/source/BrokenFiles.h"

#include "base/FindRow.h"
#include "host/gdal/source/DataFiles.h"
#include "host/gdal/source/Drivers.h"
#include "host/gdal/source/Locations.h"

#include <array>
#include <filesystem>
#include <string_view>

namespace halvane::host::gdal {

namespace {

struct Ending {
    std::string_view sExtension;
    std::string_view sDriver;
};

// Endings that say what a file is. Those that other programs use as well (.json, .xml, .db, .mid) say
// nothing.
constexpr std::array aFeatureEndings{Ending{"gpkg", "GPKG"},
                                     Ending{"sqlite", "SQLite"},
                                     Ending{"shp", "ESRI Shapefile"},
                                     Ending{"dbf", "ESRI Shapefile"},
                                     Ending{"shz", "ESRI Shapefile"},
                                     Ending{"gdb", "OpenFileGDB"},
                                     Ending{"csv", "CSV"},
                                     Ending{"geojson", "GeoJSON"},
                                     Ending{"geojsonl", "GeoJSONSeq"},
                                     Ending{"geojsons", "GeoJSONSeq"},
                                     Ending{"topojson", "TopoJSON"},
                                     Ending{"fgb", "FlatGeobuf"},
                                     Ending{"gml", "GML"},
                                     Ending{"kml", "LIBKML"},
                                     Ending{"kmz", "LIBKML"},
                                     Ending{"gpx", "GPX"},
                                     Ending{"dxf", "DXF"},
                                     Ending{"tab", "MapInfo File"},
                                     Ending{"mif", "MapInfo File"},
                                     Ending{"xlsx", "XLSX"},
                                     Ending{"xlsm", "XLSX"},
                                     Ending{"ods", "ODS"},
                                     Ending{"jml", "JML"},
                                     Ending{"mdb", "PGeo"},
                                     Ending{"accdb", "ODBC"}};
constexpr std::array aRasterEndings{
    Ending{"tif", "GTiff"},       Ending{"tiff", "GTiff"},      Ending{"img", "HFA"},
    Ending{"asc", "AAIGrid"},     Ending{"png", "PNG"},         Ending{"jpg", "JPEG"},
    Ending{"jpeg", "JPEG"},       Ending{"gif", "GIF"},         Ending{"bmp", "BMP"},
    Ending{"jp2", "JP2OpenJPEG"}, Ending{"j2k", "JP2OpenJPEG"}, Ending{"webp", "WEBP"},
    Ending{"dt0", "DTED"},        Ending{"dt1", "DTED"},        Ending{"dt2", "DTED"},
    Ending{"hgt", "SRTMHGT"},     Ending{"dem", "USGSDEM"},     Ending{"bil", "EHdr"}};

template<std::size_t n>
std::string driverByEnding(const std::array<Ending, n>& endings, const std::string& sPath) {
    const auto* pEnding = findRow(endings, extensionOf(sPath), &Ending::sExtension);
    return pEnding == nullptr ? std::string() : std::string(pEnding->sDriver);
}

// What to tell where the driver reported nothing.
std::string defaultReason(const std::string& sPath, bool bKnownByContents) {
    std::error_code error;
    if (isFile(sPath) && std::filesystem::file_size(sPath, error) == 0 && !error)
        return "the file is empty";
    // The older versions of the library take no other text for CSV; the newer take any.
    if (extensionOf(sPath) == "csv")
        return "a CSV file needs two columns or more";
    return bKnownByContents ? "" : "its contents are not of this format";
}

std::string hintFor(const std::string& sPath, const std::string& sErrors) {
    const std::string sExtension = extensionOf(sPath);
    const std::string sStem = sPath.substr(0, sPath.size() - sExtension.size());
    if (sExtension == "shp" && !sErrors.empty() && !isFile(sStem + "shx") && !isFile(sStem + "SHX"))
        return "copy the .shx file of the set beside it";
    return sExtension == "mdb" || sExtension == "accdb"
               ? "this machine may lack the ODBC connector for such files"
               : "";
}

std::string reasonOf(const std::string& sPath, const std::string& sDriver, const std::string& sErrors,
                     bool bKnownByContents) {
    if (isLostLink(sPath))
        return whyMissing(sPath) + " (the link leads to nothing)";
    if (std::string sDenied = whyDenied(sPath); !sDenied.empty())
        return sDenied;
    const std::string sReason = sErrors.empty() ? defaultReason(sPath, bKnownByContents) : sErrors;
    const std::string sHint = hintFor(sPath, sErrors);
    std::string sWhy = sReason + (sReason.empty() || sHint.empty() ? "" : "; ") + sHint;
    if (sWhy.empty())
        sWhy = "the driver gives no reason";
    return "\"" + sPath + "\" cannot be read by the driver \"" + sDriver + "\": " + sWhy;
}

// The drivers whose files have rows without shapes, mostly.
bool holdsTables(const std::string& sDriver, const std::string& sPath) {
    return sDriver == "CSV" || sDriver == "XLSX" || sDriver == "ODS" || extensionOf(sPath) == "dbf";
}

template<std::size_t n>
std::optional<BrokenFile> brokenFile(const Opening& opening, const std::string& sPath,
                                     const std::array<Ending, n>& endings, BrokenFile::Kind kind) {
    const bool bReadWell = opening.pSource != nullptr && opening.sErrors.empty();
    if (bReadWell || !(isFile(sPath) || isFolder(sPath) || isLostLink(sPath)))
        return std::nullopt;
    const bool bKnownByContents = !opening.sExpectedDriver.empty();
    const std::string sDriver = bKnownByContents ? opening.sExpectedDriver : driverByEnding(endings, sPath);
    // Their drivers do not open a database without tables, and report nothing.
    const bool bEmptyDatabase = bKnownByContents && opening.sErrors.empty() && whyDenied(sPath).empty() &&
                                (sDriver == "GPKG" || sDriver == "SQLite");
    if (sDriver.empty() || bEmptyDatabase)
        return std::nullopt;
    return BrokenFile{kind == BrokenFile::Kind::Layer && holdsTables(sDriver, sPath) ? BrokenFile::Kind::Table
                                                                                     : kind,
                      reasonOf(sPath, sDriver, opening.sErrors, bKnownByContents)};
}

} // namespace

std::optional<BrokenFile> brokenFeatureFile(HandlePool& pool, const std::string& sPath) {
    return brokenFile(openFeatures(pool, sPath), sPath, aFeatureEndings, BrokenFile::Kind::Layer);
}

std::optional<BrokenFile> brokenRasterFile(HandlePool& pool, const std::string& sPath) {
    return brokenFile(openRaster(pool, sPath), sPath, aRasterEndings, BrokenFile::Kind::Raster);
}

} // namespace halvane::host::gdal
