#pragma once

// A second reading of the expressions of control files: a tree of words, computed by walking it.

#include "oracle/second/SqlValue.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::oracle {

/// A part of an expression.
struct Term {
    enum class Kind {
        Constant,
        Field,
        Variable,
        Outer,    ///< braces inside an expression over a row: about the row around
        Operator, ///< sName: "=", "and", "-1" (a sign) …
        Is,
        Between,
        In,
        Case,
        Call,
    };

    Kind kind = Kind::Constant;
    SqlValue constant = {};
    std::string sName = {};
    std::size_t nClimb = 0; ///< of a field or a variable: how many rows around the current one
    bool bNot = false;
    bool bBase = false; ///< of a case
    std::vector<Term> parts = {};
};

/// What the names in an expression stand for.
struct Meanings {
    std::function<SqlValue(const std::string& sName, std::size_t nClimb)> fnField;
    std::function<SqlValue(const std::string& sName, std::size_t nClimb)> fnVariable;
    std::function<SqlValue(const Term&)> fnOuter;
    /// Of a function of the rows of a group. @param pArgument nothing: of the rows themselves.
    std::function<SqlValue(const std::string& sName, const Term* pArgument)> fnAggregate;
};

/// Reads the expression at nPosition as far as it goes. @throws std::runtime_error for what is none.
[[nodiscard]] Term readExpression(std::string_view sText, std::size_t& nPosition);
/// The whole text is one.
[[nodiscard]] Term readExpression(std::string_view sText);

[[nodiscard]] SqlValue computed(const Term& term, const Meanings& meanings);

/// What a function of the rows of a group makes of their values. @param aValues without Null.
[[nodiscard]] SqlValue aggregated(const std::string& sName, const std::vector<SqlValue>& aValues);

/// A text, and behind it perhaps a value: the pieces of a text with values in braces.
struct TextPiece {
    std::string sText;
    std::vector<Term> value; ///< one or none
};
[[nodiscard]] std::vector<TextPiece> readTemplate(std::string_view sText);

/// An expression that rows are put in order by.
struct OrderTerm {
    Term term;
    bool bDescending = false;
};
[[nodiscard]] std::vector<OrderTerm> readOrder(std::string_view sText);

} // namespace halvane::oracle
