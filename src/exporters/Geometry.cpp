// Repeats a control node over features and writes lengths, nodes or vertices of their shapes.

#include "collection/Numbers.h"
#include "engine/ItemCounter.h"
#include "engine/ModExporter.h"
#include "exporters/ItemCopies.h"
#include "exporters/RowValue.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace halvane {

namespace {

/// One call: the repeated node and what all its features share.
struct Call {
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
std::optional<double> measureOf(const Call& call, const host::GisRow& feature) {
    const std::string_view sMeasureField = call.control.merged.sMeasureField;
    FoundField& found = call.control.linkField;
    if (sMeasureField.empty() || !findRowField(call.state, feature, "", sMeasureField, found))
        return std::nullopt;
    return rowNumber(feature, found.lIndex, feature.value(found.lIndex));
}

/// Walks the vertices of one feature's shape. The feature and the vertex visited last are filed among the
/// resolved objects: at once where a processor is called for each vertex, else when the walk ends.
class VertexWalk {
public:
    VertexWalk(const Call& call, const GisRowPtr& pFeature)
        : call_(call), vertex_{pFeature, nullptr, nullptr, measureOf(call, *pFeature)},
          pShape_(pFeature->shape()) {
        forEachPropertyNode(call.control, [&](const ControlNode& property) {
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
            if (lPart == 0)
                oFeatureElement.setText("");
            giveBack(oPart);
            oPart = oFeatureElement.appendElement(partName());
            exportPart(lPart, oPart, oElement);
        }
    }

    void fileLastVertex() {
        if (lIndex_ < 0)
            return;
        if (vertex_.pPoint == nullptr)
            vertex_.pPoint = pShape_->point(lPart_, lIndex_);
        call_.state.dCurrentObjects.keep(ObjectKey::Feature, vertex_.pFeature);
        call_.state.dCurrentObjects.keep(ObjectKey::Point, vertex_.pPoint);
    }

private:
    [[nodiscard]] const dom::Name& partName() const {
        return *call_.state.oOutputManager->DOMDoc()->findName("Part");
    }

    void exportPart(std::int32_t lPart, const OutputElement& oPartElement, OutputElement& oElement) {
        const std::int32_t lCount = pShape_->pointCount(lPart);
        for (std::int32_t i = 0; i < lCount; ++i) {
            moveTo(lPart, i);
            if (i > 0)
                giveBack(oElement);
            oElement = appendNamed(call_.control, oPartElement);
            ++nWritten_;
            lPart_ = lPart;
            lIndex_ = i;
            if (bProcessed_)
                fileLastVertex();
            forEachPropertyNode(call_.control, [&](const ControlNode& property) {
                ExportVertexValue(call_.state, vertex_, property, oElement, call_.lDecimalPlaces);
            });
        }
    }

    /// A vertex or part is complete, since another one comes. Those of small shapes are given back with their
    /// feature, in one piece.
    void giveBack(const OutputElement& oElement) {
        if (nWritten_ > nMostInTree && !oElement.isStreamed())
            completeItem(call_.state, oElement.node());
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

    const Call& call_;
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

void exportVertices(const Call& call, const GisRowPtr& pFeature, OutputElement& oElement) {
    VertexWalk walk(call, pFeature);
    try {
        walk.exportInto(oElement);
    } catch (...) {
        walk.fileLastVertex();
        throw;
    }
    walk.fileLastVertex();
}

// ---- Features ----

void exportLength(const Call& call, const GisRowPtr& pFeature, const OutputElement& oElement) {
    const bool bMakeElement = call.control.hasChildren();
    forEachPropertyNode(call.control, [&](const ControlNode& property) {
        ExportGeometryLength(call.state, pFeature, property, oElement, bMakeElement, call.lDecimalPlaces);
    });
}

void exportNode(const Call& call, const GisRowPtr& pFeature, const OutputElement& oElement) {
    forEachPropertyNode(call.control, [&](const ControlNode& property) {
        ExportNodeCoordinate(call.state, pFeature, property, call.part(), oElement, call.lDecimalPlaces);
    });
}

void exportFeature(const Call& call, const GisRowPtr& pFeature, OutputElement& oElement) {
    switch (call.part()) {
    case ShapePart::Length:
        exportLength(call, pFeature, oElement);
        break;
    case ShapePart::Start:
    case ShapePart::End:
        exportNode(call, pFeature, oElement);
        break;
    case ShapePart::Vertices:
        exportVertices(call, pFeature, oElement);
        break;
    case ShapePart::Unknown:
    case ShapePart::None:
        break;
    }
}

void exportFeatures(const Call& call, OutputElement& oOutput) {
    const auto pCursor = searchCurrentFeatures(call.state, call.control);
    if (pCursor == nullptr)
        return;
    ItemCopies copies(call.state, call.control, oOutput, call.control.pName);
    ItemCounter counter(call.state.options.lItemLimit);
    while (const GisRowPtr pFeature = pCursor->nextRow()) {
        oOutput = counter.value() > 0 ? copies.next() : copies.first();
        exportFeature(call, pFeature, oOutput);
        reportItem(call.state, call.control);
        counter.increment();
    }
}

} // namespace

void ExportGeometry(ExportState& state, const ControlNode& control, OutputElement& oOutput,
                    const GisRowPtr& pRow) {
    const ActiveNodeScope scope(state, control.oNode);
    trapFailures(state, [&] {
        const Call call{state, control, control.decimalPlaces.value()};
        if (state.pFeatureLayer == nullptr)
            return;
        if (call.part() == ShapePart::Unknown || call.part() == ShapePart::None)
            state.notice(Notice::RepeatIsSilent, control.merged.sDataSource);
        if (pRow != nullptr)
            exportFeature(call, pRow, oOutput);
        else
            exportFeatures(call, oOutput);
    });
}

} // namespace halvane
