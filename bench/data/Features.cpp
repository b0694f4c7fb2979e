#include "Datasets.h"
#include "Makers.h"
#include "Random.h"

#include <array>
#include <cmath>
#include <numbers>
#include <string>

namespace halvane::bench {

namespace {

constexpr std::array<const char*, 16> words{"harbour", "mill",    "bridge", "meadow", "church", "market",
                                            "orchard", "quay",    "tower",  "well",   "ferry",  "garden",
                                            "Straße",  "rivière", "søen",   "połu"};
constexpr std::array<const char*, 6> joints{" ", " & ", " <old> ", ", ", " ", " \"new\" "};
constexpr std::array<const char*, 8> kinds{"residential", "industrial", "farmland", "forest",
                                           "water",       "rail",       "park",     "other"};

std::string someWords(Random& random, int lCount) {
    std::string sText = random.pick(words);
    for (int l = 1; l < lCount; ++l) {
        sText += random.pick(joints);
        sText += random.pick(words);
    }
    return sText;
}

double rounded(double dValue, double dSteps) {
    return std::round(dValue * dSteps) / dSteps;
}

/// A place in whole millimetres.
OGRPoint somePlace(Random& random) {
    const double dX = 300'000 + rounded(random.unit() * 400'000, 1000);
    const double dY = 5'200'000 + rounded(random.unit() * 900'000, 1000);
    return {dX, dY};
}

/// One value in seven is missing.
bool isMissing(Random& random) {
    return random.oneIn(7);
}

void fillPoint(OGRFeature& feature, std::int64_t nNumber, Random& random) {
    feature.SetField(0, static_cast<int>(nNumber));
    feature.SetField(1, static_cast<GIntBig>(5'000'000'000 + random.below(4'000'000'000'000)));
    feature.SetField(2, rounded(random.unit() * 2000 - 200, 100));
    feature.SetField(3, random.unit());
    feature.SetField(4, someWords(random, 2).c_str());
    if (!isMissing(random))
        feature.SetField(5, someWords(random, 1 + random.intBelow(6)).c_str());
    feature.SetField(6, random.pick(kinds));
    if (!isMissing(random))
        feature.SetField(7, 1950 + random.intBelow(75), 1 + random.intBelow(12), 1 + random.intBelow(28));
    if (!isMissing(random))
        feature.SetField(8, random.intBelow(100'000) - 50'000);
    if (!isMissing(random))
        feature.SetField(9, rounded(random.unit() * 1'000'000, 1000));
    const OGRPoint place = somePlace(random);
    feature.SetGeometry(&place);
}

/// A ring of places, the first repeated at its end.
OGRLinearRing ringOfPlaces(std::int64_t nVertices, Random& random) {
    OGRLinearRing ring;
    ring.setNumPoints(static_cast<int>(nVertices));
    for (int l = 0; l < ring.getNumPoints() - 1; ++l) {
        const OGRPoint place = somePlace(random);
        ring.setPoint(l, place.getX(), place.getY());
    }
    ring.setPoint(ring.getNumPoints() - 1, ring.getX(0), ring.getY(0));
    return ring;
}

/// One area of so many rings with so many vertices each.
void makeOneArea(const std::string& sPath, std::int64_t nRings, std::int64_t nVertices) {
    const auto pDataset = createDataset(sPath);
    OGRLayer& layer =
        createLayer(*pDataset, "areas", wkbPolygon, {{"number", OFTInteger}, {"kind", OFTString}});
    Random random(5);
    writeFeatures(*pDataset, layer, 1, [&](OGRFeature& feature, std::int64_t nNumber) {
        feature.SetField(0, static_cast<int>(nNumber));
        feature.SetField(1, random.pick(kinds));
        OGRPolygon polygon;
        for (std::int64_t n = 0; n < nRings; ++n) {
            OGRLinearRing ring = ringOfPlaces(nVertices, random);
            polygon.addRing(&ring);
        }
        feature.SetGeometry(&polygon);
    });
}

/// A ring of 16 to 24 vertices around a place, the first repeated at its end.
void fillArea(OGRFeature& feature, std::int64_t nNumber, Random& random) {
    feature.SetField(0, static_cast<int>(nNumber));
    feature.SetField(1, random.pick(kinds));
    const OGRPoint centre = somePlace(random);
    const int lVertices = 15 + random.intBelow(9);
    OGRLinearRing ring;
    for (int l = 0; l < lVertices; ++l) {
        const double dAngle = 2 * std::numbers::pi * l / lVertices;
        const double dRadius = 50 + 150 * random.unit();
        ring.addPoint(rounded(centre.getX() + dRadius * std::cos(dAngle), 1000),
                      rounded(centre.getY() + dRadius * std::sin(dAngle), 1000));
    }
    ring.closeRings();
    OGRPolygon polygon;
    polygon.addRing(&ring);
    feature.SetGeometry(&polygon);
}

} // namespace

void makePoints(const std::string& sPath, std::int64_t nCount) {
    const auto pDataset = createDataset(sPath);
    OGRLayer& layer = createLayer(*pDataset, "points", wkbPoint,
                                  {{"number", OFTInteger},
                                   {"code", OFTInteger64},
                                   {"height", OFTReal},
                                   {"share", OFTReal},
                                   {"name", OFTString},
                                   {"remark", OFTString},
                                   {"kind", OFTString},
                                   {"built", OFTDate},
                                   {"balance", OFTInteger},
                                   {"value", OFTReal}});
    Random random(1);
    writeFeatures(*pDataset, layer, nCount,
                  [&](OGRFeature& feature, std::int64_t nNumber) { fillPoint(feature, nNumber, random); });
}

void makeServerPoints(const std::string& sConnection, std::int64_t nCount) {
    {
        const auto pServer = createDataset(sConnection);
        for (const char* pStatement :
             {"CREATE EXTENSION IF NOT EXISTS postgis", "DROP TABLE IF EXISTS points"})
            pServer->ExecuteSQL(pStatement, nullptr, nullptr);
    }
    const auto pServer = createDataset(sConnection); // what it can do is found out at the opening
    CPLSetConfigOption("PG_USE_COPY", "YES");
    OGRLayer& layer =
        createLayer(*pServer, "points", wkbPoint,
                    {{"number", OFTInteger}, {"name", OFTString}, {"height", OFTReal}, {"built", OFTDate}});
    Random random(6);
    writeFeatures(*pServer, layer, nCount, [&](OGRFeature& feature, std::int64_t nNumber) {
        feature.SetField(0, static_cast<int>(nNumber));
        feature.SetField(1, someWords(random, 2).c_str());
        feature.SetField(2, rounded(random.unit() * 2000 - 200, 100));
        if (!isMissing(random))
            feature.SetField(3, 1950 + random.intBelow(75), 1 + random.intBelow(12), 1 + random.intBelow(28));
        const OGRPoint place = somePlace(random);
        feature.SetGeometry(&place);
    });
    pServer->ExecuteSQL("VACUUM ANALYZE points", nullptr, nullptr);
}

void makeAreas(const std::string& sPath, std::int64_t nCount) {
    const auto pDataset = createDataset(sPath);
    OGRLayer& layer =
        createLayer(*pDataset, "areas", wkbPolygon, {{"number", OFTInteger}, {"kind", OFTString}});
    Random random(2);
    writeFeatures(*pDataset, layer, nCount,
                  [&](OGRFeature& feature, std::int64_t nNumber) { fillArea(feature, nNumber, random); });
}

void makeHugeArea(const std::string& sPath, std::int64_t nVertices) {
    makeOneArea(sPath, 1, nVertices);
}

void makeAreaOfRings(const std::string& sPath, std::int64_t nRings) {
    makeOneArea(sPath, nRings, 4);
}

void makeRelated(const std::string& sPath, std::int64_t nParents) {
    constexpr std::int64_t nChildrenOfEach = 5;
    const auto pDataset = createDataset(sPath);
    Random random(3);
    OGRLayer& parents =
        createLayer(*pDataset, "parents", wkbPoint, {{"link", OFTInteger}, {"name", OFTString}});
    writeFeatures(*pDataset, parents, nParents, [&](OGRFeature& feature, std::int64_t nNumber) {
        feature.SetField(0, static_cast<int>(nNumber));
        feature.SetField(1, someWords(random, 2).c_str());
        const OGRPoint place = somePlace(random);
        feature.SetGeometry(&place);
    });
    OGRLayer& children = createLayer(*pDataset, "children", wkbNone,
                                     {{"link", OFTInteger}, {"name", OFTString}, {"amount", OFTReal}});
    writeFeatures(*pDataset, children, nParents * nChildrenOfEach, [&](OGRFeature& feature, std::int64_t) {
        feature.SetField(0, random.intBelow(static_cast<int>(nParents)));
        feature.SetField(1, someWords(random, 2).c_str());
        feature.SetField(2, rounded(random.unit() * 1000, 100));
    });
}

void makeNested(const std::string& sPath, std::int64_t nParents) {
    const std::int64_t nChildren = 5 * nParents;
    const auto pDataset = createDataset(sPath);
    Random random(5);
    const auto fill = [&](OGRFeature& feature, std::int64_t nLink) {
        feature.SetField(0, static_cast<int>(nLink));
        feature.SetField(1, someWords(random, 2).c_str());
    };
    OGRLayer& parents =
        createLayer(*pDataset, "parents", wkbPoint, {{"link", OFTInteger}, {"name", OFTString}});
    writeFeatures(*pDataset, parents, nParents, [&](OGRFeature& feature, std::int64_t nNumber) {
        fill(feature, nNumber);
        const OGRPoint place = somePlace(random);
        feature.SetGeometry(&place);
    });
    OGRLayer& children = createLayer(*pDataset, "children", wkbNone,
                                     {{"link", OFTInteger}, {"name", OFTString}, {"number", OFTInteger}});
    writeFeatures(*pDataset, children, nChildren, [&](OGRFeature& feature, std::int64_t nNumber) {
        fill(feature, random.intBelow(static_cast<int>(nParents)));
        feature.SetField(2, static_cast<int>(nNumber));
    });
    OGRLayer& grandchildren = createLayer(*pDataset, "grandchildren", wkbNone,
                                          {{"link", OFTInteger}, {"name", OFTString}, {"amount", OFTReal}});
    writeFeatures(*pDataset, grandchildren, 3 * nChildren, [&](OGRFeature& feature, std::int64_t) {
        fill(feature, random.intBelow(static_cast<int>(nChildren)));
        feature.SetField(2, rounded(random.unit() * 1000, 100));
    });
}

void makeSmall(const std::string& sPath) {
    constexpr std::int64_t nPlaces = 10;
    const auto pDataset = createDataset(sPath);
    OGRLayer& layer =
        createLayer(*pDataset, "places", wkbPoint, {{"number", OFTInteger}, {"name", OFTString}});
    Random random(4);
    writeFeatures(*pDataset, layer, nPlaces, [&](OGRFeature& feature, std::int64_t nNumber) {
        feature.SetField(0, static_cast<int>(nNumber));
        feature.SetField(1, someWords(random, 2).c_str());
        const OGRPoint place = somePlace(random);
        feature.SetGeometry(&place);
    });
}

} // namespace halvane::bench
