#pragma once

#include "host/Rows.h"
#include "host/gdal/facts/Fields.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace halvane::host::gdal {

/// A field that rows are ordered by.
struct RowKey {
    std::string sField;
    bool bDescending = false;
};

/// The keys of a text such as "NAME desc, \"a b\"". @throws Failure for what is no list of fields.
[[nodiscard]] std::vector<RowKey> rowKeysOf(const std::string& sOrderBy);
/// @throws Failure for a key that is no field, with the nearest one.
void requireKeys(const GdalFields& fields, const std::vector<RowKey>& keys);

/// The place of each row of a table among all of them, by the values of keys: missing values first, then
/// numbers and dates, then texts byte by byte. Rows that are alike keep their order.
class RowRanks {
public:
    /// Reads all rows; keeps their identifiers alone.
    RowRanks(GisCursor& rows, const GdalFields& fields, const std::vector<RowKey>& keys);

    [[nodiscard]] const std::vector<std::int64_t>& all() const { return ids_; }
    /// Identifiers in the order of their rows.
    [[nodiscard]] std::vector<std::int64_t> sorted(std::vector<std::int64_t> ids) const;

private:
    std::vector<std::int64_t> ids_;
    std::unordered_map<std::int64_t, std::size_t> ranks_;
};

} // namespace halvane::host::gdal
