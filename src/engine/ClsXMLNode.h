#pragma once

#include "xml/dom/Dom.h"

#include <string>
#include <string_view>

namespace halvane {

/// A view of one control element that reads its control attributes. An absent attribute, and every attribute
/// while no element is wrapped, reads as "". Texts are views into the control document.
class ClsXMLNode {
public:
    ClsXMLNode() = default;
    explicit ClsXMLNode(dom::Node oNode) : oNode_(oNode) {}

    [[nodiscard]] dom::Node DOMNode() const noexcept { return oNode_; }
    void setDOMNode(dom::Node oNode) noexcept { oNode_ = oNode; }

    [[nodiscard]] std::string_view DataSource() const { return attribute("DataSource"); }
    [[nodiscard]] std::string_view DataFrame() const { return attribute("DataFrame"); }
    [[nodiscard]] std::string_view Identity() const { return attribute("Identity"); }
    [[nodiscard]] std::string_view IdentityValue() const { return attribute("IdentityValue"); }
    [[nodiscard]] std::string_view DataProperty() const { return attribute("DataProperty"); }
    [[nodiscard]] std::string_view Entries() const { return attribute("Entries"); }
    [[nodiscard]] std::string_view Target() const { return attribute("Target"); }
    [[nodiscard]] std::string_view DataLocation() const { return attribute("DataLocation"); }
    /// The attribute "Name" without its blanks.
    [[nodiscard]] std::string TagName() const;
    [[nodiscard]] std::string_view LinkField() const { return attribute("LinkField"); }
    [[nodiscard]] std::string_view MeasureField() const { return attribute("MeasureField"); }
    [[nodiscard]] std::string_view DecimalPL() const { return attribute("DecimalPlace"); }

    /// Whether the node's own target is an attribute of its parent's output element.
    [[nodiscard]] bool targetsAttribute() const { return Target() == "Attribute"; }

private:
    [[nodiscard]] std::string_view attribute(std::string_view sName) const;

    dom::Node oNode_;
};

} // namespace halvane
