#pragma once

#include "host/DataHost.h"
#include "host/gdal/objects/Workspace.h"
#include "host/gdal/source/HandlePool.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane::host::gdal {

/// What the objects of one host share: handles, workspaces already open, the base of relative locations and
/// the connections that the map document names.
class Environment {
public:
    Environment();

    /// From here relative locations are taken. @param sFolder absolute; "" for the current folder.
    void setBaseFolder(const std::string& sFolder) { sBaseFolder_ = sFolder; }
    [[nodiscard]] std::string baseFolder() const;

    /// Allows a database server under a name. The name alone opens it, ignoring case.
    /// @throws Failure unless the database is one of the kinds that connections may reach.
    void addConnection(const std::string& sName, const std::string& sDatabase);
    [[nodiscard]] bool hasConnection(std::string_view sName) const;

    /// Remembers where data lies: a file, a file database or a folder of data files. @param sPath absolute.
    void addDataLocation(const std::string& sPath) { dataLocations_.insert(sPath); }
    /// Of these and of the connections, the one that a file is part of: a path or a connection's name. "" for
    /// none.
    [[nodiscard]] std::string dataWith(const std::string& sFile);

    /// These, those that were opened as workspaces, and whether there are connections.
    [[nodiscard]] DataRead dataRead() const;

    /// What a map document says of the workspace at a path, or of a connection.
    void addFacts(const std::string& sLocation, bool bConnection, WorkspaceFacts facts);

    /// The workspaces of which something was said, in that order; those that cannot be opened are left out.
    [[nodiscard]] std::vector<GisWorkspacePtr> workspacesWithFacts();

    /// The workspace at a location: a connection's name, or the path of a folder, of a file database or of
    /// a data file. @throws Failure when the location is refused or cannot be opened.
    [[nodiscard]] GdalWorkspacePtr openWorkspace(std::string_view sLocation);
    [[nodiscard]] GdalWorkspacePtr openPath(const std::string& sPath);
    /// Nothing when the file is not in a format of tables or feature classes.
    /// @throws Failure when there is no such file or folder.
    [[nodiscard]] GdalWorkspacePtr findPath(const std::string& sPath);
    [[nodiscard]] GdalWorkspacePtr openConnection(std::string_view sName);
    [[nodiscard]] std::string filePath(std::string_view sLocation) const;

    [[nodiscard]] HandlePool& pool() { return *pPool_; }

private:
    GdalWorkspacePtr keep(const std::string& sKey, GdalWorkspacePtr pWorkspace);

    std::shared_ptr<HandlePool> pPool_;
    std::string sBaseFolder_;
    std::set<std::string> dataLocations_;
    std::map<std::string, std::string> connections_;      // by upper-cased name
    std::map<std::string, GdalWorkspacePtr> workspaces_;  // by path or connection string
    std::map<std::string, WorkspaceFacts> facts_;         // likewise
    std::vector<std::pair<std::string, bool>> described_; // locations as they were said; whether connections
};
using EnvironmentPtr = std::shared_ptr<Environment>;

} // namespace halvane::host::gdal
