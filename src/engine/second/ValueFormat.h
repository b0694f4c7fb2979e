#pragma once

#include "base/Value.h"
#include "host/Fields.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// How values are written in the second edition, where it asks for more than the first edition's rules. What
/// a format says nothing of is written by those.
class ValueFormat {
public:
    /// Adds what a text asks for, which goes over what was asked for before: "xs" (dates, times, booleans and
    /// numbers in the lexical forms of XML Schema 1.0 part 2), a pattern for numbers ("0.00"), one for dates
    /// ("dd.MM.yyyy HH:mm"), "domain" (the names of coded values); several are
    /// separated by ";". "none" before them forgets what was asked for before.
    /// @throws Failure DocumentFailure for anything else, and for two of a kind.
    void read(std::string_view sText);

    [[nodiscard]] bool formatsNumbers() const noexcept { return numbers_.has_value(); }
    [[nodiscard]] bool formatsBooleans() const noexcept { return bBooleans_; }
    [[nodiscard]] bool formatsDates() const noexcept { return dates_.has_value(); }
    [[nodiscard]] bool namesCodes() const noexcept { return bCodes_; }

    /// @param lDecimalPlaces at most so many where there is no pattern; 0: as many as the number has.
    void appendNumber(std::string& sText, double dValue, std::int32_t lDecimalPlaces) const;
    void appendNumber(std::string& sText, float fValue, std::int32_t lDecimalPlaces) const;
    void appendNumber(std::string& sText, std::int64_t lValue) const;
    /// @throws Failure TypeMismatch when the pattern asks for a date and there is a time alone, or for a name
    /// and there is no such month or day.
    void appendDate(std::string& sText, const Date& date, host::ValueRole role) const;
    static void appendBoolean(std::string& sText, bool bValue) { sText += bValue ? "true" : "false"; }

    friend bool operator==(const ValueFormat&, const ValueFormat&) = default;

private:
    /// No decimals: the lexical form of XML Schema.
    struct NumberPattern {
        bool bXs = false;
        std::int32_t lDigits = 0; ///< before the point, at least
        std::int32_t lLeastDecimals = 0;
        std::int32_t lMostDecimals = 0;

        friend bool operator==(const NumberPattern&, const NumberPattern&) = default;
    };
    /// A part of a date, that many digits wide, or a text.
    struct DatePart {
        char cLetter = 0; ///< 0: a text
        std::size_t nWidth = 0;
        std::string sText;

        friend bool operator==(const DatePart&, const DatePart&) = default;
    };
    /// Empty: the lexical forms of XML Schema.
    using DatePattern = std::vector<DatePart>;

    [[nodiscard]] static std::optional<NumberPattern> numberPattern(std::string_view sText);
    [[nodiscard]] static DatePattern datePattern(std::string_view sText);
    template<class Number>
    void appendReal(std::string& sText, Number value, std::int32_t lDecimalPlaces) const;

    std::optional<NumberPattern> numbers_;
    std::optional<DatePattern> dates_;
    bool bBooleans_ = false;
    bool bCodes_ = false;
};

} // namespace halvane
