#include "exporters/second/geometry/GeometryContent.h"

#include "engine/second/Inherited.h"
#include "engine/second/RowScope.h"
#include "engine/second/SecondNode.h"
#include "exporters/second/geometry/ElementSinks.h"
#include "exporters/second/geometry/LayerBounds.h"
#include "exporters/second/geometry/PositionTexts.h"
#include "exporters/second/geometry/ShapeFigures.h"
#include "exporters/second/geometry/TextSinks.h"
#include "exporters/second/geometry/TransformedShape.h"
#include "host/Rows.h"
#include "xml/dom/Characters.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

namespace halvane {

/// A shape in the coordinates of a reference.
struct RowShape {
    RowShape(host::GisSpatialReferencePtr pSpace, host::GisGeometryPtr pOfRow)
        : pReference(std::move(pSpace)), pShape(std::move(pOfRow)), parts(*pShape) {}

    host::GisSpatialReferencePtr pReference; ///< nothing: the row's own
    host::GisGeometryPtr pShape;
    ShapeParts parts;
};

namespace {

/// Whether h:Axes concerns the form: what has no positions does not ask for the order of their numbers.
bool isOfPositions(GeometryForm form) {
    switch (form) {
    case GeometryForm::Centroid:
    case GeometryForm::Coordinates:
    case GeometryForm::Gml:
    case GeometryForm::Pos:
    case GeometryForm::PosList:
    case GeometryForm::Wkt:
        return true;
    default:
        return false;
    }
}

/// A node with a form of a shape, and where it writes.
struct Request {
    ExportState& state;
    const ControlNode& control;

