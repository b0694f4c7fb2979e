#include "expression/Expression.h"

#include "base/Failure.h"
#include "base/NearestName.h"
#include "base/Text.h"
#include "expression/Functions.h"
#include "expression/Ordering.h"
#include "expression/Tokens.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <utility>

namespace halvane::expression {

namespace {

using Kind = Token::Kind;

// Deeper ones are no person's, and each level takes stack.
constexpr int lDeepest = 100;
// What SQLite's parser holds on its stack of 100 words, whatever the operations are.
constexpr std::size_t nDeepestOperation = 15;
constexpr std::size_t nLongest = 65536;
constexpr std::size_t nMostOperations = 900;

/// Words that are no fields unless they stand between double quotes.
constexpr std::array<std::string_view, 27> words{
    "AND",     "AS",     "BETWEEN", "CASE", "CAST",   "COLLATE", "DISTINCT", "ELSE", "END",
    "FROM",    "ESCAPE", "EXISTS",  "GLOB", "IN",     "IS",      "ISNULL",   "LIKE", "NOT",
    "NOTNULL", "NULL",   "OR",      "OVER", "SELECT", "THEN",    "VALUES",   "WHEN", "WITH"};

constexpr std::array<std::string_view, 6> aggregateFunctions{"avg", "count", "max", "min", "sum", "total"};

[[noreturn]] void fail(const std::string& sWhat) {
    throw Failure(FailureNumber::DocumentFailure, sWhat);
}

/// How deep operations stand in each other; a row of the same operator counts once.
std::size_t depthOf(const Term& term) {
    std::size_t nDeepest = 0;
    for (const auto& operand : term.operands)
        nDeepest = std::max(nDeepest, depthOf(operand) - (continuesRow(term, operand) ? 1 : 0));
    return nDeepest + 1;
}

/// Reads terms by the precedence of SQLite's operators.
class Parser {
public:
    Parser(Tokens tokens, Expression::Braces braces, std::vector<Reference>& references,
           std::vector<Expression>& aggregates)
        : tokens_(tokens), braces_(braces), pReferences_(&references), aggregates_(aggregates) {
        advance();
    }

    Term whole() {
        if (tokens_.text().size() > nLongest)
            fail("an expression of more than 65,536 characters is too long");
        // SQLite reads a statement up to there.
        if (tokens_.text().find('\0') != std::string_view::npos)
            fail("an expression holds no character NUL");
        Term term = any();
        requireDepth(term);
        return term;
    }

    [[nodiscard]] const Token& token() const { return token_; }
    [[nodiscard]] std::string here() const {
        return token_.kind == Kind::End
                   ? std::string("at its end")
                   : "before \"" + std::string(tokens_.text().substr(token_.nBegin, 20)) + "\"";
    }

private:
    static void requireDepth(const Term& term) {
        if (depthOf(term) > nDeepestOperation + 1)
            fail("an expression of operations within operations, more than 15 deep, is too deep");
    }

    /// Operators of the same precedence, the weakest first, from "=" on; those before it are words.
    static constexpr std::array<std::array<std::string_view, 4>, 5> aInfix{
        {{"<", "<=", ">", ">="}, {"&", "|", "<<", ">>"}, {"+", "-"}, {"*", "/", "%"}, {"||"}}};

    class Level {
    public:
        explicit Level(int& lLevel) : lLevel_(lLevel) {
            if (++lLevel_ > lDeepest)
                fail("an expression of more than 100 levels is too deep");
        }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;
        ~Level() { --lLevel_; }

    private:
        int& lLevel_;
    };

    void advance() { token_ = tokens_.next(); }

    [[nodiscard]] bool isSymbol(std::string_view sSymbol) const {
        return token_.kind == Kind::Symbol && token_.sText == sSymbol;
    }
    [[nodiscard]] bool isWord(std::string_view sWord) const {
        return token_.kind == Kind::Name && token_.lClimb == 0 && equalIgnoringCase(token_.sText, sWord);
    }
    bool takeSymbol(std::string_view sSymbol) {
        if (!isSymbol(sSymbol))
            return false;
        advance();
        return true;
    }
    bool takeWord(std::string_view sWord) {
        if (!isWord(sWord))
            return false;
        advance();
        return true;
    }
    void requireSymbol(std::string_view sSymbol) {
        if (!takeSymbol(sSymbol))
            fail("\"" + std::string(sSymbol) + "\" is missing " + here());
    }
    void requireWord(std::string_view sWord) {
        if (!takeWord(sWord))
            fail("\"" + std::string(sWord) + "\" is missing " + here());
    }

