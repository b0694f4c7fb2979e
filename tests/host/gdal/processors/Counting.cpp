#include "host/IExternalProcessorLibrary.h"

#include "host/Layers.h"

namespace {

/// Tells the name of the layer that it finds among the resolved objects.
class LayerName : public halvane::IExternalProcessor {
public:
    std::string Process(halvane::dCollection& dColSpatialVariables) override {
        const auto pLayer = halvane::objectAs<halvane::host::GisFeatureLayer>(
            dColSpatialVariables.Item2(halvane::Value(std::string("FeatureLayer"))));
        return pLayer == nullptr ? "no layer" : pLayer->name();
    }
};

class NoProcessor : public halvane::Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "NoProcessor"; }
};

} // namespace

HALVANE_PROCESSOR_LIBRARY(registrar) {
    registrar.registerProcessor("City.LayerName", [] { return std::make_shared<LayerName>(); });
    registrar.registerProcessor("City.NoProcessor", [] { return std::make_shared<NoProcessor>(); });
}
