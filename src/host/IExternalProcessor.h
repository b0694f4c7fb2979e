#pragma once

#include "collection/dCollection.h"

#include <string>

namespace halvane {

/// Implemented by components that compute a value for an export.
class IExternalProcessor : public virtual Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "IExternalProcessor"; }
    /// @param dColSpatialVariables the host objects resolved so far, keyed by kind: "DataFrame",
    /// "FeatureLayer",
    ///        "FeatureClass", "Workspace", "Table", "RelatedTable", "TinLayer"; while vertices are written
    ///        also "Feature" and "Point". Borrowed for the call.
    /// @returns the value to write. The declaration itself returns "".
    virtual std::string Process(dCollection& dColSpatialVariables);
};

/// Implemented by components that tell the programmatic identifier of another.
class IExternalProgID : public virtual Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "IExternalProgID"; }
    /// The declaration itself returns "".
    [[nodiscard]] virtual std::string ProgID() const;
};

} // namespace halvane
