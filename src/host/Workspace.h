#pragma once

// Workspaces, which hold tables, and what opens them.

#include "base/Value.h"
#include "host/Forward.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane::host {

class GisWorkspace : public virtual Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisWorkspace"; }
    /// The workspace's path; never with a password in it.
    [[nodiscard]] virtual std::string pathName() const = 0;
    /// 0 folder of files, 1 local database, 2 remote database.
    [[nodiscard]] virtual std::int32_t typeCode() const = 0;
    /// @throws Failure when there is none of that name.
    [[nodiscard]] virtual GisFeatureClassPtr openFeatureClass(std::string_view sName) = 0;
    [[nodiscard]] virtual GisTablePtr openTable(std::string_view sName) = 0;
    /// The datasets of type 11.
    [[nodiscard]] virtual GisEnumRelationshipClassPtr relationshipClasses() const = 0;
    /// Nothing when the workspace cannot hold domains.
    [[nodiscard]] virtual GisWorkspaceDomainsPtr domainsRole() = 0;
};

/// A name/value set of connection properties.
class GisPropertySet : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisPropertySet"; }
    virtual void setProperty(std::string_view sName, const Value& vValue) = 0;
    [[nodiscard]] virtual Value property(std::string_view sName) const = 0;
};

class GisWorkspaceFactory : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisWorkspaceFactory"; }
    /// Opens the workspace at the property "DATABASE"; @throws Failure when it cannot be opened.
    [[nodiscard]] virtual GisWorkspacePtr open(const GisPropertySet& properties,
                                               std::int32_t lWindowHandle) = 0;
    [[nodiscard]] virtual GisWorkspacePtr openFromFile(std::string_view sPath,
                                                       std::int32_t lWindowHandle) = 0;
};

enum class WorkspaceFactoryKind { Default, LocalDatabase, Share, RemoteDatabase };

} // namespace halvane::host
