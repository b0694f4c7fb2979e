#include "host/gdal/rows/EqualityClause.h"

#include "base/Text.h"

#include <algorithm>
#include <charconv>

namespace halvane::host::gdal {

namespace {

bool isNameCharacter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

bool isName(std::string_view sName) {
    return !sName.empty() && (sName.front() < '0' || sName.front() > '9') &&
           std::all_of(sName.begin(), sName.end(), &isNameCharacter);
}

bool isShortestNumber(std::string_view sNumber) {
    const bool bNegative = sNumber.starts_with('-');
    const std::string_view sDigits = sNumber.substr(bNegative ? 1 : 0);
    const bool bDigits = !sDigits.empty() && sDigits.size() <= 18 &&
                         sDigits.find_first_not_of("0123456789") == std::string_view::npos;
    return bDigits && (sDigits.front() != '0' || (sDigits.size() == 1 && !bNegative));
}

/// The text of a literal without its quotes, those in it taken once; nothing where a database might read it
/// in another way.
std::optional<std::string> textOf(std::string_view sLiteral) {
    if (sLiteral.size() < 2 || sLiteral.front() != '\'' || sLiteral.back() != '\'')
        return std::nullopt;
    std::string sText(sLiteral.substr(1, sLiteral.size() - 2));
    if (sText.find_first_of(std::string_view("\\\0", 2)) != std::string::npos)
        return std::nullopt;
    std::size_t nQuote = sText.find('\'');
    for (; nQuote != std::string::npos; nQuote = sText.find('\'', nQuote + 1)) {
        if (sText.substr(nQuote + 1, 1) != "'")
            return std::nullopt;
        sText.erase(nQuote, 1);
    }
    return sText;
}

} // namespace

std::optional<EqualityClause> parseEquality(std::string_view sWhere) {
    const std::size_t nSign = sWhere.find('=');
    if (nSign == std::string_view::npos)
        return std::nullopt;
    const std::string_view sName = trimBlanks(sWhere.substr(0, nSign));
    const std::string_view sLiteral = trimBlanks(sWhere.substr(nSign + 1));
    if (!isName(sName))
        return std::nullopt;
    EqualityClause clause;
    clause.sField = upperCase(sName);
    if (auto sText = textOf(sLiteral)) {
        clause.bText = true;
        clause.sText = *std::move(sText);
        return clause;
    }
    if (isShortestNumber(sLiteral)) {
        std::from_chars(sLiteral.data(), sLiteral.data() + sLiteral.size(), clause.lNumber);
        return clause;
    }
    return std::nullopt;
}

} // namespace halvane::host::gdal
