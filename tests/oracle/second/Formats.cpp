// How values are written: h:Format.

#include "base/Numbers.h"
#include "base/Text.h"
#include "host/Subtypes.h"
#include "host/Tables.h"
#include "oracle/Interpreter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace halvane::oracle {

namespace {

std::string padded(std::int64_t nNumber, std::size_t nWidth) {
    std::string sDigits = std::to_string(nNumber);
    sDigits.insert(0, sDigits.size() < nWidth ? nWidth - sDigits.size() : 0, '0');
    return sDigits;
}

bool isNumberPattern(const std::string& sChoice) {
    return sChoice.find_first_not_of("0#.") == std::string::npos;
}

/// As many digits as tell it apart, without an exponent; perhaps at most so many decimals.
std::string plainNumber(double dValue, std::int32_t lPlaces) {
    if (lPlaces != 0)
        return fixedText(dValue, lPlaces);
    if (dValue == 0)
        return "0";
    std::array<char, 400> sBuffer{};
    const auto end =
        std::to_chars(sBuffer.data(), sBuffer.data() + sBuffer.size(), dValue, std::chars_format::fixed);
    return {sBuffer.data(), end.ptr};
}

std::string inPattern(const std::string& sPattern, const std::string& sDigits) {
    const std::size_t nPoint = std::min(sPattern.find('.'), sPattern.size());
    const std::size_t nWidth = static_cast<std::size_t>(
        std::count(sPattern.begin(), sPattern.begin() + static_cast<std::ptrdiff_t>(nPoint), '0'));
    const std::string sDecimals = nPoint < sPattern.size() ? sPattern.substr(nPoint + 1) : "";
    const std::size_t nLeast = std::min(sDecimals.find('#'), sDecimals.size());
    std::string sText = sDigits;
    const bool bNegative = sText.front() == '-';
    if (bNegative)
        sText.erase(0, 1);
    std::size_t nDot = std::min(sText.find('.'), sText.size());
    std::string sWhole = sText.substr(0, nDot);
    std::string sRest = nDot < sText.size() ? sText.substr(nDot + 1) : "";
    while (sRest.size() > nLeast && sRest.back() == '0')
        sRest.pop_back();
    sRest.append(sRest.size() < nLeast ? nLeast - sRest.size() : 0, '0');
    sWhole.insert(0, sWhole.size() < nWidth ? nWidth - sWhole.size() : 0, '0');
    const std::string sAll = sRest.empty() ? sWhole : sWhole + "." + sRest;
    const bool bZero = sAll.find_first_not_of("0.") == std::string::npos;
    return bNegative && !bZero ? "-" + sAll : sAll;
}

std::string numberInFormat(const std::string& sFormat, double dValue, std::int32_t lPlaces) {
    if (sFormat == "xs")
        return plainNumber(dValue, lPlaces);
    const std::size_t nPoint = sFormat.find('.');
    const auto nDecimals =
        nPoint == std::string::npos ? 0 : static_cast<std::int32_t>(sFormat.size() - nPoint - 1);
    return inPattern(sFormat, fixedText(dValue, nDecimals));
}

/// Of the month, or of the day of the week: counted on from a Monday, by whole years and days.
std::string nameOf(const Date& date, char c) {
    static const std::array<std::string, 12> aMonths{"January",   "February", "March",    "April",
                                                     "May",       "June",     "July",     "August",
                                                     "September", "October",  "November", "December"};
    static const std::array<std::string, 7> aDays{"Monday", "Tuesday",  "Wednesday", "Thursday",
                                                  "Friday", "Saturday", "Sunday"};
    static const std::array<std::int64_t, 12> aLengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (c == 'M')
        return aMonths.at(date.month - 1U);
    const auto leap = [](std::int64_t nYear) {
        return nYear % 4 == 0 && (nYear % 100 != 0 || nYear % 400 == 0);
    };
    std::int64_t nDays = date.day - 1; // from the first of January 1, a Monday
    for (std::int64_t nYear = 1; nYear < date.year; ++nYear)
        nDays += leap(nYear) ? 366 : 365;
    for (std::size_t n = 0; n + 1 < date.month; ++n)
        nDays += aLengths.at(n) + (n == 1 && leap(date.year) ? 1 : 0);
    return aDays.at(static_cast<std::size_t>(nDays % 7));
}

std::string dateInFormat(const std::string& sFormat, const Date& date) {
    if (sFormat == "xs")
        return std::get<std::string>(sqlValueOf(ValueView(date)));
    const bool bTimeAlone = date.year == 0 && date.month == 0 && date.day == 0;
    std::string sText;
    for (std::size_t n = 0; n < sFormat.size();) {
        const char c = sFormat[n];
        if (c == '\'') {
            for (++n; n < sFormat.size() && sFormat[n] != '\''; ++n)
                sText += sFormat[n];
            ++n;
            continue;
        }
        std::size_t nCount = 0;
        while (n + nCount < sFormat.size() && sFormat[n + nCount] == c)
            ++nCount;
        n += nCount;
        if (bTimeAlone && (c == 'y' || c == 'M' || c == 'd' || c == 'E'))
            throw Failure(FailureNumber::TypeMismatch,
                          "the value is a time without the date that h:Format asks for");
        if (c == 'y')
            sText += nCount == 2 ? padded(date.year % 100, 2) : padded(date.year, 4);
        else if ((c == 'M' || c == 'E') && nCount > 2)
            sText += nameOf(date, c).substr(0, nCount == 3 ? 3 : std::string::npos);
        else if (c == 'M')
            sText += padded(date.month, nCount);
        else if (c == 'd')
            sText += padded(date.day, nCount);
        else if (c == 'H')
            sText += padded(date.hour, nCount);
        else if (c == 'm')
            sText += padded(date.minute, nCount);
        else if (c == 's')
            sText += padded(date.second, nCount);
        else
            sText += std::string(nCount, c);
    }
    return sText;
}

} // namespace

