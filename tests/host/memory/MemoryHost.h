#pragma once

#include "host/memory/Catalog.h"
#include "host/memory/NumericFormat.h"
#include "host/memory/WorkspaceFactory.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace halvane::host::memory {

/// A host application that lives in memory, for unit tests: it holds what it is given, notes what it is asked
/// for, and fails on request. While a host lives, all objects of the memory host made after it share its
/// fault script; so make the host first.
class MemoryHost final : public GisHost, private Scripted {
public:
    MemoryHost();
    [[nodiscard]] static std::shared_ptr<MemoryHost> make();

    using Scripted::faults;

    /// Lets the workspace factories of every kind open a workspace by this exact path.
    void registerWorkspace(std::string sPath, GisWorkspacePtr pWorkspace);
    /// What the factories were asked to open, failures included.
    [[nodiscard]] const std::vector<WorkspaceOpening>& openings() const { return pWorkspaces_->aOpenings; }

    void addCatalogObject(MemoryCatalogObjectPtr pObject);
    /// The full names that were looked for in the catalog.
    [[nodiscard]] const std::vector<std::string>& askedCatalogNames() const { return pCatalog_->aAskedNames; }

    /// Lets createComponent make components; programmatic identifiers are matched ignoring case.
    void registerComponent(std::string sProgId, std::function<ObjectPtr()> makeComponent);
    [[nodiscard]] const NumericFormatLog& numericFormats() const { return *pNumericFormats_; }
    /// Lets referenceOf find it, by this exact code.
    void registerReference(std::string sCode, GisSpatialReferencePtr pReference);
    void setToday(const Date& today) { today_ = today; }
    void setPathSeparator(char cSeparator) { cSeparator_ = cSeparator; }

    [[nodiscard]] GisFeatureLayerPtr newFeatureLayer() override;
    [[nodiscard]] GisPropertySetPtr newPropertySet() override;
    [[nodiscard]] GisWorkspaceFactoryPtr newWorkspaceFactory(WorkspaceFactoryKind kind) override;
    [[nodiscard]] GisCatalogPtr newCatalog() override;
    [[nodiscard]] GisNumericFormatPtr newNumericFormat() override;
    [[nodiscard]] ObjectPtr createComponent(std::string_view sProgId) override;
    [[nodiscard]] GisSpatialReferencePtr referenceOf(std::string_view sAuthorityCode) override;
    /// 2024-03-07 unless set.
    [[nodiscard]] Date today() const override;
    /// "\" unless set.
    [[nodiscard]] char pathSeparator() const override;

private:
    explicit MemoryHost(const std::shared_ptr<FaultScript>& pFaults);

    std::shared_ptr<WorkspaceRegistry> pWorkspaces_ = std::make_shared<WorkspaceRegistry>();
    std::shared_ptr<CatalogContents> pCatalog_ = std::make_shared<CatalogContents>();
    std::shared_ptr<NumericFormatLog> pNumericFormats_ = std::make_shared<NumericFormatLog>();
    std::vector<std::pair<std::string, std::function<ObjectPtr()>>> aComponents_;
    std::vector<std::pair<std::string, GisSpatialReferencePtr>> aReferences_;
    Date today_{2024, 3, 7};
    char cSeparator_ = '\\';
};
using MemoryHostPtr = std::shared_ptr<MemoryHost>;

} // namespace halvane::host::memory
