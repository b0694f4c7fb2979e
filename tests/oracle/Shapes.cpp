// Geometry.

#include "base/Numbers.h"
#include "base/Text.h"
#include "host/Geometry.h"
#include "host/memory/Geometry.h"
#include "oracle/Interpreter.h"

#include <cmath>

namespace halvane::oracle {

using host::memory::MemoryGeometry;

namespace {

bool readsAttribute(const ControlNode& node) {
    return node.get("DataSource") == "FeatureAttributes" || node.get("DataSource") == "FeatureTable";
}

bool isStart(const std::string& sKind) {
    return sKind == "Geometry.Point" || sKind == "Geometry.FromNode";
}

bool isEnd(const std::string& sKind) {
    return sKind == "Geometry.ToNode" || sKind == "Geometry.EndPoint";
}

} // namespace

void Interpreter::exportGeometry(Node node, OutputNode* pOut, const Attributes& parentAttributes,
                                 const host::GisRowPtr& pRow) {
    procedure(node, [&] {
        const Attributes attributes = merged(node, &parentAttributes);
        // Decimal places that no whole number can hold are a failure even where nothing is written.
        (void)placesOf(attributes.at("DecimalPlace"));
        if (pLayer_ == nullptr)
            return;
        if (pRow != nullptr) {
            writeShape(node, pOut, attributes, pRow);
            return;
        }
        const auto pCursor = currentFeatures();
        if (pCursor == nullptr)
            return;
        std::int64_t lCounter = 0;
        while (const auto pFeature = pCursor->nextRow()) {
            OutputNode* const pItem = itemElement(node, pOut, lCounter == 0);
            // A shape without a place in the coordinates asked for does not cost the others theirs.
            if (nearest("h:Crs").empty())
                writeShape(node, pItem, attributes, pFeature);
            else
                procedure(node, [&] { writeShape(node, pItem, attributes, pFeature); });
            tellItem(node);
            countItem(lCounter);
        }
    });
}

void Interpreter::writeShape(Node node, OutputNode* pOut, const Attributes& attributes,
                             const host::GisRowPtr& pFeature) {
    const std::string& sKind = attributes.at("DataSource");
    const std::int32_t lPlaces = placesOf(attributes.at("DecimalPlace"));
    if (sKind == "Geometry.Vertice")
        writeVertices(node, pOut, attributes, pFeature);
    for (const ControlNode* pChild : childrenOf(node)) {
        if (sKind == "Geometry.Length")
            writeLength(*pChild, pOut, pFeature, lPlaces);
        else if (isStart(sKind) || isEnd(sKind))
            writeNodePoint(*pChild, pOut, sKind, pFeature, lPlaces);
    }
}

/// One element "Part" a part, in place of what the element held, if it is the node's own; one element a
/// vertex in it.
void Interpreter::writeVertices(Node node, OutputNode* pOut, const Attributes& attributes,
                                const host::GisRowPtr& pFeature) {
    std::optional<double> dMeasure;
    const std::string& sMeasure = attributes.at("MeasureField");
    if (!sMeasure.empty()) {
        const std::int32_t lField = pFeature->fields().findField(sMeasure);
        if (lField >= 0)
            dMeasure = toDouble(toText(pFeature->value(lField)));
    }
    const auto pShape = movedShape(*pFeature);
    if (pShape != nullptr && !nearest("h:Crs").empty())
        noteTurn("vertices in another reference");
    for (std::int32_t lPart = 0; pShape != nullptr && lPart < pShape->partCount(); ++lPart) {
        if (lPart == 0 && !omits(node, "Self"))
            tree_.setText(pOut, "");
        OutputNode* const pPart = tree_.append(pOut, tree_.newElement("Part"));
        for (std::int32_t i = 0; i < pShape->pointCount(lPart); ++i) {
            const auto pPoint = pShape->point(lPart, i);
            OutputNode* const pVertex = tree_.append(pPart, newElement(node, node.outputName()));
            for (const ControlNode* pChild : childrenOf(node))
                writeVertex(*pChild, pVertex, pFeature, pPoint, dMeasure,
                            placesOf(attributes.at("DecimalPlace")));
        }
    }
}

/// What a point lacks is no number and reads as "".
std::string Interpreter::number(double dValue, std::int32_t lPlaces) {
    return std::isnan(dValue) ? std::string() : formatted(dValue, lPlaces);
}

void Interpreter::writeLength(Node node, OutputNode* pOut, const host::GisRowPtr& pFeature,
                              std::int32_t lPlaces) {
    procedure(node, [&] {
        std::string sValue;
        if (readsAttribute(node)) {
            sValue = fieldText(*pFeature, "", node.get("DataProperty"), lPlaces);
        } else if (node.get("DataProperty") == "Geometry.Length") {
            const auto pShape = pFeature->shape();
            const std::int32_t lType = pShape == nullptr ? 0 : pShape->geometryType();
            const auto pWay = pShape == nullptr ? nullptr : wayFor(*pFeature);
            if (lType == 3 || lType == 4 || lType == 13)
                sValue = number(pWay == nullptr ? pShape->length()
                                                : lengthOf(plainShape(*pShape, pWay.get())).value_or(0),
                                lPlaces);
        }
        writeChild(node, pOut, sValue);
        noteWritten("Geometry.Length", sValue);
    });
}

std::string Interpreter::coordinate(const host::GisPointPtr& pPoint, const std::string& sProperty,
                                    std::int32_t lPlaces) {
    if (pPoint == nullptr)
        return {};
    if (sProperty == "Geometry.X")
        return number(pPoint->x(), lPlaces);
    if (sProperty == "Geometry.Y")
        return number(pPoint->y(), lPlaces);
    if (sProperty == "Geometry.Z")
        return number(pPoint->z(), lPlaces);
    return {};
}

/// The node's own kind says which end, else that of the repeated node.
void Interpreter::writeNodePoint(Node node, OutputNode* pOut, const std::string& sRepeatedKind,
                                 const host::GisRowPtr& pFeature, std::int32_t lPlaces) {
    procedure(node, [&] {
        std::string sValue;
        if (readsAttribute(node)) {
            sValue = fieldText(*pFeature, "", node.get("DataProperty"), lPlaces);
        } else {
            const std::string sOwn = node.get("DataSource");
            const bool bEnd = isStart(sOwn) || isEnd(sOwn) ? isEnd(sOwn) : isEnd(sRepeatedKind);
            const auto pShape = pFeature->shape();
            const auto pWay = pShape == nullptr ? nullptr : wayFor(*pFeature);
            auto pPoint = pShape == nullptr ? nullptr : bEnd ? pShape->toPoint() : pShape->fromPoint();
            if (pPoint != nullptr && pWay != nullptr) {
                host::PointValues values{pPoint->x(), pPoint->y(), pPoint->z(), pPoint->m()};
                pWay->transform({&values, 1});
                pPoint = MemoryGeometry::point({values.dX, values.dY, values.dZ, values.dM})->fromPoint();
                noteTurn("a node in another reference");
            }
            sValue = coordinate(pPoint, node.get("DataProperty"), lPlaces);
        }
        writeChild(node, pOut, sValue);
        noteWritten(sRepeatedKind, sValue);
    });
}

void Interpreter::writeVertex(Node node, OutputNode* pOut, const host::GisRowPtr& pFeature,
                              const host::GisPointPtr& pPoint, std::optional<double> dMeasure,
                              std::int32_t lPlaces) {
    procedure(node, [&] {
        keepObject("Feature", pFeature);
        keepObject("Point", pPoint);
        if (isNumeric(node.get("DecimalPlace")))
            lPlaces = placesOf(node.get("DecimalPlace"));
        std::string sValue;
        bool bIsProcessor = false;
        if (readsAttribute(node))
            sValue = fieldText(*pFeature, "", node.get("DataProperty"), lPlaces);
        else if (node.get("DataSource") == "External")
            sValue = processed(node.get("IdentityValue"), bIsProcessor);
        else if (node.get("DataProperty") == "Geometry.Measure")
            sValue = number(dMeasure.has_value() ? *dMeasure : pPoint->m(), lPlaces);
        else
            sValue = coordinate(pPoint, node.get("DataProperty"), lPlaces);
        writeChild(node, pOut, sValue);
        noteWritten("Geometry.Vertice", sValue);
    });
}

} // namespace halvane::oracle
