#include "engine/sources/ModOpenWOrkspace.h"

#include "base/Text.h"
#include "host/Application.h"
#include "host/Workspace.h"

#include <string>

namespace halvane {

using host::WorkspaceFactoryKind;

namespace {

host::GisWorkspacePtr OpenDatabaseWorkspace(ExportState& state, WorkspaceFactoryKind kind,
                                            std::string_view sPath, std::int32_t lWindowHandle) {
    const auto pProperties = state.pHost->newPropertySet();
    pProperties->setProperty("DATABASE", std::string(sPath));
    return state.pHost->newWorkspaceFactory(kind)->open(*pProperties, lWindowHandle);
}

/// The catalog's name for a connection file: the path up to its second "\".
std::string catalogName(std::string_view sPath) {
    const auto first = sPath.find('\\');
    if (first == std::string_view::npos)
        return std::string(sPath);
    return std::string(sPath.substr(0, sPath.find('\\', first + 1)));
}

/// Where a connection of the catalog is; "" for one that stands in no folder of connections.
std::string connectionFile(const host::GisCatalogObject& object) {
    const auto pParent = object.parent();
    if (pParent == nullptr)
        return {};
    const std::string sCategory = pParent->category();
    if (sCategory == "Catalog")
        return {};
    return pParent->fullName() + "\\" + object.name();
}

/// Opens a connection file through the catalog, for the side effects of opening alone: the result is cleared
/// on purpose, so a ".SDE" location never yields a workspace.
host::GisWorkspacePtr OpenCatalogWorkspace(ExportState& state, std::string_view sPath) {
    const auto pCatalog = state.pHost->newCatalog();
    const auto pObject = pCatalog->objectFromFullName(catalogName(sPath));
    std::string sConnectionFile;
    if (pObject != nullptr)
        sConnectionFile = connectionFile(*pObject);
    if (!sConnectionFile.empty())
        (void)state.pHost->newWorkspaceFactory(WorkspaceFactoryKind::RemoteDatabase)
            ->openFromFile(sConnectionFile, 0);
    state.notice(Notice::WorkspaceNotOpened, "a \".SDE\" connection never yields a workspace");
    return nullptr;
}

host::GisWorkspacePtr openByPath(ExportState& state, std::string_view sPath, std::int32_t lWindowHandle) {
    if (containsIgnoringCase(sPath, ".SDE"))
        return OpenCatalogWorkspace(state, sPath);
    if (containsIgnoringCase(sPath, ".MDB"))
        return OpenDatabaseWorkspace(state, WorkspaceFactoryKind::LocalDatabase, sPath, lWindowHandle);
    if (sPath.find("\\\\") != std::string_view::npos)
        return OpenDatabaseWorkspace(state, WorkspaceFactoryKind::Share, sPath, lWindowHandle);
    return OpenDatabaseWorkspace(state, WorkspaceFactoryKind::Default, sPath, lWindowHandle);
}

} // namespace

host::GisWorkspacePtr OpenWorkspaceFromPath(ExportState& state, std::string_view sPath,
                                            std::int32_t lWindowHandle) {
    try {
        return openByPath(state, sPath, lWindowHandle);
    } catch (...) {
        // Without a location there was nothing to open.
        if (!sPath.empty())
            state.notice(Notice::WorkspaceNotOpened, currentFailure().description());
        return nullptr;
    }
}

} // namespace halvane
