#include "oracle/second/PlainExpression.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>

namespace halvane::oracle {

namespace {

using Words = std::vector<const char*>;

bool isNamePart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

/// The operators between two operands, from those that bind least; "" is where comparisons with words stand.
const std::array<Words, 7>& levels() {
    static const std::array<Words, 7> aLevels{
        {{"or"}, {"and"}, {"=", "<>"}, {"<=", ">=", "<", ">"}, {"+", "-"}, {"*", "/", "%"}, {"||"}}};
    return aLevels;
}
constexpr std::size_t nNotLevel = 2;
constexpr std::size_t nEqualLevel = 2;

class Reader {
public:
    Reader(std::string_view sText, std::size_t& nPosition) : sText_(sText), nPosition_(nPosition) {}

    Term read(std::size_t nLevel = 0) {
        if (nLevel == nNotLevel && takeWord("not"))
            return {.kind = Term::Kind::Operator, .sName = "not", .parts = {read(nNotLevel)}};
        if (nLevel == levels().size())
            return signedOperand();
        Term left = read(nLevel + 1);
        for (;;) {
            if (nLevel == nEqualLevel && comparisonInWords(left))
                continue;
            const std::string sOperator = takeOperator(levels().at(nLevel));
            if (sOperator.empty())
                return left;
            Term right = read(nLevel + 1);
            left = {.kind = Term::Kind::Operator,
                    .sName = sOperator,
                    .parts = {std::move(left), std::move(right)}};
        }
    }

    bool takeWord(std::string_view sWord) {
        skipBlanks();
        const std::string_view sFound = sText_.substr(nPosition_, sWord.size());
        const std::size_t nEnd = nPosition_ + sWord.size();
        const bool bEnds = nEnd >= sText_.size() || !isNamePart(sText_[nEnd]);
        if (!bEnds || lowerCase(sFound) != sWord)
            return false;
        nPosition_ = nEnd;
        return true;
    }
    bool takeSign(std::string_view sSign) {
        skipBlanks();
        if (!sText_.substr(nPosition_).starts_with(sSign))
            return false;
        nPosition_ += sSign.size();
        return true;
    }
    bool atEnd() {
        skipBlanks();
        return nPosition_ == sText_.size();
    }

private:
    [[noreturn]] void fail() const {
        throw std::runtime_error("not understood: " + std::string(sText_.substr(nPosition_)));
    }
    void need(bool bThere) const {
        if (!bThere)
            fail();
    }
    void skipBlanks() {
        while (nPosition_ < sText_.size() && sText_[nPosition_] == ' ')
            ++nPosition_;
    }

    std::string takeOperator(const Words& aOperators) {
        skipBlanks();
        for (const char* const sOperator : aOperators) {
            const bool bWord = isNamePart(*sOperator);
            if (std::string_view(sOperator) == "<" && sText_.substr(nPosition_).starts_with("<>"))
                continue;
            if (bWord ? takeWord(sOperator) : takeSign(sOperator))
                return sOperator;
        }
        return {};
    }

    /// "is", "in" and "between", with what stands to the left.
    bool comparisonInWords(Term& left) {
        const std::size_t nBefore = nPosition_;
        if (takeWord("is")) {
            const bool bNot = takeWord("not");
            left = {.kind = Term::Kind::Is, .bNot = bNot, .parts = {left, read(nEqualLevel + 1)}};
            return true;
        }
        const bool bNot = takeWord("not");
        if (takeWord("between")) {
            left = {.kind = Term::Kind::Between, .bNot = bNot, .parts = {left, read(nEqualLevel + 1)}};
            need(takeWord("and"));
            left.parts.push_back(read(nEqualLevel + 1));
            return true;
        }
        if (takeWord("in")) {
            left = {.kind = Term::Kind::In, .bNot = bNot, .parts = {left}};
            need(takeSign("("));
            readList(left.parts);
            return true;
        }
        nPosition_ = nBefore;
        return false;
    }

    /// Behind its opening parenthesis.
    void readList(std::vector<Term>& aParts) {
        if (takeSign(")"))
            return;
        do {
            aParts.push_back(read());
        } while (takeSign(","));
        need(takeSign(")"));
    }

    Term signedOperand() {
        if (takeSign("-"))
            return {.kind = Term::Kind::Operator, .sName = "-1", .parts = {signedOperand()}};
        return operand();
    }

