#pragma once

#include "host/gdal/map/ElementReader.h"
#include "host/gdal/map/project/ProjectRemarks.h"

#include <string>
#include <vector>

namespace halvane::host::gdal {

/// What a project says of a layer's fields.
struct ProjectFields {
    std::vector<FieldOverride> fields;
    std::vector<DomainFacts> domains; ///< of its lists of values, named LAYER.FIELD
};

/// @param layer its element. @param sLayer its name.
[[nodiscard]] ProjectFields readProjectFields(const ElementReader& reader, const MarkupElement& layer,
                                              const std::string& sLayer, ProjectRemarks& remarks);

} // namespace halvane::host::gdal
