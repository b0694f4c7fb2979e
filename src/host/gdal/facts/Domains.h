#pragma once

#include "host/Domains.h"
#include "host/Fields.h"
#include "host/gdal/source/HandlePool.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::host::gdal {

enum class DomainKind : std::int32_t { Range = 1, CodedValue = 2, Text = 3 };

struct DomainFacts {
    std::string sName;
    std::string sDescription;
    DomainKind kind = DomainKind::CodedValue;
    FieldType fieldType = FieldType::Integer;
    /// The source's own codes: 0 the default value, then sum and geometry-weighted, duplicate and
    /// geometry ratio.
    std::int32_t lMergePolicy = 0;
    std::int32_t lSplitPolicy = 0;
    Value vMin = Null{};
    Value vMax = Null{};
    std::vector<CodedValue> codes; ///< in the order in which they were defined
};

class GdalDomain : public GisDomain {
public:
    explicit GdalDomain(DomainFacts facts) : facts_(std::move(facts)) {}

    [[nodiscard]] std::string name() const override { return facts_.sName; }
    [[nodiscard]] std::string description() const override { return facts_.sDescription; }
    [[nodiscard]] std::int32_t fieldType() const override {
        return static_cast<std::int32_t>(facts_.fieldType);
    }
    [[nodiscard]] std::int32_t mergePolicy() const override { return facts_.lMergePolicy; }
    [[nodiscard]] std::int32_t splitPolicy() const override { return facts_.lSplitPolicy; }
    [[nodiscard]] std::int32_t domainType() const override { return static_cast<std::int32_t>(facts_.kind); }
    [[nodiscard]] Value minValue() const override;
    [[nodiscard]] Value maxValue() const override;
    [[nodiscard]] std::int32_t codeCount() const override;
    [[nodiscard]] CodedValue code(std::int32_t lIndex) const override;

private:
    void requireRange() const;

    DomainFacts facts_;
};

using DomainList = std::vector<GisDomainPtr>;

class GdalEnumDomain : public GisEnumDomain {
public:
    explicit GdalEnumDomain(DomainList domains) : domains_(std::move(domains)) {}
    [[nodiscard]] GisDomainPtr next() override;

private:
    DomainList domains_;
    std::size_t nNext_ = 0;
};

/// The domains that a data source holds, in its order.
[[nodiscard]] DomainList domainsOf(HandlePool& pool, const SourcePtr& pSource);

/// The domain of that name, ignoring case; nothing when there is none.
[[nodiscard]] GisDomainPtr findDomain(const DomainList& domains, std::string_view sName);

} // namespace halvane::host::gdal
