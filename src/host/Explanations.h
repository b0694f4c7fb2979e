#pragma once

// What a host can tell beyond what an export's rules ask for. Mix-ins of its objects, found by a cast.

#include "host/Forward.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane::host {

/// A map that knows why its tables cannot be opened.
class TableProblems {
public:
    TableProblems() = default;
    TableProblems(const TableProblems&) = delete;
    TableProblems& operator=(const TableProblems&) = delete;
    virtual ~TableProblems() = default;

    /// Why standaloneTable() gives nothing; "" where it gives a table.
    [[nodiscard]] virtual std::string standaloneTableProblem(std::int32_t lIndex) const = 0;
    /// @throws Failure, with the reason, where a table of that name, ignoring case, belongs to the map and
    /// cannot be opened.
    virtual void requireReadableTable(std::string_view sName) const = 0;
};

/// A table that knows the domains and default values of its fields, as a feature class does by its
/// subtypes().
class FieldRules {
public:
    FieldRules() = default;
    FieldRules(const FieldRules&) = delete;
    FieldRules& operator=(const FieldRules&) = delete;
    virtual ~FieldRules() = default;

    [[nodiscard]] virtual GisSubtypesPtr fieldRules() const = 0;
};

} // namespace halvane::host
