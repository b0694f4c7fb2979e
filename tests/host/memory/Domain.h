#pragma once

#include "host/Domains.h"
#include "host/Fields.h"
#include "host/memory/Faults.h"

#include <memory>
#include <string>
#include <vector>

namespace halvane::host::memory {

class MemoryDomain final : public GisDomain, private Scripted {
public:
    [[nodiscard]] static std::shared_ptr<MemoryDomain> coded(std::string sName, FieldType type,
                                                             std::vector<CodedValue> aCodes);
    [[nodiscard]] static std::shared_ptr<MemoryDomain> range(std::string sName, FieldType type, Value vMin,
                                                             Value vMax);
    /// A domain of any type code, for codes that have no meaning too.
    [[nodiscard]] static std::shared_ptr<MemoryDomain> ofType(std::string sName, std::int32_t lFieldType,
                                                              std::int32_t lDomainType);
    MemoryDomain(std::string sName, std::int32_t lFieldType, std::int32_t lDomainType);

    void setDescription(std::string sDescription) { sDescription_ = std::move(sDescription); }
    void setPolicies(std::int32_t lMerge, std::int32_t lSplit);

    [[nodiscard]] std::string name() const override;
    [[nodiscard]] std::string description() const override;
    [[nodiscard]] std::int32_t fieldType() const override;
    [[nodiscard]] std::int32_t mergePolicy() const override;
    [[nodiscard]] std::int32_t splitPolicy() const override;
    [[nodiscard]] std::int32_t domainType() const override;
    [[nodiscard]] Value minValue() const override;
    [[nodiscard]] Value maxValue() const override;
    [[nodiscard]] std::int32_t codeCount() const override;
    [[nodiscard]] CodedValue code(std::int32_t lIndex) const override;

private:
    void requireRange() const;

    std::string sName_;
    std::string sDescription_;
    std::int32_t lFieldType_;
    std::int32_t lDomainType_;
    std::int32_t lMergePolicy_ = 0;
    std::int32_t lSplitPolicy_ = 0;
    Value vMin_;
    Value vMax_;
    std::vector<CodedValue> aCodes_;
};
using MemoryDomainPtr = std::shared_ptr<MemoryDomain>;

} // namespace halvane::host::memory
