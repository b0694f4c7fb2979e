// Feature classes, shapes and spatial references.

#include "host/SpatialReference.h"
#include "host/conformance/Conformance.h"

#include <array>
#include <cmath>

namespace halvane::test::conformance {

namespace {

using namespace host;

class FeatureClasses : public HostTest {};
class References : public HostTest {};

class Shapes : public HostTest {
protected:
    /// For each road that has a shape.
    void ofEachRoad(const std::function<void(const GisGeometry&, const TownShape&)>& test) {
        inTown([&](const OpenTown& open) {
            const GisCursorPtr pCursor = open.roads()->search(nullptr);
            for (const TownRow& told : town().roads.aRows) {
                const GisRowPtr pRow = pCursor->nextRow();
                ASSERT_NE(pRow, nullptr);
                const GisGeometryPtr pShape = pRow->shape();
                ASSERT_EQ(pShape != nullptr, told.shape.has_value()) << told.nObjectId;
                if (told.shape.has_value())
                    test(*pShape, *told.shape);
            }
        });
    }
};

/// A coordinate that a point has not is not a number.
bool equal(double dOne, double dOther) {
    return dOne == dOther || (std::isnan(dOne) && std::isnan(dOther));
}

testing::AssertionResult isAt(const PointValues& point, const PointValues& told) {
    if (equal(point.dX, told.dX) && equal(point.dY, told.dY) && equal(point.dZ, told.dZ) &&
        equal(point.dM, told.dM))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << point.dX << ' ' << point.dY << ' ' << point.dZ << ' ' << point.dM;
}

PointValues valuesOf(const GisPoint& point) {
    return {point.x(), point.y(), point.z(), point.m()};
}

template<class Call>
testing::AssertionResult isNotAvailable(const Call& call) {
    const auto failure = failureOf(call);
    if (failure.has_value() && !failure->description().empty() &&
        failure->number() == static_cast<std::int32_t>(FailureNumber::ActionNotSupported))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << (failure.has_value() ? failure->description() : "it does not fail");
}

void expectReference(const GisSpatialReferencePtr& pReference, const TownReference& told) {
    ASSERT_NE(pReference, nullptr);
    const std::string sDescription = pReference->description();
    EXPECT_EQ(sDescription.substr(0, sDescription.find('\n')), told.sFirstLine);
    EXPECT_EQ(sDescription.find('\r'), std::string::npos);
    const auto xyDomain = pReference->xyDomain();
    ASSERT_EQ(xyDomain.has_value(), told.xyDomain.has_value());
    if (xyDomain.has_value()) {
        EXPECT_EQ(xyDomain->dXMin, told.xyDomain->dXMin);
        EXPECT_EQ(xyDomain->dYMin, told.xyDomain->dYMin);
        EXPECT_EQ(xyDomain->dXMax, told.xyDomain->dXMax);
        EXPECT_EQ(xyDomain->dYMax, told.xyDomain->dYMax);
        EXPECT_EQ(xyDomain->dFalseX, told.xyDomain->dFalseX);
        EXPECT_EQ(xyDomain->dFalseY, told.xyDomain->dFalseY);
        EXPECT_EQ(xyDomain->dScale, told.xyDomain->dScale);
    }
    const auto expectMeasures = [](const auto& domain, const auto& toldDomain) {
        ASSERT_EQ(domain.has_value(), toldDomain.has_value());
        if (domain.has_value()) {
            EXPECT_EQ(domain->dMin, toldDomain->dMin);
            EXPECT_EQ(domain->dMax, toldDomain->dMax);
            EXPECT_EQ(domain->dFalseOrigin, toldDomain->dFalseOrigin);
            EXPECT_EQ(domain->dScale, toldDomain->dScale);
        }
    };
    expectMeasures(pReference->zDomain(), told.zDomain);
    expectMeasures(pReference->mDomain(), told.mDomain);
}

} // namespace

TEST_F(FeatureClasses, CountAllTheirFeatures) {
    inTown([this](const OpenTown& open) {
        EXPECT_EQ(open.roads()->featureCount(), static_cast<std::int64_t>(town().roads.aRows.size()));
    });
}

TEST_F(FeatureClasses, TellTheTypeOfTheirShapes) {
    inTown([](const OpenTown& open) {
        EXPECT_EQ(open.roads()->shapeType(), static_cast<std::int32_t>(ShapeType::Polyline));
    });
}

TEST_F(FeatureClasses, TellTheirNameAndWorkspaceAsTablesDo) {
    inTown([this](const OpenTown& open) {
        EXPECT_EQ(open.roads()->datasetName(), town().roads.sName);
        EXPECT_EQ(open.roads()->workspace()->pathName(), open.sDatabase);
        EXPECT_EQ(open.signs()->datasetName(), town().signs.sName);
        EXPECT_EQ(open.signs()->workspace()->pathName(), open.sDatabase);
    });
}

TEST_F(Shapes, TellTheirTypeAndLength) {
    ofEachRoad([](const GisGeometry& shape, const TownShape& told) {
        EXPECT_EQ(shape.geometryType(), static_cast<std::int32_t>(told.type));
        EXPECT_DOUBLE_EQ(shape.length(), told.dLength);
    });
}

TEST_F(Shapes, HaveTheirVerticesPartByPart) {
    ofEachRoad([](const GisGeometry& shape, const TownShape& told) {
        ASSERT_EQ(shape.partCount(), static_cast<std::int32_t>(told.aParts.size()));
        for (std::size_t nPart = 0; nPart < told.aParts.size(); ++nPart) {
            const auto lPart = static_cast<std::int32_t>(nPart);
            ASSERT_EQ(shape.pointCount(lPart), static_cast<std::int32_t>(told.aParts[nPart].size()));
            for (std::size_t n = 0; n < told.aParts[nPart].size(); ++n)
                EXPECT_TRUE(
                    isAt(valuesOf(*shape.point(lPart, static_cast<std::int32_t>(n))), told.aParts[nPart][n]));
        }
    });
}

TEST_F(Shapes, TellThatThePartsOfALineAreLines) {
    ofEachRoad([](const GisGeometry& shape, const TownShape& told) {
        for (std::int32_t lPart = 0; lPart < static_cast<std::int32_t>(told.aParts.size()); ++lPart)
            EXPECT_EQ(shape.partRole(lPart), PartRole::Line);
        EXPECT_TRUE(failsWithNumberAndText(
            [&] { return shape.partRole(static_cast<std::int32_t>(told.aParts.size())); }));
    });
}

TEST_F(Shapes, HandOutManyVerticesAtOnceOrNone) {
    ofEachRoad([](const GisGeometry& shape, const TownShape& told) {
        const std::vector<PointValues>& aTold = told.aParts.back();
        const auto lPart = static_cast<std::int32_t>(told.aParts.size() - 1);
        std::array<PointValues, 8> aPoints;
        for (std::int32_t lFirst = 0; lFirst < static_cast<std::int32_t>(aTold.size()); ++lFirst) {
            const std::size_t nRead = shape.readPoints(lPart, lFirst, aPoints);
            ASSERT_LE(nRead, aTold.size() - static_cast<std::size_t>(lFirst));
            for (std::size_t n = 0; n < nRead; ++n)
                EXPECT_TRUE(isAt(aPoints[n], aTold[static_cast<std::size_t>(lFirst) + n]));
        }
        EXPECT_LE(shape.readPoints(lPart, 0, std::span(aPoints).first(1)), 1U);
    });
}

TEST_F(Shapes, BeginAndEndAtTheirFirstAndLastVertex) {
    ofEachRoad([](const GisGeometry& shape, const TownShape& told) {
        EXPECT_TRUE(isAt(valuesOf(*shape.fromPoint()), told.aParts.front().front()));
        EXPECT_TRUE(isAt(valuesOf(*shape.toPoint()), told.aParts.back().back()));
    });
}

TEST_F(Shapes, FailBeyondTheirPartsAndVertices) {
    ofEachRoad([](const GisGeometry& shape, const TownShape& told) {
        const auto lParts = static_cast<std::int32_t>(told.aParts.size());
        EXPECT_TRUE(failsWithNumberAndText([&] { return shape.pointCount(lParts); }));
        EXPECT_TRUE(failsWithNumberAndText([&] { return shape.point(lParts, 0)->x(); }));
        EXPECT_TRUE(failsWithNumberAndText(
            [&] { return shape.point(0, static_cast<std::int32_t>(told.aParts[0].size()))->x(); }));
    });
}

TEST_F(Shapes, AreAlsoTheValuesOfTheirField) {
    inTown([this](const OpenTown& open) {
        const std::int32_t lShape = town().roads.indexOf(FieldType::Geometry);
        const GisCursorPtr pCursor = open.roads()->search(nullptr);
        for (const TownRow& told : town().roads.aRows) {
            const GisRowPtr pRow = pCursor->nextRow();
            const auto pShape = objectAs<GisGeometry>(toValue(pRow->value(lShape)));
            ASSERT_EQ(pShape != nullptr, told.shape.has_value());
            if (pShape != nullptr)
                EXPECT_DOUBLE_EQ(pShape->length(), told.shape->dLength);
            else
                EXPECT_TRUE(isNull(pRow->value(lShape)));
        }
    });
}

TEST_F(References, OfAMapTellTheirDescriptionAndDomains) {
    inTown([this](const OpenTown& open) {
        expectReference(open.map()->spatialReference(), town().mapReference);
    });
}

TEST_F(References, OfALayerAreThoseOfItsClass) {
    inTown([this](const OpenTown& open) {
        expectReference(open.featureLayer(0)->spatialReference(), town().roadsReference);
        expectReference(open.roads()->spatialReference(), town().roadsReference);
    });
}

TEST_F(References, TellTheirCodeAndTheOrderOfTheirAxesWhereTheyAreKnown) {
    inTown([this](const OpenTown& open) {
        const auto pReference = open.roads()->spatialReference();
        EXPECT_EQ(pReference->authorityCode(), open.bTransforms ? town().roadsReference.sCode : "");
        if (open.bTransforms)
            EXPECT_EQ(pReference->isNorthFirst(), town().roadsReference.bNorthFirst);
        else
            EXPECT_TRUE(isNotAvailable([&] { return pReference->isNorthFirst(); }));
    });
}

TEST_F(References, AreFoundByTheirCodesAndByNothingElse) {
    inTown([this](const OpenTown& open) {
        if (!open.bTransforms) {
            EXPECT_TRUE(isNotAvailable([&] { return open.pHost->referenceOf("EPSG:4326"); }));
            return;
        }
        const auto pFound = open.pHost->referenceOf(town().transformation.sCode);
        ASSERT_NE(pFound, nullptr);
        EXPECT_EQ(pFound->authorityCode(), town().transformation.sCode);
        for (const char* pText :
             {"", "EPSG", "EPSG:", ":4326", "EPSG:99999999", "NOBODY:4326", "/etc/hosts", "+proj=longlat",
              "EPSG:4326+5773", "GEOGCRS[\"a\"]", "urn:ogc:def:crs:EPSG::1"})
            EXPECT_TRUE(failsWithNumberAndText([&] { return open.pHost->referenceOf(pText); })) << pText;
    });
}

TEST_F(References, TransformPointsAndLeaveTheirMeasures) {
    inTown([this](const OpenTown& open) {
        const auto pSource = open.roads()->spatialReference();
        if (!open.bTransforms) {
            EXPECT_TRUE(isNotAvailable([&] { return pSource->transformationTo(*pSource); }));
            return;
        }
        const TownTransformation& told = town().transformation;
        const auto pWay = pSource->transformationTo(*open.pHost->referenceOf(told.sCode));
        ASSERT_NE(pWay, nullptr);
        std::vector<PointValues> points(100, told.from);
        pWay->transform(points);
        for (const PointValues& point : points) {
            EXPECT_NEAR(point.dX, told.to.dX, 0.001);
            EXPECT_NEAR(point.dY, told.to.dY, 0.001);
            EXPECT_EQ(point.dZ, told.to.dZ);
            EXPECT_EQ(point.dM, told.to.dM);
        }
        EXPECT_EQ(pSource->transformationTo(*pSource), nullptr) << "its coordinates stay";
    });
}

TEST_F(References, FailForAPointThatHasNoPlaceInTheOther) {
    inTown([this](const OpenTown& open) {
        if (!open.bTransforms)
            return;
        const TownTransformation& told = town().transformation;
        const auto pWay =
            open.roads()->spatialReference()->transformationTo(*open.pHost->referenceOf(told.sCode));
        std::vector<PointValues> points(70, told.from);
        points.back() = told.nowhere;
        EXPECT_TRUE(failsWithNumberAndText([&] { return pWay->transform(points), 0; }));
        EXPECT_TRUE(failsWithNumberAndText([&] {
            return pWay->transformBounds({told.from.dX, told.from.dY, told.nowhere.dX + 10, told.nowhere.dY});
        }));
    });
}

TEST_F(References, TransformTheBoundsOfABox) {
    inTown([this](const OpenTown& open) {
        if (!open.bTransforms)
            return;
        const TownTransformation& told = town().transformation;
        const auto pWay =
            open.roads()->spatialReference()->transformationTo(*open.pHost->referenceOf(told.sCode));
        const Bounds bounds =
            pWay->transformBounds({told.from.dX, told.from.dY, told.from.dX + 1, told.from.dY + 1});
        EXPECT_NEAR(bounds.dXMin, told.to.dX, 0.001);
        EXPECT_NEAR(bounds.dYMin, told.to.dY, 0.001);
        EXPECT_GT(bounds.dXMax, bounds.dXMin);
        EXPECT_GT(bounds.dYMax, bounds.dYMin);
    });
}

} // namespace halvane::test::conformance
