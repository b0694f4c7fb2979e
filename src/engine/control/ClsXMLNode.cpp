#include "engine/control/ClsXMLNode.h"

#include "base/FindRow.h"

#include <array>
#include <utility>

namespace halvane {

namespace {

using Member = std::string_view ControlAttributes::*;
using Row = std::pair<std::string_view, Member>;
constexpr std::array<Row, 11> members{{
    {"DataSource", &ControlAttributes::sDataSource},
    {"DataFrame", &ControlAttributes::sDataFrame},
    {"DataProperty", &ControlAttributes::sDataProperty},
    {"Identity", &ControlAttributes::sIdentity},
    {"IdentityValue", &ControlAttributes::sIdentityValue},
    {"Entries", &ControlAttributes::sEntries},
    {"Target", &ControlAttributes::sTarget},
    {"DataLocation", &ControlAttributes::sDataLocation},
    {"LinkField", &ControlAttributes::sLinkField},
    {"MeasureField", &ControlAttributes::sMeasureField},
    {"DecimalPlace", &ControlAttributes::sDecimalPlace},
}};

} // namespace

void ClsXMLNode::setDOMNode(dom::Node oNode) {
    oNode_ = oNode;
    sName_ = {};
    own_ = {};
    if (!oNode)
        return;
    for (const dom::Node oAttribute : oNode.attributes()) {
        const std::string_view sName = oAttribute.nodeName();
        if (sName == "Name") {
            sName_ = oAttribute.nodeValue();
            continue;
        }
        const auto* pMember = findRow(members, sName, &Row::first);
        if (pMember != nullptr)
            own_.*(pMember->second) = oAttribute.nodeValue();
    }
}

std::string ClsXMLNode::TagName() const {
    std::string sName(sName_);
    std::erase(sName, ' ');
    return sName;
}

} // namespace halvane
