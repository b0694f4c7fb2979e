#pragma once

#include "xml/dom/Dom.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace halvane {

/// Whether the names of a control file's outputs have prefixes that the document declares: a document with
/// others is read by no parser that knows namespaces. A prefix is declared for an element, and all inside it,
/// by an attribute "xmlns:PREFIX" among what the element's control node writes.
class PrefixChecks {
public:
    explicit PrefixChecks(dom::Node oControlRoot) : oRoot_(oControlRoot) {}

    /// What is wrong with the prefix of an element's output name, and what to do; "" when nothing is.
    [[nodiscard]] std::string problem(dom::Node oElement);

private:
    [[nodiscard]] std::string problemOf(dom::Node oElement, std::string_view sTagName);
    void collect();
    [[nodiscard]] bool isDeclared(dom::Node oElement, std::string_view sPrefix);

    dom::Node oRoot_;
    bool bCollected_ = false; ///< most control files have no prefixes: they are not searched for declarations
    std::unordered_map<const dom::NodeData*, std::vector<std::string>> declared_; ///< by control element
};

/// What is wrong with the prefixes of a control file, a line each ("control.xml:12: error: …").
[[nodiscard]] std::vector<std::string> prefixErrors(dom::Node oControlRoot, std::string_view sShown);

} // namespace halvane
