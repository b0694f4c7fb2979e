#pragma once

#include "base/Value.h"

#include <cstdint>
#include <string>
#include <vector>

namespace halvane::host {

/// What rows are asked for: a field compared with a value, or several conditions together. A comparison with
/// a field that is Null does not hold.
struct RowCondition {
    enum class Kind : std::uint8_t {
        All, ///< of the parts
        Any, ///< of the parts
        Less,
        LessOrEqual,
        Equal,
        NotEqual,
        GreaterOrEqual,
        Greater,
        IsNull,
        IsNotNull,
    };

    Kind kind = Kind::All;
    std::vector<RowCondition> parts = {};
    std::string sField = {}; ///< in any letter case
    /// A whole number of 64 bits, a number or a text. Numbers are compared with fields of numbers alone,
    /// texts with fields of texts alone, byte by byte and only for Equal.
    Value value = {};
};

} // namespace halvane::host
