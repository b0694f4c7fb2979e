#pragma once

#include "host/Map.h"

#include <string>
#include <string_view>

namespace halvane {

/// What a map has for a data source of a kind that found nothing of a name in it: the nearest name, how to
/// ask for a thing of that name, or why it is not found. "" where nothing is known.
/// @param pMapDocument the map's own, whose other maps may have it; nullptr for none.
[[nodiscard]] std::string hintFromMap(std::string_view sKind, std::string_view sSought,
                                      const host::GisMap& map, const host::GisMapDocument* pMapDocument);

} // namespace halvane
