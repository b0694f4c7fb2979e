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

/// A list is an array, or an object that yields items. A script's object is asked for "length" and its
/// numbered members (scripts write [a, b]), then for "Count" and "Item", counted from 0, then for an
/// enumeration; any other object for an enumeration before "Count" and "Item". Null, empty and no object are
/// a list without items.
/// @throws Failure TypeMismatch for anything else.
[[nodiscard]] std::unique_ptr<ItemSource> itemsOf(const ContextPtr& pContext, const VARIANT& list);

/// All items at once.
[[nodiscard]] std::vector<Variant> allItemsOf(const ContextPtr& pContext, const VARIANT& list);

} // namespace halvane::host::com
