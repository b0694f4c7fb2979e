// An external processor that says a sentence about the current layer.

#include "host/Host.h"
#include "host/IExternalProcessorLibrary.h"

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

} // namespace

HALVANE_PROCESSOR_LIBRARY(registrar) {
    registrar.registerProcessor("Example.LayerReport", [] { return std::make_shared<LayerReport>(); });
}
