// Shapes as texts.

#include "base/Failure.h"
#include "base/Numbers.h"
#include "base/Text.h"
#include "oracle/second/PlainShape.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>

namespace halvane::oracle {

using host::PointValues;

std::string plainCoordinate(double dValue, std::int32_t lPlaces) {
    if (lPlaces > 0)
        return fixedText(dValue, lPlaces);
    std::array<char, 40> sBuffer{};
    const auto end = std::to_chars(sBuffer.data(), sBuffer.data() + sBuffer.size(), std::abs(dValue),
                                   std::chars_format::scientific, 14);
    const std::string sText(sBuffer.data(), end.ptr); // "1.25000000000000e+02"
    const std::size_t nExponent = sText.find('e');
    const int nPoint = std::atoi(sText.c_str() + nExponent + 1) + 1;
    std::string sDigits = sText.substr(0, 1) + sText.substr(2, nExponent - 2);
    if (nPoint <= 0)
        sDigits.insert(0, static_cast<std::size_t>(1 - nPoint), '0');
    const auto nWhole = static_cast<std::size_t>(std::max(nPoint, 1));
    sDigits.append(sDigits.size() < nWhole ? nWhole - sDigits.size() : 0, '0');
    std::string sDecimals = sDigits.substr(nWhole);
    while (!sDecimals.empty() && sDecimals.back() == '0')
        sDecimals.pop_back();
    return (dValue < 0 ? "-" : "") + sDigits.substr(0, nWhole) + (sDecimals.empty() ? "" : "." + sDecimals);
}

std::string Notation::position(const PointValues& point, const std::string& sBetween, bool bHeight) const {
    return fnNumber(bYFirst ? point.dY : point.dX) + sBetween + fnNumber(bYFirst ? point.dX : point.dY) +
           (bHeight ? sBetween + fnNumber(point.dZ) : "");
}

namespace {

template<class Items, class TextOf>
std::string joined(const Items& items, const std::string& sBetween, const TextOf& textOf) {
    std::string sText;
    bool bFirst = true;
    for (const auto& item : items) {
        sText += (bFirst ? "" : sBetween) + textOf(item);
        bFirst = false;
    }
    return sText;
}

} // namespace

std::string Notation::positions(const Points& aPoints, const std::string& sBetween, bool bHeights) const {
    return joined(aPoints, " ",
                  [&](const PointValues& point) { return position(point, sBetween, bHeights); });
}

namespace {

// ---- Lists of positions ----

/// The points of the only part.
Points onlyPart(const PlainShape& shape) {
    if (shape.nParts != 1)
        throw Failure(
            FailureNumber::TypeMismatch,
            "a " + shape.sType + " of " + std::to_string(shape.nParts) +
                " parts is more than one list of positions can tell; write it as GML, KML, GeoJSON or WKT");
    Points aPoints;
    for (const ShapeMember& member : shape.aMembers)
        aPoints.insert(aPoints.end(), member.aRuns.front().begin(), member.aRuns.front().end());
    return aPoints;
}

std::string pos(const PlainShape& shape, const Notation& notation) {
    const Points aPoints = onlyPart(shape);
    if (shape.aMembers.size() != 1 || shape.aMembers.front().sType != "Point")
        throw Failure(FailureNumber::TypeMismatch,
                      "a " + shape.sType + " has no position of its own; write its centroid, or a posList");
    return notation.position(aPoints.front(), " ", shape.bHeights);
}

// ---- WKT ----

std::string wkt(const PlainShape& shape, const Notation& notation) {
    const auto point = [&](const PointValues& one) {
        return notation.position(one, " ", shape.bHeights) +
               (shape.bMeasures ? " " + notation.fnNumber(one.dM) : "");
    };
    const auto run = [&](const Points& aRun) { return "(" + joined(aRun, ", ", point) + ")"; };
    const auto word = [&](const std::string& sType) {
        const std::string sDimensions = std::string(shape.bHeights ? "Z" : "") + (shape.bMeasures ? "M" : "");
        return upperCase(sType) + " " + sDimensions + (sDimensions.empty() ? "" : " ");
    };
    const auto member = [&](const ShapeMember& one) {
        return (shape.isCollection() ? word(one.sType) : "") +
               (one.sType == "Polygon" ? "(" + joined(one.aRuns, ", ", run) + ")" : run(one.aRuns.front()));
    };
    const std::string sMembers = joined(shape.aMembers, ", ", member);
    return word(shape.sType) + (shape.isOfMembers() ? "(" + sMembers + ")" : sMembers);
}

// ---- GeoJSON ----

std::string geoJson(const PlainShape& shape, const Notation& notation) {
    const auto point = [&](const PointValues& one) {
        return "[" + notation.position(one, ",", shape.bHeights) + "]";
    };
    const auto run = [&](const Points& aRun) { return "[" + joined(aRun, ",", point) + "]"; };
    const auto coordinates = [&](const ShapeMember& one) {
        return one.sType == "Point"        ? point(one.aRuns.front().front())
               : one.sType == "LineString" ? run(one.aRuns.front())
                                           : "[" + joined(one.aRuns, ",", run) + "]";
    };
    const auto object = [](const std::string& sType, const std::string& sMember, const std::string& sValue) {
        return R"({"type":")" + sType + R"(",")" + sMember + "\":" + sValue + "}";
    };
    if (shape.isCollection())
        return object(shape.sType, "geometries",
                      "[" + joined(shape.aMembers, ",", [&](const ShapeMember& one) {
                          return object(one.sType, "coordinates", coordinates(one));
                      }) + "]");
    const std::string sAll = joined(shape.aMembers, ",", coordinates);
    return object(shape.sType, "coordinates", shape.isOfMembers() ? "[" + sAll + "]" : sAll);
}

// ---- SVG ----

std::string svg(const PlainShape& shape, const Notation& notation) {
    const auto point = [&](PointValues one) {
        one.dY = -one.dY; // downwards
        return notation.position(one, " ", false);
    };
    const auto run = [&](const Points& aRun) { return "M " + joined(aRun, " L ", point); };
    return joined(shape.aMembers, " ", [&](const ShapeMember& one) {
        return one.sType == "Point" ? run(one.aRuns.front()) + " h 0"
               : one.sType == "LineString"
                   ? run(one.aRuns.front())
                   : joined(one.aRuns, " ", [&](const Points& aRing) { return run(aRing) + " Z"; });
    });
}

} // namespace

std::string textOfPoints(const PlainShape& shape, const std::string& sForm, const Notation& notation) {
    if (sForm == "pos")
        return pos(shape, notation);
    if (sForm == "posList")
        return notation.positions(onlyPart(shape), " ", shape.bHeights);
    if (sForm == "coordinates")
        return notation.positions(onlyPart(shape), ",", shape.bHeights);
    if (sForm == "WKT")
        return wkt(shape, notation);
    if (sForm == "GeoJSON")
        return geoJson(shape, notation);
    if (sForm == "SVG")
        return svg(shape, notation);
    return notation.position(centroidOf(shape), " ", false);
}

} // namespace halvane::oracle
