#pragma once

#include <string_view>

namespace halvane::host::gdal {

/// The text of docs/map-document.xsd.
extern const std::string_view sMapDocumentSchema;

} // namespace halvane::host::gdal