/// The nearest choice around that is about such values; "" for none.
std::string Interpreter::formatOf(FormatOf what) const {
    std::vector<const ControlNode*> aAround{pRoot_};
    aAround.insert(aAround.end(), aActive_.begin(), aActive_.end());
    for (auto node = aAround.rbegin(); bSecond_ && node != aAround.rend(); ++node) {
        std::string sRest = (*node)->get("h:Format");
        bool bNone = false;
        while (!sRest.empty()) {
            const std::size_t nEnd = std::min(sRest.find(';'), sRest.size());
            const std::string sChoice(trimBlanks(sRest.substr(0, nEnd)));
            sRest.erase(0, nEnd + 1);
            if (sChoice == "none") {
                bNone = true;
                continue;
            }
            const bool bXs = sChoice == "xs";
            const bool bNumber = isNumberPattern(sChoice);
            const bool bFits = what == FormatOf::Codes     ? sChoice == "domain"
                               : what == FormatOf::Truths  ? bXs
                               : what == FormatOf::Numbers ? bXs || bNumber
                                                           : bXs || (!bNumber && sChoice != "domain");
            if (bFits)
                return sChoice;
        }
        if (bNone)
            return {};
    }
    return {};
}

std::optional<std::string> Interpreter::numberText(double dValue, std::int32_t lPlaces) {
    const std::string sFormat = formatOf(FormatOf::Numbers);
    if (sFormat.empty())
        return std::nullopt;
    noteTurn("a number in a format");
    return numberInFormat(sFormat, dValue, lPlaces);
}

std::optional<std::string> Interpreter::wholeText(std::int64_t nValue) {
    const std::string sFormat = formatOf(FormatOf::Numbers);
    if (sFormat.empty())
        return std::nullopt;
    noteTurn("a whole number in a format");
    return sFormat == "xs" ? std::to_string(nValue) : inPattern(sFormat, std::to_string(nValue));
}

std::optional<std::string> Interpreter::dateText(const Date& date) {
    const std::string sFormat = formatOf(FormatOf::Dates);
    if (sFormat.empty())
        return std::nullopt;
    noteTurn("a date in a format");
    return dateInFormat(sFormat, date);
}

/// The name of a coded value, if the domain of its field holds it.
std::optional<std::string> Interpreter::codeName(const host::GisRow& row, std::int32_t lField) {
    if (formatOf(FormatOf::Codes).empty())
        return std::nullopt;
    host::GisTablePtr pTable;
    for (const RowLoop& loop : aRowLoops_)
        if (loop.pRow.get() == &row)
            pTable = loop.pTable;
    const auto pClass = std::dynamic_pointer_cast<host::GisFeatureClass>(pTable);
    const auto pSubtypes = pClass == nullptr ? nullptr : pClass->subtypes();
    const ValueView value = row.value(lField);
    if (pSubtypes == nullptr || !pSubtypes->hasSubtypes() || halvane::isNull(value) ||
        std::holds_alternative<ObjectPtr>(value))
        return std::nullopt;
    const std::int32_t lSubtypeField = row.fields().findField(pSubtypes->subtypeFieldName());
    std::int32_t lSubtype = lSubtypeField < 0 ? 0 : pSubtypes->defaultSubtypeCode();
    if (lSubtypeField >= 0 && !halvane::isNull(row.value(lSubtypeField))) {
        const std::string sSubtype = toText(row.value(lSubtypeField));
        // Beyond these there are no subtypes.
        if (!isNumeric(sSubtype) || std::abs(toDouble(sSubtype)) > 2e9)
            return std::nullopt;
        lSubtype = toInt32(sSubtype);
    }
    const auto pDomain = pSubtypes->domain(lSubtype, row.fields().field(lField).name());
    for (std::int32_t i = 0; pDomain != nullptr && i < pDomain->codeCount(); ++i)
        if (toText(pDomain->code(i).vCode) == toText(value)) {
            noteTurn("the name of a coded value");
            return pDomain->code(i).sName;
        }
    return std::nullopt;
}

/// A value of a field in the forms that are asked for; nothing where the first edition's is.
std::optional<std::string> Interpreter::formattedField(const host::GisRow& row, std::int32_t lField) {
    const ValueView value = row.value(lField);
    if (row.fields().field(lField).typeCode() == 6)
        return std::nullopt; // an identifier is written as it is
    const auto* const pTruth = std::get_if<bool>(&value);
    if (pTruth != nullptr && !formatOf(FormatOf::Truths).empty())
        return *pTruth ? "true" : "false";
    if (const auto* const pDate = std::get_if<Date>(&value))
        return dateText(*pDate);
    if (const auto* const pWhole = std::get_if<std::int32_t>(&value))
        return wholeText(*pWhole);
    if (const auto* const pWhole = std::get_if<std::int64_t>(&value))
        return wholeText(*pWhole);
    return std::nullopt;
}

} // namespace halvane::oracle
