#pragma once

#include "host/memory/Rows.h"

#include <cstdint>
#include <string_view>
#include <variant>

namespace halvane::host::memory {

/// A where clause of the only form that the memory host understands: a field name (any letter case), "=" with
/// or without blanks around it, and a number or a text in single quotes, each quote inside
/// doubled.
class WhereClause {
public:
    /// @throws Failure HostFailure for any other form, for an unknown field, and when a number is compared
    /// with a
    ///         text field or a text with a numeric one.
    WhereClause(std::string_view sClause, const MemoryFields& fields);

    /// Texts match exactly, numbers by value; null matches nothing.
    [[nodiscard]] bool matches(const RowData& row) const;

private:
    std::size_t nField_ = 0;
    std::variant<std::int64_t, double, std::string> literal_;
};

} // namespace halvane::host::memory
