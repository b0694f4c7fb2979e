#pragma once

// Rows of tables, and cursors that read them.

#include "base/Value.h"
#include "host/Forward.h"

#include <cstdint>
#include <string_view>

namespace halvane::host {

/// A row of a table or a feature of a feature class. It keeps its values after its cursor has moved on.
class GisRow : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisRow"; }
    [[nodiscard]] virtual const GisFields& fields() const = 0;
    /// The value at a field index; Null where the row has none. The geometry field yields a GisGeometry.
    [[nodiscard]] virtual ValueView value(std::int32_t lIndex) const = 0;
    [[nodiscard]] virtual std::int64_t objectId() const = 0;
    /// The feature's shape; nothing for a plain row and for a feature without one.
    [[nodiscard]] virtual GisGeometryPtr shape() const = 0;
};

class GisCursor : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisCursor"; }
    /// The next row; nothing at the end.
    [[nodiscard]] virtual GisRowPtr nextRow() = 0;
};

} // namespace halvane::host
