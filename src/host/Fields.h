#pragma once

// The fields of tables.

#include "base/Value.h"
#include "host/Forward.h"

#include <atomic>
#include <cstdint>
#include <string_view>

namespace halvane::host {

/// Field type codes. Codes from 9 on are the host's own and have no name here.
enum class FieldType : std::int32_t {
    SmallInteger = 0,
    Integer = 1,
    Single = 2,
    Double = 3,
    String = 4,
    Date = 5,
    Oid = 6,
    Geometry = 7,
    Blob = 8,
};

/// What values of a field are, where its type code leaves that open.
enum class ValueRole : std::uint8_t {
    AsTyped,  ///< nothing more is known: a date may or may not have a time
    Boolean,  ///< a number other than 0 is yes
    Date,     ///< without a time
    Time,     ///< of day, without a date
    DateTime, ///< a date with a time, be it midnight
};

class GisField : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisField"; }
    [[nodiscard]] virtual std::string_view name() const = 0;
    /// The field's name where it has no alias of its own.
    [[nodiscard]] virtual std::string_view aliasName() const = 0;
    [[nodiscard]] virtual std::int32_t typeCode() const = 0;
    /// In characters for texts, in bytes otherwise; 0 when unknown.
    [[nodiscard]] virtual std::int32_t length() const = 0;
    [[nodiscard]] virtual std::int32_t precision() const = 0;
    [[nodiscard]] virtual bool isNullable() const = 0;
    [[nodiscard]] virtual bool isEditable() const = 0;
    [[nodiscard]] virtual ValueRole valueRole() const { return ValueRole::AsTyped; }
};

class GisFields : public Object {
public:
    GisFields() = default;
    /// Tells these fields from all others that the process has seen, those at the same place in memory
    /// included.
    [[nodiscard]] std::uint64_t serialNumber() const noexcept { return nSerialNumber_; }

    [[nodiscard]] std::string_view typeName() const override { return "GisFields"; }
    [[nodiscard]] virtual std::int32_t count() const = 0;
    /// @param lIndex 0 to count() - 1. @throws Failure SubscriptOutOfRange beyond.
    [[nodiscard]] virtual const GisField& field(std::int32_t lIndex) const = 0;
    /// The first field of that name, ignoring case; -1 when none.
    [[nodiscard]] virtual std::int32_t findField(std::string_view sName) const = 0;
    /// The first field of that alias, ignoring case; -1 when none.
    [[nodiscard]] virtual std::int32_t findFieldByAliasName(std::string_view sAlias) const = 0;

private:
    [[nodiscard]] static std::uint64_t nextSerialNumber() noexcept {
        static std::atomic<std::uint64_t> nLast = 0;
        return ++nLast;
    }

    std::uint64_t nSerialNumber_ = nextSerialNumber();
};

} // namespace halvane::host
