#pragma once

#include "engine/second/RowScope.h"
#include "host/Rows.h"

#include <vector>

namespace halvane {

/// A group of rows that is being written: the innermost one while it lives.
class GroupScope {
public:
    /// @param loop goes over the groups; its row is the first of the group. Borrowed, like the rows.
    GroupScope(ExportState& state, RowScope& loop, const std::vector<host::GisRowPtr>& rows)
        : state_(state), pAround_(state.pGroup), pLayer_(state.pFeatureLayer), loop_(loop), rows_(rows),
          nNumber_(++state.nGroups) {
        state.pGroup = this;
    }
    GroupScope(const GroupScope&) = delete;
    GroupScope& operator=(const GroupScope&) = delete;
    ~GroupScope() { state_.pGroup = pAround_; }

    [[nodiscard]] const GroupScope* around() const noexcept { return pAround_; }
    /// That was current when the group was begun; may be nothing.
    [[nodiscard]] const host::GisFeatureLayerPtr& layer() const noexcept { return pLayer_; }
    [[nodiscard]] RowScope& loop() const noexcept { return loop_; }
    [[nodiscard]] const std::vector<host::GisRowPtr>& rows() const noexcept { return rows_; }
    /// Tells this group from all others of the export.
    [[nodiscard]] std::uint64_t number() const noexcept { return nNumber_; }

private:
    ExportState& state_;
    const GroupScope* pAround_;
    host::GisFeatureLayerPtr pLayer_;
    RowScope& loop_;
    const std::vector<host::GisRowPtr>& rows_;
    std::uint64_t nNumber_;
};

} // namespace halvane
