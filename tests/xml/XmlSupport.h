#pragma once

#include "support/FailureNumbers.h"
#include "xml/dom/Dom.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::test {

inline constexpr auto documentFailure = number(FailureNumber::DocumentFailure);

/// A document made from a text that must parse.
inline dom::DocumentPtr documentOf(std::string_view sXml) {
    auto oDocument = dom::Document::create();
    EXPECT_TRUE(oDocument->loadXML(sXml)) << oDocument->parseError().reason;
    return oDocument;
}

inline dom::Node element(dom::Document& document, std::string_view sName) {
    return document.createNode(static_cast<std::int32_t>(dom::NodeType::Element), sName, "");
}

inline dom::Node nodeOf(dom::Document& document, dom::NodeType type, std::string_view sName,
                        std::string_view sValue) {
    dom::Node oNode = document.createNode(static_cast<std::int32_t>(type), sName, "");
    oNode.setText(sValue);
    return oNode;
}

/// The names of the nodes from a list's position on.
inline std::vector<std::string> namesOf(dom::NodeList oNodes) {
    std::vector<std::string> aNames;
    for (dom::Node oNode = oNodes.nextNode(); oNode; oNode = oNodes.nextNode())
        aNames.emplace_back(oNode.nodeName());
    return aNames;
}

} // namespace halvane::test
