#include "host/gdal/ReferenceDescription.h"

#include "collection/Numbers.h"
#include "collection/Text.h"
#include "host/gdal/Errors.h"
#include "host/gdal/ProjObjects.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace halvane::host::gdal {

namespace {

std::string nameOf(const PJ* pObject) {
    const char* pName = pObject == nullptr ? nullptr : proj_get_name(pObject);
    return pName == nullptr ? std::string() : upperCase(pName);
}

std::string unitText(const char* pName) {
    const std::string sName = pName == nullptr ? "" : upperCase(pName);
    return sName == "METRE" || sName == "METER" ? "METERS" : sName;
}

// The unit of an axis of a system's coordinates.
std::string axisUnit(const PJ& crs, int lAxis) {
    const ProjPtr pSystem(proj_crs_get_coordinate_system(projContext(), &crs));
    const char* pUnit = nullptr;
    if (pSystem == nullptr || lAxis >= proj_cs_get_axis_count(projContext(), pSystem.get()) ||
        proj_cs_get_axis_info(projContext(), pSystem.get(), lAxis, nullptr, nullptr, nullptr, nullptr, &pUnit,
                              nullptr, nullptr) == 0) {
        return {};
    }
    return unitText(pUnit);
}

std::optional<int> codeOf(const PJ& conversion) {
    const char* pAuthority = proj_get_id_auth_name(&conversion, 0);
    const char* pCode = proj_get_id_code(&conversion, 0);
    if (pAuthority == nullptr || pCode == nullptr || std::string_view(pAuthority) != "EPSG") {
        return std::nullopt;
    }
    const std::string_view sCode = pCode;
    int lCode = 0;
    std::from_chars(sCode.data(), sCode.data() + sCode.size(), lCode);
    return lCode;
}

ProjPtr conversionNamed(const std::string& sName) {
    const PJ_TYPE type = PJ_TYPE_CONVERSION;
    const std::unique_ptr<PJ_OBJ_LIST, decltype(&proj_list_destroy)> pList(
        proj_create_from_name(projContext(), "EPSG", sName.c_str(), &type, 1, 0, 1, nullptr),
        &proj_list_destroy);
    return ProjPtr(pList == nullptr || proj_list_get_count(pList.get()) == 0
                       ? nullptr
                       : proj_list_get(projContext(), pList.get(), 0));
}

// Numbers of zones follow from the conversions' codes, except for those that were registered out of turn.
std::optional<int> zoneNumber(int lCode, int lSeriesStart) {
    constexpr std::array<std::pair<int, int>, 9> aOutOfTurn{{{4436, 3702},
                                                             {4454, 3104},
                                                             {6197, 2111},
                                                             {6198, 2112},
                                                             {6199, 2113},
                                                             {6965, 2111},
                                                             {10408, 407},
                                                             {15302, 4100},
                                                             {15303, 1601}}};
    const auto pFound = std::find_if(aOutOfTurn.begin(), aOutOfTurn.end(),
                                     [&](const auto& pair) { return pair.first == lCode; });
    if (pFound != aOutOfTurn.end()) {
        return pFound->second;
    }
    const int lZone = lCode - lSeriesStart;
    return lZone >= 101 && lZone <= 5202 ? std::optional(lZone) : std::nullopt;
}

// Some registers write the number into the names of their systems: "..._FIPS_0405", "..._FIPS_4203_Feet".
std::optional<int> numberInName(std::string_view sName) {
    constexpr std::string_view sMark = "_FIPS_";
    const std::size_t lFound = sName.find(sMark);
    if (lFound == std::string_view::npos) {
        return std::nullopt;
    }
    const char* pFirst = sName.data() + lFound + sMark.size();
    int lNumber = 0;
    const auto [pEnd, code] = std::from_chars(pFirst, sName.data() + sName.size(), lNumber);
    return code == std::errc() && pEnd == pFirst + 4 ? std::optional(lNumber) : std::nullopt;
}

std::optional<int> statePlaneZone(const PJ& conversion, const PJ& system) {
    const std::string sName = proj_get_name(&conversion) == nullptr ? "" : proj_get_name(&conversion);
    if (const auto lNumber = numberInName(proj_get_name(&system) == nullptr ? "" : proj_get_name(&system))) {
        return lNumber;
    }
    if (sName.find(" CS27") != std::string::npos) {
        const auto lCode = codeOf(conversion);
        return lCode ? zoneNumber(*lCode, 10000) : std::nullopt;
    }
    if (!sName.starts_with("SPCS83 ")) {
        return std::nullopt;
    }
    // The zones in feet have codes of their own; the number is that of the same zone in metres.
    const std::string sMetric = sName.substr(0, sName.rfind(" (")) + " (meters)";
    const ProjPtr pMetric = conversionNamed(sMetric);
    const auto lCode = pMetric == nullptr ? std::nullopt : codeOf(*pMetric);
    return lCode ? zoneNumber(*lCode, 10030) : std::nullopt;
}

class Description {
public:
    void add(std::string_view sKeyword, std::string sValue) {
        // A line feed in a name would begin a line of its own.
        std::replace_if(
            sValue.begin(), sValue.end(), [](char cOne) { return static_cast<unsigned char>(cOne) < 0x20; },
            ' ');
        if (trimBlanks(sValue).empty()) {
            return;
        }
        if (!sText_.empty()) {
            sText_ += '\n';
        }
        sText_ += sKeyword;
        sText_.append(14 - std::min<std::size_t>(13, sKeyword.size()), ' ');
        sText_ += trimBlanks(sValue);
    }
    [[nodiscard]] std::string take() { return std::move(sText_); }

private:
    std::string sText_;
};

std::string parametersOfConversion(const PJ& conversion) {
    std::string sAll;
    const int lCount = proj_coordoperation_get_param_count(projContext(), &conversion);
    for (int lIndex = 0; lIndex < lCount; ++lIndex) {
        const char* pName = nullptr;
        const char* pUnit = nullptr;
        double dValue = 0;
        if (proj_coordoperation_get_param(projContext(), &conversion, lIndex, &pName, nullptr, nullptr,
                                          &dValue, nullptr, nullptr, &pUnit, nullptr, nullptr,
                                          nullptr) == 0) {
            continue;
        }
        sAll +=
            (sAll.empty() ? "" : "; ") + upperCase(pName) + " " + doubleText(dValue) + " " + unitText(pUnit);
    }
    return sAll;
}

std::string methodOf(const PJ& conversion) {
    const char* pName = nullptr;
    proj_coordoperation_get_method_info(projContext(), &conversion, &pName, nullptr, nullptr);
    return pName == nullptr ? std::string() : upperCase(pName);
}

std::string kindOf(const PJ& crs) {
    switch (proj_get_type(&crs)) {
    case PJ_TYPE_GEOGRAPHIC_2D_CRS:
    case PJ_TYPE_GEOGRAPHIC_3D_CRS:
        return "GEOGRAPHIC";
    case PJ_TYPE_GEOCENTRIC_CRS:
        return "GEOCENTRIC";
    default:
        return "LOCAL";
    }
}

int utmZone(const OGRSpatialReference& reference) {
    OGRSpatialReference horizontal(reference);
    horizontal.StripVertical();
    int lNorth = 0;
    const int lZone = horizontal.GetUTMZone(&lNorth);
    return lNorth != 0 ? lZone : -lZone;
}

// Nothing for a system that is not projected.
ProjPtr conversionOf(const PJ& horizontal) {
    return ProjPtr(proj_get_type(&horizontal) == PJ_TYPE_PROJECTED_CRS
                       ? proj_crs_get_coordoperation(projContext(), &horizontal)
                       : nullptr);
}

std::string parametersOf(const PJ& horizontal) {
    const ProjPtr pConversion = conversionOf(horizontal);
    return pConversion == nullptr ? "" : parametersOfConversion(*pConversion);
}

void addHorizontal(Description& description, const PJ& horizontal, const OGRSpatialReference& reference) {
    const ProjPtr pConversion = conversionOf(horizontal);
    const int lUtm = pConversion == nullptr ? 0 : utmZone(reference);
    const auto lStatePlane = pConversion == nullptr ? std::nullopt : statePlaneZone(*pConversion, horizontal);
    description.add("Projection", lUtm != 0                ? "UTM"
                                  : lStatePlane            ? "STATEPLANE"
                                  : pConversion != nullptr ? methodOf(*pConversion)
                                                           : kindOf(horizontal));
    description.add("Zone", lUtm != 0 ? std::to_string(lUtm) : "");
    description.add("Datum", nameOf(ProjPtr(proj_crs_get_datum_forced(projContext(), &horizontal)).get()));
    description.add("Spheroid", nameOf(ProjPtr(proj_get_ellipsoid(projContext(), &horizontal)).get()));
    description.add("Units", axisUnit(horizontal, 0));
    description.add("Fipszone", lStatePlane ? std::to_string(*lStatePlane) : "");
}

} // namespace

std::string describeReference(const OGRSpatialReference& reference) {
    const ErrorScope errors;
    ProjPtr pCrs = projOf(reference);
    if (pCrs == nullptr) {
        return {};
    }
    const ProjParts parts = partsOf(std::move(pCrs));
    Description description;
    if (parts.pHorizontal != nullptr) {
        addHorizontal(description, *parts.pHorizontal, reference);
    } else if (parts.pVertical != nullptr) {
        description.add("Projection", "VERTICAL");
        description.add(
            "Datum", nameOf(ProjPtr(proj_crs_get_datum_forced(projContext(), parts.pVertical.get())).get()));
    } else {
        return {};
    }
    const std::string sVertical =
        parts.pVertical != nullptr ? axisUnit(*parts.pVertical, 0) : axisUnit(*parts.pHorizontal, 2);
    description.add("Zunits", sVertical.empty() ? "NO" : sVertical);
    description.add("Xshift", "0.0");
    description.add("Yshift", "0.0");
    description.add("Parameters", parts.pHorizontal == nullptr ? "" : parametersOf(*parts.pHorizontal));
    return description.take();
}

} // namespace halvane::host::gdal
