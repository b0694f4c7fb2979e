// External processors: one says a sentence about the current layer, one tells in which grid square a vertex
// lies.

#include "host/Geometry.h"
#include "host/IExternalProcessorLibrary.h"
#include "host/Layers.h"
#include "host/Tables.h"

#include <cmath>
#include <string>

namespace {

class LayerReport : public halvane::IExternalProcessor {
public:
    std::string Process(halvane::dCollection& dColSpatialVariables) override {
        const auto pLayer =
            halvane::objectAs<halvane::host::GisFeatureLayer>(dColSpatialVariables.GetValue("FeatureLayer"));
        if (pLayer == nullptr)
            return "no layer";
        const auto nFeatures = pLayer->featureClass()->featureCount();
        return pLayer->name() + ": " + std::to_string(nFeatures) + " features, " +
               std::to_string(pLayer->selectionCount()) + " of them selected";
    }
};

// The square of 1000 by 1000 units, by its lower left corner.
class GridSquare : public halvane::IExternalProcessor {
public:
    std::string Process(halvane::dCollection& dColSpatialVariables) override {
        const auto pPoint =
            halvane::objectAs<halvane::host::GisPoint>(dColSpatialVariables.GetValue("Point"));
        return pPoint == nullptr ? "nowhere" : thousands(pPoint->x()) + "/" + thousands(pPoint->y());
    }

private:
    static std::string thousands(double dCoordinate) {
        return std::to_string(std::lround(std::floor(dCoordinate / 1000)));
    }
};

} // namespace

HALVANE_PROCESSOR_LIBRARY(registrar) {
    registrar.registerProcessor("Example.LayerReport", [] { return std::make_shared<LayerReport>(); });
    registrar.registerProcessor("Example.GridSquare", [] { return std::make_shared<GridSquare>(); });
}
