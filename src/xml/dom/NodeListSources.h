#pragma once

#include "xml/dom/DocumentImpl.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace halvane::dom {

/// Where a list's nodes come from. Copies of a list share it and with it the position.
class NodeList::Source {
public:
    Source() = default;
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    virtual ~Source() = default;

    virtual std::int32_t length() = 0;
    virtual Node item(std::int32_t lIndex) = 0;

    Node nextNode() {
        const Node node = item(lNext_);
        if (node)
            ++lNext_;
        return node;
    }
    void reset() noexcept { lNext_ = 0; }

private:
    std::int32_t lNext_ = 0;
};

[[nodiscard]] NodeList listOfChildren(NodeData& parent);
/// The elements of that name under `top`; "*": all.
[[nodiscard]] NodeList listOfDescendants(NodeData& top, std::string_view sName);
[[nodiscard]] NodeList listOf(std::vector<Node> aNodes);

} // namespace halvane::dom
