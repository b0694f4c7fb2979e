// Repeats a control node over features and writes lengths, nodes or vertices of their shapes.

#include "host/Geometry.h"
#include "base/Numbers.h"
#include "engine/ModExporter.h"
#include "engine/TracedItem.h"
#include "engine/output/ItemCounter.h"
#include "engine/second/SecondControl.h"
#include "exporters/ItemCopies.h"
#include "exporters/RowValue.h"
#include "exporters/second/geometry/TransformedShape.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace halvane {

namespace {

/// The repeated node and what all its features share.
struct RepeatedShapes {
    ExportState& state;
    const ControlNode& control;
    std::int32_t lDecimalPlaces;

    [[nodiscard]] ShapePart part() const { return rowOf(control.pBinding->kind).shapePart; }
};

/// The control nodes that say what is written: the children, or the node itself when it has none.
template<class Write>
void forEachPropertyNode(const ControlNode& control, const Write& write) {
    if (!control.hasChildren())
        write(control);
    for (const ControlNode& child : childrenOf(control))
        write(child);
}

// ---- Vertices ----

/// The feature's value in the measure field; nothing without such a field.
/// @throws Failure TypeMismatch for a value that is no number, null too.
std::optional<double> measureOf(const RepeatedShapes& repeated, const host::GisRow& feature) {
    const std::string_view sMeasureField = repeated.control.merged.sMeasureField;
    FoundField& found = repeated.control.linkField;
    if (sMeasureField.empty() || !findRowField(repeated.state, feature, "", sMeasureField, found))
        return std::nullopt;
    return rowNumber(feature, found.lIndex, feature.value(found.lIndex));
}

/// Walks the vertices of one feature's shape. The feature and the vertex visited last are filed among the
/// resolved objects: at once where a processor is called for each vertex, else when the walk ends.
class VertexWalk {
public:
    VertexWalk(const RepeatedShapes& repeated, const GisRowPtr& pFeature)
        : repeated_(repeated), vertex_{pFeature, nullptr, nullptr, measureOf(repeated, *pFeature)},
          pShape_(shapeFor(repeated.state, repeated.control, *pFeature)) {
        forEachPropertyNode(repeated.control, [&](const ControlNode& property) {
            bProcessed_ = bProcessed_ || property.ownKind == DataSourceKind::External;
        });
    }

    /// The parts replace what the feature's element held before.
    /// @param oElement ends as the last vertex written.
    void exportInto(OutputElement& oElement) {
        const OutputElement oFeatureElement = oElement;
        OutputElement oPart;
        const std::int32_t lCount = pShape_ == nullptr ? 0 : pShape_->partCount();
        for (std::int32_t lPart = 0; lPart < lCount; ++lPart) {
            const TracedItem part(repeated_.state, repeated_.control);
            if (!part.isWanted())
                break;
            if (lPart == 0)
                oFeatureElement.setText("");
            giveBack(oPart);
            oPart = oFeatureElement.appendElement(partName());
            exportPart(lPart, oPart, oElement);
        }
    }

    /// Of a shape without a place in the coordinates asked for, nothing is written.
    void requireWhole() const {
        if (pShape_ != nullptr)
            requirePoints(*pShape_);
    }

    void fileLastVertex() {
        if (lIndex_ < 0)
            return;
        if (vertex_.pPoint == nullptr)
            vertex_.pPoint = pShape_->point(lPart_, lIndex_);
        repeated_.state.dCurrentObjects.keep(ObjectKey::Feature, vertex_.pFeature);
        repeated_.state.dCurrentObjects.keep(ObjectKey::Point, vertex_.pPoint);
    }

private:
    [[nodiscard]] const dom::Name& partName() const {
        return *repeated_.state.oOutputManager->DOMDoc()->findName("Part");
    }

    void exportPart(std::int32_t lPart, const OutputElement& oPartElement, OutputElement& oElement) {
        const std::int32_t lCount = pShape_->pointCount(lPart);
        for (std::int32_t i = 0; i < lCount; ++i) {
            const TracedItem vertex(repeated_.state, repeated_.control);
            if (!vertex.isWanted())
                break;
            moveTo(lPart, i);
            if (i > 0)
                giveBack(oElement);
            oElement = appendVertex(oPartElement);
            ++nWritten_;
            lPart_ = lPart;
            lIndex_ = i;
            if (bProcessed_)
                fileLastVertex();
            forEachPropertyNode(repeated_.control, [&](const ControlNode& property) {
                ExportVertexValue(repeated_.state, vertex_, property, oElement, repeated_.lDecimalPlaces);
            });
        }
    }

    /// Inside the node's own element, which declares its prefix.
    [[nodiscard]] OutputElement appendVertex(const OutputElement& oPartElement) const {
        const ControlNode& control = repeated_.control;
        return control.pName == nullptr || isDissolved(control) ? appendNamed(control, oPartElement)
                                                                : oPartElement.appendElement(*control.pName);
    }

