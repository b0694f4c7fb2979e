#include "host/gdal/ReferenceDescription.h"

#include "collection/Numbers.h"
#include "collection/Text.h"
#include "host/gdal/Errors.h"

#include <cpl_conv.h>
#include <proj.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace halvane::host::gdal {

namespace {

struct FreeContext {
    void operator()(PJ_CONTEXT* pContext) const { proj_context_destroy(pContext); }
};
struct FreeProj {
    void operator()(PJ* pProj) const { proj_destroy(pProj); }
};
using ProjPtr = std::unique_ptr<PJ, FreeProj>;

// One for each thread: a context opens the library's database, which takes longer than any question to it.
PJ_CONTEXT* context() {
    thread_local const std::unique_ptr<PJ_CONTEXT, FreeContext> pContext = [] {
        std::unique_ptr<PJ_CONTEXT, FreeContext> pNew(proj_context_create());
        proj_log_level(pNew.get(), PJ_LOG_NONE);
        proj_context_set_enable_network(pNew.get(), 0);
        return pNew;
    }();
    return pContext.get();
}

ProjPtr toProj(const OGRSpatialReference& reference) {
    const char* pAuthority = reference.GetAuthorityName(nullptr);
    const char* pCode = reference.GetAuthorityCode(nullptr);
    if (pAuthority != nullptr && pCode != nullptr) {
        // Only the database knows the number of a system's conversion.
        ProjPtr pKnown(proj_create_from_database(context(), pAuthority, pCode, PJ_CATEGORY_CRS, 0, nullptr));
        if (pKnown != nullptr) {
            return pKnown;
        }
    }
    char* pText = nullptr;
    const std::array<const char*, 2> aOptions{"FORMAT=WKT2_2019", nullptr};
    reference.exportToWkt(&pText, aOptions.data());
    const std::unique_ptr<char, decltype(&VSIFree)> pWkt(pText, &VSIFree);
    return ProjPtr(pWkt == nullptr ? nullptr : proj_create(context(), pWkt.get()));
}

std::string nameOf(const PJ* pObject) {
    const char* pName = pObject == nullptr ? nullptr : proj_get_name(pObject);
    return pName == nullptr ? std::string() : upperCase(pName);
}

std::string unitText(const char* pName) {
    const std::string sName = pName == nullptr ? "" : upperCase(pName);
    return sName == "METRE" ? "METERS" : sName;
}

// The unit of an axis of a system's coordinates.
std::string axisUnit(const PJ& crs, int lAxis) {
    const ProjPtr pSystem(proj_crs_get_coordinate_system(context(), &crs));
    const char* pUnit = nullptr;
    if (pSystem == nullptr || lAxis >= proj_cs_get_axis_count(context(), pSystem.get()) ||
        proj_cs_get_axis_info(context(), pSystem.get(), lAxis, nullptr, nullptr, nullptr, nullptr, &pUnit,
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
        proj_create_from_name(context(), "EPSG", sName.c_str(), &type, 1, 0, 1, nullptr), &proj_list_destroy);
    return ProjPtr(pList == nullptr || proj_list_get_count(pList.get()) == 0
                       ? nullptr
                       : proj_list_get(context(), pList.get(), 0));
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

std::optional<int> statePlaneZone(const PJ& conversion) {
    const std::string sName = proj_get_name(&conversion) == nullptr ? "" : proj_get_name(&conversion);
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
    void add(std::string_view sKeyword, std::string_view sValue) {
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

std::string parametersOf(const PJ& conversion) {
    std::string sAll;
    const int lCount = proj_coordoperation_get_param_count(context(), &conversion);
    for (int lIndex = 0; lIndex < lCount; ++lIndex) {
        const char* pName = nullptr;
        const char* pUnit = nullptr;
        double dValue = 0;
        if (proj_coordoperation_get_param(context(), &conversion, lIndex, &pName, nullptr, nullptr, &dValue,
                                          nullptr, nullptr, &pUnit, nullptr, nullptr, nullptr) == 0) {
            continue;
        }
        sAll +=
            (sAll.empty() ? "" : "; ") + upperCase(pName) + " " + doubleText(dValue) + " " + unitText(pUnit);
    }
    return sAll;
}

std::string methodOf(const PJ& conversion) {
    const char* pName = nullptr;
    proj_coordoperation_get_method_info(context(), &conversion, &pName, nullptr, nullptr);
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

struct Systems {
    ProjPtr pHorizontal;
    ProjPtr pVertical;
};

Systems split(ProjPtr pCrs) {
    if (proj_get_type(pCrs.get()) == PJ_TYPE_BOUND_CRS) {
        pCrs.reset(proj_get_source_crs(context(), pCrs.get()));
    }
    if (pCrs == nullptr || proj_get_type(pCrs.get()) != PJ_TYPE_COMPOUND_CRS) {
        return {std::move(pCrs), nullptr};
    }
    Systems systems{ProjPtr(proj_crs_get_sub_crs(context(), pCrs.get(), 0)),
                    ProjPtr(proj_crs_get_sub_crs(context(), pCrs.get(), 1))};
    if (systems.pHorizontal != nullptr && proj_get_type(systems.pHorizontal.get()) == PJ_TYPE_BOUND_CRS) {
        systems.pHorizontal.reset(proj_get_source_crs(context(), systems.pHorizontal.get()));
    }
    return systems;
}

int utmZone(const OGRSpatialReference& reference) {
    OGRSpatialReference horizontal(reference);
    horizontal.StripVertical();
    int lNorth = 0;
    const int lZone = horizontal.GetUTMZone(&lNorth);
    return lNorth != 0 ? lZone : -lZone;
}

} // namespace

std::string describeReference(const OGRSpatialReference& reference) {
    const ErrorScope errors;
    ProjPtr pCrs = toProj(reference);
    if (pCrs == nullptr) {
        return {};
    }
    const Systems systems = split(std::move(pCrs));
    if (systems.pHorizontal == nullptr) {
        return {};
    }
    const PJ& horizontal = *systems.pHorizontal;
    const ProjPtr pConversion(proj_get_type(&horizontal) == PJ_TYPE_PROJECTED_CRS
                                  ? proj_crs_get_coordoperation(context(), &horizontal)
                                  : nullptr);
    const int lUtm = pConversion == nullptr ? 0 : utmZone(reference);
    const auto lStatePlane = pConversion == nullptr ? std::nullopt : statePlaneZone(*pConversion);
    Description description;
    description.add("Projection", lUtm != 0                ? "UTM"
                                  : lStatePlane            ? "STATEPLANE"
                                  : pConversion != nullptr ? methodOf(*pConversion)
                                                           : kindOf(horizontal));
    description.add("Zone", lUtm != 0 ? std::to_string(lUtm) : "");
    description.add("Datum", nameOf(ProjPtr(proj_crs_get_datum_forced(context(), &horizontal)).get()));
    description.add("Spheroid", nameOf(ProjPtr(proj_get_ellipsoid(context(), &horizontal)).get()));
    description.add("Units", axisUnit(horizontal, 0));
    description.add("Fipszone", lStatePlane ? std::to_string(*lStatePlane) : "");
    const std::string sVertical =
        systems.pVertical != nullptr ? axisUnit(*systems.pVertical, 0) : axisUnit(horizontal, 2);
    description.add("Zunits", sVertical.empty() ? "NO" : sVertical);
    description.add("Xshift", "0.0");
    description.add("Yshift", "0.0");
    description.add("Parameters", pConversion == nullptr ? "" : parametersOf(*pConversion));
    return description.take();
}

} // namespace halvane::host::gdal
