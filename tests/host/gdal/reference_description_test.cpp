#include "SampleData.h"
#include "host/gdal/facts/ReferenceDescription.h"

#include "base/Text.h"
#include "host/gdal/facts/StatePlaneZones.h"
#include "host/gdal/source/Drivers.h"

#include <cpl_conv.h>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <proj.h>

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::Not;

OGRSpatialReference epsg(int lCode) {
    host::gdal::prepareLibrary();
    OGRSpatialReference reference;
    EXPECT_EQ(reference.importFromEPSG(lCode), OGRERR_NONE) << lCode;
    return reference;
}

std::vector<std::string> linesOf(const std::string& sText) {
    std::vector<std::string> lines;
    if (!sText.empty())
        Split(sText, "\n", lines);
    return lines;
}

struct Keyword {
    std::string_view sTest;
    std::string_view sSought; ///< whose position counts
    std::size_t nCut;
};

// Reads a description as its readers do: keywords in this order, letter case as written, a fixed cut.
std::map<std::string, std::string> readDescription(const std::string& sText) {
    constexpr std::array aKeywords{Keyword{"Projection", "Projection", 10},
                                   Keyword{"Zone", "zone", 4},
                                   Keyword{"Datum", "Datum", 5},
                                   Keyword{"Units", "Units", 5},
                                   Keyword{"Fipszone", "Fipszone", 7},
                                   Keyword{"Spheroid", "Spheroid", 7},
                                   Keyword{"Zunits", "Zunits", 5},
                                   Keyword{"Xshift", "Xshift", 5},
                                   Keyword{"Yshift", "Yshift", 5},
                                   Keyword{"Parameters", "Parameters", 9}};
    std::map<std::string, std::string> values;
    for (const std::string& sLine : linesOf(sText)) {
        for (const Keyword& keyword : aKeywords) {
            if (sLine.find(keyword.sTest) == std::string::npos)
                continue;
            // Positions count from 1; 0 stands for "not found".
            const std::size_t nFound = sLine.find(keyword.sSought);
            const std::size_t nPosition = nFound == std::string::npos ? 0 : nFound + 1;
            EXPECT_GE(sLine.size(), nPosition + keyword.nCut) << sLine;
            values[std::string(keyword.sTest)] = trimBlanks(sLine.substr(nPosition + keyword.nCut));
            break;
        }
    }
    return values;
}

TEST(ReferenceDescription, OfAUtmSystemHasItsZone) {
    EXPECT_THAT(
        linesOf(host::gdal::describeReference(epsg(26915))),
        ElementsAre("Projection    UTM", "Zone          15", "Datum         NORTH AMERICAN DATUM 1983",
                    "Spheroid      GRS 1980", "Units         METERS", "Zunits        NO", "Xshift        0.0",
                    "Yshift        0.0",
                    "Parameters    LATITUDE OF NATURAL ORIGIN 0 DEGREE; LONGITUDE OF NATURAL ORIGIN -93 "
                    "DEGREE; SCALE FACTOR AT NATURAL ORIGIN 0.9996 UNITY; FALSE EASTING 500000 METERS; "
                    "FALSE NORTHING 0 METERS"));
    EXPECT_EQ(readDescription(host::gdal::describeReference(epsg(32733)))["Zone"], "-33");
}

TEST(ReferenceDescription, OfAGeographicSystemHasNoParameters) {
    EXPECT_THAT(linesOf(host::gdal::describeReference(epsg(4326))),
                ElementsAre("Projection    GEOGRAPHIC", "Datum         WORLD GEODETIC SYSTEM 1984",
                            "Spheroid      WGS 84", "Units         DEGREE", "Zunits        NO",
                            "Xshift        0.0", "Yshift        0.0"));
    EXPECT_EQ(readDescription(host::gdal::describeReference(epsg(4978)))["Projection"], "GEOCENTRIC");
}

TEST(ReferenceDescription, OfAStatePlaneSystemHasItsZoneNumber) {
    const std::map<int, std::string> zones{
        {2277, "4203"},  // Texas Central 1983, feet
        {32139, "4203"}, // the same in metres
        {32039, "4203"}, // the same of 1927
        {26929, "101"},  // Alabama East
        {2204, "4100"},  // Tennessee of 1927
        {2205, "1601"},  // Kentucky North
        {2222, "201"},   // Arizona East, international feet
        {4455, "3702"},  // Pennsylvania South of 1927
        {32161, "5200"}, // Puerto Rico
    };
    for (const auto& [lCode, sZone] : zones) {
        auto values = readDescription(host::gdal::describeReference(epsg(lCode)));
        EXPECT_EQ(values["Fipszone"], sZone) << lCode;
        EXPECT_EQ(values["Projection"], "STATEPLANE") << lCode;
        EXPECT_FALSE(values.contains("Zone")) << lCode;
    }
    EXPECT_EQ(readDescription(host::gdal::describeReference(epsg(2277)))["Units"], "US SURVEY FOOT");
}

