#include "host/conformance/Town.h"

#include <algorithm>
#include <limits>

namespace halvane::test::conformance {

using host::FieldType;

namespace {

constexpr double dNone = std::numeric_limits<double>::quiet_NaN();

TownTable roads() {
    TownTable table{"Roads",
                    {{"OBJECTID", "", FieldType::Oid},
                     {"SHAPE", "", FieldType::Geometry},
                     {"NAME", "Name of road", FieldType::String, 40},
                     {"KIND", "", FieldType::Integer},
                     {"SURFACE", "", FieldType::Integer},
                     {"WIDTH", "Width", FieldType::Double},
                     {"OPENED", "", FieldType::Date}},
                    {}};
    table.aRows.push_back(
        {1,
         {{"NAME", std::string("Mill Lane")},
          {"KIND", 1},
          {"SURFACE", 2},
          {"WIDTH", 6.5},
          {"OPENED", Date{1921, 5, 17}}},
         {},
         TownShape{host::ShapeType::Polyline, 5, {{{0, 0, dNone, dNone}, {3, 4, dNone, dNone}}}}});
    table.aRows.push_back(
        {2,
         {{"NAME", std::string("\xC3\x84hrenweg <north>")}, {"KIND", 2}, {"SURFACE", 1}, {"WIDTH", 2.25}},
         {},
         TownShape{host::ShapeType::Polyline,
                   7,
                   {{{0, 0, 1, 10}, {0, 3, 2, 20}}, {{10, 10, 3, 30}, {14, 10, 4, 40}}}}});
    table.aRows.push_back({3, {{"NAME", std::string("Quay")}}, {}, std::nullopt});
    return table;
}

TownTable signs() {
    TownTable table{"Signs",
                    {{"OBJECTID", "", FieldType::Oid},
                     {"ROAD", "", FieldType::Integer},
                     {"TEXT", "", FieldType::String, 20}},
                    {}};
    table.aRows.push_back({1, {{"ROAD", 1}, {"TEXT", std::string("Stop")}}, {}, std::nullopt});
    table.aRows.push_back({2, {{"ROAD", 2}, {"TEXT", std::string("No through road")}}, {}, std::nullopt});
    table.aRows.push_back({3, {{"ROAD", 1}, {"TEXT", std::string("Give way")}}, {}, std::nullopt});
    return table;
}

std::vector<TownDomain> domains() {
    return {{"Surface",
             "what a road is made of",
             FieldType::Integer,
             1,
             2,
             {{Value(1), "gravel"}, {Value(2), "asphalt"}},
             std::nullopt},
            {"Lanes", "", FieldType::Integer, 2, 1, {}, std::pair<Value, Value>(1, 8)}};
}

TownRelationshipClass relationshipClass() {
    TownRelationshipClass result;
    result.sName = "RoadsToSigns";
    result.sForwardPathLabel = "has signs";
    result.sBackwardPathLabel = "stands at";
    result.bComposite = true;
    result.lNotification = 2;
    result.lCardinality = 2;
    result.sOriginClassName = "Roads";
    result.sDestinationClassName = "Signs";
    result.sOriginPrimaryKey = "OBJECTID";
    result.sOriginForeignKey = "ROAD";
    return result;
}

template<class Matches>
std::int32_t indexWhere(const std::vector<TownField>& aFields, const Matches& matches) {
    const auto pFound = std::find_if(aFields.begin(), aFields.end(), matches);
    return pFound == aFields.end() ? -1 : static_cast<std::int32_t>(pFound - aFields.begin());
}

} // namespace

std::int32_t TownTable::indexOf(std::string_view sField) const {
    return indexWhere(aFields, [&](const TownField& field) { return field.sName == sField; });
}

std::int32_t TownTable::indexOf(FieldType type) const {
    return indexWhere(aFields, [&](const TownField& field) { return field.type == type; });
}

Town commonTown() {
    using Kind = TownLayer::Kind;
    Town town;
    town.roads = roads();
    town.signs = signs();
    town.aDomains = domains();
    town.subtypes = {"KIND",
                     1,
                     {{1, "street"}, {2, "path"}},
                     {{1, "SURFACE", "Surface", 1}, {2, "SURFACE", "Surface", 2}}};
    town.relationshipClass = relationshipClass();
    town.mapReference = {"PROJECTION GEOGRAPHIC",
                         host::XyDomain{-180, -90, 180, 90, -400, -400, 1000000},
                         std::nullopt,
                         host::MeasureDomain{0, 1000, 0, 10},
                         "EPSG:4326",
                         true};
    town.roadsReference = town.mapReference;
    town.transformation = {
        "EPSG:3857", {9, 48, 5, 7}, {1001875.417, 6106854.835, 5, 7}, {0, 1e30, dNone, dNone}};
    town.aLayers = {
        {Kind::Feature, "Roads", {}, {}},
        {Kind::Group, "Backdrop", {{Kind::Raster, "Photo", {}, {}}, {Kind::Tin, "Relief", {}, {}}}, {}},
        {Kind::Other, "Names", {}, {}},
        {Kind::Feature, "Chosen", {}, {2, 1}}};
    town.aRoadClauses = {
        {"NAME = 'Mill Lane'", {1}}, {"SURFACE = 1", {2}}, {"name = 'Quay'", {3}}, {"KIND = 99", {}}};
    town.aRejectedClauses = {"NOFIELD = 1", "KIND =", "no clause at all"};
    return town;
}

} // namespace halvane::test::conformance