    [[nodiscard]] const NodeGeometry& geometry() const { return *control.pSecond->geometry; }
    [[nodiscard]] const host::GisRow* row() const {
        return state.pRowScope == nullptr ? nullptr : state.pRowScope->row();
    }
    /// That of the row's table; without a row, of the current layer.
    [[nodiscard]] const TableSpace& space() const {
        const host::GisTablePtr pOfLoop = row() == nullptr ? nullptr : tableOf(state, *row());
        return state.coordinates.of(pOfLoop == nullptr ? host::GisTablePtr(state.pFeatureClass) : pOfLoop,
                                    geometry().space, state.nGeneration);
    }
    [[nodiscard]] CoordinateText numbers() const {
        const Axes axes = isOfPositions(geometry().form) ? geometry().space.axes : Axes::Xy;
        const bool bYFirst = axes == Axes::Yx || (axes == Axes::Authority && space().isNorthFirst());
        const bool bFormatted = control.pInherited != nullptr && control.pInherited->format.formatsNumbers();
        return {control.decimalPlaces.value(), bYFirst, bFormatted ? &control.pInherited->format : nullptr};
    }
};

bool isBound(GeometryForm form) {
    return form == GeometryForm::XMin || form == GeometryForm::YMin || form == GeometryForm::XMax ||
           form == GeometryForm::YMax;
}

double boundOf(const host::Bounds& bounds, GeometryForm form) {
    switch (form) {
    case GeometryForm::XMin:
        return bounds.dXMin;
    case GeometryForm::YMin:
        return bounds.dYMin;
    case GeometryForm::XMax:
        return bounds.dXMax;
    default:
        return bounds.dYMax;
    }
}

void requireRow(const Request& request) {
    if (request.row() == nullptr)
        throw Failure(
            FailureNumber::ObjectVariableNotSet,
            "no row is at hand whose shape could be written; without a row there are xmin, ymin, xmax, "
            "ymax, and GML for an envelope");
}

/// As the first edition measures it: along curves, where nothing is transformed.
std::optional<double> lengthOf(const Request& request, const host::GisGeometry& shape,
                               const ShapeParts& parts) {
    const std::optional<double> dAlongVertices = halvane::lengthOf(parts);
    if (!dAlongVertices || request.geometry().space.pReference != nullptr)
        return dAlongVertices;
    return shape.length();
}

void appendIfAny(std::string& sText, std::optional<double> dValue, const CoordinateText& numbers) {
    if (dValue)
        numbers.appendNumber(sText, *dValue);
}

void appendForm(std::string& sText, const Request& request, const host::GisGeometry& shape,
                const ShapeParts& parts) {
    const CoordinateText numbers = request.numbers();
    switch (request.geometry().form) {
    case GeometryForm::Area:
        appendIfAny(sText, areaOf(parts), numbers);
        break;
    case GeometryForm::Centroid:
        numbers.appendPosition(sText, centroidOf(parts), ' ', false);
        break;
    case GeometryForm::Coordinates:
        appendCoordinates(sText, parts, numbers);
        break;
    case GeometryForm::GeoJson:
        appendGeoJson(sText, parts, numbers);
        break;
    case GeometryForm::Length:
        appendIfAny(sText, lengthOf(request, shape, parts), numbers);
        break;
    case GeometryForm::Pos:
        appendPos(sText, parts, numbers);
        break;
    case GeometryForm::PosList:
        appendPosList(sText, parts, numbers);
        break;
    case GeometryForm::Svg:
        appendSvgPath(sText, parts, numbers);
        break;
    case GeometryForm::Type:
        sText += nameOf(parts.kind());
        break;
    case GeometryForm::Wkt:
        appendWkt(sText, parts, numbers);
        break;
    case GeometryForm::XMax:
    case GeometryForm::XMin:
    case GeometryForm::YMax:
    case GeometryForm::YMin:
        numbers.appendNumber(sText, boundOf(boundsOf(parts), request.geometry().form));
        break;
    case GeometryForm::Gml:
    case GeometryForm::Kml:
        break; // elements
    }
}

/// That of the row at hand, made once for all nodes that ask for it in the same coordinates; nothing where
/// the row has none.
std::shared_ptr<const RowShape> shapeAtHand(const Request& request) {
    const NodeSpace& space = request.geometry().space;
    auto& pKept = request.state.pRowScope->shape();
    if (pKept != nullptr && pKept->pReference == space.pReference)
        return pKept;
    auto pShape = shapeIn(request.state, space, *request.row());
    pKept = pShape == nullptr ? nullptr : std::make_shared<RowShape>(space.pReference, std::move(pShape));
    return pKept;
}

/// Failures tell the row.
template<class Write>
void ofRow(const Request& request, const Write& write) {
    const host::GisRow& row = *request.row();
    try {
        const auto pShape = shapeAtHand(request);
        if (pShape != nullptr && !pShape->parts.isEmpty())
            write(*pShape->pShape, pShape->parts);
    } catch (const Failure& failure) {
        throw failure.about("the shape of row " + std::to_string(row.objectId()));
    }
}

/// By which readers know the reference and the order of its axes; "" where no name tells both.
std::string srsNameOf(const Request& request, bool bYFirst) {
    const std::string& sCode = request.space().code();
    const auto nColon = sCode.find(':');
    if (nColon == std::string::npos)
        return "";
    if (bYFirst == request.space().isNorthFirst()) {
        const std::string sAuthority = sCode.substr(0, nColon);
        return "http://www.opengis.net/def/crs/" + sAuthority + (sAuthority == "OGC" ? "/1.3/" : "/0/") +
               sCode.substr(nColon + 1);
    }
    return bYFirst ? "" : sCode;
}

std::string idOf(const Request& request) {
    const auto& id = request.control.pSecond->geometryId;
    if (!id)
        return "";
    std::string sId(valueOf(request.state, *id, request.control).sText);
    if (sId.find(':') != std::string::npos || !dom::isXmlName(sId))
        throw Failure(FailureNumber::DocumentFailure,
                      "the identifier \"" + sId +
                          "\" is no name that XML allows; let it begin with a letter");
    return sId;
}

} // namespace

bool writesElements(const ControlNode& control) noexcept {
    return control.pSecond != nullptr && control.pSecond->geometry &&
           isOfElements(*control.pSecond->geometry);
}

FieldText geometryText(ExportState& state, const ControlNode& control) {
    const Request request{state, control};
    const GeometryForm form = request.geometry().form;
    std::string& sText = state.sShapeText;
    sText.clear();
    if (request.row() == nullptr && isBound(form)) {
        if (const auto bounds = boundsOfCurrentLayer(state, request.geometry().space))
            request.numbers().appendNumber(sText, boundOf(*bounds, form));
    } else {
        requireRow(request);
        ofRow(request, [&](const host::GisGeometry& shape, const ShapeParts& parts) {
            appendForm(sText, request, shape, parts);
        });
    }
    return {sText, form == GeometryForm::GeoJson ? TextKind::Any : TextKind::Plain};
}

void writeGeometryElements(ExportState& state, const ControlNode& control, const OutputElement& oElement) {
    const Request request{state, control};
    const bool bGml = request.geometry().form == GeometryForm::Gml;
    const auto output = [&] {
        const CoordinateText numbers = request.numbers();
        return ElementOutput{*state.oOutputManager->DOMDoc(),
                             oElement,
                             request.geometry().names,
                             numbers,
                             bGml ? srsNameOf(request, numbers.bYFirst) : std::string(),
                             {}};
    };
    if (request.row() == nullptr && bGml) {
        if (const auto bounds = boundsOfCurrentLayer(state, request.geometry().space))
            writeGmlEnvelope(output(), *bounds);
        return;
    }
    requireRow(request);
    ofRow(request, [&](const host::GisGeometry& /*shape*/, const ShapeParts& parts) {
        ElementOutput toElements = output();
        if (!bGml) {
            writeKml(toElements, parts);
            return;
        }
        toElements.sId = idOf(request);
        writeGml(toElements, parts);
    });
}

} // namespace halvane
