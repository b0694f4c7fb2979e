#pragma once

#include "host/Subtypes.h"
#include "host/memory/Faults.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace halvane::host::memory {

class MemorySubtypes final : public GisSubtypes, private Scripted {
public:
    MemorySubtypes(std::string sFieldName, std::int32_t lDefaultCode)
        : sFieldName_(std::move(sFieldName)), lDefaultCode_(lDefaultCode) {}
    [[nodiscard]] static std::shared_ptr<MemorySubtypes> make(std::string sFieldName,
                                                              std::int32_t lDefaultCode);

    void addSubtype(std::int32_t lCode, std::string sName);
    /// Field names are matched ignoring case.
    void setDomain(std::int32_t lCode, std::string sFieldName, GisDomainPtr pDomain);
    void setDefaultValue(std::int32_t lCode, std::string sFieldName, Value vDefault);

    /// Whether there is at least one.
    [[nodiscard]] bool hasSubtypes() const override;
    [[nodiscard]] std::string subtypeFieldName() const override;
    [[nodiscard]] std::int32_t defaultSubtypeCode() const override;
    [[nodiscard]] std::int32_t subtypeCount() const override;
    [[nodiscard]] std::int32_t subtypeCode(std::int32_t lIndex) const override;
    /// @throws Failure HostFailure for an unknown code.
    [[nodiscard]] std::string subtypeName(std::int32_t lCode) const override;
    [[nodiscard]] GisDomainPtr domain(std::int32_t lCode, std::string_view sFieldName) const override;
    /// Empty where none was set.
    [[nodiscard]] Value defaultValue(std::int32_t lCode, std::string_view sFieldName) const override;

private:
    struct FieldSettings {
        std::int32_t lCode = 0;
        std::string sFieldName;
        GisDomainPtr pDomain;
        Value vDefault;
    };

    FieldSettings& settingsFor(std::int32_t lCode, std::string sFieldName);
    [[nodiscard]] const FieldSettings* findSettings(std::int32_t lCode, std::string_view sFieldName) const;

    std::string sFieldName_;
    std::int32_t lDefaultCode_;
    std::vector<std::pair<std::int32_t, std::string>> aSubtypes_;
    std::vector<FieldSettings> aSettings_;
};
using MemorySubtypesPtr = std::shared_ptr<MemorySubtypes>;

} // namespace halvane::host::memory
