#pragma once

#include "exporters/ExporterTest.h"
#include "host/Rows.h"

#include <string>
#include <string_view>
#include <vector>

namespace halvane::test {

/// A layer of roads as the current one; a shape of any kind may be a road here.
class GeometryTest : public ExporterTest {
protected:
    static constexpr std::string_view lengthControl =
        "<g Name='Len' DataSource='Geometry.Length' DataProperty='Geometry.Length'/>";

    GeometryTest() {
        state.pFeatureLayer = pLayer;
        state.pFeatureClass = pRoads;
    }

    static host::memory::MemoryGeometryPtr straightLine(double dLength) {
        return host::memory::MemoryGeometry::polyline({{{0, 0}, {dLength, 0}}});
    }

    void addRoad(host::GisGeometryPtr pShape, Value vName = std::string("Road"), Value vKm = 0.0,
                 Value vCode = Null{}) {
        const auto lId = static_cast<std::int32_t>(pRoads->contents().rowCount() + 1);
        Value vShape = pShape == nullptr ? Value(Null{}) : Value(ObjectPtr(std::move(pShape)));
        pRoads->addRow({lId, std::move(vShape), std::move(vName), std::move(vKm), std::move(vCode)});
    }
    GisRowPtr row(int lPosition) {
        const auto pCursor = pRoads->search(nullptr);
        GisRowPtr pRow = pCursor->nextRow();
        for (int i = 0; i < lPosition; ++i)
            pRow = pCursor->nextRow();
        return pRow;
    }

    /// What the repeated node writes, from an element of its own name on.
    std::string exported(std::string_view sControl, const GisRowPtr& pRow = nullptr,
                         std::string_view sElement = {}) {
        const ControlNode& repeated = control(sControl);
        OutputElement oElement = element(sElement.empty() ? std::string_view(repeated.sTagName) : sElement);
        ExportGeometry(state, repeated, oElement, pRow);
        return written();
    }

    host::memory::MemoryFeatureClassPtr pRoads =
        host::memory::MemoryFeatureClass::make("Roads", host::ShapeType::Polyline,
                                               {host::memory::field("OBJECTID", host::FieldType::Oid),
                                                host::memory::field("SHAPE", host::FieldType::Geometry),
                                                host::memory::field("NAME", host::FieldType::String),
                                                host::memory::field("KM", host::FieldType::Double),
                                                host::memory::field("CODE", host::FieldType::String)});
    host::memory::MemoryFeatureLayerPtr pLayer = host::memory::MemoryFeatureLayer::make("Roads", pRoads);
};

} // namespace halvane::test
