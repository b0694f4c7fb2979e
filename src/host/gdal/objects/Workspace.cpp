#include "host/gdal/objects/Workspace.h"

#include "base/Choices.h"
#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/source/CrashProbe.h"
#include "host/gdal/source/Locations.h"

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

const std::vector<std::string>& GdalWorkspace::files() const {
    if (!files_)
        files_ = dataFilesIn(sPath_);
    return *files_;
}

const std::vector<DatasetEntry>& GdalWorkspace::datasetsOfFile(const std::string& sFile) const {
    const auto pKnown = datasetsOfFiles_.find(sFile);
    if (pKnown != datasetsOfFiles_.end())
        return pKnown->second;
    if (std::string sCrash = crashOnReading(sFile); !sCrash.empty()) {
        brokenFiles_[sFile] = BrokenFile{BrokenFile::Kind::Layer, std::move(sCrash)};
        return datasetsOfFiles_[sFile];
    }
    const SourcePtr pSource = featureSourceOf(*pPool_, sFile);
    return datasetsOfFiles_
        .emplace(sFile, pSource == nullptr ? std::vector<DatasetEntry>{} : datasetsOf(*pPool_, pSource))
        .first->second;
}

const std::optional<BrokenFile>& GdalWorkspace::brokenFile(const std::string& sFile) const {
    const auto pKnown = brokenFiles_.find(sFile);
    if (pKnown != brokenFiles_.end())
        return pKnown->second;
    return brokenFiles_
        .emplace(sFile, datasetsOfFile(sFile).empty() ? brokenFeatureFile(*pPool_, sFile) : std::nullopt)
        .first->second;
}

