#pragma once

#include "host/Workspace.h"
#include "host/memory/Faults.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace halvane::host::memory {

/// An attempt to open a workspace, successful or not.
struct WorkspaceOpening {
    WorkspaceFactoryKind kind = WorkspaceFactoryKind::Default;
    std::string sPath;
    bool bFromFile = false;
    std::int32_t lWindowHandle = 0;

    friend bool operator==(const WorkspaceOpening&, const WorkspaceOpening&) = default;
};

/// The workspaces that can be opened, by their exact path, and what was tried.
struct WorkspaceRegistry {
    std::vector<std::pair<std::string, GisWorkspacePtr>> aWorkspaces;
    std::vector<WorkspaceOpening> aOpenings;
};

class MemoryPropertySet final : public GisPropertySet, private Scripted {
public:
    explicit MemoryPropertySet(std::shared_ptr<FaultScript> pFaults) : Scripted(std::move(pFaults)) {}

    void setProperty(std::string_view sName, const Value& vValue) override;
    /// Names are matched ignoring case. Empty for a property that was not set.
    [[nodiscard]] Value property(std::string_view sName) const override;

private:
    std::vector<std::pair<std::string, Value>> aProperties_;
};

class MemoryWorkspaceFactory final : public GisWorkspaceFactory, private Scripted {
public:
    MemoryWorkspaceFactory(WorkspaceFactoryKind kind, std::shared_ptr<WorkspaceRegistry> pRegistry,
                           std::shared_ptr<FaultScript> pFaults)
        : Scripted(std::move(pFaults)), kind_(kind), pRegistry_(std::move(pRegistry)) {}

    [[nodiscard]] GisWorkspacePtr open(const GisPropertySet& properties, std::int32_t lWindowHandle) override;
    [[nodiscard]] GisWorkspacePtr openFromFile(std::string_view sPath, std::int32_t lWindowHandle) override;

private:
    [[nodiscard]] GisWorkspacePtr openNoted(WorkspaceOpening opening);

    WorkspaceFactoryKind kind_;
    std::shared_ptr<WorkspaceRegistry> pRegistry_;
};

} // namespace halvane::host::memory
