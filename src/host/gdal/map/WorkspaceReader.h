#pragma once

// What a map document says of a workspace.

#include "host/gdal/map/ElementReader.h"

namespace halvane::host::gdal {

[[nodiscard]] DomainFacts readDomain(const ElementReader& reader, const MarkupElement& element);
[[nodiscard]] RelationshipFacts readRelationship(const MarkupElement& element);

} // namespace halvane::host::gdal
