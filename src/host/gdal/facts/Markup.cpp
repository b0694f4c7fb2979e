#include "host/gdal/facts/Markup.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "xml/dom/Depth.h"

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

#include <fstream>
#include <iterator>
#include <limits>

namespace halvane::host::gdal {

namespace {

constexpr std::size_t nMostErrors = 10;

std::string contentOfFile(const std::string& sPath) {
    std::ifstream stream(sPath, std::ios::binary);
    std::string sContent(std::istreambuf_iterator<char>(stream), {});
    if (!stream || sContent.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw Failure(FailureNumber::PathFileAccess, "The file \"" + sPath + "\" cannot be read");
    return sContent;
}

std::string describe(const std::string& sPath, const xmlError& error) {
    std::string sMessage = error.message == nullptr ? "it is not well-formed" : error.message;
    while (!sMessage.empty() && (sMessage.back() == '\n' || sMessage.back() == ' '))
        sMessage.pop_back();
    // The library advises its caller, not who wrote the document.
    if (sMessage.starts_with("Excessive depth"))
        sMessage = std::string(dom::depthReason).append("256").append(dom::depthRemedy);
    return sPath + ", line " + std::to_string(error.line) + ": " + replaceAll(sMessage, "\n", " ");
}

struct Errors {
    const std::string& sPath;
    std::vector<std::string> texts;
};

void collect(void* pData, const xmlError* pError) {
    auto& errors = *static_cast<Errors*>(pData);
    if (pError == nullptr || pError->level < XML_ERR_ERROR || errors.texts.size() >= nMostErrors)
        return;
    try {
        errors.texts.push_back(describe(errors.sPath, *pError));
    } catch (const std::exception&) {
        // The caller is a C library; the document counts as invalid without the text.
    }
}

const xmlChar* toXml(const char* pText) {
    return reinterpret_cast<const xmlChar*>(pText);
}

const char* fromXml(const xmlChar* pText) {
    return reinterpret_cast<const char*>(pText);
}

// The library's own functions of this kind take a text that finds no memory for none.
std::string textFrom(const xmlNode* pFirst) {
    std::string sText;
    for (const xmlNode* pNode = pFirst; pNode != nullptr; pNode = pNode->next)
        if ((pNode->type == XML_TEXT_NODE || pNode->type == XML_CDATA_SECTION_NODE) &&
            pNode->content != nullptr)
            sText += fromXml(pNode->content);
    return sText;
}

bool declaresAnything(const xmlDtd* pType) {
    return pType != nullptr && pType->children != nullptr;
}

} // namespace

std::string_view MarkupElement::name() const {
    return fromXml(pNode_->name);
}

long MarkupElement::line() const {
    return xmlGetLineNo(pNode_);
}

std::optional<std::string> MarkupElement::attribute(const char* pName) const {
    const xmlAttr* pAttribute = xmlHasNsProp(pNode_, toXml(pName), nullptr);
    return pAttribute == nullptr ? std::nullopt : std::optional(textFrom(pAttribute->children));
}

std::string MarkupElement::content() const {
    return textFrom(pNode_->children);
}

std::vector<MarkupElement> MarkupElement::children() const {
    std::vector<MarkupElement> all;
    for (const xmlNode* pChild = pNode_->children; pChild != nullptr; pChild = pChild->next)
        if (pChild->type == XML_ELEMENT_NODE)
            all.emplace_back(pChild);
    return all;
}

std::vector<MarkupElement> MarkupElement::children(std::string_view sName) const {
    std::vector<MarkupElement> all = children();
    std::erase_if(all, [&](const MarkupElement& child) { return child.name() != sName; });
    return all;
}

std::optional<MarkupElement> MarkupElement::child(std::string_view sName) const {
    for (const xmlNode* pChild = pNode_->children; pChild != nullptr; pChild = pChild->next)
        if (pChild->type == XML_ELEMENT_NODE && fromXml(pChild->name) == sName)
            return MarkupElement(pChild);
    return std::nullopt;
}

std::string MarkupElement::contentOf(std::string_view sName) const {
    const auto element = child(sName);
    return element ? element->content() : std::string();
}

MarkupDocument parseMarkup(const std::string& sPath) {
    return parseMarkupText(contentOfFile(sPath), sPath);
}

MarkupDocument parseMarkupText(const std::string& sContent, const std::string& sPath, DocumentTypes allowed) {
    const Owned<xmlParserCtxt, xmlFreeParserCtxt> pContext(xmlNewParserCtxt());
    if (pContext == nullptr)
        throw Failure::of(FailureNumber::OutOfMemory);
    MarkupDocument pDocument(xmlCtxtReadMemory(
        pContext.get(), sContent.data(), static_cast<int>(sContent.size()), sPath.c_str(), nullptr,
        XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_BIG_LINES | XML_PARSE_NOCDATA));
    if (pDocument == nullptr) {
        const xmlError* pError = xmlCtxtGetLastError(pContext.get());
        throw Failure(FailureNumber::HostFailure,
                      pError == nullptr ? sPath + ": it is not well-formed" : describe(sPath, *pError));
    }
    const xmlDtd* pType = pDocument->intSubset;
    const bool bRefused = allowed == DocumentTypes::Refused ? pType != nullptr : declaresAnything(pType);
    if (bRefused) {
        throw Failure(FailureNumber::HostFailure,
                      sPath + ": a document type declaration is not allowed here; remove the <!DOCTYPE ...>");
    }
    return pDocument;
}

void checkAgainst(std::string_view sSchema, xmlDoc& document, const std::string& sPath) {
    const Owned<xmlSchemaParserCtxt, xmlSchemaFreeParserCtxt> pParser(
        xmlSchemaNewMemParserCtxt(sSchema.data(), static_cast<int>(sSchema.size())));
    const Owned<xmlSchema, xmlSchemaFree> pSchema(pParser == nullptr ? nullptr
                                                                     : xmlSchemaParse(pParser.get()));
    const Owned<xmlSchemaValidCtxt, xmlSchemaFreeValidCtxt> pValidator(
        pSchema == nullptr ? nullptr : xmlSchemaNewValidCtxt(pSchema.get()));
    if (pValidator == nullptr)
        throw Failure(FailureNumber::InternalError, "The map document's schema cannot be used");
    Errors errors{sPath, {}};
    const auto pCollect = [](void* pData, xmlError* pError) { collect(pData, pError); };
    xmlSchemaSetValidStructuredErrors(pValidator.get(), pCollect, &errors);
    if (xmlSchemaValidateDoc(pValidator.get(), &document) == 0)
        return;
    std::string sAll;
    for (const std::string& sText : errors.texts)
        sAll += (sAll.empty() ? "" : "\n") + sText;
    throw Failure(FailureNumber::HostFailure, sAll.empty() ? sPath + ": it breaks the schema" : sAll);
}

} // namespace halvane::host::gdal
