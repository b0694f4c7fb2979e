#include "cli/SchemaCheck.h"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace halvane::test {

namespace {

using Json = nlohmann::json;
using Breaches = std::vector<std::string>;

bool isOfType(const Json& value, const std::string& sType) {
    if (sType == "integer")
        return value.is_number_integer();
    if (sType == "number")
        return value.is_number();
    if (sType == "null")
        return value.is_null();
    return sType == value.type_name();
}

bool isOfAnyType(const Json& value, const Json& types) {
    if (types.is_string())
        return isOfType(value, types);
    return std::any_of(types.begin(), types.end(), [&](const Json& type) { return isOfType(value, type); });
}

void refuseUnknownKeywords(const Json& schema) {
    static const std::set<std::string> known{
        "$schema",  "title",      "description",          "type",  "enum", "minimum",
        "required", "properties", "additionalProperties", "items", "$ref", "$defs"};
    for (const auto& [sKeyword, rule] : schema.items()) {
        if (!known.contains(sKeyword))
            throw std::logic_error("the check does not know the keyword " + sKeyword);
    }
}

Breaches breachesOf(const Json& root, const Json& schema, const Json& value, const std::string& sWhere);

void checkObject(const Json& root, const Json& schema, const Json& value, const std::string& sWhere,
                 Breaches& all) {
    for (const auto& key : schema.value("required", Json::array())) {
        if (!value.contains(key.get<std::string>()))
            all.push_back(sWhere + ": lacks " + key.get<std::string>());
    }
    const Json properties = schema.value("properties", Json::object());
    for (const auto& [sKey, member] : value.items()) {
        if (properties.contains(sKey)) {
            const auto more = breachesOf(root, properties[sKey], member, sWhere + "." + sKey);
            all.insert(all.end(), more.begin(), more.end());
        } else if (!schema.value("additionalProperties", true)) {
            all.push_back(sWhere + ": has " + sKey);
        }
    }
}

Breaches breachesOf(const Json& root, const Json& schema, const Json& value, const std::string& sWhere) {
    refuseUnknownKeywords(schema);
    Breaches all;
    if (schema.contains("$ref")) {
        const Json::json_pointer target(schema["$ref"].get<std::string>().substr(1)); // behind the "#"
        all = breachesOf(root, root.at(target), value, sWhere);
    }
    if (schema.contains("type") && !isOfAnyType(value, schema["type"]))
        return {sWhere + ": is a " + value.type_name()};
    if (schema.contains("enum") &&
        std::find(schema["enum"].begin(), schema["enum"].end(), value) == schema["enum"].end())
        all.push_back(sWhere + ": is none of the listed values");
    if (schema.contains("minimum") && value.is_number() && value < schema["minimum"])
        all.push_back(sWhere + ": is too small");
    if (value.is_object())
        checkObject(root, schema, value, sWhere, all);
    if (value.is_array() && schema.contains("items")) {
        for (std::size_t i = 0; i < value.size(); ++i) {
            const auto more =
                breachesOf(root, schema["items"], value[i], sWhere + "[" + std::to_string(i) + "]");
            all.insert(all.end(), more.begin(), more.end());
        }
    }
    return all;
}

} // namespace

Breaches breaches(const Json& schema, const Json& value, const std::string& sWhere) {
    return breachesOf(schema, schema, value, sWhere);
}

} // namespace halvane::test
