#include "host/gdal/rows/ShapeCheck.h"

namespace halvane::host::gdal {

ShapeCheck::ShapeCheck(const LayerHandle& layer) : layer_(layer), pLosses_(layer.shapeLosses()) {
    OGRFeatureDefn& definition = *layer.layer().GetLayerDefn();
    bWanted_ = definition.GetGeomFieldCount() > 0 && definition.IsGeometryIgnored() == 0;
}

LostShapePtr ShapeCheck::lostShape(const OGRFeature& feature, const ErrorScope& errors) {
    // Messages about values are warnings.
    std::string sReason = errors.failed() ? errors.text() : "";
    if (!bLooked_) {
        bLooked_ = true;
        pStored_ = storedShapesOf(layer_);
    }
    if (pStored_ != nullptr) {
        const std::string sFault = pStored_->fault(feature);
        sReason = sFault.empty() || sReason.empty() ? sFault : sReason;
    }
    return sReason.empty() ? nullptr
                           : std::make_shared<const LostShape>(LostShape{
                                 pLosses_, layer_.layer().GetName(), layer_.source().sDisplayName, sReason});
}

} // namespace halvane::host::gdal
