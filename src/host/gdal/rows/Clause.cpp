#include "host/gdal/rows/Clause.h"

#include <algorithm>
#include <utility>

namespace halvane::host::gdal {

Failure refusedClause(const std::string& sText, const std::string& sLayer, const std::string& sWhy) {
    return {FailureNumber::HostFailure,
            "The filter \"" + sText + "\" is not valid for \"" + sLayer + "\": " + sWhy};
}

std::size_t endOfQuoted(const std::string& sText, std::size_t nBegin) {
    const std::size_t nEnd = sText.find(sText[nBegin], nBegin + 1);
    return nEnd == std::string::npos ? sText.size() : nEnd;
}

namespace {

// A clause must stay within the brackets that it is put into, and nothing may stand behind it: a database
// would ignore a second statement.
void requireOneExpression(const std::string& sWhere, const std::string& sLayer) {
    int lDepth = 0;
    for (std::size_t nAt = 0; nAt < sWhere.size(); ++nAt) {
        const char c = sWhere[nAt];
        if (c == '\'' || c == '"' || c == '`')
            nAt = endOfQuoted(sWhere, nAt);
        else if (c == '-' && sWhere.compare(nAt, 2, "--") == 0)
            nAt = std::min(sWhere.find('\n', nAt), sWhere.size());
        else if (c == ';')
            throw refusedClause(sWhere, sLayer, "it holds more than one expression");
        else if (c == '/' && sWhere.compare(nAt, 2, "/*") == 0)
            throw refusedClause(sWhere, sLayer, "it holds a comment");
        else if (c == '(')
            ++lDepth;
        else if (c == ')' && --lDepth < 0)
            break;
    }
    if (lDepth != 0)
        throw refusedClause(sWhere, sLayer, "its brackets do not match");
}

} // namespace

Clause::Clause(std::string sText, const std::string& sLayer) : sText_(std::move(sText)) {
    requireOneExpression(sText_, sLayer);
}

Clause Clause::with(const Clause& other) const {
    if (isEmpty() || other.isEmpty())
        return isEmpty() ? other : *this;
    Clause both;
    both.sText_ = inBrackets() + " AND " + other.inBrackets();
    return both;
}

} // namespace halvane::host::gdal
