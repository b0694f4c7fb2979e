#include "oracle/second/RandomShapes.h"

#include "host/memory/Geometry.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace halvane::oracle {

using namespace host::memory;
using host::PartRole;
using host::ShapeType;

namespace {

class ShapeMaker {
public:
    explicit ShapeMaker(Random& random)
        : random_(random), lHeights_(random.between(0, 2)), bMeasures_(random.chance(20)) {}

    MemoryGeometryPtr make(ShapeType type) {
        if (random_.chance(10))
            return mixed(type);
        for (std::int32_t n = random_.between(1, 2); n > 0; --n)
            addMember(type);
        return shape(type);
    }

private:
    MemoryGeometryPtr mixed(ShapeType type) {
        for (std::int32_t n = random_.between(2, 3); n > 0; --n)
            addMember(random_.pick(
                std::vector<ShapeType>{ShapeType::Point, ShapeType::Polyline, ShapeType::Polygon}));
        return shape(type);
    }
    MemoryGeometryPtr shape(ShapeType type) {
        auto pShape = std::make_shared<MemoryGeometry>(type, std::move(aParts_));
        pShape->setRoles(std::move(aRoles_));
        if (random_.chance(50))
            pShape->keepAtHand(static_cast<std::size_t>(random_.between(1, 3)));
        return pShape;
    }

    void addMember(ShapeType type) {
        if (type == ShapeType::Polygon)
            addArea();
        else if (type == ShapeType::Polyline || type == ShapeType::Line)
            add(PartRole::Line, line());
        else
            add(PartRole::Points, {vertex(random_.between(-40, 40), random_.between(-40, 40))});
    }
    void add(PartRole role, Part part) {
        aRoles_.push_back(role);
        aParts_.push_back(std::move(part));
    }

    /// In quarters: sums and products of them are exact.
    Vertex vertex(std::int32_t lX, std::int32_t lY) {
        Vertex vertex{lX / 4.0, lY / 4.0};
        if (lHeights_ == 1 || (lHeights_ == 2 && random_.chance(50)))
            vertex.dZ = random_.between(0, 50) / 10.0;
        if (bMeasures_)
            vertex.dM = random_.between(0, 500);
        return vertex;
    }
    Part line() {
        std::int32_t lX = random_.between(-40, 40);
        Part part;
        for (std::int32_t n = random_.between(2, 4); n > 0; --n) {
            part.push_back(vertex(lX, random_.between(-40, 40)));
            lX += random_.between(1, 5);
        }
        return part;
    }
    void addArea() {
        const std::int32_t lX = random_.between(-40, 20);
        const std::int32_t lY = random_.between(-40, 20);
        const std::int32_t lSize = random_.between(8, 20);
        add(PartRole::OuterRing, box(lX, lY, lSize));
        for (std::int32_t n = random_.chance(40) ? random_.between(1, 2) : 0; n > 0; --n)
            add(PartRole::InnerRing, box(lX + 3 * n, lY + 2, 2));
    }
    /// A box, or the triangle of three of its corners.
    Part box(std::int32_t lX, std::int32_t lY, std::int32_t lSize) {
        Part ring{vertex(lX, lY), vertex(lX + lSize, lY), vertex(lX + lSize, lY + lSize)};
        if (random_.chance(60))
            ring.push_back(vertex(lX, lY + lSize));
        if (random_.chance(90))
            ring.push_back(ring.front());
        if (random_.chance(50))
            std::reverse(ring.begin(), ring.end());
        return ring;
    }

    Random& random_;
    std::int32_t lHeights_; ///< 0: no vertex has one, 1: all have, 2: some
    bool bMeasures_;
    std::vector<Part> aParts_;
    std::vector<PartRole> aRoles_;
};

} // namespace

host::GisGeometryPtr soundShape(Random& random, ShapeType type) {
    return ShapeMaker(random).make(type);
}

} // namespace halvane::oracle
