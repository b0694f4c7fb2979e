#pragma once

// What coordinates mean, and where they may lie.

#include "base/Value.h"
#include "host/Forward.h"

#include <optional>
#include <string>
#include <string_view>

namespace halvane::host {

struct XyDomain {
    double dXMin = 0, dYMin = 0, dXMax = 0, dYMax = 0;
    double dFalseX = 0, dFalseY = 0, dScale = 0;
};
/// A Z or M domain.
struct MeasureDomain {
    double dMin = 0, dMax = 0;
    double dFalseOrigin = 0, dScale = 0;
};

class GisSpatialReference : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisSpatialReference"; }
    /// Nothing where the reference has no such domain.
    [[nodiscard]] virtual std::optional<XyDomain> xyDomain() const = 0;
    [[nodiscard]] virtual std::optional<MeasureDomain> zDomain() const = 0;
    [[nodiscard]] virtual std::optional<MeasureDomain> mDomain() const = 0;
    /// One keyword and its value a line, lines separated by line feeds.
    [[nodiscard]] virtual std::string description() const = 0;
};

} // namespace halvane::host
