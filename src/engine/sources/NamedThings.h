#pragma once

#include "host/Layers.h"

#include <string>
#include <string_view>

namespace halvane {

/// What bears a name in a map.
enum class ThingKind { FeatureLayer, RasterLayer, TinLayer, GroupLayer, OtherLayer, Table };

/// How a control file asks for a thing of a kind, and what people call it.
struct Asking {
    std::string_view sDataSource; ///< "" where nothing asks for it
    std::string_view sIdentity;   ///< by its name
    std::string_view sOne;
    std::string_view sMany;
};

[[nodiscard]] ThingKind kindOf(const host::GisLayer& layer);
[[nodiscard]] const Asking& askingFor(ThingKind kind);
/// What bears the name, for one who asked for a thing of another kind, and what to do.
[[nodiscard]] std::string otherKind(std::string_view sName, ThingKind kind);

} // namespace halvane
