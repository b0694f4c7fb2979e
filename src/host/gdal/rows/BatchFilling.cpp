#include "host/gdal/rows/BatchFilling.h"

#include "host/gdal/rows/Geometry.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

namespace halvane::host::gdal {

namespace {
constexpr std::size_t nMostRows = 1024;
constexpr std::size_t nMostBytes = 1U << 20U;

/// The coordinates of a point that is nothing else; nothing for other shapes, and for points that say more or
/// less.
std::optional<std::pair<double, double>> plainPlace(std::string_view sBinary) {
    constexpr std::string_view sHeader("\1\1\0\0\0", 5); // the order of bytes, the type
    std::array<double, 2> aPlace{};
    if (std::endian::native != std::endian::little || sBinary.size() != sHeader.size() + sizeof(aPlace) ||
        !sBinary.starts_with(sHeader))
        return std::nullopt;
    std::memcpy(aPlace.data(), sBinary.data() + sHeader.size(), sizeof(aPlace));
    if (!std::isfinite(aPlace[0]) || !std::isfinite(aPlace[1]))
        return std::nullopt;
    return std::pair(aPlace[0], aPlace[1]);
}

} // namespace

BatchFilling::BatchFilling(std::int64_t lLastId, Exchange fnExchange)
    : lLastId_(lLastId), fnExchange_(std::move(fnExchange)), pBatch_(fnExchange_(nullptr)) {}

bool BatchFilling::addShape(std::string_view sBinary) {
    if (const auto place = plainPlace(sBinary)) {
        batch().cells.emplace_back(PointIndex{batch().points.add(place->first, place->second)});
        return true;
    }
    OGRGeometry* pGeometry = nullptr;
    const OGRErr code =
        OGRGeometryFactory::createFromWkb(sBinary.data(), nullptr, &pGeometry, sBinary.size());
    std::unique_ptr<OGRGeometry> pOwned(pGeometry);
    if (code != OGRERR_NONE || pOwned == nullptr)
        return false;
    pBatch_->cells.emplace_back(ShapeIndex{pBatch_->shapes.size()});
    pBatch_->shapes.push_back(std::make_shared<GdalGeometry>(std::move(pOwned)));
    nShapeBytes_ += 2 * sBinary.size();
    return true;
}

bool BatchFilling::endRow(std::int64_t lId) {
    pBatch_->ids.push_back(lId);
    lLastId_ = lId;
    return !isFull() || handOn();
}

bool BatchFilling::isFull() const {
    return pBatch_->ids.size() == nMostRows || pBatch_->heap.bytes() + nShapeBytes_ > nMostBytes;
}

bool BatchFilling::handOn() {
    nShapeBytes_ = 0;
    pBatch_ = fnExchange_(std::move(pBatch_));
    return pBatch_ != nullptr;
}

void BatchFilling::finish() {
    if (pBatch_ != nullptr && !pBatch_->ids.empty())
        static_cast<void>(handOn());
}

BatchFilling::Exchange exchangeWith(ReadAhead<ColumnBatchPtr>& ahead) {
    return [&ahead](ColumnBatchPtr pFull) -> ColumnBatchPtr {
        if (pFull != nullptr && !ahead.put(std::move(pFull)))
            return nullptr;
        ColumnBatchPtr pNext = ahead.blank();
        if (pNext == nullptr)
            pNext = std::make_shared<ColumnBatch>();
        pNext->clear();
        return pNext;
    };
}

} // namespace halvane::host::gdal
