#include "engine/sources/NamedThings.h"

#include <array>

namespace halvane {

namespace {

// In the order of ThingKind.
constexpr std::array<Asking, 6> aAskings{{
    {"MapLayer", "LayerName", "feature layer", "feature layers"},
    {"RasterLayer", "LayerName", "raster layer", "raster layers"},
    {"TinLayer", "LayerName", "TIN layer", "TIN layers"},
    {"", "", "group layer", "group layers"},
    {"", "", "layer of another kind", "layers of another kind"},
    {"Table", "TableName", "table", "tables"},
}};

} // namespace

ThingKind kindOf(const host::GisLayer& layer) {
    if (dynamic_cast<const host::GisFeatureLayer*>(&layer) != nullptr)
        return ThingKind::FeatureLayer;
    if (dynamic_cast<const host::GisRasterLayer*>(&layer) != nullptr)
        return ThingKind::RasterLayer;
    if (dynamic_cast<const host::GisTinLayer*>(&layer) != nullptr)
        return ThingKind::TinLayer;
    return dynamic_cast<const host::GisGroupLayer*>(&layer) != nullptr ? ThingKind::GroupLayer
                                                                       : ThingKind::OtherLayer;
}

const Asking& askingFor(ThingKind kind) {
    return aAskings.at(static_cast<std::size_t>(kind));
}

std::string otherKind(std::string_view sName, ThingKind kind) {
    const Asking& asking = askingFor(kind);
    std::string sText;
    sText.append("\"").append(sName).append("\" is a ").append(asking.sOne);
    if (kind == ThingKind::GroupLayer)
        return sText + ": name a layer in it; one in a group of a group is not found";
    if (asking.sDataSource.empty())
        return sText;
    return sText.append(": ask for it with DataSource=\"")
        .append(asking.sDataSource)
        .append("\" Identity=\"")
        .append(asking.sIdentity)
        .append("\"");
}

} // namespace halvane
