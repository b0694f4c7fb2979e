#include "host/memory/Rows.h"

#include "base/Failure.h"
#include "host/Geometry.h"

namespace halvane::host::memory {

const GisFields& MemoryRow::fields() const {
    pass("GisRow", "fields");
    return *pData_->pFields;
}

ValueView MemoryRow::value(std::int32_t lIndex) const {
    pass("GisRow", "value");
    static_cast<void>(pData_->pFields->definition(lIndex)); // fails outside the fields
    if (lIndex == pData_->pFields->indexOfType(FieldType::Geometry))
        requireShapes();
    if (const auto bytes = pData_->bytesByField.find(lIndex); bytes != pData_->bytesByField.end())
        return Bytes(bytes->second);
    const auto nIndex = static_cast<std::size_t>(lIndex);
    return nIndex < pData_->aValues.size() ? toView(pData_->aValues[nIndex]) : ValueView(Null());
}

std::int64_t MemoryRow::objectId() const {
    pass("GisRow", "objectId");
    return pData_->nObjectId;
}

void MemoryRow::requireShapes() const {
    if (shapes_ == Shapes::Unread)
        throw Failure(FailureNumber::HostFailure, "the rows were searched for without their shapes");
}

GisGeometryPtr MemoryRow::shape() const {
    pass("GisRow", "shape");
    requireShapes();
    const auto nIndex = static_cast<std::size_t>(pData_->pFields->indexOfType(FieldType::Geometry));
    // The index -1 of a table without a geometry is beyond all values.
    return nIndex < pData_->aValues.size() ? objectAs<GisGeometry>(pData_->aValues[nIndex]) : nullptr;
}

GisRowPtr MemoryCursor::nextRow() {
    pass("GisCursor", "nextRow");
    return nNext_ < aRows_.size() ? std::make_shared<MemoryRow>(aRows_[nNext_++], script(), shapes_)
                                  : nullptr;
}

} // namespace halvane::host::memory
