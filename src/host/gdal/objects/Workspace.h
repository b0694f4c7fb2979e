#pragma once

#include "host/Workspace.h"
#include "host/gdal/facts/Domains.h"
#include "host/gdal/facts/Relationships.h"
#include "host/gdal/objects/Table.h"
#include "host/gdal/source/BrokenFiles.h"
#include "host/gdal/source/DataFiles.h"
#include "host/gdal/source/QueryTable.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace halvane::host::gdal {

/// Codes of a workspace's type.
enum class WorkspaceType : std::int32_t { Folder = 0, LocalDatabase = 1, Server = 2 };

/// What a map document says of a workspace beyond what its data says.
struct WorkspaceFacts {
    std::vector<DomainFacts> domains;
    std::vector<RelationshipFacts> relationships;
};

/// A folder of data files, a file database or a database server. Datasets are found by name ignoring case;
/// in a folder also by the file's name without its extension.
class GdalWorkspace : public GisWorkspace,
                      public GisWorkspaceDomains,
                      public std::enable_shared_from_this<GdalWorkspace> {
public:
    /// @param sPath without a password. @param sources empty for a folder, whose files are looked up when
    ///        they are needed.
    GdalWorkspace(std::shared_ptr<HandlePool> pPool, WorkspaceType type, std::string sPath,
                  std::vector<SourcePtr> sources);

    [[nodiscard]] std::string_view typeName() const override { return "GisWorkspace"; }
    [[nodiscard]] std::string pathName() const override { return sPath_; }
    [[nodiscard]] std::int32_t typeCode() const override { return static_cast<std::int32_t>(type_); }
    [[nodiscard]] GisFeatureClassPtr openFeatureClass(std::string_view sName) override;
    [[nodiscard]] GisTablePtr openTable(std::string_view sName) override;
    [[nodiscard]] GisEnumRelationshipClassPtr relationshipClasses() const override;
    /// Nothing for a folder of files without domains.
    [[nodiscard]] GisWorkspaceDomainsPtr domainsRole() override;
    [[nodiscard]] GisEnumDomainPtr domains() const override;

    /// Added to the data's own; one of the same name takes the data's place.
    void setFacts(WorkspaceFacts facts);
    /// The domain of that name, ignoring case; nothing when there is none.
    [[nodiscard]] GisDomainPtr findDomain(std::string_view sName) const;

    [[nodiscard]] HandlePool& pool() const { return *pPool_; }
    /// What it was made with: nothing for a folder.
    [[nodiscard]] const std::vector<SourcePtr>& sources() const { return sources_; }
    /// A folder's files that may hold data, and what one of them holds.
    [[nodiscard]] const std::vector<std::string>& files() const;
    [[nodiscard]] const std::vector<DatasetEntry>& datasetsOfFile(const std::string& sFile) const;
    /// Why a file of a folder without datasets has none, where it should; else nothing.
    [[nodiscard]] const std::optional<BrokenFile>& brokenFile(const std::string& sFile) const;
    /// All tables and feature classes, file by file.
    [[nodiscard]] const std::vector<DatasetEntry>& datasets() const;
    /// The dataset of that name. @throws Failure when there is none.
    [[nodiscard]] TableDataPtr findTable(std::string_view sName);
    [[nodiscard]] TableDataPtr tableOf(const DatasetEntry& entry);
    /// A table that a query computes; computed once.
    [[nodiscard]] TableDataPtr computedTable(const TableQuery& query);
    /// A feature class or a table over a dataset, with what a map document says of it.
    [[nodiscard]] GisTablePtr makeTable(const TableDataPtr& pData, const TableOverridesPtr& pOverrides);
    [[nodiscard]] GdalFeatureClassPtr makeFeatureClass(const TableDataPtr& pData,
                                                       const TableOverridesPtr& pOverrides);

private:
    [[nodiscard]] std::vector<SourcePtr> allSources() const;
    [[nodiscard]] const DomainList& domainList() const;
    [[nodiscard]] const RelationshipList& relationshipList() const;
    [[nodiscard]] std::optional<DatasetEntry> findByStem(const std::string& sUpperName) const;
    [[nodiscard]] std::optional<DatasetEntry> findEntry(const std::string& sUpperName);
    [[nodiscard]] std::string whyNotFound(std::string_view sName) const;

    std::shared_ptr<HandlePool> pPool_;
    WorkspaceType type_;
    std::string sPath_;
    std::vector<SourcePtr> sources_;
    bool bScansFolder_;
    mutable std::optional<std::vector<std::string>> files_;
    mutable std::map<std::string, std::vector<DatasetEntry>> datasetsOfFiles_;
    mutable std::map<std::string, std::optional<BrokenFile>> brokenFiles_;
    mutable std::optional<std::vector<DatasetEntry>> datasets_;
    WorkspaceFacts facts_;
    mutable std::optional<DomainList> domains_;
    mutable std::optional<RelationshipList> relationships_;
    /// Orders datasets by the data source that they lie in, however often it was opened, and by name.
    struct ByPlace {
        using Place = std::pair<SourcePtr, std::string>;
        bool operator()(const Place& left, const Place& right) const;
    };
    std::map<ByPlace::Place, TableDataPtr, ByPlace> tables_;
    std::map<std::pair<std::string, std::string>, TableDataPtr> computed_; // by SQL and name
    std::map<std::string, std::string, std::less<>> reasons_; // why names are not found; each row may ask
};

} // namespace halvane::host::gdal
