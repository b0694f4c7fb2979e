#pragma once

#include "base/Value.h"
#include "engine/control/ClsXMLNode.h"
#include "engine/sources/DataSourceKind.h"
#include "host/Forward.h"

#include <cstdint>
#include <string_view>

namespace halvane {

struct ExportState;

/// What a control node's merged attributes say of its data source. Nodes that inherit all of it share one.
struct Binding {
    explicit Binding(const ControlAttributes& merged);

    DataSourceKind kind;
    bool bFrameBlank;    ///< the data frame is "" or blanks
    bool bLocationBlank; ///< the data location is "" or blanks
    std::string_view sDataSource;
    std::string_view sDataFrame;
    std::string_view sIdentity;
    std::string_view sIdentityValue;
    std::string_view sDataLocation;

    /// What the data source was when it was last asked, and what that depended on.
    struct Known {
        host::GisMapPtr pMap;
        host::GisFeatureLayerPtr pLayer;
        std::uint64_t nGeneration = 0; ///< 0: not known
        Value result;
    };
    mutable Known known;
};

/// Resolves the binding against the current map and layer. A result is kept and given again as long as
/// nothing that it depends on has changed; nothing, and what a tag or an enumeration yields, is asked for
/// each time.
/// @returns a reference that lives until the binding is resolved again.
[[nodiscard]] const Value& resolveBinding(ExportState& state, const Binding& binding);

/// Resolves a data source by its kind and location alone, whatever its identity.
[[nodiscard]] Value resolveWithoutIdentity(ExportState& state, const Binding& binding);

/// Makes a resolved object the current one of its kind and files it among the resolved objects. A result that
/// is nothing, or plays another role, leaves the kind without a current object. A kind that has none changes
/// nothing.
void keepAsCurrent(ExportState& state, DataSourceKind kind, const Value& result);

} // namespace halvane
