#include "expression/Tokens.h"

#include "base/Failure.h"

#include <array>

namespace halvane::expression {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Every byte of a letter beyond ASCII counts as a letter.
bool beginsName(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool isOfName(char c) {
    return beginsName(c) || isDigit(c);
}

// The longer ones first.
constexpr std::array<std::string_view, 26> symbols{"||", "<<", ">>", "<=", ">=", "<>", "!=", "==", "=",
                                                   "<",  ">",  "+",  "-",  "*",  "/",  "%",  "&",  "|",
                                                   "~",  "(",  ")",  ",",  "{",  "}",  "[",  "]"};

} // namespace

void Tokens::skipBlanks() {
    while (nNext_ < sText_.size() &&
           std::string_view(" \t\r\n").find(sText_[nNext_]) != std::string_view::npos)
        ++nNext_;
    if (continuesWith("--") || continuesWith("/*"))
        throw Failure(FailureNumber::DocumentFailure, "an expression holds no comments");
}

Token Tokens::next() {
    skipBlanks();
    Token token;
    token.nBegin = nNext_;
    if (nNext_ < sText_.size()) {
        const char c = sText_[nNext_];
        const bool bFraction = c == '.' && nNext_ + 1 < sText_.size() && isDigit(sText_[nNext_ + 1]);
        if (isDigit(c) || bFraction)
            readNumber(token);
        else if (c == '\'' || c == '"')
            readQuoted(token, c);
        else if (beginsName(c) || c == '$' || c == '.')
            readReference(token);
        else
            readSymbol(token);
    }
    token.nEnd = nNext_;
    return token;
}

void Tokens::readNumber(Token& token) {
    token.kind = Token::Kind::Number;
    const std::size_t nBegin = nNext_;
    const auto skipDigits = [this] {
        while (nNext_ < sText_.size() && isDigit(sText_[nNext_]))
            ++nNext_;
    };
    skipDigits();
    if (continuesWith(".")) {
        ++nNext_;
        skipDigits();
    }
    if (continuesWith("e") || continuesWith("E")) {
        ++nNext_;
        if (continuesWith("+") || continuesWith("-"))
            ++nNext_;
        if (nNext_ == sText_.size() || !isDigit(sText_[nNext_]))
            throw Failure(FailureNumber::DocumentFailure, "a number lacks its exponent");
        skipDigits();
    }
    if (nNext_ < sText_.size() && isOfName(sText_[nNext_]))
        throw Failure(FailureNumber::DocumentFailure,
                      "a number cannot be followed by \"" + std::string(sText_.substr(nNext_, 1)) +
                          "\": a field whose name begins with a digit stands between double quotes");
    token.sText = sText_.substr(nBegin, nNext_ - nBegin);
}

void Tokens::readName(Token& token) {
    const std::size_t nBegin = nNext_;
    while (nNext_ < sText_.size() && isOfName(sText_[nNext_]))
        ++nNext_;
    if (nNext_ == nBegin)
        throw Failure(FailureNumber::DocumentFailure,
                      "a name is missing before \"" + std::string(sText_.substr(nNext_, 1)) + "\"");
    token.sText = sText_.substr(nBegin, nNext_ - nBegin);
}

void Tokens::readReference(Token& token) {
    for (; continuesWith("../"); nNext_ += 3)
        ++token.lClimb;
    if (continuesWith("\"")) {
        readQuoted(token, '"');
        return;
    }
    token.kind = Token::Kind::Name;
    if (continuesWith("$")) {
        ++nNext_;
        token.kind = Token::Kind::Variable;
    }
    readName(token);
    // Fields of joined tables are named "table.field".
    while (token.kind == Token::Kind::Name && nNext_ + 1 < sText_.size() && sText_[nNext_] == '.' &&
           beginsName(sText_[nNext_ + 1])) {
        std::string sBefore = token.sText + ".";
        ++nNext_;
        readName(token);
        token.sText.insert(0, sBefore);
    }
}

void Tokens::readQuoted(Token& token, char cQuote) {
    token.kind = cQuote == '"' ? Token::Kind::QuotedName : Token::Kind::Text;
    for (++nNext_; nNext_ < sText_.size(); ++nNext_) {
        if (sText_[nNext_] == cQuote) {
            ++nNext_;
            // A quote in the text is doubled.
            if (nNext_ == sText_.size() || sText_[nNext_] != cQuote)
                return;
        }
        token.sText += sText_[nNext_];
    }
    throw Failure(FailureNumber::DocumentFailure, std::string("the closing ") + cQuote + " of a " +
                                                      (cQuote == '"' ? "name" : "text") + " is missing");
}

void Tokens::readSymbol(Token& token) {
    token.kind = Token::Kind::Symbol;
    for (const auto sSymbol : symbols) {
        if (!continuesWith(sSymbol))
            continue;
        token.sText = sSymbol;
        nNext_ += sSymbol.size();
        return;
    }
    throw Failure(FailureNumber::DocumentFailure,
                  "an expression holds no \"" + std::string(sText_.substr(nNext_, 1)) + "\"");
}

} // namespace halvane::expression
