#include "telling/PrefixChecks.h"

#include "base/Text.h"
#include "engine/control/ClsXMLNode.h"
#include "telling/DocumentOrder.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace halvane {

namespace {

constexpr std::string_view sDeclaration = "xmlns:";

/// The root writes an element whatever it targets.
bool writesAttribute(dom::Node oElement) {
    return isElement(oElement.parentNode()) && ClsXMLNode(oElement).Target() == "Attribute";
}

/// The control element that writes the element which an attribute node's output goes to.
dom::Node ownerOf(dom::Node oAttribute) {
    dom::Node oOwner = oAttribute.parentNode();
    while (writesAttribute(oOwner))
        oOwner = oOwner.parentNode();
    return oOwner;
}

/// Whether neither the element nor one around it says where values come from.
bool hasNoSource(dom::Node oElement) {
    for (; isElement(oElement); oElement = oElement.parentNode()) {
        const auto sSource = oElement.getAttribute("DataSource");
        if (sSource && !sSource->empty())
            return trimBlanks(*sSource).empty();
    }
    return true;
}

std::string declarationProblem(dom::Node oElement, std::string_view sPrefix) {
    if (!writesAttribute(oElement))
        return "only an attribute declares a prefix; add Target=\"Attribute\"";
    if (sPrefix == "xmlns")
        return "no document may declare the prefix \"xmlns\"; use another one";
    if (hasNoSource(oElement))
        return fmt::format(
            "without a DataSource its value is empty, which declares nothing; add a DataSource "
            "that yields the address of the namespace \"{}\"",
            sPrefix);
    return "";
}

} // namespace

void PrefixChecks::collect() {
    bCollected_ = true;
    for (dom::Node oNode = oRoot_; oNode; oNode = nextInDocument(oNode, oRoot_)) {
        if (!isElement(oNode) || oNode.getAttribute("Name").value_or("").find(':') == std::string_view::npos)
            continue;
        const std::string sTagName = ClsXMLNode(oNode).TagName();
        if (sTagName.starts_with(sDeclaration) && writesAttribute(oNode))
            declared_[ownerOf(oNode).data()].push_back(sTagName.substr(sDeclaration.size()));
    }
}

bool PrefixChecks::isDeclared(dom::Node oElement, std::string_view sPrefix) {
    if (sPrefix == "xml")
        return true;
    if (!bCollected_)
        collect();
    for (; isElement(oElement) && !declared_.empty(); oElement = oElement.parentNode()) {
        const auto pDeclared = declared_.find(oElement.data());
        if (pDeclared != declared_.end() &&
            std::find(pDeclared->second.begin(), pDeclared->second.end(), sPrefix) != pDeclared->second.end())
            return true;
    }
    return false;
}

std::string PrefixChecks::problem(dom::Node oElement) {
    const std::string_view sGiven = oElement.getAttribute("Name").value_or("");
    if (sGiven.find(':') == std::string_view::npos)
        return "";
    const std::string sProblem = problemOf(oElement, ClsXMLNode(oElement).TagName());
    return sProblem.empty()
               ? ""
               : fmt::format("Name=\"{}\" of <{}>: {}", shortened(sGiven, 40), oElement.nodeName(), sProblem);
}

std::string PrefixChecks::problemOf(dom::Node oElement, std::string_view sTagName) {
    const auto lColon = sTagName.find(':');
    const std::string_view sPrefix = sTagName.substr(0, lColon);
    if (sPrefix == "xmlns")
        return declarationProblem(oElement, sTagName.substr(lColon + 1));
    if (isDeclared(oElement, sPrefix))
        return "";
    return fmt::format(
        "nothing declares the prefix \"{0}\"; leave it out, or give this element or one around "
        "it a node Name=\"xmlns:{0}\" Target=\"Attribute\" whose value is the namespace",
        sPrefix);
}

std::vector<std::string> prefixErrors(dom::Node oControlRoot, std::string_view sShown) {
    PrefixChecks checks(oControlRoot);
    std::vector<std::string> errors;
    for (dom::Node oNode = oControlRoot; oNode; oNode = nextInDocument(oNode, oControlRoot)) {
        const std::string sProblem = isElement(oNode) ? checks.problem(oNode) : "";
        if (!sProblem.empty())
            errors.push_back(fmt::format("{}:{}: error: {}", sShown, oNode.line(), sProblem));
    }
    return errors;
}

} // namespace halvane
