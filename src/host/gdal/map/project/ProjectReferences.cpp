#include "host/gdal/map/project/ProjectReferences.h"

#include "base/Failure.h"

namespace halvane::host::gdal {

namespace {

bool isKnown(const ReferenceOverride& reference) {
    try {
        testDefinition(reference);
        return true;
    } catch (const Failure&) {
        return false;
    }
}

} // namespace

std::optional<ReferenceOverride> ProjectReferences::of(const std::string& sDefinition,
                                                       const MarkupElement& element) {
    if (sDefinition.empty())
        return std::nullopt;
    ReferenceOverride reference;
    reference.sPlace = reader_.placeOf(element).text();
    reference.sDefinition = sDefinition;
    reference.bUnlessSame = true;
    auto pKnown = known_.find(sDefinition);
    if (pKnown == known_.end())
        pKnown = known_.emplace(sDefinition, isKnown(reference)).first;
    return pKnown->second ? std::optional(std::move(reference)) : std::nullopt;
}

std::optional<ReferenceOverride> ProjectReferences::in(const std::optional<MarkupElement>& parent) {
    const auto element = parent ? parent->child("spatialrefsys") : std::nullopt;
    if (!element)
        return std::nullopt;
    // Codes of this authority are a person's own, and known on that person's machine alone.
    const std::string sCode = element->contentOf("authid");
    auto reference = sCode.starts_with("USER:") ? std::nullopt : of(sCode, *element);
    return reference ? reference : of(element->contentOf("wkt"), *element);
}

} // namespace halvane::host::gdal