    /// A vertex or part is complete, since another one comes. Those of small shapes are given back with their
    /// feature, in one piece.
    void giveBack(const OutputElement& oElement) {
        if (nWritten_ > nMostInTree && !oElement.isStreamed())
            completeItem(repeated_.state, oElement.node());
    }

    void moveTo(std::int32_t lPart, std::int32_t lIndex) {
        vertex_.pPoint.reset();
        vertex_.pValues = nullptr;
        if (nNext_ == nRead_) {
            nRead_ = pShape_->readPoints(lPart, lIndex, aRead_);
            nNext_ = 0;
        }
        if (nRead_ > 0)
            vertex_.pValues = &aRead_[nNext_++];
        else
            vertex_.pPoint = pShape_->point(lPart, lIndex);
    }

    static constexpr std::size_t nMostInTree = 2048;

    const RepeatedShapes& repeated_;
    Vertex vertex_;
    host::GisGeometryPtr pShape_;
    std::size_t nWritten_ = 0;                ///< vertices
    std::array<host::PointValues, 64> aRead_; ///< of the part at hand; those before nNext_ were visited
    std::size_t nRead_ = 0;
    std::size_t nNext_ = 0;
    bool bProcessed_ = false;
    std::int32_t lPart_ = 0;
    std::int32_t lIndex_ = -1; ///< of the vertex visited last
};

void exportVertices(const RepeatedShapes& repeated, const GisRowPtr& pFeature, OutputElement& oElement) {
    VertexWalk walk(repeated, pFeature);
    if (isTransformed(repeated.control))
        walk.requireWhole();
    try {
        walk.exportInto(oElement);
    } catch (...) {
        walk.fileLastVertex();
        throw;
    }
    walk.fileLastVertex();
}

// ---- Features ----

void exportLength(const RepeatedShapes& repeated, const GisRowPtr& pFeature, const OutputElement& oElement) {
    const bool bMakeElement = repeated.control.hasChildren();
    forEachPropertyNode(repeated.control, [&](const ControlNode& property) {
        ExportGeometryLength(repeated.state, pFeature, property, oElement, bMakeElement,
                             repeated.lDecimalPlaces);
    });
}

void exportNode(const RepeatedShapes& repeated, const GisRowPtr& pFeature, const OutputElement& oElement) {
    forEachPropertyNode(repeated.control, [&](const ControlNode& property) {
        ExportNodeCoordinate(repeated.state, pFeature, property, repeated.part(), oElement,
                             repeated.lDecimalPlaces);
    });
}

void exportFeature(const RepeatedShapes& repeated, const GisRowPtr& pFeature, OutputElement& oElement) {
    switch (repeated.part()) {
    case ShapePart::Length:
        exportLength(repeated, pFeature, oElement);
        break;
    case ShapePart::Start:
    case ShapePart::End:
        exportNode(repeated, pFeature, oElement);
        break;
    case ShapePart::Vertices:
        exportVertices(repeated, pFeature, oElement);
        break;
    case ShapePart::Unknown:
    case ShapePart::None:
        break;
    }
}

void exportFeatures(const RepeatedShapes& repeated, OutputElement& oOutput) {
    const auto pCursor = searchCurrentFeatures(repeated.state, repeated.control);
    if (pCursor == nullptr)
        return;
    ItemCopies copies(repeated.state, repeated.control, oOutput, repeated.control.pName);
    ItemCounter counter(repeated.state.options.lItemLimit);
    while (const GisRowPtr pFeature = pCursor->nextRow()) {
        const TracedItem item(repeated.state, repeated.control);
        if (!item.isWanted())
            break;
        oOutput = counter.value() > 0 ? copies.next() : copies.first();
        // A shape that has no place in the coordinates asked for does not cost the others theirs.
        if (isTransformed(repeated.control))
            trapFailures(repeated.state, [&] { exportFeature(repeated, pFeature, oOutput); });
        else
            exportFeature(repeated, pFeature, oOutput);
        reportItem(repeated.state, repeated.control);
        counter.increment();
    }
}

} // namespace

void ExportGeometry(ExportState& state, const ControlNode& control, OutputElement& oOutput,
                    const GisRowPtr& pRow) {
    const ActiveNodeScope scope(state, control);
    trapFailures(state, [&] {
        const RepeatedShapes repeated{state, control, control.decimalPlaces.value()};
        if (state.pFeatureLayer == nullptr)
            return;
        if (repeated.part() == ShapePart::Unknown || repeated.part() == ShapePart::None)
            state.notice(Notice::RepeatIsSilent, control.merged.sDataSource);
        if (pRow != nullptr) {
            const TracedItem item(state, control);
            exportFeature(repeated, pRow, oOutput);
        } else {
            exportFeatures(repeated, oOutput);
        }
    });
}

} // namespace halvane