    /// A long row of operators is as deep as many brackets.
    void countOperation() {
        if (++nOperations_ > nMostOperations)
            fail("an expression of more than 900 operations is too long");
    }
    Term infix(std::string_view sOperator, Term left, Term right) {
        countOperation();
        Term term{.kind = Term::Kind::Infix, .sWord = std::string(sOperator)};
        term.operands.push_back(std::move(left));
        term.operands.push_back(std::move(right));
        return term;
    }
    Term prefix(std::string_view sOperator, Term operand) {
        countOperation();
        Term term{.kind = Term::Kind::Prefix, .sWord = std::string(sOperator)};
        term.operands.push_back(std::move(operand));
        return term;
    }

    Term any() {
        const Level level(lLevel_);
        Term left = conjunction();
        while (takeWord("OR"))
            left = infix("OR", std::move(left), conjunction());
        return left;
    }

    Term conjunction() {
        Term left = negation();
        while (takeWord("AND"))
            left = infix("AND", std::move(left), negation());
        return left;
    }

    Term negation() {
        const Level level(lLevel_);
        return takeWord("NOT") ? prefix("NOT", negation()) : equality();
    }

    Term equality() {
        Term left = ordering(0);
        while (auto next = comparison(left))
            left = *std::move(next);
        return left;
    }

    /// What compares the value on its left, if anything does.
    std::optional<Term> comparison(Term& left) {
        for (const auto& [sWritten, sMeant] : {std::pair{"=", "="}, {"==", "="}, {"<>", "<>"}, {"!=", "<>"}})
            if (takeSymbol(sWritten))
                return infix(sMeant, std::move(left), ordering(0));
        if (takeWord("IS"))
            return identity(std::move(left));
        if (takeWord("ISNULL"))
            return infix("IS", std::move(left), Term());
        if (takeWord("NOTNULL"))
            return infix("IS NOT", std::move(left), Term());
        const bool bNot = takeWord("NOT");
        if (takeWord("BETWEEN"))
            return between(std::move(left), bNot);
        if (takeWord("IN"))
            return list(std::move(left), bNot);
        if (takeWord("LIKE"))
            return pattern(std::move(left), bNot);
        if (bNot && takeWord("NULL"))
            return infix("IS NOT", std::move(left), Term());
        if (bNot)
            fail("\"BETWEEN\", \"IN\" or \"LIKE\" is missing " + here());
        return std::nullopt;
    }

    Term identity(Term left) {
        const bool bNot = takeWord("NOT");
        bool bDistinct = false;
        if (takeWord("DISTINCT")) {
            requireWord("FROM");
            bDistinct = true;
        }
        return infix(bNot == bDistinct ? "IS" : "IS NOT", std::move(left), ordering(0));
    }

    Term between(Term left, bool bNot) {
        Term term{.kind = Term::Kind::Between, .bNot = bNot};
        term.operands.push_back(std::move(left));
        term.operands.push_back(ordering(0));
        requireWord("AND");
        term.operands.push_back(ordering(0));
        return term;
    }

    Term list(Term left, bool bNot) {
        Term term{.kind = Term::Kind::In, .bNot = bNot};
        term.operands.push_back(std::move(left));
        requireSymbol("(");
        if (!takeSymbol(")"))
            readArguments(term);
        return term;
    }

    Term pattern(Term left, bool bNot) {
        Term term{.kind = Term::Kind::Like, .bNot = bNot};
        term.operands.push_back(std::move(left));
        term.operands.push_back(ordering(0));
        if (takeWord("ESCAPE"))
            term.operands.push_back(ordering(0));
        return term;
    }

    /// Operators from "<" on, by their precedence.
    Term ordering(std::size_t nPrecedence) {
        if (nPrecedence == aInfix.size())
            return sign();
        Term left = ordering(nPrecedence + 1);
        for (bool bMore = true; bMore;) {
            bMore = false;
            for (const auto sOperator : aInfix[nPrecedence]) {
                if (!takeSymbol(sOperator))
                    continue;
                left = infix(sOperator, std::move(left), ordering(nPrecedence + 1));
                bMore = true;
                break;
            }
        }
        return left;
    }

    Term sign() {
        const Level level(lLevel_);
        for (const auto* sOperator : {"-", "+", "~"})
            if (takeSymbol(sOperator))
                return prefix(sOperator, sign());
        return value();
    }

