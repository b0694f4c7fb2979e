#include "exporters/second/geometry/TransformedShape.h"

#include "engine/second/Inherited.h"
#include "engine/second/RowScope.h"
#include "exporters/second/geometry/ShapeFigures.h"
#include "host/Rows.h"

#include <algorithm>
#include <array>
#include <utility>

namespace halvane {

namespace {

class ValuePoint final : public host::GisPoint {
public:
    explicit ValuePoint(const host::PointValues& values) : values_(values) {}
    [[nodiscard]] double x() const override { return values_.dX; }
    [[nodiscard]] double y() const override { return values_.dY; }
    [[nodiscard]] double z() const override { return values_.dZ; }
    [[nodiscard]] double m() const override { return values_.dM; }

private:
    host::PointValues values_;
};

/// A shape whose points are transformed as they are read.
class TransformedShape final : public host::GisGeometry {
public:
    /// @param nRow for messages.
    TransformedShape(host::GisGeometryPtr pShape, host::GisTransformationPtr pTransformation,
                     std::int64_t nRow)
        : pShape_(std::move(pShape)), pTransformation_(std::move(pTransformation)), nRow_(nRow) {}

    [[nodiscard]] std::int32_t geometryType() const override { return pShape_->geometryType(); }
    /// Along straight lines from vertex to vertex.
    [[nodiscard]] double length() const override { return lengthOf(ShapeParts(*this)).value_or(0); }
    [[nodiscard]] host::GisPointPtr fromPoint() const override { return transformed(pShape_->fromPoint()); }
    [[nodiscard]] host::GisPointPtr toPoint() const override { return transformed(pShape_->toPoint()); }
    [[nodiscard]] std::int32_t partCount() const override { return pShape_->partCount(); }
    [[nodiscard]] host::PartRole partRole(std::int32_t lPart) const override {
        return pShape_->partRole(lPart);
    }
    [[nodiscard]] std::int32_t pointCount(std::int32_t lPart) const override {
        return pShape_->pointCount(lPart);
    }
    [[nodiscard]] host::GisPointPtr point(std::int32_t lPart, std::int32_t lIndex) const override {
        return transformed(pShape_->point(lPart, lIndex));
    }
    [[nodiscard]] std::size_t readPoints(std::int32_t lPart, std::int32_t lFirst,
                                         std::span<host::PointValues> aPoints) const override {
        const std::size_t nRead = pShape_->readPoints(lPart, lFirst, aPoints);
        transform(aPoints.first(nRead));
        return nRead;
    }

private:
    [[nodiscard]] host::GisPointPtr transformed(const host::GisPointPtr& pPoint) const {
        if (pPoint == nullptr)
            return nullptr;
        host::PointValues values{pPoint->x(), pPoint->y(), pPoint->z(), pPoint->m()};
        transform({&values, 1});
        return std::make_shared<ValuePoint>(values);
    }
    void transform(std::span<host::PointValues> aPoints) const {
        try {
            pTransformation_->transform(aPoints);
        } catch (const Failure& failure) {
            const std::string sWhere = failure.context().empty() ? "" : ", " + failure.context();
            throw Failure(failure.number(), failure.description())
                .about("the shape of row " + std::to_string(nRow_) + sWhere);
        }
    }

    host::GisGeometryPtr pShape_;
    host::GisTransformationPtr pTransformation_;
    std::int64_t nRow_;
};

} // namespace

host::GisGeometryPtr shapeIn(ExportState& state, const NodeSpace& space, const host::GisRow& row) {
    host::GisGeometryPtr pShape = row.shape();
    if (pShape == nullptr || space.pReference == nullptr)
        return pShape;
    const host::GisTablePtr pOfLoop = tableOf(state, row);
    const TableSpace& there = state.coordinates.of(
        pOfLoop == nullptr ? host::GisTablePtr(state.pFeatureClass) : pOfLoop, space, state.nGeneration);
    if (there.pTransformation == nullptr)
        return pShape;
    return std::make_shared<TransformedShape>(std::move(pShape), there.pTransformation, row.objectId());
}

bool isTransformed(const ControlNode& control) noexcept {
    return control.pInherited != nullptr && control.pInherited->space.pReference != nullptr;
}

host::GisGeometryPtr shapeFor(ExportState& state, const ControlNode& control, const host::GisRow& row) {
    return isTransformed(control) ? shapeIn(state, control.pInherited->space, row) : row.shape();
}

void requirePoints(const host::GisGeometry& shape) {
    std::array<host::PointValues, 256> aPoints;
    for (std::int32_t lPart = 0; lPart < shape.partCount(); ++lPart)
        for (std::int32_t lFirst = 0; lFirst < shape.pointCount(lPart);) {
            const std::size_t nRead = shape.readPoints(lPart, lFirst, aPoints);
            if (nRead == 0)
                (void)shape.point(lPart, lFirst);
            lFirst += static_cast<std::int32_t>(std::max<std::size_t>(nRead, 1));
        }
}

} // namespace halvane
