#include "run/describe/MapDrawing.h"

#include "run/describe/HtmlText.h"
#include "run/describe/Words.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <numbers>

namespace halvane {

namespace {

constexpr double dWidth = 600;
constexpr double dMargin = 12;

/// From coordinates of the layers to those of the drawing.
class Frame {
public:
    Frame(const host::Bounds& bounds, bool bDegrees) : bounds_(bounds) {
        const double dLatitude = (bounds.dYMin + bounds.dYMax) / 2;
        if (bDegrees && std::abs(dLatitude) < 80)
            dStretch_ = std::cos(dLatitude * std::numbers::pi / 180);
        const double dAcross = (bounds.dXMax - bounds.dXMin) * dStretch_;
        const double dUp = bounds.dYMax - bounds.dYMin;
        const double dInner = dWidth - 2 * dMargin;
        // What is very tall would not fit on a screen.
        dScale_ = std::min(dAcross > 0 ? dInner / dAcross : 1e300, dUp > 0 ? dInner / dUp : 1e300);
        if (dScale_ >= 1e300)
            dScale_ = 1;
        dHeight_ = std::max(dUp * dScale_, 40.0) + 2 * dMargin;
        dLeft_ = (dWidth - dAcross * dScale_) / 2;
        dTop_ = (dHeight_ - dUp * dScale_) / 2;
    }

