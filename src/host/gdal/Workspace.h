#pragma once

#include "host/gdal/DataFiles.h"
#include "host/gdal/Table.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace halvane::host::gdal {

/// Codes of a workspace's type.
enum class WorkspaceType : std::int32_t { Folder = 0, LocalDatabase = 1, Server = 2 };

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
    [[nodiscard]] GisWorkspaceDomainsPtr domainsRole() override;
    [[nodiscard]] GisEnumDomainPtr domains() const override;

    [[nodiscard]] HandlePool& pool() const { return *pPool_; }
    /// What it was made with: nothing for a folder.
    [[nodiscard]] const std::vector<SourcePtr>& sources() const { return sources_; }
    /// A folder's files that may hold data, and what one of them holds.
    [[nodiscard]] const std::vector<std::string>& files();
    [[nodiscard]] const std::vector<DatasetEntry>& datasetsOfFile(const std::string& sFile);
    /// All tables and feature classes, file by file.
    [[nodiscard]] const std::vector<DatasetEntry>& datasets();
    /// The dataset of that name. @throws Failure when there is none.
    [[nodiscard]] TableDataPtr findTable(std::string_view sName);
    [[nodiscard]] TableDataPtr tableOf(const DatasetEntry& entry);
    /// A feature class or a table over a dataset, with what a map document says of it.
    [[nodiscard]] GisTablePtr makeTable(const TableDataPtr& pData, const TableOverrides& overrides);
    [[nodiscard]] GdalFeatureClassPtr makeFeatureClass(const TableDataPtr& pData,
                                                       const TableOverrides& overrides);

private:
    [[nodiscard]] std::optional<DatasetEntry> findByStem(const std::string& sUpperName);
    [[nodiscard]] std::optional<DatasetEntry> findEntry(const std::string& sUpperName);

    std::shared_ptr<HandlePool> pPool_;
    WorkspaceType type_;
    std::string sPath_;
    std::vector<SourcePtr> sources_;
    bool bScansFolder_;
    std::optional<std::vector<std::string>> files_;
    std::map<std::string, std::vector<DatasetEntry>> datasetsOfFiles_;
    std::optional<std::vector<DatasetEntry>> datasets_;
    std::map<std::string, TableDataPtr> tables_; // by source and dataset name
};

} // namespace halvane::host::gdal