    Term value() {
        switch (token_.kind) {
        case Kind::Number:
            return literal(Term::Kind::Number);
        case Kind::Text:
            return literal(Term::Kind::Text);
        case Kind::Variable:
            return reference(Reference::Kind::Variable);
        case Kind::QuotedName:
            return reference(Reference::Kind::Field);
        case Kind::Name:
            return named();
        case Kind::Symbol:
            if (takeSymbol("("))
                return bracketed();
            if (braces_ == Expression::Braces::OuterRow && takeSymbol("{"))
                return ofOuterRow();
            [[fallthrough]];
        case Kind::End:
            break;
        }
        fail("a value is missing " + here());
    }

    Term literal(Term::Kind kind) {
        Term term{.kind = kind, .sWord = std::move(token_.sText)};
        advance();
        return term;
    }

    Term reference(Reference::Kind kind) {
        const bool bOfRow =
            kind == Reference::Kind::Field || token_.sText == "Item" || token_.sText == "Count";
        if (!bOfRow && token_.lClimb > 0)
            fail("\"../\" goes to the row around; it stands before a field, $Item or $Count");
        const Reference wanted{kind, bOfRow ? token_.lClimb + lOuter_ : 0, token_.sText, 0};
        advance();
        return referenceTo(wanted);
    }

    Term referenceTo(const Reference& wanted) {
        const auto known = std::ranges::find(*pReferences_, wanted);
        Term term{.kind = Term::Kind::Reference,
                  .nReference = static_cast<std::size_t>(known - pReferences_->begin())};
        if (known == pReferences_->end())
            pReferences_->push_back(wanted);
        return term;
    }

    Term bracketed() {
        if (isWord("SELECT") || isWord("WITH") || isWord("VALUES"))
            fail("an expression holds no subquery");
        Term term = any();
        requireSymbol(")");
        return term;
    }

    Term ofOuterRow() {
        ++lOuter_;
        Term term = any();
        --lOuter_;
        requireSymbol("}");
        return term;
    }

    Term named() {
        if (token_.lClimb > 0)
            return reference(Reference::Kind::Field);
        if (takeWord("NULL"))
            return {};
        if (isWord("TRUE") || isWord("FALSE")) {
            Term term{.kind = Term::Kind::Number, .sWord = isWord("TRUE") ? "1" : "0"};
            advance();
            return term;
        }
        if (takeWord("CASE"))
            return choice();
        if (takeWord("CAST"))
            return cast();
        if (isWord("EXISTS") || isWord("SELECT"))
            fail("an expression holds no subquery");
        if (std::ranges::any_of(words, [this](auto sWord) { return isWord(sWord); }))
            fail("a value is missing " + here() + ": a field of that name stands between double quotes");
        const Token name = token_;
        Tokens after = tokens_;
        if (const Token following = after.next(); following.kind == Kind::Symbol && following.sText == "(")
            return call(name);
        return reference(Reference::Kind::Field);
    }

    Term choice() {
        Term term{.kind = Term::Kind::Case, .bBase = !isWord("WHEN")};
        if (term.bBase)
            term.operands.push_back(any());
        requireWord("WHEN");
        do {
            term.operands.push_back(any());
            requireWord("THEN");
            term.operands.push_back(any());
        } while (takeWord("WHEN"));
        if (takeWord("ELSE"))
            term.operands.push_back(any());
        requireWord("END");
        return term;
    }

    Term cast() {
        Term term{.kind = Term::Kind::Cast};
        requireSymbol("(");
        term.operands.push_back(any());
        requireWord("AS");
        for (const auto* sType : {"INTEGER", "REAL", "TEXT", "NUMERIC"})
            if (takeWord(sType))
                term.sWord = sType;
        if (term.sWord.empty())
            fail("the type INTEGER, REAL, TEXT or NUMERIC is missing " + here());
        requireSymbol(")");
        return term;
    }

    Term call(const Token& name) {
        advance();
        requireSymbol("(");
        Term term{.kind = Term::Kind::Call, .sWord = lowerCase(name.sText)};
        if (isAggregate(term.sWord))
            return aggregate(term.sWord);
        if (!takeSymbol(")"))
            readArguments(term);
        requireFunction(term, name.sText);
        return term;
    }

    /// "min" and "max" of several values are about one row.
    [[nodiscard]] bool isAggregate(std::string_view sFunction) const {
        return std::ranges::find(aggregateFunctions, sFunction) != aggregateFunctions.end() &&
               ((sFunction != "min" && sFunction != "max") || hasOneArgument());
    }

    [[nodiscard]] bool hasOneArgument() const {
        Tokens ahead = tokens_;
        int lOpen = 1;
        for (Token token = token_; token.kind != Kind::End; token = ahead.next()) {
            if (token.kind != Kind::Symbol)
                continue;
            lOpen += token.sText == "(" ? 1 : token.sText == ")" ? -1 : 0;
            if (lOpen == 0)
                return true;
            if (lOpen == 1 && token.sText == ",")
                return false;
        }
        return true;
    }

