#pragma once

#include <sqlite3.h>

namespace halvane::expression::sqlite {

/// Replaces upper(), lower() and LIKE, which know the letters of ASCII alone, by those that know Unicode's.
/// @returns a code of SQLite.
[[nodiscard]] int addUnicodeFunctions(sqlite3* pDatabase);

} // namespace halvane::expression::sqlite
