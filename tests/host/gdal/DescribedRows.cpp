#include "DescribedRows.h"

#include "SampleData.h"

#include "base/Value.h"
#include "host/Fields.h"
#include "host/Geometry.h"
#include "host/gdal/rows/ColumnBatch.h"

#include <gtest/gtest.h>

namespace halvane::tests {

namespace {

std::string describePoint(const host::GisPointPtr& pPoint) {
    return pPoint == nullptr ? "-"
                             : std::to_string(pPoint->x()) + " " + std::to_string(pPoint->y()) + " " +
                                   std::to_string(pPoint->z()) + " " + std::to_string(pPoint->m());
}

std::string describeShape(const host::GisGeometryPtr& pShape) {
    if (pShape == nullptr)
        return "no shape";
    std::string sAll = std::to_string(pShape->geometryType()) + ":" + std::to_string(pShape->length());
    for (std::int32_t lPart = 0; lPart < pShape->partCount(); ++lPart) {
        for (std::int32_t lPoint = 0; lPoint < pShape->pointCount(lPart); ++lPoint)
            sAll += "," + describePoint(pShape->point(lPart, lPoint));
    }
    return sAll;
}

} // namespace

std::string describe(const host::GisRow& row) {
    std::string sAll = std::to_string(row.objectId());
    for (std::int32_t lIndex = 0; lIndex < row.fields().count(); ++lIndex) {
        const ValueView view = row.value(lIndex);
        sAll += "|" + std::to_string(view.index()) + ":";
        if (!std::holds_alternative<ObjectPtr>(view))
            sAll += toText(view);
        if (const auto* pDate = std::get_if<Date>(&view)) {
            sAll += " " + std::to_string(pDate->hour) + ":" + std::to_string(pDate->minute) + ":" +
                    std::to_string(pDate->second) + "." + std::to_string(pDate->millisecond) + " " +
                    std::to_string(pDate->zoneMinutes);
        }
    }
    return sAll + "|" + describeShape(row.shape());
}

Outcome readAll(host::GisCursor& cursor) {
    Outcome outcome;
    outcome.sFailure = failureOf([&] {
        while (const auto pRow = cursor.nextRow())
            outcome.rows.push_back(describe(*pRow));
        EXPECT_EQ(cursor.nextRow(), nullptr);
    });
    return outcome;
}

void expectSame(const Outcome& columns, const Outcome& rows) {
    ASSERT_EQ(columns.rows.size(), rows.rows.size());
    for (std::size_t nRow = 0; nRow < rows.rows.size(); ++nRow) {
        ASSERT_EQ(columns.rows[nRow], rows.rows[nRow]) << nRow;
    }
}

bool readsColumns(host::GisCursor& cursor, int lRowCount) {
    host::GisRowPtr pRow;
    for (int lRow = 0; lRow < lRowCount; ++lRow) {
        pRow = nullptr;
        pRow = cursor.nextRow();
    }
    return std::dynamic_pointer_cast<host::gdal::ColumnRow>(pRow) != nullptr;
}

} // namespace halvane::tests
