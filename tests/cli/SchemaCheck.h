#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace halvane::test {

/// Where a JSON value breaks a schema, a line each. Knows type, enum, minimum, required, properties,
/// additionalProperties false, items, and $ref into the schema itself; throws for a keyword beside these and
/// the descriptive ones: a rule that is not checked must not look like one that holds.
[[nodiscard]] std::vector<std::string> breaches(const nlohmann::json& schema, const nlohmann::json& value,
                                                const std::string& sWhere = "$");

} // namespace halvane::test
