#include "host/memory/Domain.h"

#include "base/Failure.h"

namespace halvane::host::memory {

namespace {

constexpr std::int32_t lRangeDomain = 1;
constexpr std::int32_t lCodedDomain = 2;

} // namespace

MemoryDomain::MemoryDomain(std::string sName, std::int32_t lFieldType, std::int32_t lDomainType)
    : sName_(std::move(sName)), lFieldType_(lFieldType), lDomainType_(lDomainType) {}

MemoryDomainPtr MemoryDomain::coded(std::string sName, FieldType type, std::vector<CodedValue> aCodes) {
    auto pDomain = ofType(std::move(sName), static_cast<std::int32_t>(type), lCodedDomain);
    pDomain->aCodes_ = std::move(aCodes);
    return pDomain;
}

MemoryDomainPtr MemoryDomain::range(std::string sName, FieldType type, Value vMin, Value vMax) {
    auto pDomain = ofType(std::move(sName), static_cast<std::int32_t>(type), lRangeDomain);
    pDomain->vMin_ = std::move(vMin);
    pDomain->vMax_ = std::move(vMax);
    return pDomain;
}

MemoryDomainPtr MemoryDomain::ofType(std::string sName, std::int32_t lFieldType, std::int32_t lDomainType) {
    return std::make_shared<MemoryDomain>(std::move(sName), lFieldType, lDomainType);
}

void MemoryDomain::setPolicies(std::int32_t lMerge, std::int32_t lSplit) {
    lMergePolicy_ = lMerge;
    lSplitPolicy_ = lSplit;
}

std::string MemoryDomain::name() const {
    pass("GisDomain", "name");
    return sName_;
}

std::string MemoryDomain::description() const {
    pass("GisDomain", "description");
    return sDescription_;
}

std::int32_t MemoryDomain::fieldType() const {
    pass("GisDomain", "fieldType");
    return lFieldType_;
}

std::int32_t MemoryDomain::mergePolicy() const {
    pass("GisDomain", "mergePolicy");
    return lMergePolicy_;
}

std::int32_t MemoryDomain::splitPolicy() const {
    pass("GisDomain", "splitPolicy");
    return lSplitPolicy_;
}

std::int32_t MemoryDomain::domainType() const {
    pass("GisDomain", "domainType");
    return lDomainType_;
}

Value MemoryDomain::minValue() const {
    pass("GisDomain", "minValue");
    requireRange();
    return vMin_;
}

Value MemoryDomain::maxValue() const {
    pass("GisDomain", "maxValue");
    requireRange();
    return vMax_;
}

std::int32_t MemoryDomain::codeCount() const {
    pass("GisDomain", "codeCount");
    return static_cast<std::int32_t>(aCodes_.size());
}

CodedValue MemoryDomain::code(std::int32_t lIndex) const {
    pass("GisDomain", "code");
    if (lIndex < 0 || static_cast<std::size_t>(lIndex) >= aCodes_.size())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return aCodes_[static_cast<std::size_t>(lIndex)];
}

void MemoryDomain::requireRange() const {
    if (lDomainType_ != lRangeDomain)
        throw Failure::of(FailureNumber::ActionNotSupported);
}

} // namespace halvane::host::memory
