#include "host/memory/Workspace.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/memory/Enumeration.h"

#include <algorithm>

namespace halvane::host::memory {

namespace {

template<class Dataset>
std::shared_ptr<Dataset> findByName(const std::vector<std::shared_ptr<Dataset>>& aDatasets,
                                    std::string_view sName) {
    const auto found = std::find_if(aDatasets.begin(), aDatasets.end(), [sName](const auto& pDataset) {
        return equalIgnoringCase(pDataset->contents().name(), sName);
    });
    return found == aDatasets.end() ? nullptr : *found;
}

[[noreturn]] void reportMissing(std::string_view sName) {
    throw Failure(FailureNumber::HostFailure, "There is no dataset " + std::string(sName));
}

} // namespace

MemoryWorkspace::MemoryWorkspace(std::string sPathName, std::int32_t lTypeCode)
    : sPathName_(std::move(sPathName)), lTypeCode_(lTypeCode) {}

MemoryWorkspacePtr MemoryWorkspace::make(std::string sPathName, std::int32_t lTypeCode) {
    return std::make_shared<MemoryWorkspace>(std::move(sPathName), lTypeCode);
}

void MemoryWorkspace::add(const MemoryTablePtr& pTable) {
    pTable->setWorkspace(shared_from_this());
    aTables_.push_back(pTable);
}

void MemoryWorkspace::add(const MemoryFeatureClassPtr& pFeatureClass) {
    pFeatureClass->setWorkspace(shared_from_this());
    aFeatureClasses_.push_back(pFeatureClass);
}

std::string MemoryWorkspace::pathName() const {
    pass("GisWorkspace", "pathName");
    return sPathName_;
}

std::int32_t MemoryWorkspace::typeCode() const {
    pass("GisWorkspace", "typeCode");
    return lTypeCode_;
}

GisFeatureClassPtr MemoryWorkspace::openFeatureClass(std::string_view sName) {
    pass("GisWorkspace", "openFeatureClass");
    if (const auto pFeatureClass = findByName(aFeatureClasses_, sName))
        return pFeatureClass;
    reportMissing(sName);
}

GisTablePtr MemoryWorkspace::openTable(std::string_view sName) {
    pass("GisWorkspace", "openTable");
    if (const auto pTable = findByName(aTables_, sName))
        return pTable;
    if (const auto pFeatureClass = findByName(aFeatureClasses_, sName))
        return pFeatureClass;
    reportMissing(sName);
}

GisEnumRelationshipClassPtr MemoryWorkspace::relationshipClasses() const {
    pass("GisWorkspace", "relationshipClasses");
    return std::make_shared<MemoryEnumeration<GisEnumRelationshipClass, GisRelationshipClass>>(
        "GisEnumRelationshipClass", aRelationships_, script());
}

GisWorkspaceDomainsPtr MemoryWorkspace::domainsRole() {
    pass("GisWorkspace", "domainsRole");
    return bHoldsDomains_ ? shared_from_this() : nullptr;
}

GisEnumDomainPtr MemoryWorkspace::domains() const {
    pass("GisWorkspaceDomains", "domains");
    return std::make_shared<MemoryEnumeration<GisEnumDomain, GisDomain>>("GisEnumDomain", aDomains_,
                                                                         script());
}

} // namespace halvane::host::memory
