#include "cli/SchemaCheck.h"

#include <gmock/gmock.h>

namespace halvane::test {

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const json& schema() {
    static const json value =
        json::parse(R"({"type": "object", "additionalProperties": false, "required": ["a"],
        "properties": {"a": {"type": ["integer", "null"], "minimum": 1},
                       "b": {"type": "array", "items": {"type": "string", "enum": ["x", "y"]}}}})");
    return value;
}

} // namespace

TEST(SchemaCheck, AcceptsWhatKeepsToTheSchema) {
    EXPECT_THAT(breaches(schema(), json::parse(R"({"a": 1, "b": ["x", "y"]})")), IsEmpty());
    EXPECT_THAT(breaches(schema(), json{{"a", nullptr}}), IsEmpty());
}

TEST(SchemaCheck, NamesEveryBreach) {
    EXPECT_THAT(breaches(schema(), json::array()), ElementsAre("$: is a array"));
    EXPECT_THAT(
        breaches(schema(), json::parse(R"({"b": ["x", "z", 1], "c": 0})")),
        ElementsAre("$: lacks a", "$.b[1]: is none of the listed values", "$.b[2]: is a number", "$: has c"));
    EXPECT_THAT(breaches(schema(), json{{"a", 0}}), ElementsAre("$.a: is too small"));
    EXPECT_THAT(breaches(schema(), json{{"a", 1.5}}), ElementsAre("$.a: is a number"));
}

TEST(SchemaCheck, FollowsReferencesIntoTheSchemaItself) {
    const auto tree = json::parse(R"({"$ref": "#/$defs/node", "$defs": {"node": {"type": "object",
        "properties": {"nodes": {"type": "array", "items": {"$ref": "#/$defs/node"}}}}}})");
    EXPECT_THAT(breaches(tree, json::parse(R"({"nodes": [{"nodes": []}]})")), IsEmpty());
    EXPECT_THAT(breaches(tree, json::parse(R"({"nodes": [{"nodes": [1]}]})")),
                ElementsAre("$.nodes[0].nodes[0]: is a number"));
}

TEST(SchemaCheck, RefusesRulesThatItDoesNotKnow) {
    EXPECT_THROW((void)breaches(json{{"pattern", "x"}}, "y"), std::logic_error);
}

} // namespace halvane::test
