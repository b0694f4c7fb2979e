#include "component/com/SelectionPrefixes.h"

#include "base/com/Bstr.h"
#include "base/com/ComPtr.h"
#include "base/com/Variant.h"

#include <msxml2.h>

#include <string>

namespace halvane::server {

namespace {

// The compiler's libraries lack it.
constexpr IID documentWithProperties = {
    0x2933bf95, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};

/// Declarations as they stand in a start tag; "" when the client has set none.
std::string selectionNamespacesOf(IXMLDOMDocument& document) {
    const auto pDocument = com::ComPtr(&document).query<IXMLDOMDocument2>(documentWithProperties);
    com::Variant declarations;
    const com::Bstr sProperty(std::wstring_view(L"SelectionNamespaces"));
    if (!pDocument || FAILED(pDocument->getProperty(sProperty.get(), declarations.put())) ||
        V_VT(&declarations.get()) != VT_BSTR)
        return {};
    return com::utf8Of(V_BSTR(&declarations.get()));
}

} // namespace

void takeSelectionPrefixes(IXMLDOMDocument& document, dom::Document& copy) {
    const std::string sDeclarations = selectionNamespacesOf(document);
    auto oRoot = copy.documentElement();
    if (sDeclarations.empty() || !oRoot)
        return;
    const auto pTag = dom::Document::create();
    if (!pTag->loadXML("<tag " + sDeclarations + "/>"))
        return;
    for (const dom::Node oDeclaration : pTag->documentElement().attributes())
        if (oDeclaration.nodeName().starts_with("xmlns:") && !oRoot.getAttribute(oDeclaration.nodeName()))
            oRoot.setAttribute(oDeclaration.nodeName(), oDeclaration.nodeValue());
}

} // namespace halvane::server
