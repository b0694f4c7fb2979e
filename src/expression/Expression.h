#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane::expression {

/// What an expression takes its values from.
struct Reference {
    enum class Kind : std::uint8_t {
        Field,
        Variable,
        Aggregate, ///< a function of the rows of a group, whose name is sName
    };

    Kind kind = Kind::Field;
    std::uint32_t lClimb = 0; ///< of a field, or of "Item" and "Count": how many rows around the current one
    std::string sName;
    std::size_t nAggregate = 0; ///< its place among the expression's aggregates

    friend bool operator==(const Reference&, const Reference&) = default;
};

/// A part of an expression: an operator with its operands, or a value.
struct Term {
    enum class Kind : std::uint8_t {
        Number,    ///< sWord as it stands
        Text,      ///< sWord without quotes
        Null,      ///< no value
        Reference, ///< nReference
        Prefix,    ///< an operator before its operand
        Infix,     ///< an operator between its two operands
        Between,   ///< value, least, greatest
        In,        ///< value, then the list
        Like,      ///< value, pattern, perhaps the escape character
        Case,      ///< the base where bBase; pairs of condition and result; perhaps the result otherwise
        Cast,      ///< to the type sWord
        Call,      ///< of the function sWord, in lower case
    };

    Kind kind = Kind::Null;
    std::string sWord = {};
    std::size_t nReference = 0; ///< its place among the expression's references
    bool bNot = false;          ///< of Between, In and Like
    bool bBase = false;         ///< of Case
    std::vector<Term> operands = {};
};

/// Whether the operand is the left one of an operator, and of the same operator: they make one row.
[[nodiscard]] inline bool continuesRow(const Term& term, const Term& operand) {
    return term.kind == Term::Kind::Infix && operand.kind == Term::Kind::Infix &&
           operand.sWord == term.sWord && &operand == &term.operands.front();
}

/// An expression of SQL over fields and variables, as an author writes it in a control file: operators,
/// functions of an allow-list, no subqueries. What the author wrote is never given to a database: the terms
/// are written anew (SqlText.h), with references as parameters.
class Expression {
public:
    /// How the text of a row around is asked for inside an expression over a row.
    enum class Braces : std::uint8_t {
        None,     ///< not by braces
        OuterRow, ///< `{field}`: what stands in the braces is about the row around
    };

    /// Of what was read.
    Expression(Term root, std::vector<Reference> references)
        : root_(std::move(root)), references_(std::move(references)) {}
    /// @throws Failure DocumentFailure telling what is wrong.
    explicit Expression(std::string_view sText, Braces braces = Braces::None);
    /// Reads the expression that begins at `nPosition` and ends at a closing brace.
    /// @param nPosition ends behind the brace.
    Expression(std::string_view sText, std::size_t& nPosition);
    /// Reads the expression that begins at `nPosition`, as far as it goes.
    /// @param nPosition ends where the word behind it begins.
    Expression(std::string_view sText, Braces braces, std::size_t& nPosition);

    /// Whether the value of the expression is true: 1, 0 or Null.
    [[nodiscard]] Expression asCondition() &&;

    [[nodiscard]] const Term& root() const noexcept { return root_; }
    /// The values that it needs, in the order of the parameters.
    [[nodiscard]] const std::vector<Reference>& references() const noexcept { return references_; }
    /// What the functions of the rows of a group compute of each row. None of them holds such a function.
    [[nodiscard]] const std::vector<Expression>& aggregates() const noexcept { return aggregates_; }
    /// The reference that the whole expression is; nothing when it computes anything.
    [[nodiscard]] const Reference* asReference() const noexcept {
        return root_.kind == Term::Kind::Reference ? &references_[root_.nReference] : nullptr;
    }

private:
    Term root_;
    std::vector<Reference> references_;
    std::vector<Expression> aggregates_;
};

} // namespace halvane::expression
