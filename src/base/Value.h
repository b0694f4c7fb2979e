#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace halvane {

/// Root of everything that a value can refer to: host objects, documents, collections.
class Object {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    /// The name of the object's class, for messages: "GisFeatureLayer".
    [[nodiscard]] virtual std::string_view typeName() const = 0;
};
using ObjectPtr = std::shared_ptr<Object>;

/// What an object is besides when it stands for a plain value of a type that Value lacks. A mix-in, found by
/// dynamic_cast.
class TextHolder {
public:
    /// The value converted to text. @throws Failure TypeMismatch when it has none.
    [[nodiscard]] virtual std::string text() const = 0;

protected:
    TextHolder() = default;
    TextHolder(const TextHolder&) = default;
    TextHolder(TextHolder&&) = default;
    TextHolder& operator=(const TextHolder&) = default;
    TextHolder& operator=(TextHolder&&) = default;
    ~TextHolder() = default;
};

/// No value at all: a variable that nothing was assigned to. Its text is "".
struct Empty {
    friend bool operator==(Empty, Empty) { return true; }
};

/// A value known to be missing, as in a database. Its text is "".
struct Null {
    friend bool operator==(Null, Null) { return true; }
};

/// A calendar date with an optional time of day, proleptic Gregorian. Its text is that of the calendar alone.
struct Date {
    static constexpr std::int16_t noZone = 32767;

    std::int32_t year = 0;  ///< 0 with month 0 and day 0: a time of day without a date
    std::uint8_t month = 0; ///< 1 to 12
    std::uint8_t day = 0;   ///< 1 to 31
    std::uint8_t hour = 0;
    std::uint8_t minute = 0;
    std::uint8_t second = 0;
    std::uint16_t millisecond = 0;     ///< 0 to 999
    std::int16_t zoneMinutes = noZone; ///< east of UTC; noZone where the data does not tell

    friend bool operator==(const Date&, const Date&) = default;
};

using Bytes = std::span<const std::byte>;

/// A value lent by its owner: texts and bytes are views, valid as long as the owner says
/// (a row's values: until the cursor that yielded the row moves on and the row is released).
using ValueView = std::variant<Empty, Null, bool, std::int32_t, std::int64_t, float, double, Date,
                               std::string_view, Bytes, ObjectPtr>;

/// A value of any type that owns what it holds. Texts are UTF-8.
using Value =
    std::variant<Empty, Null, bool, std::int32_t, std::int64_t, float, double, Date, std::string, ObjectPtr>;

[[nodiscard]] Value toValue(const ValueView& view);
[[nodiscard]] ValueView toView(const Value& value);

[[nodiscard]] inline bool isEmpty(const Value& value) {
    return std::holds_alternative<Empty>(value);
}
[[nodiscard]] inline bool isNull(const ValueView& value) {
    return std::holds_alternative<Null>(value);
}

/// The object in a value seen in a role; empty when the value holds no object or one of another role.
template<class Role>
[[nodiscard]] std::shared_ptr<Role> objectAs(const Value& value) {
    const auto* pObject = std::get_if<ObjectPtr>(&value);
    return pObject == nullptr ? nullptr : std::dynamic_pointer_cast<Role>(*pObject);
}

/// The value converted to text, appended to `out`: whole numbers in decimal, floating-point numbers by
/// doubleText, yes/no as "True" and "False", dates as "mm/dd/yyyy" (a time without a date as "hh:mm:ss"),
/// bytes in base64, empty and null as "".
/// @throws Failure TypeMismatch for an object that is no TextHolder.
void appendText(std::string& out, const ValueView& value);
[[nodiscard]] std::string toText(const ValueView& value);
[[nodiscard]] std::string toText(const Value& value);

} // namespace halvane
