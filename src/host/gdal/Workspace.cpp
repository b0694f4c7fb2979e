#include "host/gdal/Workspace.h"

#include "collection/Failure.h"
#include "collection/Text.h"
#include "host/gdal/Locations.h"

#include <algorithm>

namespace halvane::host::gdal {

namespace {

const DatasetEntry* findNamed(const std::vector<DatasetEntry>& entries, const std::string& sUpperName) {
    const auto pFound = std::find_if(entries.begin(), entries.end(), [&](const DatasetEntry& entry) {
        return equalIgnoringCase(entry.sName, sUpperName);
    });
    return pFound == entries.end() ? nullptr : &*pFound;
}

} // namespace

GdalWorkspace::GdalWorkspace(std::shared_ptr<HandlePool> pPool, WorkspaceType type, std::string sPath,
                             std::vector<SourcePtr> sources)
    : pPool_(std::move(pPool)), type_(type), sPath_(std::move(sPath)), sources_(std::move(sources)),
      bScansFolder_(sources_.empty()) {}

const std::vector<std::string>& GdalWorkspace::files() {
    if (!files_) {
        files_ = dataFilesIn(sPath_);
    }
    return *files_;
}

const std::vector<DatasetEntry>& GdalWorkspace::datasetsOfFile(const std::string& sFile) {
    const auto pKnown = datasetsOfFiles_.find(sFile);
    if (pKnown != datasetsOfFiles_.end()) {
        return pKnown->second;
    }
    const SourcePtr pSource = featureSourceOf(*pPool_, sFile);
    return datasetsOfFiles_
        .emplace(sFile, pSource == nullptr ? std::vector<DatasetEntry>{} : datasetsOf(*pPool_, pSource))
        .first->second;
}

const std::vector<DatasetEntry>& GdalWorkspace::datasets() {
    if (datasets_) {
        return *datasets_;
    }
    std::vector<DatasetEntry> all;
    for (const SourcePtr& pSource : sources_) {
        const std::vector<DatasetEntry> entries = datasetsOf(*pPool_, pSource);
        all.insert(all.end(), entries.begin(), entries.end());
    }
    if (bScansFolder_) {
        for (const std::string& sFile : files()) {
            const std::vector<DatasetEntry>& entries = datasetsOfFile(sFile);
            all.insert(all.end(), entries.begin(), entries.end());
        }
    }
    datasets_ = std::move(all);
    return *datasets_;
}

// Most datasets of a folder bear their file's name: then only that file is opened.
std::optional<DatasetEntry> GdalWorkspace::findByStem(const std::string& sUpperName) {
    for (const std::string& sFile : files()) {
        if (!equalIgnoringCase(stemOf(sFile), sUpperName)) {
            continue;
        }
        const std::vector<DatasetEntry>& entries = datasetsOfFile(sFile);
        if (const DatasetEntry* pEntry = findNamed(entries, sUpperName)) {
            return *pEntry;
        }
        if (entries.size() == 1) {
            return entries.front();
        }
    }
    return std::nullopt;
}

std::optional<DatasetEntry> GdalWorkspace::findEntry(const std::string& sUpperName) {
    if (bScansFolder_) {
        if (auto entry = findByStem(sUpperName)) {
            return entry;
        }
    }
    const std::vector<DatasetEntry>& entries = datasets();
    if (const DatasetEntry* pEntry = findNamed(entries, sUpperName)) {
        return *pEntry;
    }
    if (type_ == WorkspaceType::Folder && entries.size() == 1 && sources_.size() == 1 &&
        equalIgnoringCase(stemOf(sources_.front()->sDisplayName), sUpperName)) {
        return entries.front();
    }
    return std::nullopt;
}

TableDataPtr GdalWorkspace::findTable(std::string_view sName) {
    const auto entry = findEntry(upperCase(sName));
    if (!entry) {
        throw Failure(FailureNumber::HostFailure,
                      "\"" + sPath_ + "\" has no dataset \"" + std::string(sName) + "\"");
    }
    return tableOf(*entry);
}

TableDataPtr GdalWorkspace::tableOf(const DatasetEntry& entry) {
    TableDataPtr& pTable = tables_[entry.pSource->sOpenName + '\n' + entry.sName];
    if (pTable == nullptr) {
        pTable = std::make_shared<TableData>(pPool_, entry);
    }
    return pTable;
}

GdalFeatureClassPtr GdalWorkspace::makeFeatureClass(const TableDataPtr& pData,
                                                    const TableOverrides& overrides) {
    if (!pData->entry().bFeatures) {
        throw Failure(FailureNumber::HostFailure,
                      "\"" + pData->entry().sName + "\" is a table without shapes, not a feature class");
    }
    return std::make_shared<GdalFeatureClass>(TableReader(pData, shared_from_this(), overrides));
}

GisTablePtr GdalWorkspace::makeTable(const TableDataPtr& pData, const TableOverrides& overrides) {
    if (pData->entry().bFeatures) {
        return makeFeatureClass(pData, overrides);
    }
    return std::make_shared<GdalTable>(TableReader(pData, shared_from_this(), overrides));
}

GisFeatureClassPtr GdalWorkspace::openFeatureClass(std::string_view sName) {
    return makeFeatureClass(findTable(sName), {});
}

GisTablePtr GdalWorkspace::openTable(std::string_view sName) {
    return makeTable(findTable(sName), {});
}

GisEnumRelationshipClassPtr GdalWorkspace::relationshipClasses() const {
    throw Failure::of(FailureNumber::ActionNotSupported);
}

GisWorkspaceDomainsPtr GdalWorkspace::domainsRole() {
    return shared_from_this();
}

GisEnumDomainPtr GdalWorkspace::domains() const {
    throw Failure::of(FailureNumber::ActionNotSupported);
}

} // namespace halvane::host::gdal
