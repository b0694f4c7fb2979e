#include "host/memory/Subtypes.h"

#include "base/Failure.h"
#include "base/Text.h"

#include <algorithm>

namespace halvane::host::memory {

MemorySubtypesPtr MemorySubtypes::make(std::string sFieldName, std::int32_t lDefaultCode) {
    return std::make_shared<MemorySubtypes>(std::move(sFieldName), lDefaultCode);
}

void MemorySubtypes::addSubtype(std::int32_t lCode, std::string sName) {
    aSubtypes_.emplace_back(lCode, std::move(sName));
}

void MemorySubtypes::setDomain(std::int32_t lCode, std::string sFieldName, GisDomainPtr pDomain) {
    settingsFor(lCode, std::move(sFieldName)).pDomain = std::move(pDomain);
}

void MemorySubtypes::setDefaultValue(std::int32_t lCode, std::string sFieldName, Value vDefault) {
    settingsFor(lCode, std::move(sFieldName)).vDefault = std::move(vDefault);
}

bool MemorySubtypes::hasSubtypes() const {
    pass("GisSubtypes", "hasSubtypes");
    return !aSubtypes_.empty();
}

std::string MemorySubtypes::subtypeFieldName() const {
    pass("GisSubtypes", "subtypeFieldName");
    return sFieldName_;
}

std::int32_t MemorySubtypes::defaultSubtypeCode() const {
    pass("GisSubtypes", "defaultSubtypeCode");
    return lDefaultCode_;
}

std::int32_t MemorySubtypes::subtypeCount() const {
    pass("GisSubtypes", "subtypeCount");
    return static_cast<std::int32_t>(aSubtypes_.size());
}

std::int32_t MemorySubtypes::subtypeCode(std::int32_t lIndex) const {
    pass("GisSubtypes", "subtypeCode");
    if (lIndex < 0 || static_cast<std::size_t>(lIndex) >= aSubtypes_.size())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return aSubtypes_[static_cast<std::size_t>(lIndex)].first;
}

std::string MemorySubtypes::subtypeName(std::int32_t lCode) const {
    pass("GisSubtypes", "subtypeName");
    const auto found = std::find_if(aSubtypes_.begin(), aSubtypes_.end(),
                                    [lCode](const auto& subtype) { return subtype.first == lCode; });
    if (found == aSubtypes_.end())
        throw Failure(FailureNumber::HostFailure, "There is no subtype " + std::to_string(lCode));
    return found->second;
}

GisDomainPtr MemorySubtypes::domain(std::int32_t lCode, std::string_view sFieldName) const {
    pass("GisSubtypes", "domain");
    const FieldSettings* pSettings = findSettings(lCode, sFieldName);
    return pSettings == nullptr ? nullptr : pSettings->pDomain;
}

Value MemorySubtypes::defaultValue(std::int32_t lCode, std::string_view sFieldName) const {
    pass("GisSubtypes", "defaultValue");
    const FieldSettings* pSettings = findSettings(lCode, sFieldName);
    return pSettings == nullptr ? Value() : pSettings->vDefault;
}

MemorySubtypes::FieldSettings& MemorySubtypes::settingsFor(std::int32_t lCode, std::string sFieldName) {
    for (FieldSettings& settings : aSettings_) {
        if (settings.lCode == lCode && equalIgnoringCase(settings.sFieldName, sFieldName))
            return settings;
    }
    return aSettings_.emplace_back(FieldSettings{lCode, std::move(sFieldName), nullptr, {}});
}

const MemorySubtypes::FieldSettings* MemorySubtypes::findSettings(std::int32_t lCode,
                                                                  std::string_view sFieldName) const {
    const auto found = std::find_if(aSettings_.begin(), aSettings_.end(), [&](const FieldSettings& settings) {
        return settings.lCode == lCode && equalIgnoringCase(settings.sFieldName, sFieldName);
    });
    return found == aSettings_.end() ? nullptr : &*found;
}

} // namespace halvane::host::memory
