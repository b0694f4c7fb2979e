#pragma once

namespace halvane::server {

/// From now on external processors see the engine's collections as published objects.
void installCollectionBridge();

} // namespace halvane::server
