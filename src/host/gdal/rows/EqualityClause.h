#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace halvane::host::gdal {

/// A clause of the form FIELD=123 or FIELD='text'.
struct EqualityClause {
    std::string sField; ///< upper-cased
    bool bText = false;
    std::int64_t lNumber = 0;
    std::string sText;
};

/// Nothing for any other clause, and for one whose literal a database might read in another way: a number
/// that is not in its shortest form or has more than 18 digits, a text with a single quote, a
/// backslash or a NUL.
[[nodiscard]] std::optional<EqualityClause> parseEquality(std::string_view sWhere);

} // namespace halvane::host::gdal
