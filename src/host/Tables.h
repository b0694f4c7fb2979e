#pragma once

// Tables and feature classes.

#include "base/Value.h"
#include "host/Forward.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane::host {

/// A where clause in the host's SQL dialect.
struct GisQueryFilter {
    std::string sWhereClause;
};

/// A table, or anything that can be read as one.
class GisTable : public virtual Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisTable"; }
    /// The name as a dataset of its workspace.
    [[nodiscard]] virtual std::string datasetName() const = 0;
    [[nodiscard]] virtual GisFieldsPtr fields() const = 0;
    /// The rows that satisfy the filter; all rows without one. Rows are not recycled.
    /// @throws Failure for a filter that the host rejects: never "all rows".
    [[nodiscard]] virtual GisCursorPtr search(const GisQueryFilter* pFilter) = 0;
    /// All rows, whose shapes nobody will ask for: a host may leave them unread.
    [[nodiscard]] virtual GisCursorPtr searchWithoutShapes() { return search(nullptr); }
    /// All rows, or fewer: those for which the condition does not hold may be left out. Whoever asks tests
    /// each row that comes. A host that cannot tell for certain leaves none out.
    [[nodiscard]] virtual GisCursorPtr searchNarrowed(const RowCondition& /*condition*/, bool bShapes) {
        return bShapes ? search(nullptr) : searchWithoutShapes();
    }
    [[nodiscard]] virtual GisWorkspacePtr workspace() const = 0;
};

class GisFeatureClass : public GisTable {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisFeatureClass"; }
    /// All features, without a filter.
    [[nodiscard]] virtual std::int64_t featureCount() const = 0;
    [[nodiscard]] virtual std::int32_t shapeType() const = 0;
    [[nodiscard]] virtual GisSpatialReferencePtr spatialReference() const = 0;
    /// The class seen as a holder of subtypes.
    [[nodiscard]] virtual GisSubtypesPtr subtypes() const = 0;
};

} // namespace halvane::host
