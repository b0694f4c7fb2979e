// What the terms of an expression come to. All parts are computed, also those that do not matter.

#include "oracle/second/PlainExpression.h"

#include "base/Text.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace halvane::oracle {

namespace {

using Values = std::vector<SqlValue>;

SqlValue truth(bool bTrue) {
    return std::int64_t{bTrue ? 1 : 0};
}

SqlValue negated(const SqlValue& value) {
    return isNull(value) ? value : truth(!isTrue(value));
}

SqlValue conjunction(const SqlValue& left, const SqlValue& right) {
    const SqlValue first = truthOf(left);
    const SqlValue second = truthOf(right);
    if (first == truth(false) || second == truth(false))
        return truth(false);
    return isNull(first) ? first : second;
}

SqlValue comparison(const std::string& sOperator, const SqlValue& left, const SqlValue& right) {
    if (isNull(left) || isNull(right))
        return {};
    const int nOrder = compared(left, right);
    const bool bLess = nOrder < 0;
    const bool bEqual = nOrder == 0;
    if (sOperator == "=")
        return truth(bEqual);
    if (sOperator == "<>")
        return truth(!bEqual);
    if (sOperator == "<")
        return truth(bLess);
    if (sOperator == "<=")
        return truth(bLess || bEqual);
    return truth(sOperator == ">" ? !bLess && !bEqual : !bLess);
}

/// Whole numbers stay whole where the result fits.
SqlValue arithmetic(char cOperator, const SqlValue& left, const SqlValue& right) {
    if (isNull(left) || isNull(right))
        return {};
    const SqlValue first = asNumber(left);
    const SqlValue second = asNumber(right);
    const auto* const pFirst = std::get_if<std::int64_t>(&first);
    const auto* const pSecond = std::get_if<std::int64_t>(&second);
    if (pFirst != nullptr && pSecond != nullptr) {
        std::int64_t nResult = 0;
        const bool bTooLarge = cOperator == '+'   ? __builtin_add_overflow(*pFirst, *pSecond, &nResult)
                               : cOperator == '-' ? __builtin_sub_overflow(*pFirst, *pSecond, &nResult)
                                                  : __builtin_mul_overflow(*pFirst, *pSecond, &nResult);
        if (!bTooLarge)
            return nResult;
    }
    const double dFirst = asDouble(first);
    const double dSecond = asDouble(second);
    return cOperator == '+' ? dFirst + dSecond : cOperator == '-' ? dFirst - dSecond : dFirst * dSecond;
}

/// Nothing for a division by 0; of whole numbers without what follows the point.
SqlValue quotient(char cOperator, const SqlValue& left, const SqlValue& right) {
    if (isNull(left) || isNull(right))
        return {};
    const SqlValue first = asNumber(left);
    const SqlValue second = asNumber(right);
    const auto* const pFirst = std::get_if<std::int64_t>(&first);
    const auto* const pSecond = std::get_if<std::int64_t>(&second);
    if (pFirst != nullptr && pSecond != nullptr) {
        if (*pSecond == 0)
            return {};
        return cOperator == '/' ? *pFirst / *pSecond : *pFirst % *pSecond;
    }
    if (cOperator == '/')
        return asDouble(second) == 0 ? SqlValue() : SqlValue(asDouble(first) / asDouble(second));
    const std::int64_t nDivisor = asWhole(right);
    return nDivisor == 0 ? SqlValue() : SqlValue(static_cast<double>(asWhole(left) % nDivisor));
}

SqlValue operation(const std::string& sName, const Values& aValues) {
    if (sName == "not")
        return negated(truthOf(aValues[0]));
    if (sName == "-1")
        return arithmetic('-', std::int64_t{0}, aValues[0]);
    const SqlValue& left = aValues[0];
    const SqlValue& right = aValues[1];
    if (sName == "and")
        return conjunction(left, right);
    if (sName == "or")
        return negated(conjunction(negated(truthOf(left)), negated(truthOf(right))));
    if (sName == "||")
        return isNull(left) || isNull(right) ? SqlValue() : SqlValue(asText(left) + asText(right));
    if (sName == "+" || sName == "-" || sName == "*")
        return arithmetic(sName.front(), left, right);
    if (sName == "/" || sName == "%")
        return quotient(sName.front(), left, right);
    return comparison(sName, left, right);
}

SqlValue membership(const Values& aValues) {
    SqlValue result = truth(false);
    for (std::size_t n = 1; n < aValues.size(); ++n) {
        const SqlValue equal = comparison("=", aValues[0], aValues[n]);
        if (equal == truth(true))
            return equal;
        if (isNull(equal))
            result = equal;
    }
    return result;
}

SqlValue choice(const Term& term, const Values& aValues) {
    std::size_t n = term.bBase ? 1 : 0;
    for (; n + 1 < aValues.size(); n += 2) {
        const bool bHolds = term.bBase ? isTrue(comparison("=", aValues[0], aValues[n])) : isTrue(aValues[n]);
        if (bHolds)
            return aValues[n + 1];
    }
    return n < aValues.size() ? aValues[n] : SqlValue();
}

// ---- Functions ----

/// The characters of a text, each with its bytes.
std::vector<std::string> charactersOf(const std::string& sText) {
    std::vector<std::string> aCharacters;
    for (const char c : sText) {
        if (aCharacters.empty() || (static_cast<unsigned char>(c) & 0xC0U) != 0x80)
            aCharacters.emplace_back();
        aCharacters.back() += c;
    }
    return aCharacters;
}

/// Characters are counted from 1, or backwards from the end; a negative number of them stands before.
SqlValue substring(const Values& aValues) {
    for (const SqlValue& value : aValues)
        if (isNull(value))
            return {};
    const auto aCharacters = charactersOf(asText(aValues[0]));
    const auto nLength = static_cast<std::int64_t>(aCharacters.size());
    std::int64_t nFrom = asWhole(aValues[1]);
    // Place 0 is before the first.
    nFrom = nFrom > 0 ? nFrom - 1 : nFrom < 0 ? nLength + nFrom : -1;
    std::int64_t nTo = nLength;
    if (aValues.size() > 2) {
        const std::int64_t nCount = asWhole(aValues[2]);
        nTo = nCount < 0 ? nFrom : nFrom + nCount;
        nFrom += std::min<std::int64_t>(nCount, 0);
    }
    std::string sPart;
    for (std::int64_t n = std::max<std::int64_t>(nFrom, 0); n < std::min(nTo, nLength); ++n)
        sPart += aCharacters[static_cast<std::size_t>(n)];
    return sPart;
}

SqlValue absolute(const SqlValue& value) {
    if (const auto* const pWhole = std::get_if<std::int64_t>(&value))
        return *pWhole < 0 ? -*pWhole : *pWhole;
    return isNull(value) ? value : SqlValue(std::abs(asDouble(value)));
}

SqlValue call(const std::string& sName, const Values& aValues) {
    const SqlValue& first = aValues.at(0);
    if (sName == "coalesce" || sName == "ifnull") {
        for (const SqlValue& value : aValues)
            if (!isNull(value))
                return value;
        return {};
    }
    if (sName == "abs")
        return absolute(first);
    if (sName == "substr")
        return substring(aValues);
    if (sName == "nullif")
        return comparison("=", first, aValues.at(1)) == truth(true) ? SqlValue() : first;
    if (isNull(first))
        return {};
    if (sName == "upper")
        return upperCase(asText(first));
    if (sName == "lower")
        return lowerCase(asText(first));
    if (sName == "length")
        return static_cast<std::int64_t>(charactersOf(asText(first)).size());
    throw std::runtime_error("no function of that name: " + sName);
}

bool isAggregate(const Term& term) {
    const bool bOne = term.parts.size() == 1;
    return term.sName == "count" ||
           (bOne && (term.sName == "sum" || term.sName == "total" || term.sName == "avg" ||
                     term.sName == "min" || term.sName == "max"));
}

} // namespace

