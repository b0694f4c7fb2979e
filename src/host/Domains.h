#pragma once

// What values a field may have.

#include "base/Value.h"
#include "host/Forward.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane::host {

struct CodedValue {
    Value vCode;
    std::string sName;
};

class GisDomain : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisDomain"; }
    [[nodiscard]] virtual std::string name() const = 0;
    [[nodiscard]] virtual std::string description() const = 0;
    /// A FieldType code.
    [[nodiscard]] virtual std::int32_t fieldType() const = 0;
    [[nodiscard]] virtual std::int32_t mergePolicy() const = 0;
    [[nodiscard]] virtual std::int32_t splitPolicy() const = 0;
    /// 1 range, 2 coded values, 3 text.
    [[nodiscard]] virtual std::int32_t domainType() const = 0;
    /// Range domains only. @throws Failure ActionNotSupported otherwise.
    [[nodiscard]] virtual Value minValue() const = 0;
    [[nodiscard]] virtual Value maxValue() const = 0;
    /// Coded-value domains only; 0 otherwise.
    [[nodiscard]] virtual std::int32_t codeCount() const = 0;
    [[nodiscard]] virtual CodedValue code(std::int32_t lIndex) const = 0;
};

class GisEnumDomain : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisEnumDomain"; }
    [[nodiscard]] virtual GisDomainPtr next() = 0;
};

/// A workspace seen as a holder of domains.
class GisWorkspaceDomains : public virtual Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisWorkspaceDomains"; }
    [[nodiscard]] virtual GisEnumDomainPtr domains() const = 0;
};

} // namespace halvane::host
