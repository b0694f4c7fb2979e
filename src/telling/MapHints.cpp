#include "telling/MapHints.h"

#include "base/Choices.h"
#include "base/Text.h"
#include "engine/sources/DataSourceKind.h"
#include "telling/MapNames.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

namespace halvane {

namespace {

/// Of a map document's tables each may lie in a file of its own, that is opened to tell its name.
constexpr std::int32_t lMostTablesOpened = 50;

ThingKind thingSought(DataSourceKind kind) {
    switch (kind) {
    case DataSourceKind::RasterLayer:
        return ThingKind::RasterLayer;
    case DataSourceKind::TinLayer:
        return ThingKind::TinLayer;
    case DataSourceKind::Table:
    case DataSourceKind::RelatedTable:
        return ThingKind::Table;
    default:
        return ThingKind::FeatureLayer;
    }
}

/// What a data source can find in a map.
class Reach {
public:
    explicit Reach(DataSourceKind kind)
        : bRelated_(kind == DataSourceKind::RelatedTable), kind_(thingSought(kind)) {}

    [[nodiscard]] bool isOfKind(const MapThing& thing) const {
        return thing.kind == kind_ || (bRelated_ && thing.kind == ThingKind::FeatureLayer);
    }
    /// Feature layers are found in groups too, but not in groups of groups.
    [[nodiscard]] bool finds(const MapThing& thing) const {
        return isOfKind(thing) && thing.groups.size() <= (thing.kind == ThingKind::FeatureLayer ? 1U : 0U);
    }
    [[nodiscard]] bool asksTables() const { return kind_ == ThingKind::Table; }
    [[nodiscard]] Choice choice() const {
        const Asking& asking = askingFor(kind_);
        return bRelated_ ? Choice{"the map has", "table or layer", "tables and layers", {}}
                         : Choice{"the map has", asking.sOne, asking.sMany, {}};
    }

private:
    bool bRelated_;
    ThingKind kind_;
};

std::string wayTo(const MapThing& thing) {
    std::string sWay;
    for (const std::string& sGroup : thing.groups)
        sWay += (sWay.empty() ? "" : ":") + sGroup;
    return sWay;
}

std::string pathOf(const MapThing& thing) {
    return thing.groups.empty() ? thing.sName : wayTo(thing) + ":" + thing.sName;
}

std::string tooDeep(const MapThing& thing) {
    const Asking& asking = askingFor(thing.kind);
    return fmt::format("the {} {} stands in the group {}: {} are found {}, so move it up", asking.sOne,
                       inQuotes(thing.sName), inQuotes(wayTo(thing)), asking.sMany,
                       thing.kind == ThingKind::FeatureLayer ? "in no group of a group"
                                                             : "outside of groups only");
}

/// Why a thing that bears the name is not found. "" where nothing is known against it.
std::string whyNot(const MapThing& thing, const Reach& reach) {
    if (!reach.isOfKind(thing))
        return otherKind(thing.sName, thing.kind);
    if (!reach.finds(thing))
        return tooDeep(thing);
    if (thing.kind == ThingKind::FeatureLayer && thing.sName.find(':') != std::string::npos)
        return "a \":\" parts a group from its member: give the layer another name in a map document";
    if (thing.kind == ThingKind::FeatureLayer && reach.asksTables())
        return fmt::format("{} is a feature layer: write Identity=\"LayerName\", by which a RelatedTable "
                           "finds layers",
                           inQuotes(thing.sName));
    return "";
}

/// The name of another map in which the search would find it; "" for none.
std::string otherMapThatHas(std::string_view sSought, const Reach& reach, const host::GisMap& map,
                            const host::GisMapDocument* pMapDocument) {
    for (std::int32_t i = 0; pMapDocument != nullptr && i < pMapDocument->mapCount(); ++i) {
        const auto pOther = pMapDocument->map(i);
        if (pOther == nullptr || equalIgnoringCase(pOther->name(), map.name()))
            continue;
        const auto things = thingsOf(*pOther, lMostTablesOpened);
        if (std::ranges::any_of(things, [&](const MapThing& thing) {
                return reach.finds(thing) &&
                       (equalIgnoringCase(thing.sName, sSought) || equalIgnoringCase(pathOf(thing), sSought));
            }))
            return pOther->name();
    }
    return "";
}

} // namespace

std::string hintFromMap(std::string_view sKind, std::string_view sSought, const host::GisMap& map,
                        const host::GisMapDocument* pMapDocument) {
    const Reach reach(dataSourceKindOf(sKind));
    const auto things =
        thingsOf(map, reach.asksTables() ? std::numeric_limits<std::int32_t>::max() : lMostTablesOpened);
    const auto sMember = sSought.substr(sSought.rfind(':') + 1);
    const auto same = std::find_if(things.begin(), things.end(), [&](const MapThing& thing) {
        return equalIgnoringCase(thing.sName, sSought) ||
               (equalIgnoringCase(thing.sName, sMember) && !reach.finds(thing));
    });
    if (same != things.end())
        return whyNot(*same, reach);
    if (const std::string sOther = otherMapThatHas(sSought, reach, map, pMapDocument); !sOther.empty())
        return fmt::format("the map {} has it: write DataFrame={}", inQuotes(sOther), inQuotes(sOther));
    // Who names a group is told of groups.
    const bool bInGroup = sSought.find(':') != std::string_view::npos;
    Choice choice = reach.choice();
    for (const MapThing& thing : things)
        if (reach.finds(thing))
            choice.names.push_back(bInGroup ? pathOf(thing) : thing.sName);
    // Tables that cannot be opened have no names, but are there: of them the host tells.
    if (choice.names.empty() && reach.asksTables() && map.standaloneTableCount() > 0)
        return "";
    return meantOrThere(sSought, choice);
}

} // namespace halvane
