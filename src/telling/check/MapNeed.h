#pragma once

#include "xml/dom/Dom.h"

namespace halvane {

/// Whether a control file looks for something in a map, rather than at its own data locations alone.
[[nodiscard]] bool asksForMap(dom::Node oControlRoot);

} // namespace halvane
