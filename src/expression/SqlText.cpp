#include "expression/SqlText.h"

#include "base/SqlQuotes.h"

namespace halvane::expression {

namespace {

std::string joined(const std::vector<Term>& operands, std::size_t nFirst) {
    std::string sAll;
    for (std::size_t n = nFirst; n < operands.size(); ++n)
        sAll.append(n == nFirst ? "" : ", ").append(sqlText(operands[n]));
    return sAll;
}

std::string choice(const Term& term) {
    std::string sSql = "CASE";
    std::size_t n = 0;
    if (term.bBase)
        sSql += " " + sqlText(term.operands[n++]);
    for (; n + 1 < term.operands.size(); n += 2)
        sSql += " WHEN " + sqlText(term.operands[n]) + " THEN " + sqlText(term.operands[n + 1]);
    if (n < term.operands.size())
        sSql += " ELSE " + sqlText(term.operands[n]);
    return sSql + " END";
}

std::string pattern(const Term& term, const std::string& sNot) {
    std::string sSql = sqlText(term.operands[0]) + sNot + " LIKE " + sqlText(term.operands[1]);
    if (term.operands.size() > 2)
        sSql += " ESCAPE " + sqlText(term.operands[2]);
    return sSql;
}

/// SQLite's parser takes long rows of one operator, not as many brackets.
std::string row(const Term& term) {
    const Term& left = term.operands[0];
    return (continuesRow(term, left) ? row(left) : sqlText(left)) + " " + term.sWord + " " +
           sqlText(term.operands[1]);
}

std::string unbracketed(const Term& term) {
    const std::string sNot = term.bNot ? " NOT" : "";
    switch (term.kind) {
    case Term::Kind::Prefix:
        return term.sWord + " " + sqlText(term.operands[0]);
    case Term::Kind::Infix:
        return row(term);
    case Term::Kind::Between:
        return sqlText(term.operands[0]) + sNot + " BETWEEN " + sqlText(term.operands[1]) + " AND " +
               sqlText(term.operands[2]);
    case Term::Kind::In:
        return sqlText(term.operands[0]) + sNot + " IN (" + joined(term.operands, 1) + ")";
    case Term::Kind::Like:
        return pattern(term, sNot);
    default:
        return choice(term);
    }
}

bool isFormatting(const Term& term) {
    return (term.sWord == "printf" || term.sWord == "format") && !term.operands.empty();
}

/// SQLite makes Null of a text that is too long, and of an empty one. With a letter before it none is empty.
std::string formatting(const Term& term) {
    const std::string sFormat = sqlText(term.operands[0]);
    const std::string sMore = term.operands.size() > 1 ? ", " + joined(term.operands, 1) : "";
    return "substr(coalesce(" + term.sWord + "('-' || " + sFormat + sMore + "), CASE WHEN " + sFormat +
           " IS NOT NULL THEN " + sTooLong + "() END), 2)";
}

} // namespace

std::string sqlText(const Term& term) {
    switch (term.kind) {
    case Term::Kind::Number:
        return term.sWord;
    case Term::Kind::Text:
        return quotedText(term.sWord);
    case Term::Kind::Null:
        return "NULL";
    case Term::Kind::Reference:
        return "?" + std::to_string(term.nReference + 1);
    case Term::Kind::Cast:
        return "CAST(" + sqlText(term.operands[0]) + " AS " + term.sWord + ")";
    case Term::Kind::Call:
        return isFormatting(term) ? formatting(term) : term.sWord + "(" + joined(term.operands, 0) + ")";
    default:
        return "(" + unbracketed(term) + ")";
    }
}

} // namespace halvane::expression
