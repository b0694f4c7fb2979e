#pragma once

#include "host/gdal/map/MapDocumentModel.h"
#include "host/gdal/objects/Map.h"

namespace halvane::host::gdal {

/// The host's objects for a map document. Data is opened when it is first asked for. The environment learns
/// the document's connections.
/// @throws Failure for a connection that is not allowed.
[[nodiscard]] GdalMapDocumentPtr buildMapDocument(const EnvironmentPtr& pEnvironment, MapDocumentModel model);

} // namespace halvane::host::gdal
