#include "host/gdal/source/DataFiles.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/source/ArchiveMembers.h"
#include "host/gdal/source/DatabaseGuard.h"
#include "host/gdal/source/Drivers.h"
#include "host/gdal/source/Encodings.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Locations.h"
#include "host/gdal/source/Queries.h"
#include "host/gdal/source/SystemTables.h"
#include "io/PosixFile.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

namespace halvane::host::gdal {

namespace fs = std::filesystem;

namespace {

struct Companion {
    std::string_view sExtension;
    std::string_view sMain; ///< the extension of the file that it belongs to
};

// Files that drivers read along with another, and would open alone as well.
constexpr std::array aCompanions{Companion{"dbf", "shp"}, Companion{"shx", "shp"}, Companion{"mid", "mif"},
                                 Companion{"dat", "tab"}, Companion{"map", "tab"}, Companion{"id", "tab"}};
constexpr std::array<std::string_view, 16> aSideFiles{"prj", "cpg", "qpj", "sbn", "sbx", "csvt",
                                                      "xml", "ovr", "msk", "tfw", "pgw", "jgw",
                                                      "wld", "gfs", "xsd", "aux"};

// The first driver that takes the beginning of the file for its own; "" for none.
std::string expectedDriver(const Source& source, const char* const* pDrivers) {
    const ErrorScope errors;
    setDataInUse(&source);
    guardDatabaseFromTheStart(); // some drivers open a file to know it
    GDALDriverH hDriver = GDALIdentifyDriverEx(source.sOpenName.c_str(), source.lOpenKind, pDrivers, nullptr);
    return hDriver == nullptr ? std::string() : std::string(GDALGetDescription(hDriver));
}

// That none of the drivers took the file is no reason.
std::string withoutGeneralities(const std::string& sErrors) {
    std::string sKept;
    for (std::size_t nStart = 0; nStart < sErrors.size();) {
        const std::size_t nEnd = std::min(sErrors.find("; ", nStart), sErrors.size());
        const std::string sPiece = sErrors.substr(nStart, nEnd - nStart);
        if (sPiece.find("' not recognized as ") == std::string::npos)
            sKept += (sKept.empty() ? "" : "; ") + sPiece;
        nStart = nEnd + 2;
    }
    return sKept;
}

// A first handle tells which driver reads the file; it goes to the pool.
Opening firstOpening(HandlePool& pool, Source source, const char* const* pDrivers) {
    Opening opening;
    opening.sExpectedDriver = expectedDriver(source, pDrivers);
    source.sDriver = opening.sExpectedDriver; // until it is known which one reads it
    if (source.sDriver == "GML") {
        // Without these the driver writes a description beside the file and fetches its schema.
        source.openOptions = {"WRITE_GFS=NO", "DOWNLOAD_SCHEMA=NO"};
    }
    const ErrorScope errors;
    GDALDatasetUniquePtr pDataset = tryOpen(source, pDrivers);
    opening.sErrors = errors.failed() ? withoutGeneralities(errors.text()) : "";
    if (pDataset == nullptr)
        return opening;
    source.sDriver = pDataset->GetDriver()->GetDescription();
    opening.pSource = std::make_shared<const Source>(std::move(source));
    MissingRows missing;
    missing.note(errors);
    const Handle handle(pool.shared_from_this(), opening.pSource, std::move(pDataset), std::move(missing));
    return opening;
}

bool isLocalDatabaseFile(const std::string& sPath) {
    const std::string sExtension = extensionOf(sPath);
    return sExtension == "mdb" || sExtension == "accdb";
}

// @param sEncoding "" where nobody has said it.
void useEncoding(Source& source, const std::string& sEncoding) {
    if (sEncoding.empty() || !hasOpenEncoding(source.sOpenName))
        return;
    if (needsUtf8Copy(source.sOpenName)) {
        auto pCopy = std::make_shared<const Utf8Copy>(source.sOpenName, sEncoding);
        source.sOpenName = pCopy->path();
        source.pKept = std::move(pCopy);
    } else {
        source.openOptions.push_back("ENCODING=" + sEncoding);
    }
}

std::string inDriversQuotes(std::string_view sText) {
    return '"' + replaceAll(replaceAll(sText, "\\", "\\\\"), "\"", "\\\"") + '"';
}

// Of a database it opens these by itself, and waits at a pipe.
std::string whyNotOpened(const std::string& sPath) {
    for (const char* pEnd : {"-wal", "-shm", "-journal"}) {
        const std::string sBeside = sPath + pEnd;
        std::error_code error;
        if (fs::exists(sBeside, error) && !isFile(sBeside))
            return "\"" + sBeside + "\" beside it is no plain file; remove it";
    }
    if (const std::string sExtension = extensionOf(sPath); sExtension == "kmz" || sExtension == "zip")
        return membersOfArchive(sPath).sWhyNot;
    return {};
}

// Tables in which a GeoPackage keeps subtypes are no datasets (docs/geopackage-extension.md).
bool isOwnTable(std::string_view sName) {
    return equalIgnoringCase(sName, "halvane_subtypes") || equalIgnoringCase(sName, "halvane_subtype_fields");
}

// A GeoPackage's tables that only link two others are told by their relationship. One version of the library
// lists them among the layers and another does not; they are listed where the GeoPackage itself lists them.
std::vector<std::string> unlistedLinks(GDALDataset& dataset) {
    std::vector<std::string> names;
    query(dataset,
          "SELECT mapping_table_name FROM gpkgext_relations WHERE lower(mapping_table_name) NOT IN (SELECT "
          "lower(table_name) FROM gpkg_contents)",
          [&](const QueryRow& row) { names.push_back(row.text(0)); });
    return names;
}

bool contains(const std::vector<std::string>& names, std::string_view sName) {
    return std::any_of(names.begin(), names.end(),
                       [&](const std::string& sOne) { return equalIgnoringCase(sOne, sName); });
}

// Beside a SpatiaLite database's tables with shapes the library lists no others, and none that it cannot
// read. They follow in the order of their making.
// The library lists their partitions alone.
void addPartitionedTables(const Handle& handle, const SourcePtr& pSource,
                          std::vector<DatasetEntry>& entries) {
    std::vector<std::string> names;
    query(handle.dataset(),
          "SELECT CASE n.nspname WHEN current_schema() THEN '' ELSE n.nspname || '.' END || c.relname "
          "FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace "
          "WHERE c.relkind = 'p' AND NOT c.relispartition ORDER BY c.oid",
          [&](const QueryRow& row) { names.push_back(row.text(0)); });
    for (auto& sName : names) {
        const bool bListed =
            std::ranges::any_of(entries, [&](const DatasetEntry& entry) { return entry.sName == sName; });
        OGRLayer* pLayer = bListed ? nullptr : handle.dataset().GetLayerByName(sName.c_str());
        if (pLayer != nullptr)
            entries.push_back({pSource, std::move(sName), pLayer->GetGeomType() != wkbNone});
    }
}

void addPlainTables(const Handle& handle, const SourcePtr& pSource, std::vector<DatasetEntry>& entries) {
    query(handle.dataset(),
          "SELECT m.name FROM sqlite_master m LEFT JOIN pragma_table_list t ON t.schema = 'main' AND "
          "t.name = m.name WHERE m.type IN ('table', 'view') AND ifnull(t.type, m.type) IN ('table', "
          "'view') ORDER BY m.rowid",
          [&](const QueryRow& row) {
              const std::string sName = row.text(0);
              const bool bKnown = std::any_of(entries.begin(), entries.end(), [&](const DatasetEntry& entry) {
                  return equalIgnoringCase(entry.sName, sName);
              });
              if (!bKnown && !isGeoPackageTable(sName) && !isSpatialiteTable(sName))
                  entries.push_back({pSource, sName, false});
          });
}

} // namespace

bool isSideFile(const std::string& sFile) {
    const fs::path path = sFile;
    const std::string sExtension = extensionOf(path.string());
    if (sExtension == "xml") {
        // "a.tif.aux.xml", "a.shp.xml": a second extension; a plain ".xml" may be a feature file.
        return path.stem().has_extension();
    }
    if (std::find(aSideFiles.begin(), aSideFiles.end(), sExtension) != aSideFiles.end())
        return true;
    if (sExtension.ends_with("-wal") || sExtension.ends_with("-shm") || sExtension.ends_with("-journal"))
        return true;
    return std::any_of(aCompanions.begin(), aCompanions.end(), [&](const Companion& companion) {
        if (sExtension != companion.sExtension)
            return false;
        fs::path lower = path;
        fs::path upper = path;
        lower.replace_extension(companion.sMain);
        upper.replace_extension(upperCase(companion.sMain));
        return isFile(lower.string()) || isFile(upper.string());
    });
}

bool isDatabaseDriver(const std::string& sDriver) {
    constexpr std::array<std::string_view, 6> aDatabases{"GPKG", "SQLite",     "OpenFileGDB",
                                                         "PGeo", "PostgreSQL", "ODBC"};
    return std::find(aDatabases.begin(), aDatabases.end(), sDriver) != aDatabases.end();
}

Opening openFeatures(HandlePool& pool, const std::string& sPath) {
    if (std::string sWhyNot = whyNotOpened(sPath); !sWhyNot.empty())
        return {nullptr, "", std::move(sWhyNot)};
    Source source;
    source.sOpenName = sPath;
    source.sDisplayName = sPath;
    if (!isLocalDatabaseFile(sPath)) {
        source.openOptions = pool.openOptionsOf(sPath);
        useEncoding(source, pool.encodingOf(sPath));
        source.pMended = MendedShapes::of(sPath);
        source.sOpenName = source.pMended == nullptr ? source.sOpenName : source.pMended->path();
        return firstOpening(pool, std::move(source), featureDrivers());
    }
    // The connector's driver puts the path into a connection string.
    if (sPath.find_first_of(";{}") != std::string::npos)
        return {nullptr, "", "its path may not hold ';', '{' or '}'"};
    return isFile(sPath) ? firstOpening(pool, std::move(source), localDatabaseDrivers()) : Opening();
}

Opening openMember(HandlePool& pool, const std::string& sName, const std::string& sArchive) {
    Source source;
    source.sOpenName = sName;
    source.sDisplayName = sArchive;
    return firstOpening(pool, std::move(source), featureDrivers());
}

Opening openRaster(HandlePool& pool, const std::string& sPath) {
    if (std::string sWhyNot = whyNotOpened(sPath); !sWhyNot.empty())
        return {nullptr, "", std::move(sWhyNot)};
    Source source;
    source.sOpenName = sPath;
    source.sDisplayName = sPath;
    source.lOpenKind = GDAL_OF_RASTER;
    return firstOpening(pool, std::move(source), rasterDrivers());
}

SourcePtr featureSourceOf(HandlePool& pool, const std::string& sPath) {
    return openFeatures(pool, sPath).pSource;
}

SourcePtr rasterSourceOf(HandlePool& pool, const std::string& sPath) {
    return openRaster(pool, sPath).pSource;
}

SourcePtr rasterSourceOf(const std::string& sPath, const std::string& sRaster) {
    Source source;
    source.sOpenName = "GPKG:" + inDriversQuotes(sPath) + ":" + inDriversQuotes(sRaster);
    source.sDisplayName = sPath;
    source.sDriver = "GPKG";
    source.lOpenKind = GDAL_OF_RASTER;
    return std::make_shared<const Source>(std::move(source));
}

SourcePtr serverSourceOf(HandlePool& pool, const std::string& sConnection) {
    Source source;
    source.sOpenName = sConnection;
    source.sDisplayName = withoutPasswords(sConnection);
    source.sDriver = serverDrivers()[0];
    auto pSource = std::make_shared<const Source>(std::move(source));
    const Handle handle = pool.acquire(pSource);
    return pSource;
}

std::vector<DatasetEntry> datasetsOf(HandlePool& pool, const SourcePtr& pSource) {
    Handle handle = pool.acquire(pSource);
    const ErrorScope errors;
    const std::vector<std::string> links =
        pSource->sDriver == "GPKG" ? unlistedLinks(handle.dataset()) : std::vector<std::string>();
    std::vector<DatasetEntry> entries;
    const int lCount = handle.dataset().GetLayerCount();
    entries.reserve(static_cast<std::size_t>(lCount));
    for (int lIndex = 0; lIndex < lCount; ++lIndex) {
        OGRLayer* pLayer = handle.dataset().GetLayer(lIndex);
        if (pLayer != nullptr && !isOwnTable(pLayer->GetName()) && !contains(links, pLayer->GetName()))
            entries.push_back({pSource, pLayer->GetName(), pLayer->GetGeomType() != wkbNone});
    }
    handle.missingRows().note(errors);
    if (pSource->sDriver == "SQLite")
        addPlainTables(handle, pSource, entries);
    if (isServer(*pSource))
        addPartitionedTables(handle, pSource, entries);
    if (errors.storageFailed())
        handle.discard(); // those who read from it would not hear of it again
    return entries;
}

std::vector<RasterEntry> rastersOf(HandlePool& pool, const SourcePtr& pSource) {
    std::vector<RasterEntry> entries;
    // Those in an archive are not read.
    if (pSource->sDriver != "GPKG" || pSource->sOpenName.starts_with("/vsizip/"))
        return entries;
    const Handle handle = pool.acquire(pSource);
    query(handle.dataset(),
          "SELECT table_name FROM gpkg_contents WHERE data_type IN ('tiles', '2d-gridded-coverage') "
          "ORDER BY rowid",
          [&](const QueryRow& row) {
              entries.push_back({rasterSourceOf(pSource->sDisplayName, row.text(0)), row.text(0)});
          });
    return entries;
}

std::vector<RasterEntry> rastersOfFile(HandlePool& pool, const std::string& sPath) {
    const SourcePtr pSource = rasterSourceOf(pool, sPath);
    if (pSource == nullptr)
        return {};
    // A database without other tables opens as a raster of no name and of no content.
    return pSource->sDriver == "GPKG" ? rastersOf(pool, pSource)
                                      : std::vector{RasterEntry{pSource, stemOf(sPath)}};
}

std::vector<std::string> dataFilesIn(const std::string& sFolder) {
    std::vector<std::string> files;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(sFolder, error)) {
        const std::string sName = entry.path().filename().string();
        std::error_code ignored;
        const bool bDatabaseFolder = entry.is_directory(ignored) && extensionOf(sName) == "gdb";
        const bool bFile = entry.is_regular_file(ignored) && isFile(entry.path().string());
        const bool bListed = bDatabaseFolder || bFile || isLostLink(entry.path().string());
        if (sName.starts_with('.') || !bListed || extensionOf(sName) == "vrt")
            continue;
        if (bDatabaseFolder || !isSideFile(entry.path().string()))
            files.push_back(entry.path().string());
    }
    if (error) {
        throw Failure(FailureNumber::PathFileAccess,
                      "The folder \"" + sFolder + "\" cannot be read: " + io::errorText(error.value()));
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace halvane::host::gdal
