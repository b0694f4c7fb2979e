#include "Datasets.h"
#include "Makers.h"
#include "Random.h"

#include <fmt/format.h>
#include <gdal_priv.h>

#include <array>
#include <filesystem>
#include <stdexcept>
#include <string_view>

namespace halvane::bench {

namespace {

enum class Contents { Points, FixedPoints, Rows, Raster };

struct Kind {
    const char* pDriver;
    std::string_view sExtension;
    Contents contents;
    const char* pLayer; ///< a name that the format prescribes, or null
};

constexpr std::array aKinds{Kind{"GPKG", "gpkg", Contents::Points, nullptr},
                            Kind{"ESRI Shapefile", "shp", Contents::Points, nullptr},
                            Kind{"CSV", "csv", Contents::Rows, nullptr},
                            Kind{"GeoJSON", "geojson", Contents::Points, nullptr},
                            Kind{"GeoJSONSeq", "geojsonl", Contents::Points, nullptr},
                            Kind{"FlatGeobuf", "fgb", Contents::Points, nullptr},
                            Kind{"LIBKML", "kml", Contents::Points, nullptr},
                            Kind{"GML", "gml", Contents::Points, nullptr},
                            Kind{"DXF", "dxf", Contents::FixedPoints, "entities"},
                            Kind{"GPX", "gpx", Contents::FixedPoints, "waypoints"},
                            Kind{"MapInfo File", "tab", Contents::Points, nullptr},
                            Kind{"MapInfo File", "mif", Contents::Points, nullptr},
                            Kind{"SQLite", "sqlite", Contents::Points, nullptr},
                            Kind{"XLSX", "xlsx", Contents::Rows, nullptr},
                            Kind{"ODS", "ods", Contents::Rows, nullptr},
                            Kind{"GTiff", "tif", Contents::Raster, nullptr},
                            Kind{"PNG", "png", Contents::Raster, nullptr},
                            Kind{"AAIGrid", "asc", Contents::Raster, nullptr}};

GDALDriver& driverOf(const char* pName) {
    GDALDriver* const pDriver = GetGDALDriverManager()->GetDriverByName(pName);
    if (pDriver == nullptr)
        throw std::runtime_error("There is no driver " + std::string(pName));
    return *pDriver;
}

void makeRaster(const Kind& kind, const std::string& sPath) {
    constexpr int lSide = 16;
    const GDALDatasetUniquePtr pCells(driverOf("MEM").Create("", lSide, lSide, 1, GDT_Byte, nullptr));
    std::array<double, 6> aTransform{500000, 10, 0, 5000000, 0, -10};
    pCells->SetGeoTransform(aTransform.data());
    const GDALDatasetUniquePtr pRaster(
        driverOf(kind.pDriver).CreateCopy(sPath.c_str(), pCells.get(), FALSE, nullptr, nullptr, nullptr));
    if (pRaster == nullptr)
        throw std::runtime_error("Making " + sPath + ": " + CPLGetLastErrorMsg());
}

void makeFeatures(const Kind& kind, const std::string& sPath, const std::string& sName, Random& random) {
    const GDALDatasetUniquePtr pDataset(
        driverOf(kind.pDriver).Create(sPath.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    if (pDataset == nullptr)
        throw std::runtime_error("Making " + sPath + ": " + CPLGetLastErrorMsg());
    const bool bShapes = kind.contents != Contents::Rows;
    const OGRwkbGeometryType type = bShapes ? wkbPoint : wkbNone;
    OGRLayer& layer = kind.contents == Contents::FixedPoints
                          ? createLayer(*pDataset, kind.pLayer, type, {})
                          : createLayer(*pDataset, sName, type,
                                        {{"number", OFTInteger}, {"name", OFTString}, {"height", OFTReal}});
    constexpr std::int64_t nRows = 20;
    writeFeatures(*pDataset, layer, nRows, [&](OGRFeature& feature, std::int64_t n) {
        if (kind.contents != Contents::FixedPoints) {
            feature.SetField("number", static_cast<int>(n));
            feature.SetField("name", "somewhere");
        }
        if (bShapes) {
            const OGRPoint place(random.intBelow(80), random.intBelow(80));
            feature.SetGeometry(&place);
        }
    });
}

} // namespace

void makeFolder(const std::string& sFolder, std::int64_t nCount) {
    std::filesystem::create_directory(sFolder);
    Random random(7);
    for (std::int64_t n = 0; n < nCount; ++n) {
        const Kind& kind = aKinds.at(static_cast<std::size_t>(n) % aKinds.size());
        const std::string sName = fmt::format("file{:05}", n);
        const std::string sPath = fmt::format("{}/{}.{}", sFolder, sName, kind.sExtension);
        if (kind.contents == Contents::Raster)
            makeRaster(kind, sPath);
        else
            makeFeatures(kind, sPath, sName, random);
    }
}

} // namespace halvane::bench
