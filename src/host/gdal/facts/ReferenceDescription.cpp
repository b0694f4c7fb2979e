#include "host/gdal/facts/ReferenceDescription.h"

#include "base/Numbers.h"
#include "base/Text.h"
#include "host/gdal/facts/ProjObjects.h"
#include "host/gdal/facts/StatePlaneZones.h"
#include "host/gdal/source/Errors.h"

#include <algorithm>
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
                              nullptr, nullptr) == 0)
        return {};
    return unitText(pUnit);
}

// Some registers write the number into the names of their systems: "..._FIPS_0405", "..._FIPS_4203_Feet".
std::optional<int> numberInName(std::string_view sName) {
    constexpr std::string_view sMark = "_FIPS_";
    const std::size_t nFound = sName.find(sMark);
    if (nFound == std::string_view::npos)
        return std::nullopt;
    const char* pFirst = sName.data() + nFound + sMark.size();
    int lNumber = 0;
    const auto [pEnd, code] = std::from_chars(pFirst, sName.data() + sName.size(), lNumber);
    return code == std::errc() && pEnd == pFirst + 4 ? std::optional(lNumber) : std::nullopt;
}

std::optional<int> zoneOf(const PJ& conversion, const PJ& system) {
    if (const auto lNumber = numberInName(proj_get_name(&system) == nullptr ? "" : proj_get_name(&system)))
        return lNumber;
    const char* pName = proj_get_name(&conversion);
    return pName == nullptr ? std::nullopt : statePlaneZone(pName);
}

class Description {
public:
    void add(std::string_view sKeyword, std::string sValue) {
        // A line feed in a name would begin a line of its own.
        const auto bControl = [](char cOne) { return static_cast<unsigned char>(cOne) < 0x20; };
        std::replace_if(sValue.begin(), sValue.end(), bControl, ' ');
        if (trimBlanks(sValue).empty())
            return;
        if (!sText_.empty())
            sText_ += '\n';
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
                                          &dValue, nullptr, nullptr, &pUnit, nullptr, nullptr, nullptr) == 0)
            continue;
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
    const auto lStatePlane = pConversion == nullptr ? std::nullopt : zoneOf(*pConversion, horizontal);
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
    if (pCrs == nullptr)
        return {};
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
