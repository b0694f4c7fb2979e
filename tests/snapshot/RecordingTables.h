#pragma once

#include "host/Tables.h"
#include "snapshot/RecordingData.h"

namespace halvane::test {

/// Files the fields of a table with everything that they tell: whoever reads rows asks for them.
void recordFields(RecordedObject& object, const host::GisFields& fields);

/// The rows of a search, filed in a list under the key as far as they are read.
[[nodiscard]] host::GisCursorPtr recordRows(RecordedObject& object, const std::string& sKey,
                                            host::GisCursorPtr pReal);

/// What tables and feature classes have in common.
template<class Kind>
class RecordingTableOf : public RecorderOf<Kind> {
public:
    using RecorderOf<Kind>::RecorderOf;

    [[nodiscard]] std::string datasetName() const override;
    [[nodiscard]] host::GisFieldsPtr fields() const override;
    [[nodiscard]] host::GisCursorPtr search(const host::GisQueryFilter* pFilter) override;
    [[nodiscard]] host::GisCursorPtr searchWithoutShapes() override;
    [[nodiscard]] host::GisWorkspacePtr workspace() const override;
};

using RecordingTable = RecordingTableOf<host::GisTable>;

class RecordingFeatureClass final : public RecordingTableOf<host::GisFeatureClass> {
public:
    using RecordingTableOf::RecordingTableOf;

    [[nodiscard]] std::int64_t featureCount() const override;
    [[nodiscard]] std::int32_t shapeType() const override;
    [[nodiscard]] host::GisSpatialReferencePtr spatialReference() const override;
    [[nodiscard]] host::GisSubtypesPtr subtypes() const override;
};

class RecordingWorkspace final : public RecorderOf<host::GisWorkspace> {
public:
    using RecorderOf::RecorderOf;

    [[nodiscard]] std::string pathName() const override;
    [[nodiscard]] std::int32_t typeCode() const override;
    [[nodiscard]] host::GisFeatureClassPtr openFeatureClass(std::string_view sName) override;
    [[nodiscard]] host::GisTablePtr openTable(std::string_view sName) override;
    [[nodiscard]] host::GisEnumRelationshipClassPtr relationshipClasses() const override;
    [[nodiscard]] host::GisWorkspaceDomainsPtr domainsRole() override;
};

} // namespace halvane::test
