#pragma once

#include "xml/dom/Dom.h"

namespace halvane {

/// The node after `oNode` in document order inside the tree of `oTop`, attributes left out; nothing after the
/// last. Without recursion: a walk by it needs no stack, however deep the tree is.
[[nodiscard]] inline dom::Node nextInDocument(dom::Node oNode, dom::Node oTop) {
    if (const auto oChild = oNode.firstChild())
        return oChild;
    for (; oNode != oTop; oNode = oNode.parentNode())
        if (const auto oSibling = oNode.nextSibling())
            return oSibling;
    return {};
}

} // namespace halvane
