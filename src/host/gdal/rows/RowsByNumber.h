#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace halvane::host::gdal {

/// Rows, by their identifiers or places, of each whole number that they hold: those of a number in the order
/// in which they were added.
class RowsByNumber {
public:
    void add(std::int64_t lNumber, std::int64_t lRow) { added_.emplace_back(lNumber, lRow); }
    /// Lets the rows of a number be found in their own order. Before finish().
    void sortRows();
    /// After the last one: from here on they can be found.
    void finish();

    [[nodiscard]] std::span<const std::int64_t> find(std::int64_t lNumber) const;

private:
    using Entry = std::pair<std::int64_t, std::int64_t>;

    void finishDense(std::size_t nNumbers);

    std::vector<Entry> added_;
    std::vector<std::int64_t> rows_; ///< by number
    // Numbers that stand close together, as keys mostly do, are places of this list; others are searched for.
    std::vector<std::size_t> begins_; ///< in the rows, from the least number on
    std::int64_t lLeast_ = 0;
    std::vector<std::int64_t> numbers_; ///< of the rows
};

} // namespace halvane::host::gdal
