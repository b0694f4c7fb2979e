#pragma once

#include "host/RowCondition.h"
#include "host/gdal/facts/Fields.h"

#include <ogr_feature.h>

#include <string>

namespace halvane::host::gdal {

/// A clause of SQLite that holds for every row of a GeoPackage table for which a condition on its fields
/// does, and for every row whose values are not of their columns' types; "" where nothing can be said of a
/// row.
[[nodiscard]] std::string narrowingOf(const OGRFeatureDefn& definition, const GdalFields& fields,
                                      const RowCondition& condition);

} // namespace halvane::host::gdal
