#pragma once

// The host on plain data files and on map documents of our own (docs/map-document.md).
//
// Everything is read, nothing is written, also beside the data. A location that comes from a control file
// can name files and folders only; a database server is reached only through a connection that the map
// document names, and a processor library is loaded only by loadProcessorLibrary(). One thread at a time.

#include "host/DataHost.h"
#include "host/Workspace.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::host::gdal {

class Environment;

struct GdalHostOptions {
    /// From here relative locations are taken until a map document is opened; "" for the current folder.
    std::string sBaseFolder;
};

class GdalHost : public DataHost {
public:
    using ComponentFactory = std::function<ObjectPtr()>;

    [[nodiscard]] static std::shared_ptr<GdalHost> create(const GdalHostOptions& options = {});
    /// As DataHosts has it.
    static void endWhen(bool (*pTest)() noexcept) noexcept;
    GdalHost(const GdalHost&) = delete;
    GdalHost& operator=(const GdalHost&) = delete;
    ~GdalHost() override;

    void allowConnections() override;
    [[nodiscard]] GisMapDocumentPtr openMapDocument(const std::string& sPath) override;
    /// @param sFolder absolute, or relative to the current folder; "" for the current folder itself.
    void setBaseFolder(const std::string& sFolder);
    [[nodiscard]] std::vector<std::string> problems(const GisMapDocumentPtr& pDocument) const override;
    [[nodiscard]] std::vector<std::string> remarks(const GisMapDocumentPtr& pDocument) const override;
    [[nodiscard]] DataRead dataRead() const override;
    [[nodiscard]] std::optional<RowsUnderWay> rowsUnderWay() const override;
    [[nodiscard]] std::string dataWith(const std::string& sFile,
                                       const std::vector<std::string>& locations) const override;
    [[nodiscard]] std::shared_ptr<void> holdServers() override;
    [[nodiscard]] std::string lostServer() const override;
    [[nodiscard]] std::vector<LostShapes> takeLostShapes() const override;
    [[nodiscard]] std::vector<GisWorkspacePtr> namedWorkspaces() const override;
    void selectFeatures(const GisMapDocumentPtr& pDocument, std::string_view sLayer,
                        std::string_view sChoice) override;

    /// Makes a component available to createComponent(); a later one replaces an earlier one. ProgIDs ignore
    /// case.
    void registerComponent(std::string_view sProgId, ComponentFactory factory);
    void loadProcessorLibrary(const std::string& sPath) override;

    [[nodiscard]] GisFeatureLayerPtr newFeatureLayer() override;
    [[nodiscard]] GisPropertySetPtr newPropertySet() override;
    [[nodiscard]] GisWorkspaceFactoryPtr newWorkspaceFactory(WorkspaceFactoryKind kind) override;
    [[nodiscard]] GisCatalogPtr newCatalog() override;
    [[nodiscard]] GisNumericFormatPtr newNumericFormat() override;
    [[nodiscard]] ObjectPtr createComponent(std::string_view sProgId) override;
    [[nodiscard]] GisSpatialReferencePtr referenceOf(std::string_view sAuthorityCode) override;
    [[nodiscard]] Date today() const override;
    [[nodiscard]] char pathSeparator() const override { return '/'; }

private:
    explicit GdalHost(const GdalHostOptions& options);

    struct State;
    std::unique_ptr<State> pState_;
};

/// For front ends.
[[nodiscard]] const DataHosts& dataHosts() noexcept;

} // namespace halvane::host::gdal
