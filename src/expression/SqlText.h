#pragma once

#include "expression/Expression.h"

#include <string>

namespace halvane::expression {

/// The term in SQL of SQLite, written anew: each operation in brackets, but for
/// rows of one operator; texts quoted, the n-th reference
/// (from 0) as the parameter "?n+1".
[[nodiscard]] std::string sqlText(const Term& term);

} // namespace halvane::expression
