#include "SampleData.h"

#include "base/Failure.h"
#include "host/Workspace.h"
#include "host/gdal/rows/Geometry.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <numeric>
#include <sstream>

namespace halvane::tests {
namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;

std::shared_ptr<host::gdal::GdalGeometry> shape(const char* pWkt) {
    OGRGeometry* pGeometry = nullptr;
    EXPECT_EQ(OGRGeometryFactory::createFromWkt(pWkt, nullptr, &pGeometry), OGRERR_NONE) << pWkt;
    return std::make_shared<host::gdal::GdalGeometry>(std::unique_ptr<OGRGeometry>(pGeometry));
}

std::string text(const host::GisPoint& point) {
    std::ostringstream stream;
    stream << point.x() << ' ' << point.y();
    if (!std::isnan(point.z()))
        stream << " z" << point.z();
    if (!std::isnan(point.m()))
        stream << " m" << point.m();
    return stream.str();
}

// Each part's vertices.
std::vector<std::string> parts(const host::GisGeometry& geometry) {
    std::vector<std::string> all;
    for (std::int32_t lPart = 0; lPart < geometry.partCount(); ++lPart) {
        std::string sPart;
        for (std::int32_t lIndex = 0; lIndex < geometry.pointCount(lPart); ++lIndex)
            sPart += (sPart.empty() ? "" : ", ") + text(*geometry.point(lPart, lIndex));
        all.push_back(sPart);
    }
    return all;
}

TEST(Geometry, OfAPointIsOnePartOfOneVertex) {
    const auto pShape = shape("POINT (1 2)");
    EXPECT_EQ(pShape->geometryType(), 1);
    EXPECT_EQ(pShape->length(), 0);
    EXPECT_THAT(parts(*pShape), ElementsAre("1 2"));
    EXPECT_EQ(text(*pShape->fromPoint()), "1 2");
    EXPECT_EQ(text(*pShape->toPoint()), "1 2");
}

TEST(Geometry, TellsHeightsAndMeasuresOnlyWhereItHasThem) {
    EXPECT_THAT(parts(*shape("POINT Z (1 2 3)")), ElementsAre("1 2 z3"));
    EXPECT_THAT(parts(*shape("POINT M (1 2 4)")), ElementsAre("1 2 m4"));
    EXPECT_THAT(parts(*shape("LINESTRING ZM (1 2 3 4, 5 6 7 8)")), ElementsAre("1 2 z3 m4, 5 6 z7 m8"));
    EXPECT_THAT(parts(*shape("LINESTRING M (1 2 4, 5 6 8)")), ElementsAre("1 2 m4, 5 6 m8"));
}

TEST(Geometry, TellsBordersHolesLinesAndPointsApart) {
    using enum host::PartRole;
    const auto roles = [](const char* pWkt) {
        const auto pShape = shape(pWkt);
        std::vector<host::PartRole> all;
        for (std::int32_t lPart = 0; lPart < pShape->partCount(); ++lPart)
            all.push_back(pShape->partRole(lPart));
        return all;
    };
    EXPECT_THAT(roles("MULTIPOLYGON (((0 0,9 0,9 9,0 0),(1 1,2 2,2 1,1 1),(4 4,5 5,5 4,4 4)),"
                      "((20 0,29 0,29 9,20 0)),EMPTY)"),
                ElementsAre(OuterRing, InnerRing, InnerRing, OuterRing));
    EXPECT_THAT(roles("CURVEPOLYGON (CIRCULARSTRING (0 0,9 9,0 0),(4 4,5 5,5 4,4 4))"),
                ElementsAre(OuterRing, InnerRing));
    EXPECT_THAT(roles("GEOMETRYCOLLECTION (LINESTRING (0 0,1 1),POINT (3 4),MULTIPOINT (1 2,3 4),"
                      "TRIANGLE ((0 0,1 1,1 0,0 0)))"),
                ElementsAre(Line, Points, Points, OuterRing));
    EXPECT_THROW(static_cast<void>(shape("POINT (1 2)")->partRole(1)), Failure);
}

TEST(Geometry, TellsTheNumbersOfAVertexAsItsPointDoes) {
    const auto pShape = shape("GEOMETRYCOLLECTION ZM (LINESTRING ZM (1 2 3 4, 5 6 7 8), POINT ZM (9 8 7 6))");
    std::array<host::PointValues, 4> aRead;
    const auto numbers = [](const host::PointValues& point) {
        return std::vector{point.dX, point.dY, point.dZ, point.dM};
    };
    ASSERT_EQ(pShape->readPoints(0, 0, aRead), 2U);
    EXPECT_THAT(numbers(aRead[0]), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(numbers(aRead[1]), ElementsAre(5, 6, 7, 8));
    ASSERT_EQ(pShape->readPoints(0, 1, std::span(aRead).first(1)), 1U);
    EXPECT_THAT(numbers(aRead[0]), ElementsAre(5, 6, 7, 8));
    ASSERT_EQ(pShape->readPoints(1, 0, aRead), 1U);
    EXPECT_THAT(numbers(aRead[0]), ElementsAre(9, 8, 7, 6));
    ASSERT_EQ(shape("POINT (1 2)")->readPoints(0, 0, aRead), 1U);
    EXPECT_TRUE(std::isnan(aRead[0].dZ));
    EXPECT_THROW(static_cast<void>(pShape->readPoints(0, 2, aRead)), Failure);
    EXPECT_THROW(static_cast<void>(pShape->readPoints(2, 0, aRead)), Failure);
}

TEST(Geometry, OfAMultipointIsOnePart) {
    const auto pShape = shape("MULTIPOINT ((1 2), (3 4))");
    EXPECT_EQ(pShape->geometryType(), 2);
    EXPECT_THAT(parts(*pShape), ElementsAre("1 2, 3 4"));
    EXPECT_EQ(pShape->length(), 0);
    EXPECT_EQ(text(*pShape->toPoint()), "3 4");
}

TEST(Geometry, OfAMultipointLeavesEmptyPointsOut) {
    const auto pShape = shape("MULTIPOINT ZM ((1 2 3 4), EMPTY, (5 6 7 8))");
    EXPECT_THAT(parts(*pShape), ElementsAre("1 2 z3 m4, 5 6 z7 m8"));
    std::array<host::PointValues, 4> aRead;
    ASSERT_EQ(pShape->readPoints(0, 1, aRead), 1U);
    EXPECT_EQ(aRead[0].dX, 5);
    EXPECT_EQ(text(*pShape->toPoint()), "5 6 z7 m8");
}

TEST(Geometry, OfLinesHasAPartForEachLine) {
    const auto pShape = shape("MULTILINESTRING ((0 0, 3 4), EMPTY, (10 0, 10 2, 12 2))");
    EXPECT_EQ(pShape->geometryType(), 3);
    EXPECT_THAT(parts(*pShape), ElementsAre("0 0, 3 4", "10 0, 10 2, 12 2"));
    EXPECT_EQ(pShape->length(), 9);
    EXPECT_EQ(text(*pShape->fromPoint()), "0 0");
    EXPECT_EQ(text(*pShape->toPoint()), "12 2");
}

TEST(Geometry, OfAreasHasAPartForEachRingAndTheSumOfTheRingsAsLength) {
    const auto pShape = shape("MULTIPOLYGON (((0 0, 4 0, 4 4, 0 4, 0 0), (1 1, 2 1, 2 2, 1 2, 1 1)), "
                              "((10 0, 13 0, 13 4, 10 0)))");
    EXPECT_EQ(pShape->geometryType(), 4);
    EXPECT_THAT(parts(*pShape),
                ElementsAre("0 0, 4 0, 4 4, 0 4, 0 0", "1 1, 2 1, 2 2, 1 2, 1 1", "10 0, 13 0, 13 4, 10 0"));
    EXPECT_EQ(pShape->length(), 16 + 4 + 12);
}

TEST(Geometry, OfTriangulatedSurfacesHasAPartForEachFacet) {
    const auto pShape = shape("TIN Z (((0 0 0, 3 0 0, 0 4 0, 0 0 0)), ((3 0 0, 3 4 1, 0 4 0, 3 0 0)))");
    EXPECT_EQ(pShape->geometryType(), 4);
    EXPECT_EQ(pShape->partCount(), 2);
    EXPECT_EQ(pShape->pointCount(0), 4);
    EXPECT_EQ(pShape->length(), 24);
}

TEST(Geometry, OfCollectionsHasTheirMembersPartsAndTheTypeThatTheyShare) {
    const auto pMixed = shape("GEOMETRYCOLLECTION (POINT (1 2), LINESTRING (0 0, 0 5))");
    EXPECT_EQ(pMixed->geometryType(), 0);
    EXPECT_THAT(parts(*pMixed), ElementsAre("1 2", "0 0, 0 5"));
    EXPECT_EQ(pMixed->length(), 5);
    EXPECT_EQ(shape("GEOMETRYCOLLECTION (LINESTRING (0 0, 0 5), LINESTRING (1 0, 1 5))")->geometryType(), 3);
}

TEST(Geometry, OfCollectionsHasTheTypeOfItsMembersThatAreNotEmpty) {
    for (const auto& [pWkt, lType] :
         {std::pair{"GEOMETRYCOLLECTION (POINT EMPTY, LINESTRING (0 0, 0 5))", 3},
          {"GEOMETRYCOLLECTION (LINESTRING (0 0, 0 5), POLYGON EMPTY)", 3},
          {"GEOMETRYCOLLECTION (GEOMETRYCOLLECTION EMPTY, POLYGON ((0 0, 1 0, 1 1, 0 0)))", 4},
          {"GEOMETRYCOLLECTION (POINT EMPTY, LINESTRING EMPTY)", 0},
          {"GEOMETRYCOLLECTION (GEOMETRYCOLLECTION (POINT (1 2), LINESTRING (0 0, 0 5)), POINT (1 2))", 0},
          {"GEOMETRYCOLLECTION (POINT (1 2), POLYGON ((0 0, 1 0, 1 1, 0 0)))", 0}}) {
        EXPECT_EQ(shape(pWkt)->geometryType(), lType) << pWkt;
    }
}

TEST(Geometry, OfCurvesHasVerticesOfLinesAndTheLengthOfTheCurve) {
    const auto pShape = shape("CIRCULARSTRING (0 0, 1 1, 2 0)");
    EXPECT_EQ(pShape->geometryType(), 3);
    EXPECT_DOUBLE_EQ(pShape->length(), std::numbers::pi);
    EXPECT_EQ(pShape->partCount(), 1);
    EXPECT_GT(pShape->pointCount(0), 3);
    EXPECT_EQ(text(*pShape->fromPoint()), "0 0");
    EXPECT_EQ(text(*pShape->toPoint()), "2 0");
    for (std::int32_t lIndex = 0; lIndex < pShape->pointCount(0); ++lIndex) {
        const auto pPoint = pShape->point(0, lIndex);
        EXPECT_THAT(std::hypot(pPoint->x() - 1, pPoint->y()), DoubleNear(1, 1e-9));
    }
    const auto pArea = shape("CURVEPOLYGON (COMPOUNDCURVE (CIRCULARSTRING (0 0, 1 1, 2 0), (2 0, 0 0)))");
    EXPECT_EQ(pArea->geometryType(), 4);
    EXPECT_DOUBLE_EQ(pArea->length(), std::numbers::pi + 2);
    EXPECT_EQ(pArea->partCount(), 1);
}

// The parts, with one "mid" for all the vertices in between whose coordinates are no whole numbers.
std::vector<std::string> measuredParts(const char* pWkt) {
    std::vector<std::string> all;
    const auto pShape = shape(pWkt);
    for (std::int32_t lPart = 0; lPart < pShape->partCount(); ++lPart) {
        std::vector<std::string> vertices;
        for (std::int32_t lIndex = 0; lIndex < pShape->pointCount(lPart); ++lIndex) {
            const auto pPoint = pShape->point(lPart, lIndex);
            const bool bWhole =
                pPoint->x() == std::trunc(pPoint->x()) && pPoint->y() == std::trunc(pPoint->y());
            const std::string sMid = std::isnan(pPoint->m()) ? "mid" : "mid with a measure";
            if (bWhole || vertices.empty() || vertices.back() != sMid)
                vertices.push_back(bWhole ? text(*pPoint) : sMid);
        }
        all.push_back(std::accumulate(
            std::next(vertices.begin()), vertices.end(), vertices.front(),
            [](const std::string& sLeft, const std::string& sRight) { return sLeft + ", " + sRight; }));
    }
    return all;
}

TEST(Geometry, OfMeasuredArcsHasMeasuresWhereTheDataHasThemAndNoneInBetween) {
    EXPECT_THAT(measuredParts("CIRCULARSTRING M (0 0 5, 1 1 6, 2 0 7)"), ElementsAre("0 0 m5, mid, 2 0 m7"));
    EXPECT_THAT(measuredParts("CIRCULARSTRING ZM (0 0 1 5, 1 1 1 6, 2 0 1 7, 3 1 1 8, 4 0 1 9)"),
                ElementsAre("0 0 z1 m5, mid, 2 0 z1 m7, mid, 4 0 z1 m9"));
    EXPECT_THAT(measuredParts("CURVEPOLYGON M (CIRCULARSTRING M (0 0 1, 2 0 2, 0 0 3))"),
                ElementsAre("0 0 m1, mid, 0 0 m3"));
}

TEST(Geometry, OfLinesJoinedToArcsKeepsTheMeasuresOfTheLines) {
    EXPECT_THAT(measuredParts("COMPOUNDCURVE M ((-5 0 1, 0 0 2), CIRCULARSTRING M (0 0 2, 1 1 3, 2 0 4), "
                              "(2 0 4, 3 0 5, 5 0 6))"),
                ElementsAre("-5 0 m1, 0 0 m2, mid, 2 0 m4, 3 0 m5, 5 0 m6"));
    EXPECT_THAT(measuredParts("CURVEPOLYGON M (COMPOUNDCURVE M ((-5 0 1, 0 0 2), CIRCULARSTRING M (0 0 2, 1 "
                              "1 3, 2 0 4), (2 0 4, -5 0 1)))"),
                ElementsAre("-5 0 m1, 0 0 m2, mid, 2 0 m4, -5 0 m1"));
    EXPECT_THAT(measuredParts("GEOMETRYCOLLECTION M (MULTICURVE M ((0 0 1, 1 1 2), CIRCULARSTRING M (0 0 2, "
                              "1 1 3, 2 0 4)), POINT M (1 2 3))"),
                ElementsAre("0 0 m1, 1 1 m2", "0 0 m2, mid, 2 0 m4", "1 2 m3"));
    EXPECT_THAT(measuredParts("COMPOUNDCURVE ((-5 0, 0 0), CIRCULARSTRING (0 0, 1 1, 2 0))"),
                ElementsAre("-5 0, 0 0, mid, 2 0"));
}

TEST(Geometry, OfArcsThatAreStraightHasTheirPoints) {
    EXPECT_THAT(measuredParts("CIRCULARSTRING M (0 0 5, 1 0 6, 2 0 7)"),
                ElementsAre("0 0 m5, 1 0 m6, 2 0 m7"));
}

TEST(Geometry, ThatIsEmptyHasNoPartsAndNoEnds) {
    for (const char* pWkt :
         {"POINT EMPTY", "LINESTRING EMPTY", "MULTIPOLYGON EMPTY", "GEOMETRYCOLLECTION EMPTY"}) {
        const auto pShape = shape(pWkt);
        EXPECT_EQ(pShape->partCount(), 0) << pWkt;
        EXPECT_EQ(pShape->length(), 0);
        EXPECT_EQ(pShape->fromPoint(), nullptr);
        EXPECT_EQ(pShape->toPoint(), nullptr);
    }
}

TEST(Geometry, BeyondItsPartsAndVerticesIsASubscriptOutOfRange) {
    const auto pShape = shape("LINESTRING (0 0, 1 1)");
    for (const auto& [lPart, lIndex] : {std::pair{-1, 0}, {1, 0}, {0, -1}, {0, 2}}) {
        try {
            static_cast<void>(pShape->point(lPart, lIndex));
            ADD_FAILURE();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.number(), 9);
        }
    }
}

TEST(Shape, IsThatOfItsFeatureAndTheValueOfItsGeometryField) {
    const TemporaryFolder folder;
    const auto pRoads = openWorkspace(makeCity(folder))->openFeatureClass("roads");
    const auto pRow = pRoads->search(nullptr)->nextRow();
    const host::GisGeometryPtr pShape = pRow->shape();
    ASSERT_NE(pShape, nullptr);
    EXPECT_THAT(parts(*pShape), ElementsAre("0 1, 3 1, 3 5"));
    EXPECT_EQ(pShape->length(), 7);
    EXPECT_EQ(std::get<ObjectPtr>(pRow->value(1)), pShape);
    EXPECT_EQ(pRow->shape(), pShape);
}

TEST(Shape, OutlivesItsRow) {
    const TemporaryFolder folder;
    const auto pCursor = openWorkspace(makeCity(folder))->openFeatureClass("roads")->search(nullptr);
    const host::GisGeometryPtr pFirst = pCursor->nextRow()->shape();
    const host::GisGeometryPtr pSecond = pCursor->nextRow()->shape();
    EXPECT_THAT(parts(*pFirst), ElementsAre("0 1, 3 1, 3 5"));
    EXPECT_THAT(parts(*pSecond), ElementsAre("0 2, 3 2, 3 6"));
}

TEST(Shape, GoesBeforeTheNextOnesAreReadWhenNobodyHoldsIt) {
    const TemporaryFolder folder;
    const auto pCursor = openWorkspace(makeCity(folder))->openFeatureClass("roads")->search(nullptr);
    static_cast<void>(pCursor->nextRow());
    // The second and the third are read together, the fourth by itself.
    auto pSecond = pCursor->nextRow();
    auto pThird = pCursor->nextRow();
    const std::weak_ptr<host::GisGeometry> pOfSecond = pSecond->shape();
    const std::weak_ptr<host::GisGeometry> pOfThird = pThird->shape();
    pSecond.reset();
    pThird.reset();
    EXPECT_FALSE(pOfSecond.expired());
    EXPECT_FALSE(pOfThird.expired());
    ASSERT_NE(pCursor->nextRow(), nullptr);
    EXPECT_TRUE(pOfSecond.expired());
    EXPECT_TRUE(pOfThird.expired());
}

TEST(Shape, IsNothingForPlainRowsAndForFeaturesWithoutOne) {
    const TemporaryFolder folder;
    const auto pWorkspace = openWorkspace(makeCity(folder));
    EXPECT_EQ(pWorkspace->openTable("notes")->search(nullptr)->nextRow()->shape(), nullptr);
    const host::GisQueryFilter filter{"NAME='R5'"};
    const auto pRow = pWorkspace->openTable("roads")->search(&filter)->nextRow();
    EXPECT_EQ(pRow->shape(), nullptr);
    EXPECT_TRUE(isNull(pRow->value(1)));
}

} // namespace
} // namespace halvane::tests
