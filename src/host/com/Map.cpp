#include "host/com/Map.h"

#include "host/com/ComHost.h"
#include "host/com/Layers.h"
#include "host/com/SpatialReference.h"
#include "host/com/Tables.h"

namespace halvane::host::com {

std::int32_t ComMap::layerCount() const {
    return layers_.count([&] { return layersOf(object()); });
}

GisLayerPtr ComMap::layer(std::int32_t lIndex) const {
    return layers_.item(lIndex, [&] { return layersOf(object()); });
}

std::vector<GisTablePtr> ComMap::tables() const {
    const auto aTables = rolesOf<ComTable>(object(), "StandaloneTables", kindTable, Absence::Allowed);
    return {aTables.begin(), aTables.end()};
}

std::int32_t ComMap::standaloneTableCount() const {
    return tables_.count([&] { return tables(); });
}

GisTablePtr ComMap::standaloneTable(std::int32_t lIndex) const {
    return tables_.item(lIndex, [&] { return tables(); });
}

GisSpatialReferencePtr ComMap::spatialReference() const {
    return roleOf<ComSpatialReference>(object(), "SpatialReference");
}

std::vector<std::shared_ptr<ComMap>> ComMapDocument::maps() const {
    return rolesOf<ComMap>(object(), "Maps", kindMap, Absence::Nameless);
}

std::int32_t ComMapDocument::mapCount() const {
    return maps_.count([&] { return maps(); });
}

GisMapPtr ComMapDocument::map(std::int32_t lIndex) const {
    return maps_.item(lIndex, [&] { return maps(); });
}

GisMapDocumentPtr mapDocumentOf(IDispatch& document) {
    return std::make_shared<ComMapDocument>(std::make_shared<Context>(), ComPtr<IDispatch>(&document));
}

} // namespace halvane::host::com
