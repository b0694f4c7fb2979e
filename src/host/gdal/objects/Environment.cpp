#include "host/gdal/objects/Environment.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/source/BrokenFiles.h"
#include "host/gdal/source/Drivers.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/FilesOfData.h"
#include "host/gdal/source/Locations.h"
#include "host/gdal/source/ZippedData.h"

#include <algorithm>
#include <array>

namespace halvane::host::gdal {

namespace {

// A GeoPackage without tables opens only for rasters, whether it has any or not.
SourcePtr databaseOrFile(HandlePool& pool, const std::string& sPath) {
    if (SourcePtr pSource = featureSourceOf(pool, sPath))
        return pSource;
    SourcePtr pSource = rasterSourceOf(pool, sPath);
    return pSource != nullptr && pSource->sDriver == "GPKG" ? pSource : nullptr;
}

GdalWorkspacePtr workspaceOfArchive(const std::shared_ptr<HandlePool>& pPool, const std::string& sPath) {
    std::vector<SourcePtr> sources = sourcesInArchive(*pPool, sPath);
    const bool bDatabase = sources.size() == 1 && isDatabaseDriver(sources.front()->sDriver);
    return std::make_shared<GdalWorkspace>(
        pPool, bDatabase ? WorkspaceType::LocalDatabase : WorkspaceType::Folder, sPath, std::move(sources));
}

GdalWorkspacePtr makeWorkspace(const std::shared_ptr<HandlePool>& pPool, const std::string& sPath) {
    const bool bFolder = isFolder(sPath);
    if (!bFolder && !isFile(sPath))
        throw Failure(FailureNumber::FileNotFound, whyMissing(sPath));
    if (bFolder && extensionOf(sPath) != "gdb")
        return std::make_shared<GdalWorkspace>(pPool, WorkspaceType::Folder, sPath, std::vector<SourcePtr>{});
    if (isZippedData(sPath))
        return workspaceOfArchive(pPool, sPath);
    SourcePtr pSource = databaseOrFile(*pPool, sPath);
    if (pSource == nullptr)
        return nullptr;
    if (isDatabaseDriver(pSource->sDriver)) {
        return std::make_shared<GdalWorkspace>(pPool, WorkspaceType::LocalDatabase, sPath,
                                               std::vector{std::move(pSource)});
    }
    // A data file is one of its folder's.
    return std::make_shared<GdalWorkspace>(pPool, WorkspaceType::Folder, folderOf(sPath),
                                           std::vector{std::move(pSource)});
}

} // namespace

Environment::Environment() {
    prepareLibrary();
    pPool_ = std::make_shared<HandlePool>();
}

std::string Environment::baseFolder() const {
    return sBaseFolder_.empty() ? currentFolder() : sBaseFolder_;
}

std::string Environment::filePath(std::string_view sLocation) const {
    return filePathOf(sLocation, baseFolder());
}

void Environment::addConnection(const std::string& sName, const std::string& sDatabase) {
    constexpr std::array<std::string_view, 3> aKinds{"pg:", "postgresql://", "postgres://"};
    const std::string sLower = lowerCase(sDatabase);
    if (std::none_of(aKinds.begin(), aKinds.end(),
                     [&](std::string_view sKind) { return sLower.starts_with(sKind); })) {
        throw Failure(FailureNumber::HostFailure,
                      "the connection \"" + sName +
                          R"(" must name a PostgreSQL database: "PG:host=... dbname=...")");
    }
    connections_[upperCase(sName)] = sDatabase;
}

bool Environment::hasConnection(std::string_view sName) const {
    return connections_.contains(upperCase(trimBlanks(sName)));
}

std::string Environment::dataWith(const std::string& sFile) {
    for (const std::string& sLocation : dataLocations_)
        if (isPartOfData(*pPool_, sFile, sLocation))
            return sLocation;
    for (const auto& [sName, sDatabase] : connections_)
        if (isNamedInConnection(sFile, sDatabase))
            return sName;
    return {};
}

DataRead Environment::dataRead() const {
    return {{dataLocations_.begin(), dataLocations_.end()}, !connections_.empty()};
}

GdalWorkspacePtr Environment::openWorkspace(std::string_view sLocation) {
    if (hasConnection(sLocation))
        return openConnection(sLocation);
    const std::string sPath = filePath(sLocation);
    addDataLocation(sPath); // texts with values make locations that nobody has named before
    return openPath(sPath);
}

GdalWorkspacePtr Environment::findPath(const std::string& sPath) {
    const auto pKnown = workspaces_.find(sPath);
    if (pKnown != workspaces_.end())
        return pKnown->second;
    GdalWorkspacePtr pWorkspace = makeWorkspace(pPool_, sPath);
    return pWorkspace == nullptr ? nullptr : keep(sPath, std::move(pWorkspace));
}

GdalWorkspacePtr Environment::openPath(const std::string& sPath) {
    GdalWorkspacePtr pWorkspace = findPath(sPath);
    if (pWorkspace == nullptr) {
        const auto broken = brokenFeatureFile(*pPool_, sPath);
        throw Failure(FailureNumber::HostFailure,
                      broken ? broken->sReason
                             : "\"" + sPath +
                                   "\" is not in a format of tables or feature classes that is read here");
    }
    return pWorkspace;
}

GdalWorkspacePtr Environment::openConnection(std::string_view sName) {
    const std::string& sDatabase = connections_.at(upperCase(trimBlanks(sName)));
    const auto pKnown = workspaces_.find(sDatabase);
    if (pKnown != workspaces_.end())
        return pKnown->second;
    SourcePtr pSource = serverSourceOf(*pPool_, sDatabase);
    std::string sPath = pSource->sDisplayName;
    return keep(sDatabase, std::make_shared<GdalWorkspace>(pPool_, WorkspaceType::Server, std::move(sPath),
                                                           std::vector{std::move(pSource)}));
}

GdalWorkspacePtr Environment::keep(const std::string& sKey, GdalWorkspacePtr pWorkspace) {
    if (const auto pFacts = facts_.find(sKey); pFacts != facts_.end())
        pWorkspace->setFacts(pFacts->second);
    return workspaces_.emplace(sKey, std::move(pWorkspace)).first->second;
}

void Environment::addFacts(const std::string& sLocation, bool bConnection, WorkspaceFacts facts) {
    const std::string& sKey = bConnection ? connections_.at(upperCase(sLocation)) : sLocation;
    WorkspaceFacts& all = facts_[sKey];
    std::move(facts.domains.begin(), facts.domains.end(), std::back_inserter(all.domains));
    std::move(facts.relationships.begin(), facts.relationships.end(), std::back_inserter(all.relationships));
    if (const auto pOpen = workspaces_.find(sKey); pOpen != workspaces_.end())
        pOpen->second->setFacts(all);
    described_.emplace_back(sLocation, bConnection);
}

std::vector<GisWorkspacePtr> Environment::workspacesWithFacts() {
    std::vector<GisWorkspacePtr> all;
    for (const auto& [sLocation, bConnection] : described_) {
        try {
            all.push_back(bConnection ? openConnection(sLocation) : openPath(sLocation));
        } catch (const Failure&) {
            continue; // what lies in it says so in its place
        }
    }
    return all;
}

} // namespace halvane::host::gdal
