#pragma once

#include "host/Domains.h"
#include "host/Workspace.h"
#include "host/memory/Table.h"

#include <memory>
#include <string>
#include <vector>

namespace halvane::host::memory {

/// A workspace with the datasets that it is given. Dataset names are matched ignoring case.
class MemoryWorkspace final : public GisWorkspace,
                              public GisWorkspaceDomains,
                              public std::enable_shared_from_this<MemoryWorkspace>,
                              private Scripted {
public:
    static constexpr std::int32_t lFolder = 0;
    static constexpr std::int32_t lLocalDatabase = 1;
    static constexpr std::int32_t lRemoteDatabase = 2;

    MemoryWorkspace(std::string sPathName, std::int32_t lTypeCode);
    [[nodiscard]] static std::shared_ptr<MemoryWorkspace> make(std::string sPathName, std::int32_t lTypeCode);

    /// The dataset's workspace becomes this one.
    void add(const MemoryTablePtr& pTable);
    void add(const MemoryFeatureClassPtr& pFeatureClass);
    void add(GisRelationshipClassPtr pRelationship) { aRelationships_.push_back(std::move(pRelationship)); }
    void add(GisDomainPtr pDomain) { aDomains_.push_back(std::move(pDomain)); }
    /// From now on domainsRole() yields nothing.
    void refuseDomains() noexcept { bHoldsDomains_ = false; }

    [[nodiscard]] std::string_view typeName() const override { return "GisWorkspace"; }
    [[nodiscard]] std::string pathName() const override;
    [[nodiscard]] std::int32_t typeCode() const override;
    [[nodiscard]] GisFeatureClassPtr openFeatureClass(std::string_view sName) override;
    /// Opens tables and feature classes.
    [[nodiscard]] GisTablePtr openTable(std::string_view sName) override;
    [[nodiscard]] GisEnumRelationshipClassPtr relationshipClasses() const override;
    /// This object itself.
    [[nodiscard]] GisWorkspaceDomainsPtr domainsRole() override;
    [[nodiscard]] GisEnumDomainPtr domains() const override;

private:
    std::string sPathName_;
    std::int32_t lTypeCode_;
    std::vector<MemoryTablePtr> aTables_;
    std::vector<MemoryFeatureClassPtr> aFeatureClasses_;
    std::vector<GisRelationshipClassPtr> aRelationships_;
    std::vector<GisDomainPtr> aDomains_;
    bool bHoldsDomains_ = true;
};
using MemoryWorkspacePtr = std::shared_ptr<MemoryWorkspace>;

} // namespace halvane::host::memory
