#pragma once

#include "base/Value.h"
#include "engine/ExportState.h"
#include "engine/second/ForEach.h"
#include "host/Domains.h"
#include "host/Geometry.h"
#include "host/Tables.h"

#include <cstdint>
#include <utility>

namespace halvane {

/// What a loop over the things of a map is at. Of the members, the one that the kind tells is set.
struct LoopItem {
    ForEach kind = ForEach::Map;
    /// A map, a layer, a table, a domain, a relationship class or a workspace.
    ObjectPtr pObject = {};
    host::GisFieldsPtr pFields = {}; ///< that the field is one of
    host::GisTablePtr pTable = {};   ///< that has them; may be nothing
    std::int32_t lField = -1;
    host::CodedValue code = {};
    host::GisSubtypesPtr pSubtypes = {}; ///< that the subtype is one of
    std::int32_t lSubtype = 0;
    host::GisGeometryPtr pShape = {}; ///< that the part is one of
    std::int32_t lPart = 0;
    host::PointValues point = {};

    template<class Role>
    [[nodiscard]] std::shared_ptr<Role> as() const {
        return std::dynamic_pointer_cast<Role>(pObject);
    }
    [[nodiscard]] const host::GisField& field() const { return pFields->field(lField); }
};

/// An item of a loop over the things of a map: the innermost one while it lives.
class ItemScope {
public:
    /// @param lNumber of the item in its loop, from 1.
    ItemScope(ExportState& state, const LoopItem& item, std::int64_t lNumber)
        : state_(state), pAround_(state.pItemScope), pRows_(state.pRowScope), item_(item), lNumber_(lNumber) {
        state.pItemScope = this;
    }
    ItemScope(const ItemScope&) = delete;
    ItemScope& operator=(const ItemScope&) = delete;
    ~ItemScope() { state_.pItemScope = pAround_; }

    [[nodiscard]] const LoopItem& item() const noexcept { return item_; }
    [[nodiscard]] std::int64_t number() const noexcept { return lNumber_; }
    [[nodiscard]] const ItemScope* around() const noexcept { return pAround_; }
    /// The innermost loop over rows that the item is in; may be nothing.
    [[nodiscard]] const RowScope* rows() const noexcept { return pRows_; }

private:
    ExportState& state_;
    const ItemScope* pAround_;
    const RowScope* pRows_;
    const LoopItem& item_;
    std::int64_t lNumber_;
};

/// The innermost item of that kind around; nothing where there is none.
[[nodiscard]] inline const LoopItem* itemOf(const ExportState& state, ForEach kind) noexcept {
    for (const ItemScope* pScope = state.pItemScope; pScope != nullptr; pScope = pScope->around())
        if (pScope->item().kind == kind)
            return &pScope->item();
    return nullptr;
}

} // namespace halvane