// The name, and the code, of the conversion of each projected system of the register.
std::map<std::string, std::set<int>> conversionsOfTheRegister() {
    std::map<std::string, std::set<int>> conversions;
    PROJ_STRING_LIST pCodes = proj_get_codes_from_database(nullptr, "EPSG", PJ_TYPE_PROJECTED_CRS, 1);
    for (PROJ_STRING_LIST pCode = pCodes; *pCode != nullptr; ++pCode) {
        const std::unique_ptr<PJ, decltype(&proj_destroy)> pCrs(
            proj_create_from_database(nullptr, "EPSG", *pCode, PJ_CATEGORY_CRS, 0, nullptr), &proj_destroy);
        const std::unique_ptr<PJ, decltype(&proj_destroy)> pConversion(
            proj_crs_get_coordoperation(nullptr, pCrs.get()), &proj_destroy);
        if (pConversion != nullptr && proj_get_id_code(pConversion.get(), 0) != nullptr) {
            conversions[proj_get_name(pConversion.get())].insert(
                std::stoi(proj_get_id_code(pConversion.get(), 0)));
        }
    }
    proj_string_list_destroy(pCodes);
    return conversions;
}

// The number that the code of a conversion in metres, or of 1927, has in it: those that were registered out
// of turn have none, but for the second seventh zone of California.
std::optional<int> numberOfCode(bool b1927, int lCode) {
    const int lNumber = lCode - (b1927 ? 10000 : 10030);
    return lNumber >= 101 && lNumber <= 5202 && lNumber != 408 ? std::optional(lNumber) : std::nullopt;
}

TEST(StatePlaneZones, AreThoseOfTheRegister) {
    int lCompared = 0;
    for (const auto& [sName, codes] : conversionsOfTheRegister()) {
        const bool b1927 = sName.find(" CS27") != std::string::npos;
        const bool b1983 = sName.starts_with("SPCS83 ");
        const auto lZone = host::gdal::statePlaneZone(sName);
        EXPECT_EQ(lZone.has_value(), b1927 || b1983) << sName;
        if (!b1927 && sName.find("(meter") == std::string::npos)
            continue;
        for (const int lCode : codes) {
            if (const auto lNumber = numberOfCode(b1927, lCode); lNumber && (b1927 || b1983)) {
                EXPECT_EQ(lZone, lNumber) << sName;
                ++lCompared;
            }
        }
    }
    EXPECT_GE(lCompared, 230);
}

TEST(StatePlaneZones, AreFoundInEitherSpellingOfTheUnit) {
    EXPECT_EQ(host::gdal::statePlaneZone("SPCS83 Texas Central zone (US Survey feet)"), 4203);
    EXPECT_EQ(host::gdal::statePlaneZone("SPCS83 Texas Central zone (US survey foot)"), 4203);
    EXPECT_EQ(host::gdal::statePlaneZone("SPCS83 Kentucky Single Zone (meter)"), 1600);
    EXPECT_EQ(host::gdal::statePlaneZone("Texas Central zone"), std::nullopt);
    EXPECT_EQ(host::gdal::statePlaneZone("SPCS83 Atlantis zone (meters)"), std::nullopt);
    EXPECT_EQ(host::gdal::statePlaneZone("SPCS83 "), std::nullopt);
}

// A state plane system as registers other than EPSG's and .prj files write it.
std::string planeNamed(const std::string& sName) {
    return "PROJCS[\"" + sName +
           "\",GEOGCS[\"GCS_North_American_1983\",DATUM[\"D_North_American_1983\",SPHEROID[\"GRS_1980\","
           "6378137.0,298.257222101]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],"
           "PROJECTION[\"Lambert_Conformal_Conic\"],PARAMETER[\"False_Easting\",6561666.666666666],"
           "PARAMETER[\"False_Northing\",1640416.666666667],PARAMETER[\"Central_Meridian\",-118.0],"
           "PARAMETER[\"Standard_Parallel_1\",34.03],PARAMETER[\"Standard_Parallel_2\",35.46],"
           "PARAMETER[\"Latitude_Of_Origin\",33.5],UNIT[\"Meter\",1.0]]";
}

