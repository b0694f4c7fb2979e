#pragma once

#include "host/gdal/rows/BatchFilling.h"
#include "host/gdal/source/ServerConnection.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace halvane::host::gdal {

/// How a server's value becomes one of a row.
struct ServerValue {
    /// What the value is sent as.
    enum class Form : std::uint8_t {
        Boolean,
        Whole, ///< of two, four or eight bytes
        Single,
        Double,
        NumberText,
        Text,
        Day,
        Moment,     ///< without a time zone
        MomentText, ///< with one
        Bytes,
        Shape,
    };

    ColumnKind kind;
    std::string_view sType; ///< the server's name of it; "enum" for all of these
    Form form;
    bool bAsText = false; ///< whether the server is asked for its text

    /// @returns nothing for types whose values the library may read in another way.
    [[nodiscard]] static const ServerValue* find(ColumnKind kind, std::string_view sType);
};

/// Fills batches with rows that a server sends as it keeps them.
class ServerFilling final : public BatchFilling {
public:
    /// @param values in the order of a row's cells; the first is the object identifier.
    ServerFilling(std::span<const ServerValue> values, std::int64_t lLastId, Exchange fnExchange);

    /// Adds the rows of a result in binary form. @returns whether more are wanted.
    [[nodiscard]] bool add(const PGresult& rows);

private:
    [[nodiscard]] bool addRow(const PGresult& rows, int lRow);
    [[nodiscard]] bool addCell(const ServerValue& value, std::string_view sBytes);
    [[nodiscard]] bool addWhole(ColumnKind kind, std::int64_t lValue);
    [[nodiscard]] bool addReal(ColumnKind kind, double dValue);
    [[nodiscard]] bool addNumber(ColumnKind kind, std::string_view sText);
    [[nodiscard]] bool addDate(const OGRField& time);
    [[nodiscard]] bool addEwkb(std::string_view sBytes);

    std::span<const ServerValue> values_;
    std::string sShape_; // without its reference
};

} // namespace halvane::host::gdal
