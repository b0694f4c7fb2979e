#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace halvane::expression {

/// A word of an expression.
struct Token {
    enum class Kind : std::uint8_t {
        End,
        Number,
        Text,       ///< between single quotes
        Name,       ///< of a field, a function, or a word of the language
        QuotedName, ///< of a field, between double quotes
        Variable,   ///< "$name"
        Symbol,     ///< an operator, a bracket, a brace or a comma
    };

    Kind kind = Kind::End;
    std::string sText;        ///< without its quotes, its "$" and its "../"
    std::uint32_t lClimb = 0; ///< how many "../" stand before a name or a variable
    std::size_t nBegin = 0;   ///< where it begins
    std::size_t nEnd = 0;     ///< where it ends
};

/// Reads the words of an expression, one after the other.
class Tokens {
public:
    /// @param sText borrowed.
    explicit Tokens(std::string_view sText, std::size_t nBegin = 0) : sText_(sText), nNext_(nBegin) {}

    /// @throws Failure DocumentFailure for what no expression holds: comments, semicolons, open quotes.
    [[nodiscard]] Token next();
    [[nodiscard]] std::string_view text() const noexcept { return sText_; }

private:
    void skipBlanks();
    [[nodiscard]] bool continuesWith(std::string_view sWanted) const {
        return sText_.substr(nNext_).starts_with(sWanted);
    }
    void readNumber(Token& token);
    void readName(Token& token);
    void readReference(Token& token);
    void readQuoted(Token& token, char cQuote);
    void readSymbol(Token& token);

    std::string_view sText_;
    std::size_t nNext_;
};

} // namespace halvane::expression
