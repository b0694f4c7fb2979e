#include "host/gdal/rows/Row.h"

#include "base/Failure.h"
#include "base/Owned.h"
#include "host/gdal/facts/Dates.h"
#include "host/gdal/rows/Geometry.h"

#include <cpl_conv.h>
#include <ogr_api.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>

namespace halvane::host::gdal {

namespace {

Date timeOf(const OGRField& raw) {
    Date time = dateOf(raw);
    time.year = 0;
    time.month = 0;
    time.day = 0;
    return time;
}

// What drivers make of a text that is no date, such as the asterisks of dBASE.
bool isNoDate(const OGRField& raw) {
    return raw.Date.Year == 0 && raw.Date.Month == 0 && raw.Date.Day == 0;
}

bool isOnDayZero(const OGRField& raw) {
    return raw.Date.Year == 1899 && raw.Date.Month == 12 && raw.Date.Day == 30;
}

// Whether the first of a missing value's three marks is there: that is seldom, and saves two calls for the
// others.
bool mayBeMissing(const OGRField& raw) {
    return raw.Set.nMarker1 == OGRUnsetMarker || raw.Set.nMarker1 == OGRNullMarker;
}

Bytes bytesOf(const OGRField& raw) {
    return std::as_bytes(std::span(raw.Binary.paData, static_cast<std::size_t>(raw.Binary.nCount)));
}

double finite(double dValue, const OGRFeature& feature, int lColumn) {
    if (std::isinf(dValue)) {
        throw Failure(FailureNumber::HostFailure,
                      "The number in \"" + std::string(feature.GetFieldDefnRef(lColumn)->GetNameRef()) +
                          "\" of row " + std::to_string(feature.GetFID()) +
                          " is infinite, or too large to be read");
    }
    return dValue;
}

} // namespace

GdalRow::GdalRow(GdalFieldsPtr pFields, OGRFeatureUniquePtr pFeature, RowFaultsPtr pFaults)
    : pFields_(std::move(pFields)), pFeature_(std::move(pFeature)), pFaults_(std::move(pFaults)),
      lFieldCount_(pFeature_->GetFieldCount()) {}

void GdalRow::exchange(OGRFeatureUniquePtr& pFeature, RowFaultsPtr pFaults) {
    pFeature_.swap(pFeature);
    pFaults_ = std::move(pFaults);
    lFieldCount_ = pFeature_->GetFieldCount();
    pShape_.reset();
    bShapeTaken_ = false;
    texts_.clear();
}

ValueView GdalRow::value(std::int32_t lIndex) const {
    const std::vector<Column>& columns = pFields_->columns();
    if (lIndex < 0 || static_cast<std::size_t>(lIndex) >= columns.size())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    const Column column = columns[static_cast<std::size_t>(lIndex)];
    if (column.kind == ColumnKind::ObjectId) {
        const GIntBig lId = pFeature_->GetFID();
        return lId == OGRNullFID ? ValueView(Null{}) : ValueView(std::int64_t{lId});
    }
    if (column.kind == ColumnKind::Shape) {
        GisGeometryPtr pShape = shape();
        return pShape == nullptr ? ValueView(Null{}) : ValueView(ObjectPtr(std::move(pShape)));
    }
    return attribute(column);
}

ValueView GdalRow::attribute(Column column) const {
    if (column.lColumn >= lFieldCount_)
        return Null{}; // the file has changed since its fields were read
    const OGRField& raw = *pFeature_->GetRawFieldRef(column.lColumn);
    if (mayBeMissing(raw) && (OGR_RawField_IsUnset(&raw) != 0 || OGR_RawField_IsNull(&raw) != 0))
        return Null{};
    if (pFaults_ != nullptr)
        testNumber(column.lColumn);
    switch (column.kind) {
    case ColumnKind::Boolean:
    case ColumnKind::Integer:
        return std::int32_t{raw.Integer};
    case ColumnKind::Integer64:
        return std::int64_t{raw.Integer64};
    case ColumnKind::Single:
        return static_cast<float>(finite(raw.Real, *pFeature_, column.lColumn));
    case ColumnKind::Double:
        return finite(raw.Real, *pFeature_, column.lColumn);
    case ColumnKind::Text:
        return std::string_view(raw.String);
    case ColumnKind::Date:
        return isNoDate(raw) ? ValueView(Null{}) : ValueView(dateOf(raw));
    case ColumnKind::Time:
        return timeOf(raw);
    case ColumnKind::DateOrTime:
        return isOnDayZero(raw) ? timeOf(raw) : dateOf(raw);
    case ColumnKind::Binary:
        return bytesOf(raw);
    default:
        return structuredText(column.lColumn);
    }
}

void GdalRow::testNumber(int lColumn) const {
    const std::vector<int>& cut = pFaults_->cutNumbers;
    if (std::find(cut.begin(), cut.end(), lColumn) != cut.end()) {
        throw Failure(FailureNumber::HostFailure,
                      "The number in \"" + std::string(pFeature_->GetFieldDefnRef(lColumn)->GetNameRef()) +
                          "\" of row " + std::to_string(objectId()) +
                          " is too large for the field's type; give the field a larger one");
    }
}

std::string_view GdalRow::structuredText(int lColumn) const {
    const auto lSlot = static_cast<std::size_t>(lColumn);
    if (texts_.size() <= lSlot)
        texts_.resize(lSlot + 1);
    if (texts_[lSlot] == nullptr) {
        const Owned<char, VSIFree> pText(pFeature_->GetFieldAsSerializedJSon(lColumn));
        texts_[lSlot] = std::make_unique<std::string>(pText == nullptr ? "" : pText.get());
    }
    return *texts_[lSlot];
}

GisGeometryPtr GdalRow::shape() const {
    if (!pFields_->hasShape())
        return nullptr;
    if (!bShapeTaken_) {
        if (const ShapeChange& change = pFields_->shapeChange();
            change && pFeature_->GetGeometryRef() != nullptr) {
            // What fails once fails again when the shape is asked for again.
            std::unique_ptr<OGRGeometry> pChanged(pFeature_->GetGeometryRef()->clone());
            change(*pChanged);
            pFeature_->SetGeometryDirectly(pChanged.release());
        }
        bShapeTaken_ = true;
        if (std::unique_ptr<OGRGeometry> pGeometry{pFeature_->StealGeometry()}; pGeometry != nullptr)
            pShape_ = std::make_shared<GdalGeometry>(std::move(pGeometry));
        else if (pFaults_ != nullptr && pFaults_->pLostShape != nullptr)
            pFaults_->pLostShape->note(objectId());
    }
    return pShape_;
}

} // namespace halvane::host::gdal
