// A library of external processors that makes the driver of JML files crash: it is read by hardly anybody,
// and the tests do not depend on what the driver of a version crashes on.

#include "host/IExternalProcessorLibrary.h"

#include <gdal_priv.h>

#include <csignal>
#include <string>

namespace {

GDALDataset* crash(GDALOpenInfo* /*pInfo*/) {
    std::raise(SIGSEGV);
    return nullptr;
}

class Crash : public halvane::IExternalProcessor {
public:
    std::string Process(halvane::dCollection& /*dColSpatialVariables*/) override {
        std::raise(SIGSEGV);
        return "";
    }
};

} // namespace

HALVANE_PROCESSOR_LIBRARY(registrar) {
    GetGDALDriverManager()->GetDriverByName("JML")->pfnOpen = crash;
    registrar.registerProcessor("Test.Crash", [] { return std::make_shared<Crash>(); });
}