    /// A function of the rows of a group: what it computes of each of them is an expression of its own.
    Term aggregate(const std::string& sFunction) {
        if (bInAggregate_)
            fail("a function of the rows of a group, \"" + sFunction + "\", stands in another one");
        std::vector<Reference> ofRow;
        auto* const pOuter = std::exchange(pReferences_, &ofRow);
        bInAggregate_ = true;
        const bool bAllRows = sFunction == "count" && takeSymbol("*");
        Term argument = bAllRows ? Term{.kind = Term::Kind::Number, .sWord = "1"} : any();
        requireSymbol(")");
        requireDepth(argument);
        bInAggregate_ = false;
        pReferences_ = pOuter;
        aggregates_.emplace_back(std::move(argument), std::move(ofRow));
        return referenceTo({.kind = Reference::Kind::Aggregate,
                            .lClimb = 0,
                            .sName = sFunction,
                            .nAggregate = aggregates_.size() - 1});
    }

    void readArguments(Term& term) {
        if (isWord("SELECT") || isWord("WITH"))
            fail("an expression holds no subquery");
        do
            term.operands.push_back(any());
        while (takeSymbol(","));
        requireSymbol(")");
    }

    static void requireFunction(const Term& call, const std::string& sWritten) {
        const std::size_t nArguments = call.operands.size();
        const Function* const pFunction = functionNamed(call.sWord);
        if (pFunction == nullptr) {
            NearestName nearest(call.sWord);
            for (const auto& function : functions())
                nearest.offer(function.sName);
            fail("\"" + sWritten + "\" is no function of expressions" + nearest.question(": "));
        }
        if (nArguments < pFunction->nLeast || nArguments > pFunction->nMost)
            fail("the function \"" + sWritten + "\" does not take " + std::to_string(nArguments) +
                 (nArguments == 1 ? " argument" : " arguments"));
    }

    Tokens tokens_;
    Expression::Braces braces_;
    std::vector<Reference>* pReferences_;
    std::vector<Expression>& aggregates_;
    bool bInAggregate_ = false;
    Token token_;
    std::uint32_t lOuter_ = 0; ///< braces that are open
    int lLevel_ = 0;
    std::size_t nOperations_ = 0;
};

} // namespace

Expression::Expression(std::string_view sText, Braces braces) {
    Parser parser(Tokens(sText), braces, references_, aggregates_);
    root_ = parser.whole();
    if (parser.token().kind != Kind::End)
        fail("an operator is missing " + parser.here());
}

Expression::Expression(std::string_view sText, std::size_t& nPosition) {
    Parser parser(Tokens(sText, nPosition), Braces::None, references_, aggregates_);
    root_ = parser.whole();
    if (parser.token().kind != Kind::Symbol || parser.token().sText != "}")
        fail("an operator or the closing brace is missing " + parser.here());
    nPosition = parser.token().nEnd;
}

Expression::Expression(std::string_view sText, Braces braces, std::size_t& nPosition) {
    Parser parser(Tokens(sText, nPosition), braces, references_, aggregates_);
    root_ = parser.whole();
    nPosition = parser.token().nBegin;
}

std::vector<OrderTerm> parseOrdering(std::string_view sText) {
    std::vector<OrderTerm> terms;
    std::size_t nPosition = 0;
    Token token;
    do {
        terms.push_back({Expression(sText, Expression::Braces::OuterRow, nPosition)});
        Tokens tokens(sText, nPosition);
        token = tokens.next();
        const bool bDescending = token.kind == Kind::Name && equalIgnoringCase(token.sText, "DESC");
        if (bDescending || (token.kind == Kind::Name && equalIgnoringCase(token.sText, "ASC")))
            token = tokens.next();
        terms.back().bDescending = bDescending;
        nPosition = token.nEnd;
    } while (token.kind == Kind::Symbol && token.sText == ",");
    if (token.kind != Kind::End)
        fail("an operator or a comma is missing before \"" + std::string(sText.substr(token.nBegin, 20)) +
             "\"");
    return terms;
}

Expression Expression::asCondition() && {
    for (int lTimes = 0; lTimes < 2; ++lTimes) {
        Term negated{.kind = Term::Kind::Prefix, .sWord = "NOT"};
        negated.operands.push_back(std::move(root_));
        root_ = std::move(negated);
    }
    return std::move(*this);
}

} // namespace halvane::expression