TEST(ReferenceDescription, OfAStatePlaneSystemOfAnotherRegisterHasTheNumberInItsName) {
    auto values = readDescription(host::gdal::describeReference(
        systemOf(planeNamed("NAD_1983_StatePlane_Somewhere_V_FIPS_0405_Feet"))));
    EXPECT_EQ(values["Projection"], "STATEPLANE");
    EXPECT_EQ(values["Fipszone"], "405");
    EXPECT_EQ(values["Units"], "METERS");
    for (const char* pName : {"NAD_1983_StatePlane_FIPS_04", "NAD_1983_StatePlane_FIPS_x405",
                              "NAD_1983_StatePlane_FIPS_04051", "NAD_1983_StatePlane_FIPS_"}) {
        EXPECT_FALSE(
            readDescription(host::gdal::describeReference(systemOf(planeNamed(pName)))).contains("Fipszone"))
            << pName;
    }
}

TEST(ReferenceDescription, HasAZoneOnlyOfUtmInItsOwnCoordinates) {
    auto prefixed = readDescription(host::gdal::describeReference(epsg(4647))); // eastings begin with 32
    EXPECT_EQ(prefixed["Projection"], "TRANSVERSE MERCATOR");
    EXPECT_FALSE(prefixed.contains("Zone"));
    EXPECT_NE(prefixed["Parameters"].find("FALSE EASTING 32500000 METERS"), std::string::npos);
    EXPECT_FALSE(readDescription(host::gdal::describeReference(epsg(31467))).contains("Zone"));
}

TEST(ReferenceDescription, OfAVerticalSystemTellsItsUnitAsThatOfHeights) {
    auto values = readDescription(host::gdal::describeReference(epsg(6360)));
    EXPECT_EQ(values["Projection"], "VERTICAL");
    EXPECT_EQ(values["Datum"], "NORTH AMERICAN VERTICAL DATUM 1988");
    EXPECT_EQ(values["Zunits"], "US SURVEY FOOT");
    EXPECT_FALSE(values.contains("Units"));
    EXPECT_EQ(readDescription(host::gdal::describeReference(epsg(5773)))["Zunits"], "METERS");
}

TEST(ReferenceDescription, KeepsEachValueOnItsLine) {
    const std::string sText = host::gdal::describeReference(
        systemOf("GEOGCS[\"g\",DATUM[\"d\nZone 5\",SPHEROID[\"s\tt\",6378137,298]],PRIMEM[\"Greenwich\",0],"
                 "UNIT[\"Degree\",0.0174532925199433]]"));
    EXPECT_THAT(linesOf(sText), ::testing::Contains("Datum         D ZONE 5"));
    EXPECT_THAT(linesOf(sText), ::testing::Contains("Spheroid      S T"));
    EXPECT_THAT(linesOf(sText), ::testing::Each(Not(::testing::StartsWith("Z5"))));
    EXPECT_FALSE(readDescription(sText).contains("Zone"));
}

TEST(ReferenceDescription, TellsTheVerticalUnitOfCompoundAndThreeDimensionalSystems) {
    auto values = readDescription(host::gdal::describeReference(epsg(7405)));
    EXPECT_EQ(values["Zunits"], "METERS");
    EXPECT_EQ(values["Projection"], "TRANSVERSE MERCATOR");
    EXPECT_EQ(readDescription(host::gdal::describeReference(epsg(6349)))["Zunits"], "METERS");
    EXPECT_EQ(readDescription(host::gdal::describeReference(epsg(4979)))["Zunits"], "METERS");
}

TEST(ReferenceDescription, OfASystemWithoutACodeIsThatOfItsDefinition) {
    OGRSpatialReference reference;
    reference.importFromProj4("+proj=laea +lat_0=52 +lon_0=10 +x_0=1 +y_0=2 +ellps=GRS80 +units=km +no_defs");
    auto values = readDescription(host::gdal::describeReference(reference));
    EXPECT_EQ(values["Projection"], "LAMBERT AZIMUTHAL EQUAL AREA");
    EXPECT_EQ(values["Spheroid"], "GRS 1980");
    EXPECT_EQ(values["Units"], "KILOMETRE");
}

TEST(ReferenceDescription, OfNoSystemIsEmpty) {
    EXPECT_EQ(host::gdal::describeReference(OGRSpatialReference()), "");
}

// What the projection library says of a system in a form of its own.
nlohmann::json definitionOf(const OGRSpatialReference& reference) {
    char* pText = nullptr;
    EXPECT_EQ(reference.exportToPROJJSON(&pText, nullptr), OGRERR_NONE);
    const std::unique_ptr<char, decltype(&VSIFree)> pJson(pText, &VSIFree);
    return nlohmann::json::parse(pJson.get());
}

std::string unitOf(const nlohmann::json& unit) {
    const std::string sName = unit.is_string() ? unit.get<std::string>() : unit.at("name").get<std::string>();
    return sName == "metre" ? "METERS" : upperCase(sName);
}

std::string datumOf(const nlohmann::json& base) {
    if (base.contains("datum"))
        return upperCase(base.at("datum").at("name").get<std::string>());
    // Of an ensemble the description names the datum.
    return upperCase(replaceAll(base.at("datum_ensemble").at("name").get<std::string>(), " ensemble", ""));
}

