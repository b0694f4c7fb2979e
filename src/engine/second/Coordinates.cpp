#include "engine/second/Coordinates.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace halvane {

namespace {

TableSpace spaceOf(const host::GisTablePtr& pTable, const NodeSpace& space) {
    host::GisSpatialReferencePtr pOwn = referenceOf(pTable);
    if (space.pReference == nullptr)
        return {nullptr, std::move(pOwn)};
    if (pOwn == nullptr)
        throw Failure(FailureNumber::ObjectVariableNotSet,
                      "the data tells no spatial reference, so that its shapes cannot be brought to " +
                          space.sCode + "; give it one in the map document");
    return {pOwn->transformationTo(*space.pReference), space.pReference};
}

} // namespace

bool TableSpace::isNorthFirst() const {
    if (!bNorthFirst) {
        if (pReference == nullptr)
            throw Failure(FailureNumber::ObjectVariableNotSet,
                          "the data tells no spatial reference, so that the order of its authority is not "
                          "known; name one by h:Crs, or write h:Axes=\"xy\"");
        bNorthFirst = pReference->isNorthFirst();
    }
    return *bNorthFirst;
}

const std::string& TableSpace::code() const {
    if (!sCode)
        sCode = pReference == nullptr ? std::string() : pReference->authorityCode();
    return *sCode;
}

const TableSpace& Coordinates::of(const host::GisTablePtr& pTable, const NodeSpace& space,
                                  std::uint64_t nGeneration) {
    auto known = std::ranges::find_if(known_, [&](const Known& one) {
        return one.pTable == pTable && one.sTarget == space.sCode && one.nGeneration == nGeneration;
    });
    if (known == known_.end()) {
        // Kept once it is known: who asks again after another failure is not to find half of it.
        Known one{pTable, space.sCode, nGeneration, {}, {}};
        try {
            one.space = spaceOf(pTable, space);
        } catch (const Failure& failure) {
            one.failure = failure;
        }
        constexpr std::size_t nMostKept = 64;
        if (known_.size() >= nMostKept)
            known_.pop_front();
        known_.push_back(std::move(one));
        known = std::prev(known_.end());
    }
    if (known->failure)
        throw Failure(*known->failure);
    return known->space;
}

host::GisSpatialReferencePtr referenceOf(const host::GisTablePtr& pTable) {
    const auto* const pClass = dynamic_cast<const host::GisFeatureClass*>(pTable.get());
    return pClass == nullptr ? nullptr : pClass->spatialReference();
}

} // namespace halvane
