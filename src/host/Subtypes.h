#pragma once

// The subtypes of a feature class, with the domains and the default values of its fields.

#include "base/Value.h"
#include "host/Forward.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane::host {

class GisSubtypes : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisSubtypes"; }
    [[nodiscard]] virtual bool hasSubtypes() const = 0;
    [[nodiscard]] virtual std::string subtypeFieldName() const = 0;
    [[nodiscard]] virtual std::int32_t defaultSubtypeCode() const = 0;
    /// Subtypes in the order of their enumeration.
    [[nodiscard]] virtual std::int32_t subtypeCount() const = 0;
    [[nodiscard]] virtual std::int32_t subtypeCode(std::int32_t lIndex) const = 0;
    [[nodiscard]] virtual std::string subtypeName(std::int32_t lCode) const = 0;
    /// Nothing where the field has no domain in that subtype.
    [[nodiscard]] virtual GisDomainPtr domain(std::int32_t lCode, std::string_view sFieldName) const = 0;
    [[nodiscard]] virtual Value defaultValue(std::int32_t lCode, std::string_view sFieldName) const = 0;
};

} // namespace halvane::host
