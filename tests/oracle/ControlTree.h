#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane::oracle {

/// A node of a control file as it was thought out, before it is a text.
struct ControlNode {
    enum class Kind { Element, Comment, Text };

    Kind kind = Kind::Element;
    std::vector<std::pair<std::string, std::string>> aAttributes;
    std::vector<ControlNode> aChildren;
    std::uint32_t nLine = 0; ///< set by writeControlFile

    /// "" for an attribute that the node lacks.
    [[nodiscard]] std::string get(std::string_view sName) const;
    /// Replaces the attribute, or adds it behind the others; "" takes it away.
    void set(std::string_view sName, std::string_view sValue);
    [[nodiscard]] bool has(std::string_view sName) const;
    /// The same as set, but "" is a value, too.
    void put(std::string_view sName, std::string_view sValue);
    /// The attribute "Name" without its blanks.
    [[nodiscard]] std::string outputName() const;
    [[nodiscard]] bool targetsAttribute() const { return get("Target") == "Attribute"; }
};

/// The texts of parts, by the paths that include them.
using ControlPartTexts = std::map<std::string, std::string>;

/// The text of the control file, one node a line; tells every node its line.
/// @param pParts gets the parts: what stands in an element with h:Include is the root of one, and stands in
/// the text of its own alone.
[[nodiscard]] std::string writeControlFile(ControlNode& root, ControlPartTexts* pParts = nullptr);

[[nodiscard]] std::size_t countNodes(const ControlNode& node);

/// The children of a node that are control nodes.
[[nodiscard]] std::vector<const ControlNode*> controlChildren(const ControlNode& node, bool bIgnoreComments);

} // namespace halvane::oracle
