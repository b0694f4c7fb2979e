// Parsing with MSXML.

#include "base/com/Apartment.h"
#include "base/com/HResult.h"
#include "base/com/Variant.h"
#include "xml/dom/Depth.h"
#include "xml/dom/msxml/Msxml.h"
#include "xml/dom/msxml/MsxmlSource.h"
#include "xml/dom/msxml/MsxmlTree.h"

namespace halvane::dom {

namespace msxml {

namespace {

/// @returns whether the document was loaded; else its parse error tells why not.
bool load(IXMLDOMDocument2& document, const Source& source) {
    VARIANT_BOOL bLoaded = VARIANT_FALSE;
    const Bstr sText(source.withoutEncoding());
    return SUCCEEDED(document.loadXML(sText.get(), &bLoaded)) && bLoaded != VARIANT_FALSE;
}

/// What the source does not show is not there: the limits are MSXML's own, too, as far as its version has
/// them.
void limit(IXMLDOMDocument2& document, const Source& source) {
    VARIANT value{};
    value.vt = VT_I4;
    value.lVal = static_cast<LONG>(deepestElement);
    setProperty(document, L"MaxElementDepth", value);
    if (source.documentType().empty())
        return;
    value.vt = VT_BOOL;
    value.boolVal = VARIANT_FALSE;
    setProperty(document, L"ProhibitDTD", value);
}

/// The document's own word, or one in its place: an error has a number and a reason.
ParseError whyNot(IXMLDOMDocument2& document) {
    ComPtr<IXMLDOMParseError> pError;
    ParseError error;
    if (SUCCEEDED(document.get_parseError(pError.put())) && pError)
        error = errorOf(*pError);
    if (error.errorCode == 0)
        error.errorCode = E_FAIL;
    if (error.reason.empty())
        error.reason = "the document cannot be parsed";
    return error;
}

ParseError brokenRules(IXMLDOMDocument2& document, const Source& source) {
    if (source.documentType().empty())
        return {};
    if (!source.externalId().empty())
        return {static_cast<std::int32_t>(LoadError::ExternalDocumentType),
                "the document cannot be validated: the external document type \"" +
                    std::string(source.externalId()) + "\" is not loaded",
                0,
                0,
                {}};
    ComPtr<IXMLDOMParseError> pError;
    if (document.validate(pError.put()) == S_OK || !pError)
        return {};
    ParseError error = errorOf(*pError);
    if (error.reason.empty())
        error.reason = "the content does not keep to the document type";
    return error;
}

} // namespace

} // namespace msxml

Parsed parse(std::string_view sBytes, const ParseOptions& options, TreeBuilder& builder) {
    const msxml::Source source(sBytes, options.bUtf8);
    if (source.refusal().errorCode != 0)
        return {source.refusal(), nullptr};
    const com::Apartment apartment(com::Apartment::For::Components);
    const auto pDocument = msxml::createDocument();
    msxml::limit(*pDocument, source);
    if (!msxml::load(*pDocument, source))
        return {msxml::whyNot(*pDocument), nullptr};
    if (options.bValidate)
        if (ParseError error = msxml::brokenRules(*pDocument, source); error.errorCode != 0)
            return {std::move(error), nullptr};
    msxml::buildTree(*pDocument, source, builder);
    return {};
}

} // namespace halvane::dom
