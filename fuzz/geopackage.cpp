// The bytes of a GeoPackage: what columns yield is what the row loop yields, as far as they go.

#include "base/Failure.h"
#include "fuzz/Check.h"
#include "fuzz/Target.h"
#include "host/Geometry.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Rows.h"
#include "host/Tables.h"
#include "host/gdal/GdalHost.h"
#include "host/gdal/objects/Table.h"
#include "host/gdal/rows/StoredColumns.h"
#include "support/TemporaryFolder.h"

#include <cstdint>
#include <string>
#include <vector>

namespace halvane::fuzz {
namespace {

using Rows = std::vector<std::string>;

/// The type of each value and its text, and the numbers of the shape.
std::string describe(const host::GisRow& row) {
    std::string sAll = std::to_string(row.objectId());
    for (std::int32_t lIndex = 0; lIndex < row.fields().count(); ++lIndex) {
        const ValueView value = row.value(lIndex);
        sAll += "|" + std::to_string(value.index()) + ":";
        if (!std::holds_alternative<ObjectPtr>(value))
            sAll += toText(value);
    }
    const host::GisGeometryPtr pShape = row.shape();
    if (pShape == nullptr)
        return sAll;
    sAll += "|" + std::to_string(pShape->geometryType());
    for (std::int32_t lPart = 0; lPart < pShape->partCount(); ++lPart) {
        for (std::int32_t lPoint = 0; lPoint < pShape->pointCount(lPart); ++lPoint) {
            const host::GisPointPtr pPoint = pShape->point(lPart, lPoint);
            sAll += "," + std::to_string(pPoint->x()) + " " + std::to_string(pPoint->y()) + " " +
                    std::to_string(pPoint->z()) + " " + std::to_string(pPoint->m());
        }
    }
    return sAll;
}

/// @returns whether the row loop came to its end.
bool readRows(host::GisTable& table, Rows& rows) {
    try {
        const host::GisCursorPtr pCursor = table.search(nullptr);
        while (const host::GisRowPtr pRow = pCursor->nextRow())
            rows.push_back(describe(*pRow));
        return true;
    } catch (const Failure&) {
        return false;
    }
}

Rows readColumns(const host::gdal::TableReader& reader) {
    Rows rows;
    try {
        const host::gdal::GdalFieldsPtr pFields = reader.data().fields();
        const host::gdal::LayerHandle handle = reader.data().openLayer();
        const auto pColumns = host::gdal::StoredColumns::tryOpen(handle, *pFields, INT64_MIN);
        host::gdal::ColumnBatchPtr pBatch;
        while (pColumns != nullptr && (pBatch = pColumns->next(nullptr)) != nullptr) {
            for (std::size_t nRow = 0; nRow < pBatch->rowCount(); ++nRow)
                rows.push_back(describe(host::gdal::ColumnRow(pFields, pBatch, nRow)));
        }
    } catch (const Failure&) { // as the row loop then has
    }
    return rows;
}

void compare(host::GisTable& table, const host::gdal::TableReader& reader) {
    Rows rows;
    const bool bWhole = readRows(table, rows);
    const Rows columns = readColumns(reader);
    for (std::size_t n = 0; n < columns.size() && (bWhole || n < rows.size()); ++n)
        check(n < rows.size() && columns[n] == rows[n], "Columns yield what the row loop yields",
              columns[n] + "\n" + (n < rows.size() ? rows[n] : "no row"));
}

void compareAll(const host::GisMap& map) {
    for (std::int32_t lLayer = 0; lLayer < map.layerCount(); ++lLayer) {
        const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(map.layer(lLayer));
        const auto pClass =
            pLayer == nullptr
                ? nullptr
                : std::dynamic_pointer_cast<host::gdal::GdalFeatureClass>(pLayer->featureClass());
        if (pClass != nullptr)
            compare(*pClass, pClass->reader());
    }
    for (std::int32_t lTable = 0; lTable < map.standaloneTableCount(); ++lTable) {
        const auto pTable = std::dynamic_pointer_cast<host::gdal::GdalTable>(map.standaloneTable(lTable));
        if (pTable != nullptr)
            compare(*pTable, pTable->reader());
    }
}

} // namespace
} // namespace halvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t nSize) {
    using namespace halvane;
    static const test::TemporaryFolder folder;
    const std::string sPath =
        folder.write("data.gpkg", std::string_view(reinterpret_cast<const char*>(pBytes), nSize));
    try {
        const auto pDocument = host::gdal::GdalHost::create()->openMapDocument(sPath);
        fuzz::compareAll(*pDocument->focusMap());
    } catch (const Failure&) { // no GeoPackage that can be opened
    }
    return 0;
}
