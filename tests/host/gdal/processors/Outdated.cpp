#include "host/IExternalProcessorLibrary.h"

int halvane_processor_library_version() {
    return halvane::lProcessorLibraryVersion + 1;
}

void halvane_register_processors(halvane::HalvaneRegistrar* /*pRegistrar*/) {}
