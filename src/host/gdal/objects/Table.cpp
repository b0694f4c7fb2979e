#include "host/gdal/objects/Table.h"

#include "base/Owned.h"
#include "host/gdal/objects/Workspace.h"
#include "host/gdal/rows/Geometry.h"
#include "host/gdal/source/Errors.h"

#include <memory>

namespace halvane::host::gdal {

template<class Interface>
GisWorkspacePtr TableFace<Interface>::workspace() const {
    return reader_.workspace();
}

template class TableFace<GisTable>;
template class TableFace<GisFeatureClass>;

std::int32_t GdalFeatureClass::shapeType() const {
    const LayerHandle handle = reader().data().openLayer();
    return shapeTypeOf(handle.layer());
}

std::int32_t shapeTypeOf(OGRLayer& layer) {
    const ErrorScope errors;
    const OGRwkbGeometryType declared = wkbFlatten(layer.GetGeomType());
    if (declared != wkbUnknown)
        return static_cast<std::int32_t>(shapeTypeOf(declared));
    int lCount = 0;
    const Owned<OGRGeometryTypeCounter, VSIFree> pCounts(
        layer.GetGeometryTypes(0, 0, lCount, nullptr, nullptr));
    auto common = ShapeType::Null;
    bool bFirst = true;
    for (int lIndex = 0; lIndex < lCount; ++lIndex) {
        const OGRwkbGeometryType found = pCounts.get()[lIndex].eGeomType;
        if (found == wkbNone)
            continue; // features without a shape
        const ShapeType type = shapeTypeOf(found);
        common = bFirst || type == common ? type : ShapeType::Null;
        if (!bFirst && common == ShapeType::Null)
            break;
        bFirst = false;
    }
    return static_cast<std::int32_t>(common);
}

} // namespace halvane::host::gdal
