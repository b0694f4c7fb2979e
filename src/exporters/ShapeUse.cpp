#include "exporters/ShapeUse.h"

#include "engine/second/SecondNode.h"
#include "host/Tables.h"

#include <algorithm>
#include <array>

namespace halvane {

namespace {

bool isGeometryField(const host::GisFields& fields, std::string_view sName) {
    const std::int32_t lIndex = sName.empty() ? -1 : fields.findField(sName);
    return lIndex >= 0 &&
           fields.field(lIndex).typeCode() == static_cast<std::int32_t>(host::FieldType::Geometry);
}

bool writesShapes(const ControlNode& node) {
    return rowOf(node.pBinding->kind).shapePart != ShapePart::None;
}

bool readsShape(const SecondNode& node) {
    return node.geometry || node.forEach == ForEach::Part || node.forEach == ForEach::Vertex;
}

/// Any of the names that a node may read a field by. A field named by its alias may be any.
bool mayReadShape(const ControlNode& node, const host::GisFields& fields) {
    if (node.merged.sIdentity == "TagName" || writesShapes(node) ||
        (node.pSecond != nullptr && readsShape(*node.pSecond)))
        return true;
    const std::array<std::string_view, 4> aNames{node.merged.sIdentityValue, node.own.sDataProperty,
                                                 node.merged.sLinkField, node.merged.sMeasureField};
    if (std::any_of(aNames.begin(), aNames.end(),
                    [&](std::string_view sName) { return isGeometryField(fields, sName); }))
        return true;
    const auto children = childrenOf(node);
    return std::any_of(children.begin(), children.end(),
                       [&](const ControlNode& child) { return mayReadShape(child, fields); });
}

} // namespace

bool usesShapes(ExportState& state, const ControlNode& repeated) {
    // A processor may look at any row that was filed.
    if (state.pControlTree == nullptr || state.pControlTree->asksProcessors() || writesShapes(repeated))
        return true;
    bool bUses = true;
    trapFailures(state, [&] {
        const auto pFields = state.pFeatureClass->fields();
        bUses = pFields == nullptr || mayReadShape(repeated, *pFields);
    });
    return bUses;
}

} // namespace halvane
