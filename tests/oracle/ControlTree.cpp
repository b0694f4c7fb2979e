#include "oracle/ControlTree.h"

#include <algorithm>

namespace halvane::oracle {

namespace {

std::string escaped(std::string_view sValue) {
    std::string sText;
    for (const char c : sValue) {
        if (c == '&')
            sText += "&amp;";
        else if (c == '<')
            sText += "&lt;";
        else if (c == '"')
            sText += "&quot;";
        else
            sText += c;
    }
    return sText;
}

struct Writer {
    ControlPartTexts& parts;
    std::string sText = {};
    std::uint32_t nLine = 1;

    void endLine() {
        sText += '\n';
        ++nLine;
    }

    void write(ControlNode& node) {
        node.nLine = nLine;
        if (node.kind == ControlNode::Kind::Comment) {
            sText += "<!-- a remark -->";
            endLine();
            return;
        }
        if (node.kind == ControlNode::Kind::Text) {
            node.nLine = nLine - 1; // it begins with the line break before it
            sText += "stray";
            endLine();
            return;
        }
        sText += "<n";
        for (const auto& [sName, sValue] : node.aAttributes)
            sText += " " + sName + "=\"" + escaped(sValue) + "\"";
        const bool bContent = !node.aChildren.empty() && !node.has("h:Include");
        sText += bContent ? ">" : "/>";
        endLine();
        if (!node.aChildren.empty() && !bContent)
            writePart(node);
        if (!bContent)
            return;
        for (ControlNode& child : node.aChildren)
            write(child);
        sText += "</n>";
        endLine();
    }
    void writePart(ControlNode& node) const {
        Writer part{parts};
        part.write(node.aChildren.front());
        parts[node.get("h:Include")] = part.sText;
    }
};

} // namespace

std::string ControlNode::get(std::string_view sName) const {
    const auto found = std::find_if(aAttributes.begin(), aAttributes.end(),
                                    [sName](const auto& attribute) { return attribute.first == sName; });
    return found == aAttributes.end() ? std::string() : found->second;
}

void ControlNode::set(std::string_view sName, std::string_view sValue) {
    const auto found = std::find_if(aAttributes.begin(), aAttributes.end(),
                                    [sName](const auto& attribute) { return attribute.first == sName; });
    if (found != aAttributes.end())
        aAttributes.erase(found);
    if (!sValue.empty())
        aAttributes.emplace_back(sName, sValue);
}

bool ControlNode::has(std::string_view sName) const {
    return std::any_of(aAttributes.begin(), aAttributes.end(),
                       [sName](const auto& attribute) { return attribute.first == sName; });
}

void ControlNode::put(std::string_view sName, std::string_view sValue) {
    set(sName, "");
    aAttributes.emplace_back(sName, sValue);
}

std::string ControlNode::outputName() const {
    std::string sName = get("Name");
    sName.erase(std::remove(sName.begin(), sName.end(), ' '), sName.end());
    return sName;
}

std::string writeControlFile(ControlNode& root, ControlPartTexts* pParts) {
    ControlPartTexts unwanted;
    Writer writer{pParts == nullptr ? unwanted : *pParts};
    writer.write(root);
    return writer.sText;
}

std::size_t countNodes(const ControlNode& node) {
    std::size_t nCount = 1;
    for (const ControlNode& child : node.aChildren)
        nCount += countNodes(child);
    return nCount;
}

std::vector<const ControlNode*> controlChildren(const ControlNode& node, bool bIgnoreComments) {
    std::vector<const ControlNode*> aChildren;
    for (const ControlNode& child : node.aChildren) {
        if (!bIgnoreComments || child.kind != ControlNode::Kind::Comment)
            aChildren.push_back(&child);
    }
    return aChildren;
}

} // namespace halvane::oracle
