#pragma once

#include "base/Failure.h"

#include <cstddef>
#include <string>

namespace halvane::host::gdal {

/// A where clause that is one expression. Data is asked with nothing else: what is more could leave the
/// brackets that it is put into, and a database would ignore what stands behind it.
class Clause {
public:
    /// Every row.
    Clause() = default;
    /// @param sText "" for every row. @param sLayer for the message.
    /// @throws Failure for a text that is more than one expression, or could leave its brackets.
    Clause(std::string sText, const std::string& sLayer);

    [[nodiscard]] bool isEmpty() const { return sText_.empty(); }
    /// As it was written.
    [[nodiscard]] const std::string& text() const { return sText_; }
    /// Unless it is empty. The line break keeps a comment at its end from swallowing the bracket.
    [[nodiscard]] std::string inBrackets() const { return "(" + sText_ + "\n)"; }
    /// What follows the table in a statement: " WHERE (...)"; "" for every row.
    [[nodiscard]] std::string condition() const { return isEmpty() ? "" : " WHERE " + inBrackets(); }
    /// What both let through.
    [[nodiscard]] Clause with(const Clause& other) const;

private:
    std::string sText_;
};

/// The failure of a clause that is refused, with the reason in words.
[[nodiscard]] Failure refusedClause(const std::string& sText, const std::string& sLayer,
                                    const std::string& sWhy);

/// Where a quoted text or name of SQL that begins at a place ends; the text's end when it does not.
[[nodiscard]] std::size_t endOfQuoted(const std::string& sText, std::size_t nBegin);

} // namespace halvane::host::gdal
