// References by their codes, and what the register says of them.

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/facts/ProjObjects.h"
#include "host/gdal/facts/SpatialReference.h"
#include "host/gdal/facts/Transformation.h"
#include "host/gdal/source/Errors.h"

#include <algorithm>
#include <optional>
#include <string>

namespace halvane::host::gdal {

namespace {

bool isCodeText(std::string_view sText) {
    const auto isOfCode = [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
               c == '.' || c == '-';
    };
    return !sText.empty() && std::all_of(sText.begin(), sText.end(), isOfCode);
}

bool isInRegister(const std::string& sAuthority, const std::string& sCode) {
    return ProjPtr(proj_create_from_database(projContext(), sAuthority.c_str(), sCode.c_str(),
                                             PJ_CATEGORY_CRS, 0, nullptr)) != nullptr;
}

// @param sCode found in the register, so that nothing else is looked for under it.
std::optional<OGRSpatialReference> systemOf(const std::string& sCode) {
    const ErrorScope errors;
    OGRSpatialReference reference;
    if (reference.SetFromUserInput(sCode.c_str(),
                                   OGRSpatialReference::SET_FROM_USER_INPUT_LIMITATIONS_get()) != OGRERR_NONE)
        return std::nullopt;
    reference.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return reference;
}

bool isSwapped(const OGRSpatialReference& reference) {
    const auto& mapping = reference.GetDataAxisToSRSAxisMapping();
    return !mapping.empty() && mapping.front() == 2;
}

} // namespace

GisSpatialReferencePtr registeredReference(std::string_view sAuthorityCode) {
    const auto nColon = sAuthorityCode.find(':');
    const std::string sAuthority = upperCase(sAuthorityCode.substr(0, nColon));
    const std::string sCode(nColon == std::string_view::npos ? "" : sAuthorityCode.substr(nColon + 1));
    const std::string sShown = "\"" + std::string(sAuthorityCode.substr(0, 100)) + "\"";
    if (!isCodeText(sAuthority) || !isCodeText(sCode))
        throw Failure(FailureNumber::HostFailure,
                      sShown + " is no code of a spatial reference, as \"EPSG:4258\" is one");
    if (!isRegisterReadable())
        throw Failure(FailureNumber::HostFailure,
                      "the register of coordinate systems (proj.db) cannot be read; install the data of the "
                      "PROJ library, let this user read it, or name its folder in PROJ_DATA");
    const auto reference =
        isInRegister(sAuthority, sCode) ? systemOf(sAuthority + ":" + sCode) : std::nullopt;
    if (!reference)
        throw Failure(FailureNumber::HostFailure, "the register of coordinate systems has no " + sShown);
    OGRSpatialReference horizontal(*reference);
    horizontal.StripVertical();
    if (horizontal.IsGeographic() == 0 && horizontal.IsProjected() == 0)
        throw Failure(FailureNumber::HostFailure, sShown + " tells no positions on a map");
    return makeSpatialReference(&*reference, std::nullopt, {});
}

std::string GdalSpatialReference::authorityCode() const {
    return codeOf(reference_);
}

bool GdalSpatialReference::isNorthFirst() const {
    // Many formats keep the code and lose the order of the axes.
    const std::string sCode = authorityCode();
    const auto known = sCode.empty() ? std::nullopt : systemOf(sCode);
    return isSwapped(known ? *known : reference_);
}

GisTransformationPtr GdalSpatialReference::transformationTo(const GisSpatialReference& target) const {
    const auto* const pTarget = dynamic_cast<const GdalSpatialReference*>(&target);
    if (pTarget == nullptr)
        throw Failure(FailureNumber::InvalidProcedureCall, "The reference is not one of this host");
    const ErrorScope errors;
    if (haveSameCoordinates(reference_, pTarget->reference_))
        return nullptr;
    return std::make_shared<GdalTransformation>(reference_, pTarget->reference_);
}

} // namespace halvane::host::gdal
