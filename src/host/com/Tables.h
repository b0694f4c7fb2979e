#pragma once

#include "host/Geometry.h"
#include "host/Tables.h"
#include "host/Workspace.h"
#include "host/com/HostObject.h"

namespace halvane::host::com {

/// What tables and feature classes have in common.
template<class Kind>
class ComTableOf : public Kind, public HostObject {
public:
    [[nodiscard]] std::string datasetName() const override { return object().text("DatasetName"); }
    [[nodiscard]] GisFieldsPtr fields() const override;
    [[nodiscard]] GisCursorPtr search(const GisQueryFilter* pFilter) override;
    [[nodiscard]] GisCursorPtr searchWithoutShapes() override;
    [[nodiscard]] GisWorkspacePtr workspace() const override;

protected:
    using HostObject::HostObject;
};

class ComTable final : public ComTableOf<GisTable> {
public:
    ComTable(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : ComTableOf(std::move(pContext), kindTable, std::move(pDispatch)) {}
};

class ComFeatureClass final : public ComTableOf<GisFeatureClass> {
public:
    ComFeatureClass(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : ComTableOf(std::move(pContext), kindFeatureClass, std::move(pDispatch)) {}

    [[nodiscard]] std::int64_t featureCount() const override { return object().longInteger("FeatureCount"); }
    [[nodiscard]] std::int32_t shapeType() const override { return object().integer("ShapeType"); }
    [[nodiscard]] GisSpatialReferencePtr spatialReference() const override;
    [[nodiscard]] GisSubtypesPtr subtypes() const override;
};

class ComWorkspace final : public GisWorkspace, public HostObject {
public:
    ComWorkspace(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindWorkspace, std::move(pDispatch)) {}

    [[nodiscard]] std::string pathName() const override { return object().text("PathName"); }
    [[nodiscard]] std::int32_t typeCode() const override { return object().integer("WorkspaceType"); }
    [[nodiscard]] GisFeatureClassPtr openFeatureClass(std::string_view sName) override;
    [[nodiscard]] GisTablePtr openTable(std::string_view sName) override;
    [[nodiscard]] GisEnumRelationshipClassPtr relationshipClasses() const override;
    [[nodiscard]] GisWorkspaceDomainsPtr domainsRole() override;
};

} // namespace halvane::host::com
