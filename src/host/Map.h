#pragma once

// Maps and the documents that hold them.

#include "base/Value.h"
#include "host/Forward.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane::host {

class GisMap : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisMap"; }
    [[nodiscard]] virtual std::string name() const = 0;
    [[nodiscard]] virtual std::int32_t layerCount() const = 0;
    [[nodiscard]] virtual GisLayerPtr layer(std::int32_t lIndex) const = 0;
    [[nodiscard]] virtual std::int32_t standaloneTableCount() const = 0;
    /// May be nothing: a table whose data is gone.
    [[nodiscard]] virtual GisTablePtr standaloneTable(std::int32_t lIndex) const = 0;
    /// How many layers are known once the one at an index has been looked for: more than the index exactly
    /// if there is one. A map that finds its layers one after the other need not find all for that.
    [[nodiscard]] virtual std::int32_t layersFoundFor(std::int32_t /*lIndex*/) const { return layerCount(); }
    /// The same of standalone tables.
    [[nodiscard]] virtual std::int32_t standaloneTablesFoundFor(std::int32_t /*lIndex*/) const {
        return standaloneTableCount();
    }
    [[nodiscard]] virtual GisSpatialReferencePtr spatialReference() const = 0;
};

class GisMapDocument : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisMapDocument"; }
    /// The map that the document currently shows.
    [[nodiscard]] virtual GisMapPtr focusMap() const = 0;
    [[nodiscard]] virtual std::int32_t mapCount() const = 0;
    [[nodiscard]] virtual GisMapPtr map(std::int32_t lIndex) const = 0;
};

} // namespace halvane::host
