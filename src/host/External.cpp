#include "host/IExternalProcessor.h"

namespace halvane {

std::string IExternalProcessor::Process(dCollection& /*dColSpatialVariables*/) {
    return {};
}

std::string IExternalProgID::ProgID() const {
    return {};
}

} // namespace halvane
