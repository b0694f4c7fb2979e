#include "xml/dom/msxml/Msxml.h"

#include "base/com/HResult.h"
#include "base/com/Variant.h"

#include <algorithm>
#include <array>

namespace halvane::dom::msxml {

namespace {

constexpr IID documentInterface = {
    0x2933BF95, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

VARIANT yes() noexcept {
    VARIANT value{};
    value.vt = VT_BOOL;
    value.boolVal = VARIANT_TRUE;
    return value;
}

DocumentPtr newestDocument() {
    HRESULT hr = REGDB_E_CLASSNOTREG;
    for (const wchar_t* const pProgId :
         {L"Msxml2.DOMDocument.6.0", L"Msxml2.DOMDocument.4.0", L"Msxml2.DOMDocument.3.0"}) {
        CLSID classId{};
        DocumentPtr pDocument;
        hr = ::CLSIDFromProgID(pProgId, &classId);
        if (SUCCEEDED(hr))
            hr = ::CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, documentInterface,
                                    pDocument.putVoid());
        if (SUCCEEDED(hr))
            return pDocument;
    }
    throw com::failureOf(hr, "MSXML cannot be created");
}

std::string oneLine(std::string sText) {
    const auto bBreak = [](char c) { return c == '\r' || c == '\n'; };
    std::replace_if(sText.begin(), sText.end(), bBreak, ' ');
    const auto nEnd = sText.find_last_not_of(' ');
    sText.resize(nEnd == std::string::npos ? 0 : nEnd + 1);
    return sText;
}

} // namespace

DocumentPtr createDocument() {
    DocumentPtr pDocument = newestDocument();
    pDocument->put_async(VARIANT_FALSE);
    pDocument->put_validateOnParse(VARIANT_FALSE);
    pDocument->put_resolveExternals(VARIANT_FALSE);
    pDocument->put_preserveWhiteSpace(VARIANT_TRUE);
    setProperty(*pDocument, L"SelectionLanguage", "XPath");
    // Version 6 does both by itself, in its own measure.
    setProperty(*pDocument, L"ProhibitDTD", yes());
    VARIANT anyDepth{};
    anyDepth.vt = VT_I4;
    setProperty(*pDocument, L"MaxElementDepth", anyDepth);
    return pDocument;
}

bool setProperty(IXMLDOMDocument2& document, std::wstring_view sName, VARIANT value) noexcept {
    const BSTR sProperty = ::SysAllocStringLen(sName.data(), static_cast<UINT>(sName.size()));
    const HRESULT hr = document.setProperty(sProperty, value);
    ::SysFreeString(sProperty);
    return SUCCEEDED(hr);
}

bool setProperty(IXMLDOMDocument2& document, std::wstring_view sName, std::string_view sValue) {
    const Bstr sText(sValue);
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = sText.get();
    return setProperty(document, sName, value);
}

ParseError errorOf(IXMLDOMParseError& error) {
    ParseError result;
    LONG lCode = 0;
    LONG lLine = 0;
    LONG lColumn = 0;
    Bstr sReason;
    error.get_errorCode(&lCode);
    error.get_line(&lLine);
    error.get_linepos(&lColumn);
    error.get_reason(sReason.put());
    result.errorCode = static_cast<std::int32_t>(lCode);
    result.line = static_cast<std::uint32_t>(std::max(lLine, 0L));
    result.column = static_cast<std::uint32_t>(std::max(lColumn, 0L));
    result.reason = oneLine(sReason.utf8());
    return result;
}

DOMNodeType typeOf(IXMLDOMNode& node) {
    DOMNodeType type = NODE_INVALID;
    com::require(node.get_nodeType(&type), "the type of a node");
    return type;
}

std::string nameOf(IXMLDOMNode& node) {
    Bstr sName;
    com::require(node.get_nodeName(sName.put()), "the name of a node");
    return sName.utf8();
}

std::string valueOf(IXMLDOMNode& node) {
    com::Variant value;
    com::require(node.get_nodeValue(value.put()), "the value of a node");
    return value.get().vt == VT_BSTR ? com::utf8Of(value.get().bstrVal) : std::string();
}

NodePtr relative(IXMLDOMNode& node, Step fnStep) {
    NodePtr pRelative;
    com::require((node.*fnStep)(pRelative.put()), "a relative of a node");
    return pRelative;
}

} // namespace halvane::dom::msxml
