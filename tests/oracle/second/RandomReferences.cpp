#include "oracle/second/RandomReferences.h"

#include "base/Failure.h"

#include <map>

namespace halvane::oracle {

using host::memory::MemorySpatialReference;
using host::memory::MemorySpatialReferencePtr;
using host::memory::PlaceInWorld;

namespace {

/// Scales are powers of two, so that what is exact in one reference is so in the others.
MemorySpatialReferencePtr referenceAt(const PlaceInWorld& place, const std::string& sCode, bool bNorthFirst) {
    const auto pReference = MemorySpatialReference::make("");
    pReference->setPlace(place);
    pReference->setCode(sCode, bNorthFirst);
    return pReference;
}

} // namespace

host::GisSpatialReferencePtr registeredReference(std::string_view sCode) {
    static const std::map<std::string, MemorySpatialReferencePtr, std::less<>> references{
        {"OGC:CRS84", referenceAt({8, 4, 0.5}, "OGC:CRS84", false)},
        {"EPSG:4258", referenceAt({2.5, 1.25, 0.25}, "EPSG:4258", true)},
        {"EPSG:25832", referenceAt({0, 0, 1}, "EPSG:25832", false)},
        {"LOCAL:1", referenceAt({-3.5, 16, 4}, "", false)}}; // of a host that knows it and not its name
    const auto found = references.find(sCode);
    if (found == references.end())
        throw Failure(FailureNumber::DocumentFailure,
                      "no register has the reference \"" + std::string(sCode) + "\"");
    return found->second;
}

std::string someCode(Random& random) {
    return random.oneOf({"EPSG:4258", "EPSG:4258", "EPSG:25832", "LOCAL:1", "OGC:CRS84"});
}

void placeInWorld(Random& random, MemorySpatialReference& reference) {
    reference.setCode(random.oneOf({"", "EPSG:25832", "EPSG:4258", "LOCAL"}), random.chance(40));
    if (random.chance(30))
        reference.setPlace({100.5, -20.25, 2});
    else if (random.chance(15))
        reference.setPlace({999'996, 0, 1}); // the easternmost points have no place elsewhere
}

} // namespace halvane::oracle
