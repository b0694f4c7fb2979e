#include "engine/output/StreamRule.h"

#include "base/Text.h"
#include "engine/control/ControlNode.h"
#include "engine/second/SecondControl.h"

#include <algorithm>
#include <string_view>

namespace halvane {

namespace {

/// Who makes the children of a node: a repeated record takes a repeated child as an ordinary one.
enum class Parent { Ordinary, RepeatedRecord };

bool contentCanStream(const ControlNode& parent, Parent kind);

bool hasRowRules(const ControlNode& node) {
    return node.pSecond != nullptr && node.pSecond->rows;
}

bool asksSpatialReference(const ControlNode& leaf) {
    return containsIgnoringCase(leaf.merged.sDataProperty, "SPATIALREFERENCE");
}

/// A leaf that writes its one value once, into what was made for it.
bool leafCanStream(const ControlNode& leaf) {
    if (leaf.bHasText || leaf.bReadsRow || leaf.bReadsItem)
        return !leaf.bReadsItem || !asksSpatialReference(leaf);
    switch (rowOf(leaf.pBinding->kind).streaming.leaf) {
    case LeafStreaming::Never:
        return false;
    case LeafStreaming::IntoElement:
        return !leaf.bTargetsAttribute;
    case LeafStreaming::OneValue:
        break;
    }
    // A reference's value can be written several times, and beside its target.
    return !asksSpatialReference(leaf);
}

bool writesAttributes(const ControlNode& parent) {
    for (const ControlNode& child : childrenOf(parent))
        if (child.bTargetsAttribute || (isDissolved(child) && writesAttributes(child)))
            return true;
    return false;
}

/// Attributes come first, each of a name of its own; a value sent to one by a node with children would not.
bool placesCanStream(const ControlNode& parent) {
    bool bHasContent = false;
    for (const ControlNode& child : childrenOf(parent)) {
        if (isDissolved(child)) {
            // Attributes in it would follow content.
            if (!child.bHasText && (!child.hasChildren() || writesAttributes(child)))
                return false;
            bHasContent = true;
            continue;
        }
        if (child.pName == nullptr)
            return false;
        if (!child.bTargetsAttribute) {
            bHasContent = true;
            continue;
        }
        // What is checked once it is written needs its element. A second one of a name is checked, too.
        if (bHasContent || child.hasChildren() || child.bRepeated ||
            child.attributeName != AttributeName::Plain)
            return false;
    }
    return true;
}

/// A repeated node inside an item, which targets no attribute: see placesCanStream.
bool repeatedCanStream(const ControlNode& node) {
    if (hasRowRules(node))
        return contentCanStream(node, Parent::Ordinary);
    if (!node.hasChildren())
        return leafCanStream(node);
    switch (rowOf(node.pBinding->kind).streaming.group) {
    case GroupStreaming::Never:
        break;
    case GroupStreaming::Places:
        return placesCanStream(node);
    case GroupStreaming::Content:
        return contentCanStream(node, Parent::Ordinary);
    case GroupStreaming::RecordContent:
        return contentCanStream(node, Parent::RepeatedRecord);
    }
    return false;
}

bool childCanStream(const ControlNode& child, Parent kind) {
    if (hasRowRules(child) || (child.bRepeated && kind == Parent::Ordinary))
        return repeatedCanStream(child);
    return child.hasChildren() ? contentCanStream(child, Parent::Ordinary) : leafCanStream(child);
}

bool contentCanStream(const ControlNode& parent, Parent kind) {
    const auto children = childrenOf(parent);
    return placesCanStream(parent) &&
           std::all_of(children.begin(), children.end(),
                       [&](const ControlNode& child) { return childCanStream(child, kind); });
}

/// Texts that stand beside the elements of the node, not in them.
bool writesTexts(const ControlNode& node) {
    const auto children = childrenOf(node);
    return node.bHasText || std::any_of(children.begin(), children.end(), [](const ControlNode& child) {
               return isDissolved(child) && writesTexts(child);
           });
}

} // namespace

bool itemsCanStream(const ControlNode& repeated) {
    // What is streamed into an element begins and ends with tags: line breaks stand around it.
    if (isDissolved(repeated))
        return repeated.hasChildren() && !writesAttributes(repeated) && !writesTexts(repeated) &&
               repeatedCanStream(repeated);
    return repeated.pName != nullptr && !repeated.bTargetsAttribute && repeatedCanStream(repeated);
}

} // namespace halvane