namespace {

/// A sum of texts is no whole number, unless each of them is one from end to end.
SqlValue summand(const SqlValue& value) {
    const auto* const pText = std::get_if<std::string>(&value);
    const bool bWhole = pText == nullptr || asText(asNumber(value)) == trimBlanks(*pText);
    return bWhole ? asNumber(value) : SqlValue(asDouble(value));
}

} // namespace

SqlValue aggregated(const std::string& sName, const std::vector<SqlValue>& aValues) {
    const auto before = [](const SqlValue& left, const SqlValue& right) { return compared(left, right) < 0; };
    if (sName == "count")
        return static_cast<std::int64_t>(aValues.size());
    if (aValues.empty())
        return sName == "total" ? SqlValue(0.0) : SqlValue();
    if (sName == "min")
        return *std::min_element(aValues.begin(), aValues.end(), before);
    if (sName == "max")
        return *std::max_element(aValues.begin(), aValues.end(), before);
    SqlValue sum = std::int64_t{0};
    for (const SqlValue& value : aValues)
        sum = arithmetic('+', sum, summand(value));
    if (sName == "avg")
        return asDouble(sum) / static_cast<double>(aValues.size());
    return sName == "total" ? SqlValue(asDouble(sum)) : sum;
}

SqlValue computed(const Term& term, const Meanings& meanings) {
    if (term.kind == Term::Kind::Constant)
        return term.constant;
    if (term.kind == Term::Kind::Field)
        return meanings.fnField(term.sName, term.nClimb);
    if (term.kind == Term::Kind::Variable)
        return meanings.fnVariable(term.sName, term.nClimb);
    if (term.kind == Term::Kind::Outer)
        return meanings.fnOuter(term.parts.front());
    if (term.kind == Term::Kind::Call && isAggregate(term))
        return meanings.fnAggregate(term.sName, term.parts.empty() ? nullptr : &term.parts.front());
    Values aValues;
    for (const Term& part : term.parts)
        aValues.push_back(computed(part, meanings));
    switch (term.kind) {
    case Term::Kind::Is:
        return truth((comparedInOrder(aValues[0], aValues[1]) == 0) != term.bNot);
    case Term::Kind::Between: {
        const SqlValue inside =
            conjunction(comparison(">=", aValues[0], aValues[1]), comparison("<=", aValues[0], aValues[2]));
        return term.bNot ? negated(inside) : inside;
    }
    case Term::Kind::In:
        return term.bNot ? negated(membership(aValues)) : membership(aValues);
    case Term::Kind::Case:
        return choice(term, aValues);
    case Term::Kind::Call:
        return call(term.sName, aValues);
    default:
        return operation(term.sName, aValues);
    }
}

} // namespace halvane::oracle
