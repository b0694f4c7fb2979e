#include "exporters/second/geometry/ElementSinks.h"

#include "exporters/second/geometry/PositionTexts.h"
#include "exporters/second/geometry/ShapeWalk.h"

#include <cstdint>
#include <limits>
#include <string_view>

namespace halvane {

namespace {

using host::PointValues;

/// What both notations have in common.
class ElementSink : public ShapeSink {
public:
    explicit ElementSink(const ElementOutput& output) : output_(output), oAround_(output.oParent) {}

protected:
    [[nodiscard]] const dom::Name& name(std::string_view sLocal) const {
        return output_.names.of(output_.oDocument, sLocal);
    }
    [[nodiscard]] OutputElement append(const OutputElement& oParent, std::string_view sLocal) const {
        return oParent.appendElement(name(sLocal));
    }
    /// The outermost element, with its declaration.
    [[nodiscard]] OutputElement beginOutermost(std::string_view sLocal) const {
        const dom::Name* const pDeclaration =
            output_.names.isDeclared() ? nullptr : &output_.names.declaration(output_.oDocument);
        const OutputElement oElement = append(output_.oParent, sLocal);
        if (pDeclaration != nullptr)
            oElement.setDeclaration(*pDeclaration, output_.names.address());
        return oElement;
    }

    const ElementOutput& output_;
    OutputElement oAround_; ///< of the members
    OutputElement oMember_;
    std::string sText_;
};

class GmlSink final : public ElementSink {
public:
    using ElementSink::ElementSink;

    void beginShape(const ShapeParts& parts, ShapeKind kind) override {
        bHeights_ = parts.hasHeights();
        switch (kind) {
        case ShapeKind::MultiPoint:
            sMember_ = "pointMember";
            beginMembers("MultiPoint");
            break;
        case ShapeKind::MultiLineString:
            sMember_ = "curveMember";
            beginMembers("MultiCurve");
            break;
        case ShapeKind::MultiPolygon:
            sMember_ = "surfaceMember";
            beginMembers("MultiSurface");
            break;
        case ShapeKind::Collection:
            sMember_ = "geometryMember";
            beginMembers("MultiGeometry");
            break;
        default:
            break;
        }
    }
    void beginMember(ShapeKind kind) override {
        const std::string_view sLocal = kind == ShapeKind::Point        ? "Point"
                                        : kind == ShapeKind::LineString ? "LineString"
                                                                        : "Polygon";
        if (sMember_.empty()) {
            oMember_ = begin(sLocal);
            return;
        }
        oMember_ = append(append(oAround_, sMember_), sLocal);
        ++lMembers_;
        if (!output_.sId.empty())
            oMember_.setAttribute(name("id"), output_.sId + "." + std::to_string(lMembers_));
    }
    void point(const PointValues& point) override {
        sText_.clear();
        output_.numbers.appendPosition(sText_, point, ' ', bHeights_);
        putText(oMember_, "pos");
    }
    void run(const ShapeParts& parts, const ShapePartFacts& part) override {
        sText_.clear();
        appendPositions(sText_, parts, part, output_.numbers);
        if (part.role == host::PartRole::Line)
            putText(oMember_, "posList");
        else
            putText(append(append(oMember_, part.role == host::PartRole::OuterRing ? "exterior" : "interior"),
                           "LinearRing"),
                    "posList");
    }
    void endMember(ShapeKind /*kind*/) override {}
    void endShape() override {}

    void envelope(const host::Bounds& bounds) {
        const OutputElement oEnvelope = begin("Envelope");
        constexpr double dNone = std::numeric_limits<double>::quiet_NaN();
        sText_.clear();
        output_.numbers.appendPosition(sText_, {bounds.dXMin, bounds.dYMin, dNone, dNone}, ' ', false);
        putText(oEnvelope, "lowerCorner");
        sText_.clear();
        output_.numbers.appendPosition(sText_, {bounds.dXMax, bounds.dYMax, dNone, dNone}, ' ', false);
        putText(oEnvelope, "upperCorner");
    }

private:
    [[nodiscard]] OutputElement begin(std::string_view sLocal) const {
        const OutputElement oElement = beginOutermost(sLocal);
        if (!output_.sId.empty())
            oElement.setAttribute(name("id"), output_.sId);
        if (!output_.sSrsName.empty())
            oElement.setAttribute(*output_.oDocument.findName("srsName"), output_.sSrsName);
        return oElement;
    }
    void beginMembers(std::string_view sLocal) { oAround_ = begin(sLocal); }
    void putText(const OutputElement& oParent, std::string_view sLocal) const {
        if (!bHeights_) {
            oParent.appendElement(name(sLocal), sText_, TextKind::Plain);
            return;
        }
        const OutputElement oElement = append(oParent, sLocal);
        oElement.setAttribute(*output_.oDocument.findName("srsDimension"), "3", TextKind::Plain);
        oElement.setText(sText_, TextKind::Plain);
    }

    std::string_view sMember_; ///< "" for a shape that is no collection
    std::int64_t lMembers_ = 0;
    bool bHeights_ = false;
};

class KmlSink final : public ElementSink {
public:
    using ElementSink::ElementSink;

    void beginShape(const ShapeParts& parts, ShapeKind kind) override {
        bHeights_ = parts.hasHeights();
        bMembers_ = isOfMembers(kind);
        if (bMembers_)
            oAround_ = beginOutermost("MultiGeometry");
    }
    void beginMember(ShapeKind kind) override {
        const std::string_view sLocal = kind == ShapeKind::Point        ? "Point"
                                        : kind == ShapeKind::LineString ? "LineString"
                                                                        : "Polygon";
        oMember_ = bMembers_ ? append(oAround_, sLocal) : beginOutermost(sLocal);
    }
    void point(const PointValues& point) override {
        sText_.clear();
        output_.numbers.appendPosition(sText_, point, ',', bHeights_);
        oMember_.appendElement(name("coordinates"), sText_, TextKind::Plain);
    }
    void run(const ShapeParts& parts, const ShapePartFacts& part) override {
        sText_.clear();
        appendTuples(sText_, parts, part, output_.numbers);
        OutputElement oLine = oMember_;
        if (part.role != host::PartRole::Line)
            oLine = append(append(oMember_, part.role == host::PartRole::OuterRing ? "outerBoundaryIs"
                                                                                   : "innerBoundaryIs"),
                           "LinearRing");
        oLine.appendElement(name("coordinates"), sText_, TextKind::Plain);
    }
    void endMember(ShapeKind /*kind*/) override {}
    void endShape() override {}

private:
    bool bHeights_ = false;
    bool bMembers_ = false;
};

} // namespace

void writeGml(const ElementOutput& output, const ShapeParts& parts) {
    GmlSink sink(output);
    walk(parts, sink);
}

void writeGmlEnvelope(const ElementOutput& output, const host::Bounds& bounds) {
    GmlSink(output).envelope(bounds);
}

void writeKml(const ElementOutput& output, const ShapeParts& parts) {
    KmlSink sink(output);
    walk(parts, sink);
}

} // namespace halvane
