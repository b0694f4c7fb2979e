#include "host/gdal/source/SystemTables.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <string>

namespace halvane::host::gdal {

namespace {

// Each stands for itself and for the names that go on behind an underscore: "geometry_columns_auth".
constexpr std::array aSpatialiteTables{"data_licenses",
                                       "elementarygeometries",
                                       "geom_cols_ref_sys",
                                       "geometry_columns",
                                       "iso_metadata",
                                       "knn",
                                       "knn2",
                                       "layer_statistics",
                                       "networks",
                                       "raster_coverages",
                                       "rl2map_configurations",
                                       "se_external_graphics",
                                       "se_fonts",
                                       "se_raster_styled_layers",
                                       "se_raster_styles",
                                       "se_vector_styled_layers",
                                       "se_vector_styles",
                                       "spatial_ref_sys",
                                       "spatialindex",
                                       "spatialite_history",
                                       "sql_statements_log",
                                       "stored_procedures",
                                       "stored_variables",
                                       "topologies",
                                       "vector_coverages",
                                       "vector_layers",
                                       "views_geometry_columns",
                                       "views_layer_statistics",
                                       "virts_geometry_columns",
                                       "virts_layer_statistics",
                                       "wms_getcapabilities",
                                       "wms_getmap",
                                       "wms_ref_sys",
                                       "wms_settings"};

} // namespace

bool isGeoPackageTable(std::string_view sTable) {
    const std::string sLower = lowerCase(sTable);
    return sLower.starts_with("gpkg_") || sLower.starts_with("rtree_") || sLower.starts_with("sqlite_") ||
           sLower.starts_with("gpkgext_");
}

bool isSpatialiteTable(std::string_view sTable) {
    const std::string sLower = lowerCase(sTable);
    return std::any_of(aSpatialiteTables.begin(), aSpatialiteTables.end(), [&](std::string_view sName) {
        return sLower.starts_with(sName) && (sLower.size() == sName.size() || sLower[sName.size()] == '_');
    });
}

} // namespace halvane::host::gdal
