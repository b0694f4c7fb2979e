#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace halvane::host::com {

/// A member that is asked for. docs/host-automation.md tells of each.
struct Member {
    enum class Sort { Property, Method };
    enum class Need { Required, Optional };

    std::string_view sName;
    Sort sort = Sort::Property;
    Need need = Need::Required;
};

/// A kind of object of the host application.
struct ObjectKind {
    std::string_view sName;
    std::span<const Member> aMembers;

    /// The member's place in aMembers. @throws Failure InternalError for one that is not listed.
    [[nodiscard]] std::size_t indexOf(std::string_view sMember) const;
};

extern const ObjectKind kindMapDocument;
extern const ObjectKind kindApplication;
extern const ObjectKind kindMap;
extern const ObjectKind kindLayer;
extern const ObjectKind kindFeatureLayer;
extern const ObjectKind kindRasterLayer;
extern const ObjectKind kindTinLayer;
extern const ObjectKind kindGroupLayer;
extern const ObjectKind kindDataset;
extern const ObjectKind kindTable;
extern const ObjectKind kindFeatureClass;
extern const ObjectKind kindField;
extern const ObjectKind kindCursor;
extern const ObjectKind kindRow;
extern const ObjectKind kindGeometry;
extern const ObjectKind kindPoint;
extern const ObjectKind kindSpatialReference;
extern const ObjectKind kindXyDomain;
extern const ObjectKind kindMeasureDomain;
extern const ObjectKind kindWorkspace;
extern const ObjectKind kindSubtypes;
extern const ObjectKind kindDomain;
extern const ObjectKind kindRelationshipClass;
extern const ObjectKind kindPropertySet;
extern const ObjectKind kindWorkspaceFactory;
extern const ObjectKind kindCatalog;
extern const ObjectKind kindCatalogObject;
extern const ObjectKind kindNumericFormat;
extern const ObjectKind kindList;
extern const ObjectKind kindProcessor;

/// All of them.
[[nodiscard]] std::span<const ObjectKind* const> objectKinds() noexcept;

} // namespace halvane::host::com
