#pragma once

#include "xml/dom/Dom.h"

#include <string>
#include <string_view>

namespace halvane {

/// The control attributes of one node; views into the control document, "" where absent.
struct ControlAttributes {
    std::string_view sDataSource;
    std::string_view sDataFrame;
    std::string_view sDataProperty;
    std::string_view sIdentity;
    std::string_view sIdentityValue;
    std::string_view sEntries;
    std::string_view sTarget;
    std::string_view sDataLocation;
    std::string_view sLinkField;
    std::string_view sMeasureField;
    std::string_view sDecimalPlace;
};

/// A view of one control element that reads its control attributes. An absent attribute, and every attribute
/// while no element is wrapped, reads as "". Texts are views into the control document.
class ClsXMLNode {
public:
    ClsXMLNode() = default;
    explicit ClsXMLNode(dom::Node oNode) { setDOMNode(oNode); }

    [[nodiscard]] dom::Node DOMNode() const noexcept { return oNode_; }
    /// Reads the element's attributes; later changes of them do not show.
    void setDOMNode(dom::Node oNode);

    [[nodiscard]] std::string_view DataSource() const noexcept { return own_.sDataSource; }
    [[nodiscard]] std::string_view DataFrame() const noexcept { return own_.sDataFrame; }
    [[nodiscard]] std::string_view Identity() const noexcept { return own_.sIdentity; }
    [[nodiscard]] std::string_view IdentityValue() const noexcept { return own_.sIdentityValue; }
    [[nodiscard]] std::string_view DataProperty() const noexcept { return own_.sDataProperty; }
    [[nodiscard]] std::string_view Entries() const noexcept { return own_.sEntries; }
    [[nodiscard]] std::string_view Target() const noexcept { return own_.sTarget; }
    [[nodiscard]] std::string_view DataLocation() const noexcept { return own_.sDataLocation; }
    /// The attribute "Name" without its blanks.
    [[nodiscard]] std::string TagName() const;
    [[nodiscard]] std::string_view LinkField() const noexcept { return own_.sLinkField; }
    [[nodiscard]] std::string_view MeasureField() const noexcept { return own_.sMeasureField; }
    [[nodiscard]] std::string_view DecimalPL() const noexcept { return own_.sDecimalPlace; }

    /// All of them but the name.
    [[nodiscard]] const ControlAttributes& attributes() const noexcept { return own_; }

private:
    dom::Node oNode_;
    std::string_view sName_;
    ControlAttributes own_;
};

} // namespace halvane
