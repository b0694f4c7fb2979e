#pragma once

#include "xml/dom/NodeData.h"

#include <cstddef>
#include <string_view>
#include <unordered_map>

namespace halvane::dom {

/// Where the attributes of elements with many of them are, by name: found as fast as in a small element. Such
/// elements are rare, so the others are searched as they lie, and know nothing of it.
class WideElements {
public:
    /// Attributes that are searched as they lie.
    static constexpr std::size_t fewAttributes = 64;

    /// The attribute of that name, or nothing. What has been added since the last search is learned first.
    /// @throws std::bad_alloc when there is no memory for that; the element can be searched as it lies then.
    [[nodiscard]] NodeData* find(const NodeData& element, std::string_view sName);
    /// To be called before the element goes, leaves the document or loses an attribute.
    void forget(const NodeData& element) noexcept {
        if (!byElement_.empty())
            byElement_.erase(&element);
    }

private:
    struct Known {
        std::unordered_map<std::string_view, NodeData*> byName; ///< the names are the document's
        NodeData* pLast = nullptr;                              ///< the last attribute that is in it
    };

    std::unordered_map<const NodeData*, Known> byElement_;
};

} // namespace halvane::dom
