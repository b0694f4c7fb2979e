#pragma once

// The snapshot of a map: everything that exports asked of it, and what it answered, as JSON:
//
//   { "objects": [ { "kind": "Map", "answers": { "Name": "City", "Layers": { "list": [ { "object": 4 } ] } }
//   } ],
//     "document": 0, "application": 1 }
//
// An answer is filed under the member's name and, in parentheses, its arguments. It is a value, {"object": n}
// (a place in "objects"), {"list": [...]}, or {"failure": {"number": n, "text": "..."}}. A list of rows that
// nobody read to its end is marked {"list": [...], "open": true}.
// The vertices of a shape stand beside its answers: "vertices": [part][index] is [x, y, z, m] or null.

#include "base/Value.h"

#include <nlohmann/json.hpp>

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace halvane::test {

using Json = nlohmann::json;

/// "Search(\"A = 1\")"; the name alone without arguments.
[[nodiscard]] std::string answerKey(std::string_view sMember, std::span<const Value> aArguments = {});
[[nodiscard]] inline std::string answerKey(std::string_view sMember,
                                           std::initializer_list<Value> aArguments) {
    return answerKey(sMember, std::span(aArguments.begin(), aArguments.size()));
}

/// null for Null, {"empty": true}, true and false, whole numbers and texts as they are, {"single": x},
/// {"double": x}, {"long": n}, {"date": [y, m, d, h, min, s]}. Numbers that are none are texts ("nan").
/// @throws Failure TypeMismatch for an object.
[[nodiscard]] Json jsonOf(const Value& vValue);
[[nodiscard]] Value valueOf(const Json& json);

[[nodiscard]] Json jsonOfNumber(double dValue);
[[nodiscard]] double numberOf(const Json& json);

} // namespace halvane::test
