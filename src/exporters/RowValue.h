#pragma once

#include "base/Failure.h"
#include "host/Rows.h"

#include <cstdint>
#include <string>

namespace halvane {

/// Which value of a row did not fit, for a message; "" where the host does not tell.
[[nodiscard]] std::string valueContext(const host::GisRow& row, std::int32_t lIndex, const ValueView& value,
                                       const char* sWanted);

/// Appends the text of a row's value, null as "".
/// @param value of the row at that index.
/// @throws Failure TypeMismatch for a value without one; its context tells which value.
inline void appendRowText(std::string& sText, const host::GisRow& row, std::int32_t lIndex,
                          const ValueView& value) {
    try {
        appendText(sText, value);
    } catch (const Failure& failure) {
        throw failure.about(valueContext(row, lIndex, value, "a value that has a text"));
    }
}

/// @throws Failure TypeMismatch for a value that is no number, null too, Overflow for one that is too large;
/// its
///         context tells which value.
[[nodiscard]] double rowNumber(const host::GisRow& row, std::int32_t lIndex, const ValueView& value);

} // namespace halvane
