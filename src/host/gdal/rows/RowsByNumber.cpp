#include "host/gdal/rows/RowsByNumber.h"

#include <algorithm>

namespace halvane::host::gdal {

void RowsByNumber::sortRows() {
    std::ranges::sort(added_, {}, &Entry::second);
}

void RowsByNumber::finish() {
    if (added_.empty())
        return;
    const auto [least, most] = std::ranges::minmax(added_, {}, &Entry::first);
    lLeast_ = least.first;
    const auto nRange = static_cast<std::uint64_t>(most.first) - static_cast<std::uint64_t>(least.first);
    if (nRange < 4 * added_.size()) {
        finishDense(nRange + 1);
    } else {
        std::ranges::stable_sort(added_, {}, &Entry::first);
        for (const auto& [lNumber, lRow] : added_) {
            numbers_.push_back(lNumber);
            rows_.push_back(lRow);
        }
    }
    added_ = {};
}

void RowsByNumber::finishDense(std::size_t nNumbers) {
    begins_.resize(nNumbers + 1);
    const auto place = [this](std::int64_t lNumber) { return static_cast<std::size_t>(lNumber - lLeast_); };
    for (const Entry& entry : added_)
        ++begins_[place(entry.first)];
    std::size_t nEnd = 0;
    for (std::size_t& nBegin : begins_)
        nBegin = nEnd += nBegin;
    rows_.resize(added_.size());
    for (auto entry = added_.rbegin(); entry != added_.rend(); ++entry)
        rows_[--begins_[place(entry->first)]] = entry->second;
}

std::span<const std::int64_t> RowsByNumber::find(std::int64_t lNumber) const {
    if (begins_.empty()) {
        const auto [first, last] = std::equal_range(numbers_.begin(), numbers_.end(), lNumber);
        return std::span(rows_).subspan(static_cast<std::size_t>(first - numbers_.begin()),
                                        static_cast<std::size_t>(last - first));
    }
    const auto nPlace = static_cast<std::uint64_t>(lNumber) - static_cast<std::uint64_t>(lLeast_);
    if (nPlace >= begins_.size() - 1)
        return {};
    return std::span(rows_).subspan(begins_[nPlace], begins_[nPlace + 1] - begins_[nPlace]);
}

} // namespace halvane::host::gdal
