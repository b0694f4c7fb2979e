#pragma once

#include "engine/output/OutputElement.h"
#include "engine/second/NodeGeometry.h"
#include "exporters/second/geometry/CoordinateText.h"
#include "exporters/second/geometry/ShapeParts.h"
#include "host/SpatialReference.h"

#include <string>

namespace halvane {

/// What elements of shapes are written with.
struct ElementOutput {
    dom::Document& oDocument;
    const OutputElement& oParent; ///< whose next child the shape is
    const ElementNames& names;
    CoordinateText numbers;
    std::string sSrsName; ///< "" for none
    std::string sId;      ///< "" for none
};

void writeGml(const ElementOutput& output, const ShapeParts& parts);
void writeGmlEnvelope(const ElementOutput& output, const host::Bounds& bounds);
void writeKml(const ElementOutput& output, const ShapeParts& parts);

} // namespace halvane