const std::vector<DatasetEntry>& GdalWorkspace::datasets() const {
    if (datasets_)
        return *datasets_;
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
std::optional<DatasetEntry> GdalWorkspace::findByStem(const std::string& sUpperName) const {
    for (const std::string& sFile : files()) {
        if (!equalIgnoringCase(stemOf(sFile), sUpperName))
            continue;
        const std::vector<DatasetEntry>& entries = datasetsOfFile(sFile);
        if (const DatasetEntry* pEntry = findNamed(entries, sUpperName))
            return *pEntry;
        if (entries.size() == 1)
            return entries.front();
    }
    return std::nullopt;
}

std::optional<DatasetEntry> GdalWorkspace::findEntry(const std::string& sUpperName) {
    if (bScansFolder_) {
        if (auto entry = findByStem(sUpperName))
            return entry;
    }
    const std::vector<DatasetEntry>& entries = datasets();
    if (const DatasetEntry* pEntry = findNamed(entries, sUpperName))
        return *pEntry;
    if (type_ == WorkspaceType::Folder && entries.size() == 1 && sources_.size() == 1 &&
        equalIgnoringCase(stemOf(sources_.front()->sDisplayName), sUpperName))
        return entries.front();
    return std::nullopt;
}

// A file of that name which cannot be read is most likely what was meant. All datasets are known by now: the
// search has been through them.
std::string GdalWorkspace::whyNotFound(std::string_view sName) const {
    if (bScansFolder_) {
        for (const std::string& sFile : files())
            if (equalIgnoringCase(stemOf(sFile), sName) && brokenFile(sFile))
                return brokenFile(sFile)->sReason;
    }
    Choice choice{"it has", "dataset", "datasets", {}};
    for (const DatasetEntry& dataset : datasets())
        choice.names.push_back(dataset.sName);
    return "\"" + sPath_ + "\" has no dataset \"" + std::string(sName) + "\"; " + meantOrThere(sName, choice);
}

TableDataPtr GdalWorkspace::findTable(std::string_view sName) {
    const auto entry = findEntry(upperCase(sName));
    if (!entry) {
        auto pReason = reasons_.find(sName);
        if (pReason == reasons_.end())
            pReason = reasons_.emplace(sName, whyNotFound(sName)).first;
        throw Failure(FailureNumber::HostFailure, pReason->second);
    }
    return tableOf(*entry);
}

bool GdalWorkspace::ByPlace::operator()(const Place& left, const Place& right) const {
    if (left.first != right.first)
        if (const int lOrder = left.first->sOpenName.compare(right.first->sOpenName); lOrder != 0)
            return lOrder < 0;
    return left.second < right.second;
}

TableDataPtr GdalWorkspace::tableOf(const DatasetEntry& entry) {
    TableDataPtr& pTable = tables_[{entry.pSource, entry.sName}];
    if (pTable == nullptr)
        pTable = std::make_shared<TableData>(pPool_, entry);
    return pTable;
}

TableDataPtr GdalWorkspace::computedTable(const TableQuery& query) {
    TableDataPtr& pTable = computed_[{query.sSql, query.sName}];
    if (pTable == nullptr)
        pTable = std::make_shared<TableData>(pPool_, computeTable(*pPool_, query));
    return pTable;
}

GdalFeatureClassPtr GdalWorkspace::makeFeatureClass(const TableDataPtr& pData,
                                                    const TableOverridesPtr& pOverrides) {
    if (!pData->entry().bFeatures) {
        throw Failure(FailureNumber::HostFailure,
                      "\"" + pData->entry().sName +
                          "\" is a table without shapes, not a feature class: ask for it as a table");
    }
    return std::make_shared<GdalFeatureClass>(TableReader(pData, shared_from_this(), pOverrides));
}

GisTablePtr GdalWorkspace::makeTable(const TableDataPtr& pData, const TableOverridesPtr& pOverrides) {
    if (pData->entry().bFeatures)
        return makeFeatureClass(pData, pOverrides);
    return std::make_shared<GdalTable>(TableReader(pData, shared_from_this(), pOverrides));
}

GisFeatureClassPtr GdalWorkspace::openFeatureClass(std::string_view sName) {
    return makeFeatureClass(findTable(sName), noOverrides());
}

GisTablePtr GdalWorkspace::openTable(std::string_view sName) {
    return makeTable(findTable(sName), noOverrides());
}

void GdalWorkspace::setFacts(WorkspaceFacts facts) {
    facts_ = std::move(facts);
    domains_.reset();
    relationships_.reset();
}

std::vector<SourcePtr> GdalWorkspace::allSources() const {
    std::vector<SourcePtr> all = sources_;
    for (const DatasetEntry& entry : datasets())
        if (std::find(all.begin(), all.end(), entry.pSource) == all.end())
            all.push_back(entry.pSource);
    return all;
}

const DomainList& GdalWorkspace::domainList() const {
    if (domains_)
        return *domains_;
    DomainList own;
    for (const DomainFacts& facts : facts_.domains)
        own.push_back(std::make_shared<GdalDomain>(facts));
    DomainList all;
    for (const SourcePtr& pSource : allSources()) {
        for (const GisDomainPtr& pDomain : domainsOf(*pPool_, pSource))
            if (gdal::findDomain(own, pDomain->name()) == nullptr &&
                gdal::findDomain(all, pDomain->name()) == nullptr)
                all.push_back(pDomain);
    }
    all.insert(all.end(), own.begin(), own.end());
    domains_ = std::move(all);
    return *domains_;
}

const RelationshipList& GdalWorkspace::relationshipList() const {
    if (relationships_)
        return *relationships_;
    const auto isReplaced = [&](const RelationshipFacts& facts) {
        return std::any_of(
            facts_.relationships.begin(), facts_.relationships.end(),
            [&](const RelationshipFacts& own) { return equalIgnoringCase(own.sName, facts.sName); });
    };
    RelationshipList all;
    for (const SourcePtr& pSource : allSources()) {
        for (RelationshipFacts& facts : relationshipsOf(*pPool_, pSource))
            if (!isReplaced(facts))
                all.push_back(std::move(facts));
    }
    all.insert(all.end(), facts_.relationships.begin(), facts_.relationships.end());
    relationships_ = std::move(all);
    return *relationships_;
}

GisEnumRelationshipClassPtr GdalWorkspace::relationshipClasses() const {
    return std::make_shared<GdalEnumRelationshipClass>(relationshipList());
}

GisWorkspaceDomainsPtr GdalWorkspace::domainsRole() {
    return type_ == WorkspaceType::Folder && domainList().empty() ? nullptr : shared_from_this();
}

GisEnumDomainPtr GdalWorkspace::domains() const {
    return std::make_shared<GdalEnumDomain>(domainList());
}

GisDomainPtr GdalWorkspace::findDomain(std::string_view sName) const {
    return gdal::findDomain(domainList(), sName);
}

} // namespace halvane::host::gdal
