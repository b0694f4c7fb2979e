#include "engine/second/NodeGeometry.h"

#include "base/Failure.h"
#include "engine/second/SecondEdition.h"
#include "host/SpatialReference.h"

#include <algorithm>
#include <array>
#include <utility>

namespace halvane {

namespace {

constexpr std::array<GeometryWord, 16> words{{
    {"area", GeometryForm::Area},
    {"centroid", GeometryForm::Centroid},
    {"coordinates", GeometryForm::Coordinates},
    {.sWord = "GeoJSON", .form = GeometryForm::GeoJson, .bIsWgs84 = true},
    {"GML", GeometryForm::Gml, "http://www.opengis.net/gml/3.2", "gml"},
    {"KML", GeometryForm::Kml, "http://www.opengis.net/kml/2.2", "kml", true},
    {"length", GeometryForm::Length},
    {"pos", GeometryForm::Pos},
    {"posList", GeometryForm::PosList},
    {"SVG", GeometryForm::Svg},
    {"type", GeometryForm::Type},
    {"WKT", GeometryForm::Wkt},
    {"xmax", GeometryForm::XMax},
    {"xmin", GeometryForm::XMin},
    {"ymax", GeometryForm::YMax},
    {"ymin", GeometryForm::YMin},
}};

} // namespace

NodeSpace registeredSpace(const SecondEdition& edition, std::string_view sCode, Axes axes) {
    if (!edition.fnReferenceOf)
        throw Failure(FailureNumber::ActionNotSupported, "no spatial references can be looked up here");
    host::GisSpatialReferencePtr pReference = edition.fnReferenceOf(sCode);
    std::string sKnown = pReference->authorityCode();
    // A host may know the reference and not its name.
    if (sKnown.empty())
        sKnown = sCode;
    return {std::move(pReference), std::move(sKnown), axes};
}

std::span<const GeometryWord> geometryWords() noexcept {
    return words;
}

const GeometryWord& wordOf(GeometryForm form) noexcept {
    return *std::ranges::find(words, form, &GeometryWord::form);
}

} // namespace halvane