std::string ellipsoidOf(const nlohmann::json& base) {
    const auto& owner = base.contains("datum") ? base.at("datum") : base.at("datum_ensemble");
    return upperCase(owner.at("ellipsoid").at("name").get<std::string>());
}

double parameterOf(const nlohmann::json& conversion, const std::string& sName) {
    for (const auto& parameter : conversion.at("parameters")) {
        if (parameter.at("name") == sName)
            return parameter.at("value").get<double>();
    }
    return -1;
}

void expectAgrees(const nlohmann::json& definition, std::map<std::string, std::string> values) {
    const auto& base = definition.contains("base_crs") ? definition.at("base_crs") : definition;
    EXPECT_EQ(values["Datum"], datumOf(base));
    EXPECT_EQ(values["Spheroid"], ellipsoidOf(base));
    EXPECT_EQ(values["Units"], unitOf(definition.at("coordinate_system").at("axis").at(0).at("unit")));
    if (!definition.contains("conversion")) {
        EXPECT_THAT(values["Projection"], ::testing::AnyOf("GEOGRAPHIC", "GEOCENTRIC"));
        return;
    }
    const auto& conversion = definition.at("conversion");
    const std::string sName = conversion.at("name").get<std::string>();
    const std::string sMethod = upperCase(conversion.at("method").at("name").get<std::string>());
    // Others have eastings that begin with the zone, and are called "UTM zone 32N with prefix" by some
    // registers.
    if (sName.starts_with("UTM zone ") && (sName.ends_with('N') || sName.ends_with('S'))) {
        const std::string sZone = sName.substr(9, sName.size() - 10);
        EXPECT_EQ(values["Zone"], (sName.back() == 'S' ? "-" : "") + sZone);
    }
    if (values["Projection"] == "UTM") {
        // Some national grids are zones of this system under another name.
        const int lZone = std::stoi(values["Zone"]);
        EXPECT_EQ(parameterOf(conversion, "Longitude of natural origin"), 6 * std::abs(lZone) - 183);
        EXPECT_EQ(parameterOf(conversion, "Scale factor at natural origin"), 0.9996);
        EXPECT_EQ(parameterOf(conversion, "False northing"), lZone > 0 ? 0 : 10'000'000);
    } else if (values.contains("Fipszone")) {
        EXPECT_TRUE(sName.starts_with("SPCS83") || sName.find("CS27") != std::string::npos) << sName;
    } else {
        EXPECT_EQ(values["Projection"], sMethod);
    }
    for (const auto& parameter : conversion.at("parameters")) {
        EXPECT_NE(values["Parameters"].find(upperCase(parameter.at("name").get<std::string>()) + " "),
                  std::string::npos);
    }
}

// Codes of projected and geographic systems: every tenth, and the first three of every method.
std::vector<int> sampleCodes() {
    PROJ_STRING_LIST pCodes = proj_get_codes_from_database(nullptr, "EPSG", PJ_TYPE_PROJECTED_CRS, 0);
    std::vector<int> sample;
    std::map<std::string, int> methods;
    int lNumber = 0;
    for (PROJ_STRING_LIST pCode = pCodes; *pCode != nullptr; ++pCode) {
        const std::unique_ptr<PJ, decltype(&proj_destroy)> pCrs(
            proj_create_from_database(nullptr, "EPSG", *pCode, PJ_CATEGORY_CRS, 0, nullptr), &proj_destroy);
        const std::unique_ptr<PJ, decltype(&proj_destroy)> pConversion(
            proj_crs_get_coordoperation(nullptr, pCrs.get()), &proj_destroy);
        const char* pMethod = nullptr;
        proj_coordoperation_get_method_info(nullptr, pConversion.get(), &pMethod, nullptr, nullptr);
        if (lNumber++ % 10 == 0 || ++methods[pMethod] <= 3)
            sample.push_back(std::stoi(*pCode));
    }
    proj_string_list_destroy(pCodes);
    EXPECT_GE(methods.size(), 35U);
    return sample;
}

TEST(ReferenceDescription, OfABroadSampleAgreesWithTheProjectionLibrary) {
    const std::vector<int> codes = sampleCodes();
    ASSERT_GE(codes.size(), 500U);
    for (const int lCode : codes) {
        SCOPED_TRACE(lCode);
        const OGRSpatialReference reference = epsg(lCode);
        const std::string sDescription = host::gdal::describeReference(reference);
        expectAgrees(definitionOf(reference), readDescription(sDescription));
        if (HasFailure()) {
            FAIL() << sDescription;
        }
    }
}

} // namespace
} // namespace halvane::tests
