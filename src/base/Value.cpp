#include "base/Value.h"

#include "base/Base64.h"
#include "base/Failure.h"
#include "base/Numbers.h"

#include <array>
#include <charconv>
#include <type_traits>

namespace halvane {

namespace {

template<class Whole>
void appendWhole(std::string& out, Whole value) {
    std::array<char, 24> aText{};
    const auto result = std::to_chars(aText.data(), aText.data() + aText.size(), value);
    out.append(aText.data(), result.ptr);
}

void appendPadded(std::string& out, std::int32_t lValue, std::size_t nWidth) {
    const std::string sDigits = std::to_string(lValue);
    if (sDigits.size() < nWidth)
        out.append(nWidth - sDigits.size(), '0');
    out.append(sDigits);
}

// Of a number that is not negative.
void appendTwoDigits(std::string& out, std::int32_t lValue) {
    if (lValue > 99) {
        appendPadded(out, lValue, 2);
        return;
    }
    out.push_back(static_cast<char>('0' + lValue / 10));
    out.push_back(static_cast<char>('0' + lValue % 10));
}

void appendYear(std::string& out, std::int32_t lYear) {
    if (lYear < 1000 || lYear > 9999) {
        appendPadded(out, lYear, 4);
        return;
    }
    appendTwoDigits(out, lYear / 100);
    appendTwoDigits(out, lYear % 100);
}

void appendDate(std::string& out, const Date& date) {
    const bool bTimeOnly = date.year == 0 && date.month == 0 && date.day == 0;
    const char cSeparator = bTimeOnly ? ':' : '/';
    appendTwoDigits(out, bTimeOnly ? date.hour : date.month);
    out.push_back(cSeparator);
    appendTwoDigits(out, bTimeOnly ? date.minute : date.day);
    out.push_back(cSeparator);
    if (bTimeOnly)
        appendTwoDigits(out, date.second);
    else
        appendYear(out, date.year);
}

struct TextAppender {
    std::string& out;

    void operator()(Empty) const {}
    void operator()(Null) const {}
    void operator()(bool bValue) const { out.append(bValue ? "True" : "False"); }
    void operator()(std::int32_t lValue) const { appendWhole(out, lValue); }
    void operator()(std::int64_t nValue) const { appendWhole(out, nValue); }
    void operator()(float fValue) const { appendSingleText(out, fValue); }
    void operator()(double dValue) const { appendDoubleText(out, dValue); }
    void operator()(const Date& date) const { appendDate(out, date); }
    void operator()(std::string_view sText) const { out.append(sText); }
    void operator()(Bytes bytes) const { appendBase64(out, bytes); }
    void operator()(const ObjectPtr& pObject) const {
        const auto* pHolder = dynamic_cast<const TextHolder*>(pObject.get());
        if (pHolder == nullptr)
            throw Failure::of(FailureNumber::TypeMismatch);
        out.append(pHolder->text());
    }
};

} // namespace

Value toValue(const ValueView& view) {
    return std::visit(
        [](const auto& held) -> Value {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, std::string_view>) {
                return std::string(held);
            } else if constexpr (std::is_same_v<Held, Bytes>) {
                std::string sText;
                appendBase64(sText, held);
                return sText;
            } else {
                return held;
            }
        },
        view);
}

ValueView toView(const Value& value) {
    return std::visit(
        [](const auto& held) -> ValueView {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::string>)
                return std::string_view(held);
            else
                return held;
        },
        value);
}

void appendText(std::string& out, const ValueView& value) {
    // The usual kinds without the jump that visiting takes.
    const TextAppender append{out};
    if (const auto* pText = std::get_if<std::string_view>(&value))
        append(*pText);
    else if (const auto* pInteger = std::get_if<std::int32_t>(&value))
        append(*pInteger);
    else if (const auto* pDate = std::get_if<Date>(&value))
        append(*pDate);
    else
        std::visit(append, value);
}

std::string toText(const ValueView& value) {
    std::string sText;
    appendText(sText, value);
    return sText;
}

std::string toText(const Value& value) {
    if (const auto* sText = std::get_if<std::string>(&value))
        return *sText;
    return toText(toView(value));
}

} // namespace halvane
