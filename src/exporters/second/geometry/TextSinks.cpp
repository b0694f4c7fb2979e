#include "exporters/second/geometry/TextSinks.h"

#include "base/Text.h"
#include "exporters/second/geometry/ShapeWalk.h"

#include <string_view>

namespace halvane {

namespace {

using host::PointValues;

/// Puts a text between things, but before none.
class Between {
public:
    explicit Between(std::string_view sText) : sText_(sText) {}
    void put(std::string& sOut) {
        if (!bFirst_)
            sOut += sText_;
        bFirst_ = false;
    }
    void beginAnew() { bFirst_ = true; }

private:
    std::string_view sText_;
    bool bFirst_ = true;
};

class WktSink final : public ShapeSink {
public:
    WktSink(std::string& sText, const CoordinateText& numbers) : sText_(sText), numbers_(numbers) {}

    void beginShape(const ShapeParts& parts, ShapeKind kind) override {
        bHeights_ = parts.hasHeights();
        bMeasures_ = parts.hasMeasures();
        bCollection_ = kind == ShapeKind::Collection;
        bMembers_ = isOfMembers(kind);
        putWord(kind);
        if (bMembers_)
            sText_ += '(';
    }
    void beginMember(ShapeKind kind) override {
        members_.put(sText_);
        if (bCollection_)
            putWord(kind);
        sText_ += '(';
        runs_.beginAnew();
    }
    void point(const PointValues& point) override { put(point); }
    void run(const ShapeParts& parts, const ShapePartFacts& part) override {
        runs_.put(sText_);
        const bool bRing = part.role != host::PartRole::Line;
        if (bRing)
            sText_ += '(';
        Between points(", ");
        parts.forEachPoint(part, [&](const PointValues& one) {
            points.put(sText_);
            put(one);
        });
        if (bRing)
            sText_ += ')';
    }
    void endMember(ShapeKind /*kind*/) override { sText_ += ')'; }
    void endShape() override {
        if (bMembers_)
            sText_ += ')';
    }

private:
    void putWord(ShapeKind kind) {
        sText_ += upperCase(nameOf(kind));
        if (bHeights_ || bMeasures_)
            sText_ += ' ';
        sText_ += bHeights_ ? "Z" : "";
        sText_ += bMeasures_ ? "M" : "";
        sText_ += ' ';
    }
    void put(const PointValues& point) {
        numbers_.appendPosition(sText_, point, ' ', bHeights_);
        if (!bMeasures_)
            return;
        sText_ += ' ';
        numbers_.appendNumber(sText_, point.dM);
    }

    std::string& sText_;
    const CoordinateText& numbers_;
    bool bHeights_ = false;
    bool bMeasures_ = false;
    bool bCollection_ = false;
    bool bMembers_ = false;
    Between members_{", "};
    Between runs_{", "};
};

class GeoJsonSink final : public ShapeSink {
public:
    GeoJsonSink(std::string& sText, const CoordinateText& numbers) : sText_(sText), numbers_(numbers) {}

    void beginShape(const ShapeParts& parts, ShapeKind kind) override {
        bHeights_ = parts.hasHeights();
        bCollection_ = kind == ShapeKind::Collection;
        bMembers_ = isOfMembers(kind);
        beginObject(kind, bCollection_ ? "geometries" : "coordinates");
        if (bMembers_)
            sText_ += '[';
    }
    void beginMember(ShapeKind kind) override {
        members_.put(sText_);
        if (bCollection_)
            beginObject(kind, "coordinates");
        if (kind == ShapeKind::Polygon)
            sText_ += '[';
        runs_.beginAnew();
    }
    void point(const PointValues& point) override { put(point); }
    void run(const ShapeParts& parts, const ShapePartFacts& part) override {
        runs_.put(sText_);
        Between points(",");
        sText_ += '[';
        parts.forEachPoint(part, [&](const PointValues& one) {
            points.put(sText_);
            put(one);
        });
        sText_ += ']';
    }
    void endMember(ShapeKind kind) override {
        if (kind == ShapeKind::Polygon)
            sText_ += ']';
        if (bCollection_)
            sText_ += '}';
    }
    void endShape() override { sText_ += bMembers_ ? "]}" : "}"; }

private:
    void beginObject(ShapeKind kind, std::string_view sContent) {
        sText_ += R"({"type":")";
        sText_ += nameOf(kind);
        sText_ += R"(",")";
        sText_ += sContent;
        sText_ += R"(":)";
    }
    void put(const PointValues& point) {
        sText_ += '[';
        numbers_.appendPosition(sText_, point, ',', bHeights_);
        sText_ += ']';
    }

    std::string& sText_;
    const CoordinateText& numbers_;
    bool bHeights_ = false;
    bool bCollection_ = false;
    bool bMembers_ = false;
    Between members_{","};
    Between runs_{","};
};

class SvgSink final : public ShapeSink {
public:
    SvgSink(std::string& sText, const CoordinateText& numbers) : sText_(sText), numbers_(numbers) {}

    void beginShape(const ShapeParts& /*parts*/, ShapeKind /*kind*/) override {}
    void beginMember(ShapeKind /*kind*/) override {}
    /// A line without extent, which a round cap makes a dot.
    void point(const PointValues& point) override {
        runs_.put(sText_);
        put('M', point);
        sText_ += " h 0";
    }
    void run(const ShapeParts& parts, const ShapePartFacts& part) override {
        runs_.put(sText_);
        char cCommand = 'M';
        parts.forEachPoint(part, [&](const PointValues& one) {
            if (cCommand != 'M')
                sText_ += ' ';
            put(cCommand, one);
            cCommand = 'L';
        });
        if (part.role != host::PartRole::Line)
            sText_ += " Z";
    }
    void endMember(ShapeKind /*kind*/) override {}
    void endShape() override {}

private:
    void put(char cCommand, PointValues point) {
        point.dY = -point.dY;
        sText_ += cCommand;
        sText_ += ' ';
        numbers_.appendPosition(sText_, point, ' ', false);
    }

    std::string& sText_;
    const CoordinateText& numbers_;
    Between runs_{" "};
};

template<class Sink>
void append(std::string& sText, const ShapeParts& parts, const CoordinateText& numbers) {
    Sink sink(sText, numbers);
    walk(parts, sink);
}

} // namespace

void appendWkt(std::string& sText, const ShapeParts& parts, const CoordinateText& numbers) {
    append<WktSink>(sText, parts, numbers);
}

void appendGeoJson(std::string& sText, const ShapeParts& parts, const CoordinateText& numbers) {
    append<GeoJsonSink>(sText, parts, numbers);
}

void appendSvgPath(std::string& sText, const ShapeParts& parts, const CoordinateText& numbers) {
    append<SvgSink>(sText, parts, numbers);
}

} // namespace halvane
