#include "host/com/Tables.h"

#include "host/com/Domain.h"
#include "host/com/RelationshipClass.h"
#include "host/com/Rows.h"
#include "host/com/SpatialReference.h"

namespace halvane::host::com {

namespace {

template<class Interface, class Item>
class ComEnumeration final : public Interface {
public:
    explicit ComEnumeration(std::vector<std::shared_ptr<Item>> aItems) : aItems_(std::move(aItems)) {}

    [[nodiscard]] auto next() -> decltype(std::declval<Interface&>().next()) override {
        return nNext_ < aItems_.size() ? aItems_[nNext_++] : nullptr;
    }

private:
    std::vector<std::shared_ptr<Item>> aItems_;
    std::size_t nNext_ = 0;
};

/// A workspace, in its role as a holder of domains.
class ComWorkspaceDomains final : public GisWorkspaceDomains, public HostObject {
public:
    ComWorkspaceDomains(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindWorkspace, std::move(pDispatch)) {}

    [[nodiscard]] GisEnumDomainPtr domains() const override {
        return std::make_shared<ComEnumeration<GisEnumDomain, ComDomain>>(
            rolesOf<ComDomain>(object(), "Domains", kindDomain));
    }
};

bool isNothing(const VARIANT& variant) {
    return (V_VT(&variant) & VT_ARRAY) == 0 && !dispatchIn(variant);
}

} // namespace

template<class Kind>
GisFieldsPtr ComTableOf<Kind>::fields() const {
    return std::make_shared<ComFields>(object());
}

template<class Kind>
GisCursorPtr ComTableOf<Kind>::search(const GisQueryFilter* pFilter) {
    const std::string sClause = pFilter == nullptr ? std::string() : pFilter->sWhereClause;
    return cursorOver(context(), object().call("Search", {sClause}), fields());
}

template<class Kind>
GisCursorPtr ComTableOf<Kind>::searchWithoutShapes() {
    if (!object().has("SearchWithoutShapes"))
        return search(nullptr);
    return cursorOver(context(), object().call("SearchWithoutShapes"), fields());
}

template<class Kind>
GisWorkspacePtr ComTableOf<Kind>::workspace() const {
    return roleOf<ComWorkspace>(object(), "Workspace");
}

template class ComTableOf<GisTable>;
template class ComTableOf<GisFeatureClass>;

GisSpatialReferencePtr ComFeatureClass::spatialReference() const {
    return roleOf<ComSpatialReference>(object(), "SpatialReference");
}

GisSubtypesPtr ComFeatureClass::subtypes() const {
    return roleOf<ComSubtypes>(object(), "Subtypes");
}

GisFeatureClassPtr ComWorkspace::openFeatureClass(std::string_view sName) {
    return requiredRoleOf<ComFeatureClass>(object(), "OpenFeatureClass", {std::string(sName)});
}

GisTablePtr ComWorkspace::openTable(std::string_view sName) {
    return requiredRoleOf<ComTable>(object(), "OpenTable", {std::string(sName)});
}

GisEnumRelationshipClassPtr ComWorkspace::relationshipClasses() const {
    return std::make_shared<ComEnumeration<GisEnumRelationshipClass, ComRelationshipClass>>(
        rolesOf<ComRelationshipClass>(object(), "RelationshipClasses", kindRelationshipClass));
}

GisWorkspaceDomainsPtr ComWorkspace::domainsRole() {
    if (!object().has("Domains") || isNothing(object().call("Domains").get()))
        return nullptr;
    return std::make_shared<ComWorkspaceDomains>(context(), ComPtr<IDispatch>(&dispatch()));
}

} // namespace halvane::host::com
