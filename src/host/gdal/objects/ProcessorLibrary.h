#pragma once

#include "host/IExternalProcessorLibrary.h"

#include <string>

namespace halvane::host::gdal {

/// Loads a library of external processors and lets it register them. It stays loaded: what it made may
/// outlive every host.
/// @param sPath absolute. @throws Failure when it is not such a library, or fails to register.
void loadProcessors(const std::string& sPath, HalvaneRegistrar& registrar);

} // namespace halvane::host::gdal
