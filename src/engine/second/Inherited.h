#pragma once

#include "engine/second/NodeGeometry.h"
#include "engine/second/ValueFormat.h"

namespace halvane {

/// What a node of the second edition hands down to all that stands in it. Nodes that inherit the same share
/// it.
struct Inherited {
    ValueFormat format; ///< h:Format
    NodeSpace space;    ///< h:Crs and h:Axes

    friend bool operator==(const Inherited&, const Inherited&) = default;
};

} // namespace halvane
