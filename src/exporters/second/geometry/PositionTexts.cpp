#include "exporters/second/geometry/PositionTexts.h"

#include "base/Failure.h"

namespace halvane {

namespace {

const ShapePartFacts& onlyPart(const ShapeParts& parts) {
    if (parts.all().size() != 1)
        throw Failure(
            FailureNumber::TypeMismatch,
            "a " + std::string(nameOf(parts.kind())) + " of " + std::to_string(parts.all().size()) +
                " parts is more than one list of positions can tell; write it as GML, KML, GeoJSON or "
                "WKT");
    return parts.all().front();
}

void appendPart(std::string& sText, const ShapeParts& parts, const ShapePartFacts& part,
                const CoordinateText& numbers, char cBetween) {
    bool bFirst = true;
    parts.forEachPoint(part, [&](const host::PointValues& point) {
        if (!bFirst)
            sText += ' ';
        bFirst = false;
        numbers.appendPosition(sText, point, cBetween, parts.hasHeights());
    });
}

} // namespace

void appendPositions(std::string& sText, const ShapeParts& parts, const ShapePartFacts& part,
                     const CoordinateText& numbers) {
    appendPart(sText, parts, part, numbers, ' ');
}

void appendTuples(std::string& sText, const ShapeParts& parts, const ShapePartFacts& part,
                  const CoordinateText& numbers) {
    appendPart(sText, parts, part, numbers, ',');
}

void appendPosList(std::string& sText, const ShapeParts& parts, const CoordinateText& numbers) {
    appendPositions(sText, parts, onlyPart(parts), numbers);
}

void appendCoordinates(std::string& sText, const ShapeParts& parts, const CoordinateText& numbers) {
    appendTuples(sText, parts, onlyPart(parts), numbers);
}

void appendPos(std::string& sText, const ShapeParts& parts, const CoordinateText& numbers) {
    const ShapePartFacts& part = onlyPart(parts);
    if (part.role != host::PartRole::Points || part.lCount != 1)
        throw Failure(FailureNumber::TypeMismatch,
                      "a " + std::string(nameOf(parts.kind())) +
                          " has no position of its own; write its centroid, or a posList");
    appendPositions(sText, parts, part, numbers);
}

} // namespace halvane
