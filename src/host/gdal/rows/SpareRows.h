#pragma once

#include <algorithm>
#include <array>
#include <memory>

namespace halvane::host::gdal {

/// The rows that a cursor hands out in turn: two, since an export keeps the row it read last while it asks
/// for the next.
template<class Row>
class SpareRows {
public:
    /// A row that nobody else holds; nothing when there is none.
    [[nodiscard]] std::shared_ptr<Row> spare() const {
        for (const std::shared_ptr<Row>& pRow : aRows_)
            if (pRow != nullptr && pRow.use_count() == 1)
                return pRow;
        return nullptr;
    }
    /// A new row, which may be spare later.
    void add(std::shared_ptr<Row> pRow) {
        std::rotate(aRows_.begin(), aRows_.begin() + 1, aRows_.end());
        aRows_.back() = std::move(pRow);
    }
    void clear() { aRows_ = {}; }
    /// Lets what the spare rows hold go.
    void release() const {
        for (const std::shared_ptr<Row>& pRow : aRows_)
            if (pRow != nullptr && pRow.use_count() == 1)
                pRow->release();
    }

private:
    std::array<std::shared_ptr<Row>, 2> aRows_;
};

} // namespace halvane::host::gdal
