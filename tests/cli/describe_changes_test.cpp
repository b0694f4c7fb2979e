// What was added, removed and changed between two maps.

#include "cli/Samples.h"
#include "cli/SchemaCheck.h"
#include "run/describe/DescriptionChanges.h"

#include <gmock/gmock.h>

#include <fstream>
#include <functional>

namespace halvane::test {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class DescribeChanges : public ExportFixture {
protected:
    DescribeChanges() { program.write("rivers.csv", sRivers); }

    /// Compares the towns with other ones.
    [[nodiscard]] RunResult compareTowns(const std::string& sOther,
                                         std::vector<std::string> more = {}) const {
        program.write("later.geojson", sOther);
        more.insert(more.begin(), {"describe", "towns.geojson", "later.geojson"});
        return program.run(more);
    }
};

/// One town less, one field more, another type.
constexpr const char* sLaterTowns = R"({"type": "FeatureCollection", "name": "towns", "features": [
{"type": "Feature", "id": 1, "properties": {"POP": 120.5, "NAME": "Abdera", "MAYOR": "Z"}, "geometry": {"type": "Point", "coordinates": [1, 2]}},
{"type": "Feature", "id": 2, "properties": {"POP": 340.5, "NAME": "Byblos", "MAYOR": "Y"}, "geometry": {"type": "Point", "coordinates": [3, 4]}}
]})";

/// The changes from the description of the example to what is made of it.
std::string changesOf(const Program& program, const std::function<void(json&)>& fnChange) {
    const std::string sOld =
        program.run({"describe", HALVANE_SOURCE_DIR "/examples/data/city.gpkg", "--json"}).sOut;
    json description = json::parse(sOld);
    fnChange(description);
    return changesText(compareDescriptions(sOld, description.dump()));
}

json& named(json& list, const char* sName) {
    for (auto& item : list)
        if (item.value("name", "") == sName)
            return item;
    throw std::out_of_range(sName);
}

} // namespace

TEST_F(DescribeChanges, TellsNothingOfMapsThatAreMadeOfTheSame) {
    const auto result = compareTowns(std::string(sTowns));
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr, "halvane: the maps are made of the same\n");
    EXPECT_EQ(result.lExitCode, 0);
}

TEST_F(DescribeChanges, TellsWhatWasAddedRemovedAndChanged) {
    const auto result = compareTowns(sLaterTowns);
    EXPECT_EQ(result.sOut, "changed  layer \"towns\", field \"POP\": type: \"integer\" → \"double\"\n"
                           "added    layer \"towns\", field \"MAYOR\": text\n"
                           "changed  layer \"towns\": order of fields: \"OID\", \"SHAPE\", \"NAME\", \"POP\" "
                           "→ \"OID\", \"SHAPE\", \"POP\", \"NAME\"\n"
                           "changed  layer \"towns\": features: 3 → 2\n"
                           "changed  layer \"towns\": extent: 1, 2, 5, 6 → 1, 2, 3, 4\n");
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.lExitCode, 1);
}

TEST_F(DescribeChanges, AreJsonForPrograms) {
    const auto result = compareTowns(sLaterTowns, {"--json"});
    const auto value = json::parse(result.sOut);
    const auto schema = json::parse(std::ifstream(HALVANE_SOURCE_DIR "/docs/describe-changes.schema.json"));
    EXPECT_THAT(breaches(schema, value), IsEmpty());
    EXPECT_EQ(value["old"], program.file("towns.geojson"));
    const json extent{{"change", "changed"},
                      {"where", {{{"kind", "layer"}, {"name", "towns"}}}},
                      {"member", "extent"},
                      {"before", {1, 2, 5, 6}},
                      {"after", {1, 2, 3, 4}}};
    EXPECT_THAT(value["changes"], ::testing::Contains(extent));
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.lExitCode, 1);
}

TEST_F(DescribeChanges, FollowTheNameOfTheMapsFile) {
    program.write("older.csv", sRivers);
    const auto result = program.run({"describe", "older.csv", "rivers.csv"});
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.lExitCode, 0);
}

TEST_F(DescribeChanges, AreRefusedWhereAMapIsMissing) {
    auto result = program.run({"describe", "towns.geojson", "nowhere.gpkg"});
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr,
              "halvane: NEW: There is no file or folder \"" + program.file("nowhere.gpkg") + "\"\n");
    EXPECT_EQ(result.lExitCode, 2);
    result = program.run({"describe", "nowhere.gpkg", "towns.geojson"});
    EXPECT_THAT(result.sErr, HasSubstr("halvane: OLD: "));
    EXPECT_EQ(result.lExitCode, 2);
}

TEST_F(DescribeChanges, NameLayersAndTables) {
    EXPECT_EQ(changesOf(program,
                        [](json& map) {
                            named(map["maps"][0]["layers"], "piers")["name"] = "posts";
                            map["maps"][0]["tables"].clear();
                        }),
              "removed  layer \"piers\": feature, multipoint, 8 features\n"
              "added    layer \"posts\": feature, multipoint, 8 features\n"
              "removed  table \"milestones\"\n");
}

TEST_F(DescribeChanges, NameDomainsAndTheirCodes) {
    EXPECT_EQ(changesOf(program,
                        [](json& map) {
                            auto& borough = named(map["workspaces"][0]["domains"], "Borough");
                            borough["codes"][1]["name"] = "The Bronx";
                            borough["codes"].push_back({{"code", "6"}, {"name", "Hoboken"}});
                            borough["codes"].erase(0);
                            borough["description"] = "Part of the city";
                        }),
              "changed  domain \"Borough\": description: \"\" → \"Part of the city\"\n"
              "removed  domain \"Borough\", code \"1\": \"Manhattan\"\n"
              "changed  domain \"Borough\", code \"2\": name: \"Bronx\" → \"The Bronx\"\n"
              "added    domain \"Borough\", code \"6\": \"Hoboken\"\n");
}

TEST_F(DescribeChanges, NameSubtypesReferencesAndRelationshipClasses) {
    EXPECT_EQ(changesOf(program,
                        [](json& map) {
                            auto& bridges = named(map["maps"][0]["layers"], "bridges");
                            bridges["featureClass"]["subtypes"]["subtypes"][0]["name"] = "Hanging";
                            bridges["spatialReference"]["description"][0] = "Projection Other";
                            map["workspaces"][0]["relationshipClasses"].erase(0);
                        }),
              "changed  layer \"bridges\": spatialReference.description: \"Projection    STATEPLANE\" → "
              "\"Projection Other\"\n"
              "changed  layer \"bridges\", subtype \"1\": name: \"Suspension bridge\" → \"Hanging\"\n"
              "removed  relationship class \"bridges_boroughs_features\": many to many\n");
}

TEST_F(DescribeChanges, SayWhatCannotBeRead) {
    EXPECT_EQ(changesOf(program,
                        [](json& map) {
                            auto& layer = named(map["maps"][0]["layers"], "piers");
                            layer["featureClass"] = nullptr;
                            layer["notReadable"] = {{{"what", "featureClass"}, {"why", "it is gone"}}};
                        }),
              "changed  layer \"piers\": featureClass: some → not readable: it is gone\n");
}

} // namespace halvane::test
