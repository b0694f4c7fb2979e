#include "host/IExternalProcessorLibrary.h"

#include <stdexcept>

HALVANE_PROCESSOR_LIBRARY(registrar) {
    static_cast<void>(registrar);
    throw std::runtime_error("out of paper");
}
