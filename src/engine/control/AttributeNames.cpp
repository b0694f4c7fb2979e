#include "engine/control/AttributeNames.h"

#include "engine/ExportState.h"
#include "engine/output/OutputElement.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace halvane {

namespace {

using dom::Node;

constexpr std::string_view sDeclaration = "xmlns:";
constexpr std::string_view sDefaultDeclaration = "xmlns";
constexpr std::string_view sXmlNamespace = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view sDeclarationsNamespace = "http://www.w3.org/2000/xmlns/";

constexpr std::string_view sUnreadable = ", so no parser that knows namespaces reads the document";

std::string_view prefixOf(std::string_view sName) {
    const auto lColon = sName.find(':');
    return lColon == std::string_view::npos ? std::string_view() : sName.substr(0, lColon);
}

std::string_view baseOf(std::string_view sName) {
    return sName.substr(sName.find(':') + 1);
}

/// What the prefix is bound to where the element stands, as far as it is written; "" for nothing.
std::string_view namespaceOf(Node oElement, std::string_view sPrefix) {
    if (sPrefix == "xml")
        return sXmlNamespace;
    const std::string sName = std::string(sDeclaration).append(sPrefix);
    for (; isElement(oElement); oElement = oElement.parentNode())
        if (const auto sNamespace = oElement.getAttribute(sName))
            return *sNamespace;
    return {};
}

/// The element's other attribute that has the same name once prefixes are namespaces; "" when none has.
std::string_view twinOf(Node oElement, std::string_view sName) {
    const std::string_view sNamespace = namespaceOf(oElement, prefixOf(sName));
    if (sNamespace.empty())
        return {};
    for (const Node oAttribute : oElement.attributes()) {
        const std::string_view sOther = oAttribute.nodeName();
        const std::string_view sPrefix = prefixOf(sOther);
        if (sOther != sName && baseOf(sOther) == baseOf(sName) && !sPrefix.empty() &&
            namespaceOf(oElement, sPrefix) == sNamespace)
            return sOther;
    }
    return {};
}

/// Why no parser that knows namespaces reads the declaration; "" when it does.
std::string declarationProblem(std::string_view sPrefix, std::string_view sNamespace) {
    const std::string sStart = "the prefix \"" + std::string(sPrefix) + "\" is bound to ";
    if (sNamespace.empty())
        return sStart + "an empty text" + std::string(sUnreadable);
    if ((sPrefix == "xml") != (sNamespace == sXmlNamespace) || sNamespace == sDeclarationsNamespace)
        return sStart + "\"" + std::string(sNamespace) + "\"" + std::string(sUnreadable);
    return "";
}

/// The same of a declaration without a prefix, which may be empty.
std::string defaultDeclarationProblem(std::string_view sNamespace) {
    if (sNamespace != sXmlNamespace && sNamespace != sDeclarationsNamespace)
        return "";
    return "the default namespace is \"" + std::string(sNamespace) + "\"" + std::string(sUnreadable);
}

/// Tells, at the control node, that the element's attribute of that name has a twin.
void tellTwin(ExportState& state, const ControlNode& control, Node oElement, std::string_view sName) {
    const std::string sTwin(twinOf(oElement, sName));
    if (sTwin.empty())
        return;
    std::string sWhat = "it";
    if (sName != control.sTagName)
        sWhat = "\"" + std::string(sName) + "\"";
    sWhat.append(" is the same attribute as \"").append(sTwin);
    sWhat.append("\" of the same element: both prefixes are bound to \"");
    sWhat.append(namespaceOf(oElement, prefixOf(sTwin))).append("\"").append(sUnreadable);
    state.tellFailure(control.oNode, Failure(FailureNumber::DuplicateKey, std::move(sWhat)));
}

void tellTaken(const ExportState& state, const ControlNode& control) {
    state.tellFailure(control.oNode, Failure(FailureNumber::DuplicateKey,
                                             "another node writes the attribute \"" + control.sTagName +
                                                 "\" of the same element, too; only the value written last "
                                                 "stays"));
}

/// Attributes with the prefix may be there already.
void checkDeclaration(ExportState& state, const ControlNode& control, Node oElement) {
    const bool bDefault = control.sTagName == sDefaultDeclaration;
    const std::string_view sPrefix =
        bDefault ? std::string_view() : std::string_view(control.sTagName).substr(sDeclaration.size());
    const std::string_view sNamespace = oElement.getAttribute(control.sTagName).value_or("");
    const std::string sProblem =
        bDefault ? defaultDeclarationProblem(sNamespace) : declarationProblem(sPrefix, sNamespace);
    if (!sProblem.empty())
        state.tellFailure(control.oNode, Failure(FailureNumber::DocumentFailure, sProblem));
    if (bDefault)
        return; // it is not that of attributes
    for (const Node oAttribute : oElement.attributes())
        if (prefixOf(oAttribute.nodeName()) == sPrefix)
            tellTwin(state, control, oElement, oAttribute.nodeName());
}

} // namespace

void markAttributeNames(const std::vector<ControlNode*>& aAttributes) {
    if (aAttributes.empty())
        return;
    std::unordered_map<const dom::Name*, bool> taken;                // whether all that take it may be absent
    std::unordered_map<std::string_view, const dom::Name*> prefixed; // by what follows the prefix
    for (ControlNode* const pAttribute : aAttributes) {
        const dom::Name* const pName = pAttribute->pName;
        if (pName == nullptr)
            continue;
        if (aAttributes.size() > 1) {
            const auto [first, bFirst] = taken.try_emplace(pName, pAttribute->bMayBeAbsent);
            if (!bFirst) {
                const bool bEither = pAttribute->bMayBeAbsent || first->second;
                pAttribute->attributeName = bEither ? AttributeName::Contested : AttributeName::Taken;
                first->second = first->second && pAttribute->bMayBeAbsent;
                continue;
            }
        }
        if (pName->sQualified == sDefaultDeclaration || pName->sQualified.starts_with(sDeclaration))
            pAttribute->attributeName = AttributeName::Declaration;
        else if (pName->nBase != 0 && !prefixed.emplace(pName->base(), pName).second)
            pAttribute->attributeName = AttributeName::SharesBase;
    }
}

void checkContestedName(const ExportState& state, const ControlNode& control, const OutputElement& oElement) {
    if (control.attributeName == AttributeName::Contested && state.options.pObserver != nullptr &&
        !oElement.isHeld() && oElement.node().getAttribute(control.sTagName))
        tellTaken(state, control);
}

void checkMarkedName(ExportState& state, const ControlNode& control, const OutputElement& oElement) {
    if (state.options.pObserver == nullptr)
        return;
    switch (control.attributeName) {
    case AttributeName::Plain:
        break;
    case AttributeName::Contested: // told before it is written
        break;
    case AttributeName::Taken:
        tellTaken(state, control);
        break;
    case AttributeName::Declaration:
        checkDeclaration(state, control, oElement.node());
        break;
    case AttributeName::SharesBase:
        tellTwin(state, control, oElement.node(), control.sTagName);
        break;
    }
}

} // namespace halvane
