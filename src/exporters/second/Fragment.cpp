#include "exporters/second/Fragment.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "engine/second/Namespaces.h"

#include <string>

namespace halvane {

namespace {

using dom::Node;
using dom::NodeType;

void requirePrefix(const Namespaces& namespaces, std::string_view sName) {
    const std::string_view sPrefix = prefixOf(sName);
    if (!sPrefix.empty() && sPrefix != "xml" && !namespaces.find(sPrefix))
        throw Failure(FailureNumber::DocumentFailure,
                      "in the XML that the text is, nothing declares the prefix \"" + std::string(sPrefix) +
                          "\"");
}

/// The names of an element's attributes and of what stands in it.
void requireNames(Node oElement, Namespaces& namespaces) {
    namespaces.enter();
    namespaces.declareAll(oElement);
    requirePrefix(namespaces, oElement.nodeName());
    for (const Node oAttribute : oElement.attributes())
        if (!declaredPrefix(oAttribute.nodeName()))
            requirePrefix(namespaces, oAttribute.nodeName());
    for (Node oChild = oElement.firstChild(); oChild; oChild = oChild.nextSibling())
        if (isElement(oChild))
            requireNames(oChild, namespaces);
    namespaces.leave();
}

void declareFragment(Node oFragmentElement, const SecondNode& node, const OutputElement& oElement) {
    for (const auto& declaration : node.ofFragment)
        if (!oFragmentElement.getAttribute(declaration.pName->sQualified))
            oElement.setDeclaration(*declaration.pName, declaration.sAddress);
}

/// @param pOutermost of the children: declares what they need; nothing deeper down.
void copyChildren(Node oFrom, const OutputElement& oTo, dom::Document& oDocument,
                  const SecondNode* pOutermost) {
    for (Node oChild = oFrom.firstChild(); oChild; oChild = oChild.nextSibling()) {
        switch (oChild.nodeType()) {
        case NodeType::Element: {
            const OutputElement oElement = oTo.appendElement(*oDocument.findName(oChild.nodeName()));
            if (pOutermost != nullptr) {
                declareFragment(oChild, *pOutermost, oElement);
                oElement.setInline();
            }
            for (const Node oAttribute : oChild.attributes())
                oElement.setAttribute(*oDocument.findName(oAttribute.nodeName()), oAttribute.nodeValue());
            copyChildren(oChild, oElement, oDocument, nullptr);
            break;
        }
        case NodeType::CDataSection:
            oTo.appendCData(oChild.nodeValue());
            break;
        case NodeType::Text:
            oTo.appendText(oChild.nodeValue());
            break;
        default:
            break; // a comment or an instruction says nothing to the document's readers
        }
    }
}

void appendFragment(const SecondNode& node, const OutputElement& oElement, std::string_view sText,
                    dom::Document& oDocument) {
    const auto oFragment = dom::Document::create();
    const std::string sXml =
        "<fragment xml:space=\"preserve\"" + node.sScope + ">" + std::string(sText) + "</fragment>";
    if (!oFragment->loadXML(sXml))
        throw Failure(FailureNumber::DocumentFailure,
                      "the text is not well-formed XML: " +
                          std::string(trimBlanks(oFragment->parseError().reason)));
    const Node oRoot = oFragment->documentElement();
    Namespaces namespaces;
    requireNames(oRoot, namespaces);
    copyChildren(oRoot, oElement, oDocument, &node);
}

} // namespace

void appendTextAs(const SecondNode& node, const OutputElement& oElement, std::string_view sText,
                  dom::TextKind kind, dom::Document& oDocument) {
    switch (node.textAs) {
    case TextAs::Text:
        oElement.appendText(sText, kind);
        break;
    case TextAs::CData:
        oElement.appendCData(sText);
        break;
    case TextAs::Xml:
        appendFragment(node, oElement, sText, oDocument);
        break;
    }
}

} // namespace halvane
