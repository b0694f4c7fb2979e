// A processor that takes its time, so that a person can act while an export runs.

#include "host/IExternalProcessorLibrary.h"

#include <chrono>
#include <memory>
#include <string>
#include <thread>

namespace {

class Waiting : public halvane::IExternalProcessor {
public:
    std::string Process(halvane::dCollection& /*dColSpatialVariables*/) override {
        std::this_thread::sleep_for(std::chrono::milliseconds(3));
        return "waited";
    }
};

} // namespace

HALVANE_PROCESSOR_LIBRARY(registrar) {
    registrar.registerProcessor("Test.Waiting", [] { return std::make_shared<Waiting>(); });
}
