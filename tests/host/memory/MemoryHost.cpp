#include "host/memory/MemoryHost.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/memory/Layers.h"

namespace halvane::host::memory {

MemoryHost::MemoryHost() : MemoryHost(std::make_shared<FaultScript>()) {}

MemoryHost::MemoryHost(const std::shared_ptr<FaultScript>& pFaults) : Scripted(pFaults) {
    FaultScript::makeCurrent(pFaults);
}

MemoryHostPtr MemoryHost::make() {
    return std::make_shared<MemoryHost>();
}

void MemoryHost::registerWorkspace(std::string sPath, GisWorkspacePtr pWorkspace) {
    pWorkspaces_->aWorkspaces.emplace_back(std::move(sPath), std::move(pWorkspace));
}

void MemoryHost::addCatalogObject(MemoryCatalogObjectPtr pObject) {
    pCatalog_->aObjects.push_back(std::move(pObject));
}

void MemoryHost::registerComponent(std::string sProgId, std::function<ObjectPtr()> makeComponent) {
    aComponents_.emplace_back(std::move(sProgId), std::move(makeComponent));
}

void MemoryHost::registerReference(std::string sCode, GisSpatialReferencePtr pReference) {
    aReferences_.emplace_back(std::move(sCode), std::move(pReference));
}

GisFeatureLayerPtr MemoryHost::newFeatureLayer() {
    pass("GisHost", "newFeatureLayer");
    return MemoryFeatureLayer::make({}, nullptr);
}

GisPropertySetPtr MemoryHost::newPropertySet() {
    pass("GisHost", "newPropertySet");
    return std::make_shared<MemoryPropertySet>(script());
}

GisWorkspaceFactoryPtr MemoryHost::newWorkspaceFactory(WorkspaceFactoryKind kind) {
    pass("GisHost", "newWorkspaceFactory");
    return std::make_shared<MemoryWorkspaceFactory>(kind, pWorkspaces_, script());
}

GisCatalogPtr MemoryHost::newCatalog() {
    pass("GisHost", "newCatalog");
    return std::make_shared<MemoryCatalog>(pCatalog_, script());
}

GisNumericFormatPtr MemoryHost::newNumericFormat() {
    pass("GisHost", "newNumericFormat");
    return std::make_shared<MemoryNumericFormat>(pNumericFormats_, script());
}

ObjectPtr MemoryHost::createComponent(std::string_view sProgId) {
    pass("GisHost", "createComponent");
    for (const auto& [sKnown, makeComponent] : aComponents_) {
        if (equalIgnoringCase(sKnown, sProgId))
            return makeComponent();
    }
    throw Failure::of(FailureNumber::CannotCreateComponent);
}

GisSpatialReferencePtr MemoryHost::referenceOf(std::string_view sAuthorityCode) {
    pass("GisHost", "referenceOf");
    for (const auto& [sCode, pReference] : aReferences_)
        if (sCode == sAuthorityCode)
            return pReference;
    throw Failure(FailureNumber::HostFailure,
                  "no reference is registered as \"" + std::string(sAuthorityCode) + "\"");
}

Date MemoryHost::today() const {
    pass("GisHost", "today");
    return today_;
}

char MemoryHost::pathSeparator() const {
    pass("GisHost", "pathSeparator");
    return cSeparator_;
}

} // namespace halvane::host::memory
