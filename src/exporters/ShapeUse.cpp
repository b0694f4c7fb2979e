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

bool asksShape(const expression::Expression& expression, const host::GisFields& fields) {
    const auto isShape = [&](const expression::Reference& reference) {
        return asksFieldOfLoop(reference) || (reference.kind == expression::Reference::Kind::Field &&
                                              isGeometryField(fields, reference.sName));
    };
    const auto asks = [&](const expression::Expression& aggregate) { return asksShape(aggregate, fields); };
    return std::ranges::any_of(expression.references(), isShape) ||
           std::ranges::any_of(expression.aggregates(), asks);
}

/// A shape has no text, but whether there is one can be computed with.
bool writesFieldOfLoop(const expression::Expression& expression) {
    const auto* const pReference = expression.asReference();
    return pReference != nullptr && asksFieldOfLoop(*pReference);
}

bool asksShape(const NodeText& text, const host::GisFields& fields) {
    return std::ranges::any_of(text.pieces, [&](const NodeText::Piece& piece) {
        return piece.value && !writesFieldOfLoop(piece.value->expression()) &&
               asksShape(piece.value->expression(), fields);
    });
}

bool asksShape(const RowRules& rows, const host::GisFields& fields) {
    const auto asks = [&](const RowRules::Order& order) {
        return asksShape(order.expression.expression(), fields);
    };
    return (rows.where && asksShape(rows.where->expression(), fields)) ||
           (rows.group && asksShape(rows.group->expression(), fields)) ||
           std::ranges::any_of(rows.order, asks);
}

bool readsShape(const SecondNode& node, const host::GisFields& fields) {
    return node.geometry || node.forEach == ForEach::Part || node.forEach == ForEach::Vertex ||
           (node.when && asksShape(node.when->expression(), fields)) ||
           (node.text && asksShape(*node.text, fields)) || (node.rows && asksShape(*node.rows, fields));
}

/// Any of the names that a node may read a field by. A field named by its alias may be any.
bool mayReadShape(const ControlNode& node, const host::GisFields& fields) {
    if (node.merged.sIdentity == "TagName" || writesShapes(node) ||
        (node.pSecond != nullptr && readsShape(*node.pSecond, fields)))
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
