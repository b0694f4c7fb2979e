#pragma once

// The host on plain data files and on map documents of our own (docs/map-document.md).
//
// Everything is read, nothing is written, also beside the data. A location that comes from a control file
// can name files and folders only; a database server is reached only through a connection that the map
// document names, and a processor library is loaded only by loadProcessorLibrary(). One thread at a time.

#include "host/Host.h"
#include "host/LostShapes.h"

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

class GdalHost : public GisHost {
public:
    using ComponentFactory = std::function<ObjectPtr()>;

    [[nodiscard]] static std::shared_ptr<GdalHost> create(const GdalHostOptions& options = {});
    /// Asks, often and on any thread, whether an orderly end was asked for: what databases compute for hosts
    /// of this process then ends with a failure. @param pTest must not throw; nothing: nobody asks for one.
    static void endWhen(bool (*pTest)() noexcept) noexcept;
    GdalHost(const GdalHost&) = delete;
    GdalHost& operator=(const GdalHost&) = delete;
    ~GdalHost() override;

    /// Opens a map document, or any dataset or folder as a document of one map that holds all its layers
    /// and tables. From then on relative locations are taken from a map document's folder.
    /// @param sPath relative to the current folder.
    /// @throws Failure: what is wrong, in which file and line, and what to do.
    [[nodiscard]] GisMapDocumentPtr openMapDocument(const std::string& sPath);
    /// @param sFolder absolute, or relative to the current folder; "" for the current folder itself.
    void setBaseFolder(const std::string& sFolder);
    /// Opens all data of a document of this host and tells of what cannot be opened, a line for each.
    [[nodiscard]] std::vector<std::string> problems(const GisMapDocumentPtr& pDocument) const;
    /// What a map document of this host says that is allowed but will not do what was meant, a line for each
    /// with its place. Opens no data.
    [[nodiscard]] std::vector<std::string> remarks(const GisMapDocumentPtr& pDocument) const;
    /// Of the data that the opened documents name, and of that at further locations as a control file gives
    /// them, the one that a file is part of: its path, or the name of its connection. "" for none.
    /// @param sFile absolute; it need not exist.
    [[nodiscard]] std::string dataWith(const std::string& sFile,
                                       const std::vector<std::string>& locations) const;
    /// The shapes that were asked for since the last call, are stored and could not be read, layer by layer.
    [[nodiscard]] std::vector<LostShapes> takeLostShapes() const;
    /// The workspaces of which a map document opened here says something of its own, in the document's order;
    /// those that cannot be opened are left out.
    [[nodiscard]] std::vector<GisWorkspacePtr> namedWorkspaces() const;
    /// Selects features of a layer of the shown map, found by its name ignoring case, in groups too.
    /// @param sChoice a comma-separated list of feature identifiers, in that order; anything else is a
    ///        where clause.
    /// @throws Failure for an unknown layer or feature and for a clause that is rejected.
    void selectFeatures(const GisMapDocumentPtr& pDocument, std::string_view sLayer,
                        std::string_view sChoice);

    /// Makes a component available to createComponent(); a later one replaces an earlier one. ProgIDs ignore
    /// case.
    void registerComponent(std::string_view sProgId, ComponentFactory factory);
    /// Loads a library of external processors (host/IExternalProcessorLibrary.h) for the rest of the process.
    /// @param sPath relative to the current folder. @throws Failure when it is not such a library.
    void loadProcessorLibrary(const std::string& sPath);

    [[nodiscard]] GisFeatureLayerPtr newFeatureLayer() override;
    [[nodiscard]] GisPropertySetPtr newPropertySet() override;
    [[nodiscard]] GisWorkspaceFactoryPtr newWorkspaceFactory(WorkspaceFactoryKind kind) override;
    [[nodiscard]] GisCatalogPtr newCatalog() override;
    [[nodiscard]] GisNumericFormatPtr newNumericFormat() override;
    [[nodiscard]] ObjectPtr createComponent(std::string_view sProgId) override;
    [[nodiscard]] Date today() const override;
    [[nodiscard]] char pathSeparator() const override { return '/'; }

private:
    explicit GdalHost(const GdalHostOptions& options);

    struct State;
    std::unique_ptr<State> pState_;
};

} // namespace halvane::host::gdal