    [[nodiscard]] double height() const noexcept { return dHeight_; }
    [[nodiscard]] double x(double dX) const { return dLeft_ + (dX - bounds_.dXMin) * dStretch_ * dScale_; }
    [[nodiscard]] double y(double dY) const { return dTop_ + (bounds_.dYMax - dY) * dScale_; }

private:
    host::Bounds bounds_;
    double dStretch_ = 1;
    double dScale_ = 1;
    double dHeight_ = 0;
    double dLeft_ = 0;
    double dTop_ = 0;
};

host::Bounds boundsOf(const std::vector<DrawnLayer>& layers) {
    host::Bounds all = *layers.front().pSketch->bounds;
    for (const DrawnLayer& layer : layers) {
        const host::Bounds& bounds = *layer.pSketch->bounds;
        all = {std::min(all.dXMin, bounds.dXMin), std::min(all.dYMin, bounds.dYMin),
               std::max(all.dXMax, bounds.dXMax), std::max(all.dYMax, bounds.dYMax)};
    }
    return all;
}

std::string drawLine(const LayerSketch::Line& line, const Frame& frame) {
    const auto [dX, dY] = line.points.front();
    if (line.points.size() == 1)
        return fmt::format("<circle cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"3\"/>", frame.x(dX), frame.y(dY));
    std::string sPath;
    for (const auto& [dNextX, dNextY] : line.points)
        sPath += fmt::format("{}{:.1f} {:.1f}", sPath.empty() ? "M" : "L", frame.x(dNextX), frame.y(dNextY));
    return fmt::format("<path d=\"{}{}\"{}/>", sPath, line.bClosed ? "Z" : "",
                       line.bClosed ? "" : " class=\"line\"");
}

} // namespace

std::string drawLayers(const std::vector<DrawnLayer>& layers, bool bDegrees, std::string_view sTitle) {
    if (layers.empty())
        return {};
    const Frame frame(boundsOf(layers), bDegrees);
    std::string sSvg = fmt::format("<svg viewBox=\"0 0 {} {:.0f}\" role=\"img\" aria-label=\"{}\">", dWidth,
                                   frame.height(), html(sTitle));
    for (const DrawnLayer& layer : layers) {
        const host::Bounds& bounds = *layer.pSketch->bounds;
        sSvg += fmt::format("<g class=\"c{}\"><rect class=\"extent\" x=\"{:.1f}\" y=\"{:.1f}\" "
                            "width=\"{:.1f}\" height=\"{:.1f}\"/>",
                            layer.nColour, frame.x(bounds.dXMin), frame.y(bounds.dYMax),
                            frame.x(bounds.dXMax) - frame.x(bounds.dXMin),
                            frame.y(bounds.dYMin) - frame.y(bounds.dYMax));
        for (const auto& line : layer.pSketch->lines)
            sSvg += drawLine(line, frame);
        sSvg += "</g>";
    }
    return sSvg + "</svg>\n";
}

// ---- Relationship classes ----

namespace {

constexpr double dRow = 56;
constexpr double dBox = 170;

std::string nameOr(const Reading<std::string>& sName) {
    return sName ? *sName : "?";
}

std::string drawBox(double dX, double dTop, double dBottom, const std::string& sName) {
    constexpr std::size_t nMost = 22;
    return fmt::format("<g class=\"box\"><title>{}</title><rect x=\"{}\" y=\"{:.0f}\" width=\"{}\" "
                       "height=\"{:.0f}\" rx=\"6\"/><text x=\"{}\" y=\"{:.0f}\">{}</text></g>",
                       html(sName), dX, dTop, dBox, dBottom - dTop, dX + dBox / 2, (dTop + dBottom) / 2 + 5,
                       html(shortened(sName, nMost)));
}

} // namespace

std::string drawRelationships(const std::vector<const RelationshipDescription*>& relationships) {
    if (relationships.empty())
        return {};
    auto sorted = relationships;
    std::ranges::stable_sort(sorted, {}, [](const auto* pOne) { return nameOr(pOne->sOriginClass); });
    std::vector<std::string> destinations;
    for (const auto* pOne : sorted)
        if (const auto sName = nameOr(pOne->sDestinationClass);
            std::ranges::find(destinations, sName) == destinations.end())
            destinations.push_back(sName);
    const double dHeight = dRow * static_cast<double>(sorted.size());
    const double dOfDestination = dHeight / static_cast<double>(destinations.size());
    const auto middleOf = [&](const std::string& sName) {
        const auto nPlace = std::ranges::find(destinations, sName) - destinations.begin();
        return (static_cast<double>(nPlace) + 0.5) * dOfDestination;
    };
    std::string sSvg = fmt::format("<svg class=\"diagram\" viewBox=\"0 0 {} {:.0f}\" role=\"img\" "
                                   "aria-label=\"Relationship classes\">",
                                   dWidth, dHeight);
    for (std::size_t nFirst = 0; nFirst < sorted.size();) {
        const std::string sOrigin = nameOr(sorted[nFirst]->sOriginClass);
        std::size_t n = nFirst;
        for (; n < sorted.size() && nameOr(sorted[n]->sOriginClass) == sOrigin; ++n) {
            const RelationshipDescription& one = *sorted[n];
            const double dY = (static_cast<double>(n) + 0.5) * dRow;
            sSvg += fmt::format("<path class=\"edge\" d=\"M{} {:.0f}H{}L{} {:.0f}\"/><text class=\"small\" "
                                "x=\"{}\" y=\"{:.0f}\">{}</text><text class=\"small\" x=\"{}\" "
                                "y=\"{:.0f}\">{}</text>",
                                dBox, dY, dWidth - dBox - 60, dWidth - dBox,
                                middleOf(nameOr(one.sDestinationClass)), dBox + 8, dY - 6,
                                html(shortened(nameOr(one.sName), 30)), dBox + 8, dY + 16,
                                one.lCardinality ? html(cardinalityWord(*one.lCardinality)) : "?");
        }
        sSvg +=
            drawBox(0, static_cast<double>(nFirst) * dRow + 6, static_cast<double>(n) * dRow - 6, sOrigin);
        nFirst = n;
    }
    for (const auto& sName : destinations)
        sSvg += drawBox(dWidth - dBox, middleOf(sName) - 20, middleOf(sName) + 20, sName);
    return sSvg + "</svg>\n";
}

} // namespace halvane
