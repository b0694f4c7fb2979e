#include "exporters/second/geometry/LayerBounds.h"

#include "exporters/second/geometry/ShapeFigures.h"
#include "host/Layers.h"
#include "host/Rows.h"
#include "host/Tables.h"

#include <algorithm>

namespace halvane {

namespace {

void widen(std::optional<host::Bounds>& all, const host::Bounds& more) {
    if (!all) {
        all = more;
        return;
    }
    all->dXMin = std::min(all->dXMin, more.dXMin);
    all->dYMin = std::min(all->dYMin, more.dYMin);
    all->dXMax = std::max(all->dXMax, more.dXMax);
    all->dYMax = std::max(all->dYMax, more.dYMax);
}

void requireGoingOn(const ExportState& state) {
    if (state.options.pObserver != nullptr && !state.options.pObserver->goesOn())
        throw ExportCancelled{};
}

std::optional<host::Bounds> readBounds(ExportState& state) {
    const host::GisCursorPtr pCursor = state.pFeatureLayer->selectionCount() >= 1
                                           ? state.pFeatureLayer->searchSelection()
                                           : state.pFeatureClass->search(nullptr);
    std::optional<host::Bounds> bounds;
    while (const GisRowPtr pRow = pCursor == nullptr ? nullptr : pCursor->nextRow()) {
        requireGoingOn(state);
        const auto pShape = pRow->shape();
        if (pShape == nullptr)
            continue;
        const ShapeParts parts(*pShape);
        if (!parts.isEmpty())
            widen(bounds, boundsOf(parts));
    }
    return bounds;
}

} // namespace

std::optional<host::Bounds> boundsOfCurrentLayer(ExportState& state, const NodeSpace& space) {
    if (state.pFeatureLayer == nullptr || state.pFeatureClass == nullptr) {
        state.notice(Notice::NoCurrentLayer, "Feature");
        return std::nullopt;
    }
    auto& known = state.layerBounds;
    if (known.pLayer != state.pFeatureLayer || known.nGeneration != state.nGeneration) {
        known = {};
        known.bounds = readBounds(state);
        known.pLayer = state.pFeatureLayer;
        known.nGeneration = state.nGeneration;
    }
    if (!known.bounds)
        return std::nullopt;
    const TableSpace& there = state.coordinates.of(state.pFeatureClass, space, state.nGeneration);
    return there.pTransformation == nullptr ? *known.bounds
                                            : there.pTransformation->transformBounds(*known.bounds);
}

} // namespace halvane
