#include "host/gdal/ColumnBatch.h"

#include "collection/Failure.h"
#include "host/gdal/Errors.h"
#include "host/gdal/Geometry.h"

#include <span>

namespace halvane::host::gdal {

BatchColumn SideColumn::view() const {
    const void* pValues = kind == ColumnKind::Date ? static_cast<const void*>(dates.data())
                                                   : static_cast<const void*>(integers.data());
    return {kind, valid.data(), pValues, nullptr};
}

void ColumnRow::reset(const ColumnBatchPtr& pBatch, std::size_t lRow) {
    if (pBatch_ != pBatch) {
        pBatch_ = pBatch;
    }
    lRow_ = lRow;
    pShape_.reset();
    bShapeMade_ = false;
}

ValueView ColumnRow::value(std::int32_t lIndex) const {
    const std::vector<BatchColumn>& columns = pBatch_->columns;
    if (lIndex < 0 || static_cast<std::size_t>(lIndex) >= columns.size()) {
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    }
    const BatchColumn& column = columns[static_cast<std::size_t>(lIndex)];
    if (column.isNull(lRow_)) {
        return Null{};
    }
    switch (column.kind) {
    case ColumnKind::Boolean:
    case ColumnKind::Integer:
        return column.number<std::int32_t>(lRow_);
    case ColumnKind::ObjectId:
    case ColumnKind::Integer64:
        return column.number<std::int64_t>(lRow_);
    case ColumnKind::Single:
        return column.number<float>(lRow_);
    case ColumnKind::Double:
        return column.number<double>(lRow_);
    case ColumnKind::Date:
        return column.number<Date>(lRow_);
    case ColumnKind::Binary:
        return std::as_bytes(std::span(column.bytes(lRow_)));
    case ColumnKind::Shape: {
        GisGeometryPtr pShape = shape();
        return pShape == nullptr ? ValueView(Null{}) : ValueView(ObjectPtr(std::move(pShape)));
    }
    default:
        return column.bytes(lRow_);
    }
}

GisGeometryPtr ColumnRow::shape() const {
    if (bShapeMade_ || !pFields_->hasShape()) {
        return pShape_;
    }
    bShapeMade_ = true;
    // The shape's field comes second.
    const BatchColumn& column = pBatch_->columns[1];
    if (column.isNull(lRow_)) {
        return pShape_;
    }
    const std::string_view sBytes = column.bytes(lRow_);
    const ErrorScope errors;
    OGRGeometry* pGeometry = nullptr;
    const OGRErr code =
        OGRGeometryFactory::createFromWkb(sBytes.data(), nullptr, &pGeometry, sBytes.size(), wkbVariantIso);
    std::unique_ptr<OGRGeometry> pOwned(pGeometry);
    if (code == OGRERR_NONE && pOwned != nullptr) {
        pShape_ = std::make_shared<GdalGeometry>(std::move(pOwned));
    }
    return pShape_;
}

} // namespace halvane::host::gdal
