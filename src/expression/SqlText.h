#pragma once

#include "expression/Expression.h"

#include <string>

namespace halvane::expression {

/// A function without arguments that fails because a text is too long: whoever computes SQL texts defines it.
inline constexpr const char* sTooLong = "halvane_too_long";

/// The term in SQL of SQLite, written anew: each operation in brackets, but for rows of one operator; texts
/// quoted, the n-th reference (from 0) as the parameter "?n+1".
[[nodiscard]] std::string sqlText(const Term& term);

} // namespace halvane::expression
