#pragma once

// The parts of a description that stand alone: what the host tells of a class, a reference, a workspace.

#include "run/describe/MapDescription.h"

namespace halvane {

[[nodiscard]] std::optional<SpatialReferenceDescription>
describeReference(const host::GisSpatialReferencePtr& pReference);

/// @param pSubtypes tells the fields' domains and defaults; may be nothing.
[[nodiscard]] ReadingList<FieldDescription> describeFields(const host::GisTable& table,
                                                           const host::GisSubtypesPtr& pSubtypes);

/// An export writes the shape type of its class for a geometry field.
void nameShapesByTheirType(ReadingList<FieldDescription>& fields, std::int32_t lShapeType);

/// @returns nothing for a class without subtypes. @throws Failure when even that cannot be told.
[[nodiscard]] std::optional<SubtypesDescription> describeSubtypes(const host::GisTable& table,
                                                                  const host::GisSubtypesPtr& pSubtypes);

/// @param sPath what the workspace told of its path.
[[nodiscard]] WorkspaceDescription describeWorkspace(host::GisWorkspace& workspace,
                                                     Reading<std::string> sPath);

} // namespace halvane
