// What h:Geometry writes as a text, and in which coordinates.

#include "base/Text.h"
#include "host/Layers.h"
#include "host/Tables.h"
#include "host/memory/Geometry.h"
#include "oracle/Interpreter.h"

#include <algorithm>

namespace halvane::oracle {

namespace {

bool isBound(const std::string& sForm) {
    return sForm == "xmin" || sForm == "ymin" || sForm == "xmax" || sForm == "ymax";
}

double boundOf(const host::Bounds& bounds, const std::string& sForm) {
    return sForm == "xmin"   ? bounds.dXMin
           : sForm == "ymin" ? bounds.dYMin
           : sForm == "xmax" ? bounds.dXMax
                             : bounds.dYMax;
}

host::GisSpatialReferencePtr referenceOf(const host::GisTablePtr& pTable) {
    const auto pClass = std::dynamic_pointer_cast<host::GisFeatureClass>(pTable);
    return pClass == nullptr ? nullptr : pClass->spatialReference();
}

void requireRow(const host::GisRow* pRow) {
    if (pRow == nullptr)
        throw Failure(
            FailureNumber::ObjectVariableNotSet,
            "no row is at hand whose shape could be written; without a row there are xmin, ymin, xmax, "
            "ymax, and GML for an envelope");
}

} // namespace

/// What the node, or the nearest one around, says; "" where none does.
std::string Interpreter::nearest(const char* sName) const {
    for (auto node = aActive_.rbegin(); bSecond_ && node != aActive_.rend(); ++node)
        if ((*node)->has(sName))
            return (*node)->get(sName);
    return bSecond_ ? pRoot_->get(sName) : std::string();
}

const host::GisRow* Interpreter::rowAtHand() const {
    return aRowLoops_.empty() ? nullptr : aRowLoops_.back().pRow.get();
}

/// Of the row at hand; without a row that of the current layer.
host::GisTablePtr Interpreter::tableOfShape() const {
    return rowAtHand() == nullptr || aRowLoops_.back().pTable == nullptr ? host::GisTablePtr(pClass_)
                                                                         : aRowLoops_.back().pTable;
}

// ---- Coordinates ----

/// "" for those of the data. Some forms are in longitudes and latitudes whatever is asked for.
std::string Interpreter::crsFor(const std::string& sForm) const {
    return sForm == "GeoJSON" || sForm == "KML" ? "OGC:CRS84" : nearest("h:Crs");
}

host::GisSpatialReferencePtr Interpreter::referenceNamed(const std::string& sCrs) const {
    return setting_.pSecondEdition->fnReferenceOf(sCrs);
}

/// Nothing where coordinates stay what they are.
host::GisTransformationPtr Interpreter::wayTo(const std::string& sCrs,
                                              const host::GisTablePtr& pTable) const {
    if (sCrs.empty())
        return nullptr;
    const auto pTarget = referenceNamed(sCrs);
    const auto pOwn = referenceOf(pTable);
    const std::string sKnown = pTarget->authorityCode();
    if (pOwn == nullptr)
        throw Failure(FailureNumber::ObjectVariableNotSet,
                      "the data tells no spatial reference, so that its shapes cannot be brought to " +
                          (sKnown.empty() ? sCrs : sKnown) + "; give it one in the map document");
    return pOwn->transformationTo(*pTarget);
}

/// That of the coordinates in the document; nothing where it is not known.
host::GisSpatialReferencePtr Interpreter::referenceWritten(const std::string& sForm) const {
    const std::string sCrs = crsFor(sForm);
    return sCrs.empty() ? referenceOf(tableOfShape()) : referenceNamed(sCrs);
}

/// The order counts for positions alone.
bool Interpreter::isYFirst(const std::string& sForm) const {
    static const std::set<std::string> ordered{"pos", "posList", "coordinates", "WKT", "centroid", "GML"};
    const std::string sAxes = nearest("h:Axes");
    if (!ordered.contains(sForm) || sAxes.empty() || sAxes == "xy")
        return false;
    if (sAxes == "yx")
        return true;
    const auto pReference = referenceWritten(sForm);
    if (pReference == nullptr)
        throw Failure(FailureNumber::ObjectVariableNotSet,
                      "the data tells no spatial reference, so that the order of its authority is not "
                      "known; name one by h:Crs, or write h:Axes=\"xy\"");
    return pReference->isNorthFirst();
}

Notation Interpreter::notationFor(const std::string& sForm, const Attributes& attributes) {
    const bool bYFirst = isYFirst(sForm);
    const std::int32_t lPlaces = placesOf(attributes.at("DecimalPlace"));
    if (bYFirst)
        noteTurn("a position with y before x");
    return {[this, lPlaces](double dValue) {
                return numberText(dValue, lPlaces).value_or(plainCoordinate(dValue, lPlaces));
            },
            bYFirst};
}

/// That of the row at hand; empty where the row has none.
PlainShape Interpreter::shapeFor(const std::string& sForm) const {
    requireRow(rowAtHand());
    const auto pShape = rowAtHand()->shape();
    return pShape == nullptr ? PlainShape() : plainShape(*pShape, wayTo(crsFor(sForm), tableOfShape()).get());
}

/// To the coordinates that the node at hand asks for; nothing where those of the row stay.
host::GisTransformationPtr Interpreter::wayFor(const host::GisRow& row) const {
    host::GisTablePtr pTable = pClass_;
    for (const RowLoop& loop : aRowLoops_)
        if (loop.pRow.get() == &row)
            pTable = loop.pTable;
    return wayTo(nearest("h:Crs"), pTable);
}

/// The row's shape in the coordinates that the node at hand asks for, all of it or none.
host::GisGeometryPtr Interpreter::movedShape(const host::GisRow& row) const {
    const auto pShape = row.shape();
    const auto pWay = pShape == nullptr ? nullptr : wayFor(row);
    if (pWay == nullptr)
        return pShape;
    std::vector<host::memory::Part> aParts;
    for (std::int32_t lPart = 0; lPart < pShape->partCount(); ++lPart) {
        host::memory::Part& part = aParts.emplace_back();
        for (std::int32_t i = 0; i < pShape->pointCount(lPart); ++i) {
            const auto pPoint = pShape->point(lPart, i);
            host::PointValues values{pPoint->x(), pPoint->y(), pPoint->z(), pPoint->m()};
            pWay->transform({&values, 1});
            part.push_back({values.dX, values.dY, values.dZ, values.dM});
        }
    }
    return std::make_shared<host::memory::MemoryGeometry>(
        static_cast<host::ShapeType>(pShape->geometryType()), std::move(aParts));
}

/// Of all rows that a node of features writes from the current layer; nothing where none has a shape.
std::optional<host::Bounds> Interpreter::boundsOfLayer() const {
    const auto pCursor = currentFeatures();
    std::optional<host::Bounds> all;
    while (const auto pRow = pCursor == nullptr ? nullptr : pCursor->nextRow()) {
        const auto pShape = pRow->shape();
        const PlainShape shape = pShape == nullptr ? PlainShape() : plainShape(*pShape, nullptr);
        if (shape.isEmpty())
            continue;
        const host::Bounds bounds = boundsOf(shape);
        all = all.value_or(bounds);
        all = host::Bounds{std::min(all->dXMin, bounds.dXMin), std::min(all->dYMin, bounds.dYMin),
                           std::max(all->dXMax, bounds.dXMax), std::max(all->dYMax, bounds.dYMax)};
    }
    const auto pWay = all ? wayTo(nearest("h:Crs"), pClass_) : nullptr;
    return pWay == nullptr ? all : pWay->transformBounds(*all);
}

// ---- Texts ----

std::string Interpreter::shapeText(Node node, const Attributes& attributes) {
    const std::string sForm = node.get("h:Geometry");
    if (rowAtHand() == nullptr && isBound(sForm)) {
        const auto bounds = boundsOfLayer();
        if (!bounds)
            return {};
        noteTurn("a bound of a layer");
        return notationFor(sForm, attributes).fnNumber(boundOf(*bounds, sForm));
    }
    const PlainShape shape = shapeFor(sForm);
    if (shape.isEmpty()) {
        noteTurn("a row without a shape");
        return {};
    }
    const Notation notation = notationFor(sForm, attributes);
    const std::string sText = figureText(sForm, shape, notation);
    noteTurn("h:Geometry=\"" + sForm + "\"");
    noteTurn("a shape in a text: " + shape.sType);
    return sText;
}

std::string Interpreter::figureText(const std::string& sForm, const PlainShape& shape,
                                    const Notation& notation) const {
    if (sForm == "type")
        return shape.sType;
    if (isBound(sForm))
        return notation.fnNumber(boundOf(boundsOf(shape), sForm));
    if (sForm != "area" && sForm != "length")
        return textOfPoints(shape, sForm, notation);
    std::optional<double> dFigure = sForm == "area" ? areaOf(shape) : lengthOf(shape);
    if (sForm == "length" && dFigure && nearest("h:Crs").empty())
        dFigure = rowAtHand()->shape()->length(); // along its curves
    return dFigure ? notation.fnNumber(*dFigure) : std::string();
}

} // namespace halvane::oracle
