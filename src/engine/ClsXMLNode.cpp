#include "engine/ClsXMLNode.h"

#include <algorithm>

namespace halvane {

std::string_view ClsXMLNode::attribute(std::string_view sName) const {
    return oNode_ ? oNode_.getAttribute(sName).value_or(std::string_view()) : std::string_view();
}

std::string ClsXMLNode::TagName() const {
    std::string sName(attribute("Name"));
    std::erase(sName, ' ');
    return sName;
}

} // namespace halvane
