#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace halvane::expression {

/// A function that expressions may call.
struct Function {
    /// For the number of arguments: any number.
    static constexpr std::size_t nAny = 100;

    std::string_view sName; ///< in lower case
    std::size_t nLeast;
    std::size_t nMost;
};

/// All of them, by name. Each computes its result from its arguments alone, in time that grows with their
/// size. Source: the lists of scalar, date and mathematical functions in SQLite's documentation of 3.40, the
/// oldest version that is built against.
[[nodiscard]] std::span<const Function> functions();
/// @param sName in lower case. @returns nothing for a name that is none.
[[nodiscard]] const Function* functionNamed(std::string_view sName);

} // namespace halvane::expression