    Term operand() {
        skipBlanks();
        need(nPosition_ < sText_.size());
        const char c = sText_[nPosition_];
        if (takeSign("(")) {
            Term term = read();
            need(takeSign(")"));
            return term;
        }
        if (takeSign("{")) {
            Term outer{.kind = Term::Kind::Outer, .parts = {read()}};
            need(takeSign("}"));
            return outer;
        }
        if (c == '\'')
            return {.constant = quoted('\'')};
        if (c >= '0' && c <= '9')
            return number();
        if (takeWord("null"))
            return {};
        if (takeWord("case"))
            return cases();
        return fieldOrCall();
    }

    Term number() {
        std::string sDigits;
        while (nPosition_ < sText_.size() && (isNamePart(sText_[nPosition_]) || sText_[nPosition_] == '.'))
            sDigits += sText_[nPosition_++];
        return {.constant = asNumber(SqlValue(sDigits))};
    }

    Term cases() {
        Term term{.kind = Term::Kind::Case};
        term.bBase = !takeWord("when");
        if (term.bBase) {
            term.parts.push_back(read());
            need(takeWord("when"));
        }
        do {
            term.parts.push_back(read());
            need(takeWord("then"));
            term.parts.push_back(read());
        } while (takeWord("when"));
        if (takeWord("else"))
            term.parts.push_back(read());
        need(takeWord("end"));
        return term;
    }

    Term fieldOrCall() {
        Term term{.kind = Term::Kind::Field};
        while (takeSign("../"))
            ++term.nClimb;
        if (takeSign("$")) {
            term.kind = Term::Kind::Variable;
            term.sName = name();
            return term;
        }
        if (nPosition_ < sText_.size() && sText_[nPosition_] == '"') {
            term.sName = quoted('"');
            return term;
        }
        term.sName = name();
        if (term.nClimb > 0 || !takeSign("("))
            return term;
        term.kind = Term::Kind::Call;
        term.sName = lowerCase(term.sName);
        if (takeSign("*"))
            need(takeSign(")"));
        else
            readList(term.parts);
        return term;
    }

    std::string name() {
        std::string sName;
        while (nPosition_ < sText_.size() && isNamePart(sText_[nPosition_]))
            sName += sText_[nPosition_++];
        need(!sName.empty());
        return sName;
    }

    /// A quote inside is doubled.
    std::string quoted(char cQuote) {
        std::string sInside;
        for (++nPosition_; nPosition_ < sText_.size(); ++nPosition_) {
            if (sText_[nPosition_] == cQuote) {
                ++nPosition_;
                if (nPosition_ == sText_.size() || sText_[nPosition_] != cQuote)
                    return sInside;
            }
            sInside += sText_[nPosition_];
        }
        fail();
    }

    std::string_view sText_;
    std::size_t& nPosition_;
};

} // namespace

Term readExpression(std::string_view sText, std::size_t& nPosition) {
    return Reader(sText, nPosition).read();
}

Term readExpression(std::string_view sText) {
    std::size_t nPosition = 0;
    Reader reader(sText, nPosition);
    Term term = reader.read();
    if (!reader.atEnd())
        throw std::runtime_error("more than an expression: " + std::string(sText));
    return term;
}

std::vector<TextPiece> readTemplate(std::string_view sText) {
    std::vector<TextPiece> aPieces(1);
    for (std::size_t n = 0; n < sText.size();) {
        if (sText[n] != '{' || sText.substr(n).starts_with("{{")) {
            n += sText[n] == '{' ? 1 : 0;
            aPieces.back().sText += sText[n++];
            continue;
        }
        aPieces.back().value.push_back(readExpression(sText, ++n));
        if (n >= sText.size() || sText[n] != '}')
            throw std::runtime_error("no closing brace: " + std::string(sText));
        ++n;
        aPieces.emplace_back();
    }
    return aPieces;
}

std::vector<OrderTerm> readOrder(std::string_view sText) {
    std::vector<OrderTerm> aTerms;
    std::size_t nPosition = 0;
    Reader reader(sText, nPosition);
    do {
        OrderTerm order{reader.read()};
        order.bDescending = reader.takeWord("desc");
        (void)reader.takeWord("asc");
        aTerms.push_back(std::move(order));
    } while (reader.takeSign(","));
    if (!reader.atEnd())
        throw std::runtime_error("more than an order: " + std::string(sText));
    return aTerms;
}

} // namespace halvane::oracle
