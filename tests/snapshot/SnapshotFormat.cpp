#include "snapshot/SnapshotFormat.h"

#include "base/Failure.h"

#include <cmath>
#include <limits>
#include <type_traits>

namespace halvane::test {

namespace {

Json jsonOfDate(const Date& date) {
    return {{"date", {date.year, date.month, date.day, date.hour, date.minute, date.second}}};
}

Date dateOf(const Json& json) {
    Date date;
    date.year = json.at(0).get<std::int32_t>();
    date.month = json.at(1).get<std::uint8_t>();
    date.day = json.at(2).get<std::uint8_t>();
    date.hour = json.at(3).get<std::uint8_t>();
    date.minute = json.at(4).get<std::uint8_t>();
    date.second = json.at(5).get<std::uint8_t>();
    return date;
}

} // namespace

std::string answerKey(std::string_view sMember, std::span<const Value> aArguments) {
    std::string sKey(sMember);
    for (std::size_t n = 0; n < aArguments.size(); ++n)
        sKey += (n == 0 ? "(" : ", ") + jsonOf(aArguments[n]).dump();
    return aArguments.empty() ? sKey : sKey + ")";
}

Json jsonOfNumber(double dValue) {
    if (std::isnan(dValue))
        return "nan";
    if (std::isinf(dValue))
        return dValue < 0 ? "-inf" : "inf";
    return dValue;
}

double numberOf(const Json& json) {
    if (json.is_number())
        return json.get<double>();
    const auto sText = json.get<std::string>();
    if (sText == "nan")
        return std::numeric_limits<double>::quiet_NaN();
    const double dInfinity = std::numeric_limits<double>::infinity();
    return sText == "inf" ? dInfinity : -dInfinity;
}

Json jsonOf(const Value& vValue) {
    return std::visit(
        [](const auto& held) -> Json {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, Empty>)
                return {{"empty", true}};
            else if constexpr (std::is_same_v<Held, Null>)
                return nullptr;
            else if constexpr (std::is_same_v<Held, std::int64_t>)
                return {{"long", held}};
            else if constexpr (std::is_same_v<Held, float>)
                return {{"single", jsonOfNumber(double{held})}};
            else if constexpr (std::is_same_v<Held, double>)
                return {{"double", jsonOfNumber(held)}};
            else if constexpr (std::is_same_v<Held, Date>)
                return jsonOfDate(held);
            else if constexpr (std::is_same_v<Held, ObjectPtr>)
                throw Failure::of(FailureNumber::TypeMismatch);
            else
                return held;
        },
        vValue);
}

Value valueOf(const Json& json) {
    if (json.is_null())
        return Null{};
    if (json.is_boolean())
        return json.get<bool>();
    if (json.is_number_integer())
        return json.get<std::int32_t>();
    if (json.is_string())
        return json.get<std::string>();
    if (json.contains("long"))
        return json.at("long").get<std::int64_t>();
    if (json.contains("single"))
        return static_cast<float>(numberOf(json.at("single")));
    if (json.contains("double"))
        return numberOf(json.at("double"));
    if (json.contains("date"))
        return dateOf(json.at("date"));
    if (json.contains("empty"))
        return Empty{};
    throw Failure::of(FailureNumber::TypeMismatch);
}

} // namespace halvane::test
