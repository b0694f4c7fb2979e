#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <ranges>

namespace halvane {

/// The first row of a table by its name; null when none has it. The table outlives the row.
/// @param name the member of a row that is its name. @param same when two names are the same.
template<class Rows, class Sought, class Name, class Same = std::equal_to<>>
[[nodiscard]] constexpr const auto* findRow(const Rows& rows, const Sought& sought, Name name,
                                            Same same = {}) {
    const auto found = std::ranges::find_if(rows, [&](const auto& row) {
        return static_cast<bool>(std::invoke(same, std::invoke(name, row), sought));
    });
    return found == std::ranges::end(rows) ? nullptr : std::to_address(found);
}

} // namespace halvane
