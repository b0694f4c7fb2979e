#include "host/gdal/map/project/ProjectSource.h"

#include "base/FindRow.h"
#include "base/Text.h"
#include "host/gdal/map/project/SourceTexts.h"
#include "host/gdal/source/Locations.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>

namespace halvane::host::gdal {

namespace {

bool startsIgnoringCase(std::string_view sText, std::string_view sStart) {
    return equalIgnoringCase(sText.substr(0, sStart.size()), sStart);
}

// "$area" and "@project_folder" are the writing program's own; a database would take them for parameters.
bool holdsOwnExpression(std::string_view sFilter) {
    char cQuote = '\0';
    for (std::size_t nAt = 0; nAt + 1 < sFilter.size(); ++nAt) {
        const char c = sFilter[nAt];
        if (cQuote != '\0')
            cQuote = c == cQuote ? '\0' : cQuote;
        else if (c == '\'' || c == '"')
            cQuote = c;
        else if ((c == '$' || c == '@') && std::isalpha(static_cast<unsigned char>(sFilter[nAt + 1])) != 0)
            return true;
    }
    return false;
}

void takeFilter(ProjectSource& source, std::string sFilter) {
    source.bOwnExpression = holdsOwnExpression(sFilter);
    if (source.bOwnExpression)
        source.sWhyNot = "its subset is an expression of QGIS, which the data cannot compute: " + sFilter;
    (startsIgnoringCase(sFilter, "select ") ? source.sSql : source.sFilter) = std::move(sFilter);
}

// A file of an archive is found by the archive's path.
void leaveArchive(ProjectSource& source) {
    constexpr std::string_view sPrefix = "/vsizip/";
    if (!source.sFile.starts_with(sPrefix))
        return;
    std::string sInside = replaceAll(replaceAll(source.sFile.substr(sPrefix.size()), "{", ""), "}", "");
    const std::size_t nEnd = lowerCase(sInside).find(".zip");
    const std::size_t nArchive = nEnd == std::string::npos ? sInside.size() : nEnd + 4;
    source.sFile = sInside.substr(0, nArchive);
    sInside.erase(0, nArchive);
    if (source.sDataset.empty() && sInside.size() > 1)
        source.sDataset = stemOf(sInside);
}

void takePart(ProjectSource& source, std::string_view sPart) {
    const std::size_t nEquals = std::min(sPart.find('='), sPart.size());
    const std::string_view sKey = sPart.substr(0, nEquals);
    const std::string_view sValue = sPart.substr(std::min(nEquals + 1, sPart.size()));
    if (equalIgnoringCase(sKey, "layername")) {
        source.sDataset = sValue;
    } else if (equalIgnoringCase(sKey, "layerid")) {
        std::size_t nDataset = 0;
        if (std::from_chars(sValue.data(), sValue.data() + sValue.size(), nDataset).ec == std::errc())
            source.nDataset = nDataset;
    } else if (!equalIgnoringCase(sKey, "uniqueGeometryType") && !equalIgnoringCase(sKey, "authcfg")) {
        source.untold.emplace_back(sKey);
    }
}

// PATH|layername=x|geometrytype=y|subset=to the end
void readParts(const std::string& sText, ProjectSource& source) {
    constexpr std::string_view sSubset = "subset=";
    std::size_t nBar = sText.find('|');
    source.sFile = sText.substr(0, nBar);
    while (nBar != std::string::npos) {
        const std::string_view sRest = std::string_view(sText).substr(nBar + 1);
        if (startsIgnoringCase(sRest, sSubset)) {
            takeFilter(source, std::string(sRest.substr(sSubset.size())));
            break;
        }
        takePart(source, sRest.substr(0, sRest.find('|')));
        nBar = sText.find('|', nBar + 1);
    }
    leaveArchive(source);
}

// A source that names none of a file's datasets is the first one.
void readOgr(const std::string& sText, ProjectSource& source) {
    readParts(sText, source);
    if (source.sDataset.empty() && source.sSql.empty() && !source.nDataset)
        source.nDataset = 0;
}

void readRaster(const std::string& sText, ProjectSource& source) {
    constexpr std::string_view sPrefix = "GPKG:";
    if (!startsIgnoringCase(sText, sPrefix)) {
        readParts(sText, source);
        return;
    }
    const std::string sRest = replaceAll(std::string_view(sText).substr(sPrefix.size()), "\"", "");
    const std::size_t nColon = std::min(sRest.rfind(':'), sRest.size());
    source.sFile = sRest.substr(0, nColon);
    source.sDataset = sRest.substr(std::min(nColon + 1, sRest.size()));
}

void readMesh(const std::string& sText, ProjectSource& source) {
    source.sFile = sText;
    source.bMesh = true;
}

void readSpatialite(const std::string& sText, ProjectSource& source) {
    const DatabaseText database = parseDatabaseText(sText);
    source.sFile = database.value("dbname");
    source.sDataset = database.sTable;
    source.sShapes = database.sShapes;
    takeFilter(source, database.sSql);
}

void readPostgres(const std::string& sText, ProjectSource& source) {
    constexpr std::array<const char*, 7> aKeys{"service", "host",     "port",   "dbname",
                                               "user",    "password", "sslmode"};
    const DatabaseText database = parseDatabaseText(sText);
    source.sDatabase = "PG:";
    for (const char* pKey : aKeys) {
        const std::string sValue = replaceAll(replaceAll(database.value(pKey), "\\", "\\\\"), "'", "\\'");
        if (!sValue.empty())
            source.sDatabase += std::string(pKey) + "='" + sValue + "' ";
    }
    source.sServer = database.value("dbname") + database.value("service");
    if (const std::string sHost = database.value("host"); !sHost.empty())
        source.sServer += "@" + sHost;
    const bool bQualified = !database.sSchema.empty() && database.sSchema != "public";
    source.sDataset = (bQualified ? database.sSchema + "." : "") + database.sTable;
    source.sShapes = database.sShapes;
    source.sFilter = database.sSql;
    if (database.sTable.starts_with('('))
        source.sWhyNot = "it is a query on a server; make a view there, and use that in the project";
}

/// What a file of texts is read by there and not here: the rows or the values may differ.
void tellUnreadOptions(const std::map<std::string, std::string, std::less<>>& values, ProjectSource& source) {
    struct Unread {
        const char* pKey;
        std::string_view sHarmless; ///< a value that changes nothing
    };
    constexpr std::array<Unread, 6> aUnread{{{"geomType", "none"},
                                             {"mField", ""},
                                             {"trimFields", "no"},
                                             {"skipEmptyFields", "no"},
                                             {"maxFields", "0"},
                                             {"field", ""}}};
    for (const Unread& unread : aUnread) {
        const auto pValue = values.find(unread.pKey);
        if (pValue != values.end() && !equalIgnoringCase(pValue->second, unread.sHarmless))
            source.untold.push_back(std::string(unread.pKey) + "=" + pValue->second);
    }
}

std::string whyNotDelimited(const std::map<std::string, std::string, std::less<>>& values) {
    struct Admitted {
        const char* pKey;
        std::vector<std::string_view> values;
    };
    static const std::array<Admitted, 6> aAdmitted{{{"type", {"csv"}},
                                                    {"delimiter", {",", ";", "\t", "\\t", "tab"}},
                                                    {"quote", {"\"", "\\\"", "'\""}},
                                                    {"skipLines", {"0"}},
                                                    {"xyDms", {"no", "false"}},
                                                    {"decimalPoint", {"."}}}};
    for (const Admitted& admitted : aAdmitted) {
        const auto pValue = values.find(admitted.pKey);
        if (pValue != values.end() && !pValue->second.empty() &&
            std::find(admitted.values.begin(), admitted.values.end(), pValue->second) ==
                admitted.values.end()) {
            return std::string("it is a text with ") + admitted.pKey + "=" + pValue->second +
                   ", which is not read here; save it as a CSV file with commas and one line of headings";
        }
    }
    return {};
}

void readDelimited(const std::string& sText, ProjectSource& source) {
    constexpr std::array<std::array<const char*, 2>, 4> aColumns{{{"xField", "X_POSSIBLE_NAMES"},
                                                                  {"yField", "Y_POSSIBLE_NAMES"},
                                                                  {"zField", "Z_POSSIBLE_NAMES"},
                                                                  {"wktField", "GEOM_POSSIBLE_NAMES"}}};
    const auto values = parseQueryText(sText, source.sFile);
    const auto value = [&](std::string_view sKey) {
        const auto pFound = values.find(sKey);
        return pFound == values.end() ? std::string() : pFound->second;
    };
    for (const auto& [pKey, pOption] : aColumns)
        if (const std::string sColumn = value(pKey); !sColumn.empty())
            source.openOptions.emplace(pOption, sColumn);
    if (!lowerCase(value("detectTypes")).starts_with('n')) {
        source.openOptions.emplace("AUTODETECT_TYPE", "YES");
        source.openOptions.emplace("AUTODETECT_SIZE_LIMIT", "0"); // by all rows
    }
    source.openOptions.emplace("HEADERS", equalIgnoringCase(value("useHeader"), "no") ? "NO" : "YES");
    tellUnreadOptions(values, source);
    source.sCrs = value("crs");
    source.sEncoding = value("encoding");
    takeFilter(source, value("subset"));
    if (source.sWhyNot.empty())
        source.sWhyNot = whyNotDelimited(values);
}

void readGpx(const std::string& sText, ProjectSource& source) {
    const auto values = parseQueryText(sText, source.sFile);
    const auto pType = values.find("type");
    source.sDataset = pType == values.end() ? "" : pType->second + "s";
}

void readMemory(const std::string& /*sText*/, ProjectSource& source) {
    source.sWhyNot = "it is kept in the memory of QGIS, and its rows are not in the project; save it as a "
                     "file there";
}

struct Provider {
    std::string_view sName;
    void (*fnRead)(const std::string& sText, ProjectSource& source);
};

constexpr std::array<Provider, 8> aProviders{{{"ogr", &readOgr},
                                              {"gdal", &readRaster},
                                              {"mdal", &readMesh},
                                              {"spatialite", &readSpatialite},
                                              {"postgres", &readPostgres},
                                              {"delimitedtext", &readDelimited},
                                              {"gpx", &readGpx},
                                              {"memory", &readMemory}}};

} // namespace

ProjectSource projectSourceOf(std::string_view sProvider, const std::string& sText) {
    ProjectSource source;
    if (const auto* pProvider = findRow(aProviders, sProvider, &Provider::sName)) {
        pProvider->fnRead(sText, source);
    } else {
        source.sWhyNot = (sProvider.empty() ? "the project does not say which provider has its data"
                                            : "its data comes from the provider \"" + std::string(sProvider) +
                                                  "\", which is not read here") +
                         std::string("; save it as a file, and use that in the project");
    }
    return source;
}

} // namespace halvane::host::gdal
