#pragma once

#include "exporters/second/SecondEditionTest.h"

#include <memory>
#include <string>
#include <vector>

namespace halvane::test {

/// Exports a layer of shapes that each test adds.
class ShapesTest : public SecondEditionTest {
protected:
    ShapesTest() {
        pShapes =
            host::memory::MemoryFeatureClass::make("SHAPES", host::ShapeType::Null,
                                                   {host::memory::field("OID", host::FieldType::Oid),
                                                    host::memory::field("SHAPE", host::FieldType::Geometry),
                                                    host::memory::field("NAME", host::FieldType::String)});
        pOwn->setCode("EPSG:25832");
        pShapes->setSpatialReference(pOwn);
        pLayer = host::memory::MemoryFeatureLayer::make("Shapes", pShapes);
        world.pTownMap->addLayer(pLayer);
        // Twice as large, and ten to the west.
        pDegrees->setCode("EPSG:4258", true);
        pDegrees->setPlace({-10, 0, 0.5});
        world.pHost->registerReference("EPSG:4258", pDegrees);
        pWgs84->setCode("OGC:CRS84");
        pWgs84->setPlace({1, 0, 1});
        world.pHost->registerReference("OGC:CRS84", pWgs84);
    }

    void add(const ObjectPtr& pShape, const std::string& sName = "S") {
        pShapes->addRow({++lLast, pShape == nullptr ? Value(Null()) : Value(pShape), sName});
    }
    void add(const host::memory::MemoryGeometryPtr& pShape) { add(ObjectPtr(pShape)); }
    /// Those nodes in the layer of the shapes.
    std::string inLayer(const std::string& sNodes, const std::string& sAttributes = "") {
        return in("<l DataSource='MapLayer' Identity='LayerName' IdentityValue='Shapes' h:Omit='Self' " +
                  sAttributes + ">" + sNodes + "</l>");
    }
    /// An element "G" with such attributes for each shape.
    std::string shapes(const std::string& sAttributes) {
        return inLayer("<g Name='G' DataSource='Feature' Entries='Multiple' " + sAttributes + "/>");
    }
    static host::memory::MemoryGeometryPtr square() {
        return host::memory::MemoryGeometry::polygon({{{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}}});
    }
    /// Both rings run the wrong way.
    static host::memory::MemoryGeometryPtr frame() {
        return host::memory::MemoryGeometry::polygon(
            {{{0, 0}, {0, 4}, {4, 4}, {4, 0}, {0, 0}}, {{1, 1}, {3, 1}, {3, 3}, {1, 3}, {1, 1}}});
    }
    static host::memory::MemoryGeometryPtr twoSquares() {
        auto pBoth = host::memory::MemoryGeometry::polygon(
            {{{0, 0}, {1, 0}, {1, 1}, {0, 0}}, {{5, 5}, {6, 5}, {6, 6}, {5, 5}}});
        pBoth->setRoles({host::PartRole::OuterRing, host::PartRole::OuterRing});
        return pBoth;
    }
    static host::memory::MemoryGeometryPtr collection() {
        auto pAll = std::make_shared<host::memory::MemoryGeometry>(
            host::ShapeType::Null,
            std::vector<host::memory::Part>{{{1, 2}}, {{0, 0}, {3, 4}}, {{0, 0}, {1, 0}, {1, 1}, {0, 0}}});
        pAll->setRoles({host::PartRole::Points, host::PartRole::Line, host::PartRole::OuterRing});
        return pAll;
    }
    static host::memory::MemoryGeometryPtr point(double dX, double dY) {
        return host::memory::MemoryGeometry::point({dX, dY});
    }

    host::memory::MemoryFeatureClassPtr pShapes;
    host::memory::MemoryFeatureLayerPtr pLayer;
    host::memory::MemorySpatialReferencePtr pOwn = host::memory::MemorySpatialReference::make("");
    host::memory::MemorySpatialReferencePtr pDegrees = host::memory::MemorySpatialReference::make("");
    host::memory::MemorySpatialReferencePtr pWgs84 = host::memory::MemorySpatialReference::make("");
    std::int64_t lLast = 0;
};

} // namespace halvane::test
