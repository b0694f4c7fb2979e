#pragma once

#include "engine/ExportState.h"

#include <string>
#include <string_view>

namespace halvane {

/// What is read of a control node's merged attributes to bind its data source to a host object.
struct Binding {
    explicit Binding(const dCollection& dMerged);

    std::string sDataSource;
    std::string sDataFrame;
    std::string sIdentity;
    std::string sIdentityValue;
    std::string sDataLocation;
};

/// Resolves the binding against the current map and layer.
[[nodiscard]] Value resolveBinding(ExportState& state, const Binding& binding);

/// Resolves a control node's data source by its kind and location alone, whatever its identity.
[[nodiscard]] Value resolveWithoutIdentity(ExportState& state, dom::Node oControlNode,
                                           const dCollection& dParentAttributes);

/// Makes a resolved object the current one of its kind and files it among the resolved objects. A result that
/// is nothing, or plays another role, leaves the kind without a current object. A kind that has none changes
/// nothing.
void keepAsCurrent(ExportState& state, std::string_view sDataSource, const Value& result);

} // namespace halvane
