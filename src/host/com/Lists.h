#pragma once

#include "host/com/LateBound.h"

#include <memory>
#include <optional>
#include <vector>

namespace halvane::host::com {

/// The items of a list, one after the other.
class ItemSource {
public:
    ItemSource() = default;
    ItemSource(const ItemSource&) = delete;
    ItemSource& operator=(const ItemSource&) = delete;
    virtual ~ItemSource() = default;

    /// Nothing at the end. @throws Failure.
    [[nodiscard]] virtual std::optional<Variant> next() = 0;
};

/// A list is, in this order: an array; an object that scripts write as [a, b] (it has "length" and numbered
/// members); one that can be enumerated; one with "Count" and "Item", counted from 0. Null, empty and no
/// object are a list without items.
/// @throws Failure TypeMismatch for anything else.
[[nodiscard]] std::unique_ptr<ItemSource> itemsOf(const ContextPtr& pContext, const VARIANT& list);

/// All items at once.
[[nodiscard]] std::vector<Variant> allItemsOf(const ContextPtr& pContext, const VARIANT& list);

} // namespace halvane::host::com
