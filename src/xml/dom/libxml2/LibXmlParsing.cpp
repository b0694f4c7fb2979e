// Parsing with libxml2: straight to our tree, and over the library's where there is a document type.

#include "xml/dom/TreeBuilder.h"
#include "xml/dom/Width.h"
#include "xml/dom/libxml2/LibXmlDecoding.h"
#include "xml/dom/libxml2/LibXmlDirect.h"
#include "xml/dom/libxml2/LibXmlErrors.h"
#include "xml/dom/libxml2/LibXmlGrowth.h"
#include "xml/dom/libxml2/LibXmlTree.h"

#include <libxml/SAX2.h>
#include <libxml/valid.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <new>
#include <optional>

namespace halvane::dom {

namespace libxml {

std::uint32_t countLineFeeds(std::string_view sText) noexcept {
    std::uint32_t nCount = 0;
    for (auto n = sText.find('\n'); n != std::string_view::npos; n = sText.find('\n', n + 1))
        ++nCount;
    return nCount;
}

std::uint32_t linesOfStartTag(const xmlParserInput& input) noexcept {
    const auto nRead = static_cast<std::size_t>(input.cur - input.base);
    const void* const pFound = ::memrchr(input.base, '<', nRead);
    const auto* const pStart = pFound == nullptr ? input.base : static_cast<const xmlChar*>(pFound);
    return countLineFeeds(view(pStart, static_cast<int>(input.cur - pStart)));
}

void refuse(xmlParserCtxt& parser, LoadError number, std::string_view sBefore, std::string_view sName,
            std::string_view sBehind) noexcept {
    parser.wellFormed = 0;
    Parse& parse = parseOf(&parser);
    if (parse.refusal.errorCode != 0)
        return;
    parse.refusal.errorCode = static_cast<std::int32_t>(number);
    try {
        parse.refusal.reason.append(sBefore).append(sName).append(sBehind);
    } catch (const std::bad_alloc&) {
        parse.refusal.reason.clear(); // the number alone tells
    }
    if (parse.pParser->input != nullptr) {
        parse.refusal.line = static_cast<std::uint32_t>(parse.pParser->input->line);
        parse.refusal.column = static_cast<std::uint32_t>(parse.pParser->input->col);
    }
}

namespace {

using ParserPtr = Owned<xmlParserCtxt, xmlFreeParserCtxt>;

// ---- Line numbers
//
// The library counts lines where a construct ends, and only to 65535. The true line goes into the new node's
// private pointer as a number, until the node of our tree takes its place. Contents of entities get none.

xmlNode* newestNode(const xmlParserCtxt& parser) noexcept {
    if (parser.inSubset != 0)
        return nullptr;
    if (parser.node != nullptr)
        return parser.node->last;
    return parser.myDoc == nullptr ? nullptr : parser.myDoc->last;
}

bool isOutsideEntities(xmlParserCtxt& parser) noexcept {
    return parser.input != nullptr && parseOf(&parser).pParser == &parser && parser.inputNr == 1;
}

void keepLine(xmlParserCtxt& parser, xmlNode* pNode, std::uint32_t nLinesBack) noexcept {
    if (pNode == nullptr || !isOutsideEntities(parser))
        return;
    const auto nLine = static_cast<std::uintptr_t>(parser.input->line) - nLinesBack;
    pNode->_private = reinterpret_cast<void*>(nLine); // NOLINT(performance-no-int-to-ptr)
}

void onStartElement(void* pContext, const xmlChar* pName, const xmlChar* pPrefix, const xmlChar* pUri,
                    int nNamespaces, const xmlChar** ppNamespaces, int nAttributes, int nDefaulted,
                    const xmlChar** ppAttributes) noexcept {
    auto& parser = *static_cast<xmlParserCtxt*>(pContext);
    if (!growByDefaults(parser, nAttributes, nDefaulted, ppAttributes))
        return;
    const xmlNode* const pBefore = parser.node;
    if (!acceptDepth(parser, static_cast<std::size_t>(parser.nodeNr)) ||
        !acceptDeclarations(parser, nNamespaces))
        return;
    xmlSAX2StartElementNs(pContext, pName, pPrefix, pUri, nNamespaces, ppNamespaces, nAttributes, nDefaulted,
                          ppAttributes);
    if (parser.node != pBefore && parser.input != nullptr)
        keepLine(parser, parser.node, linesOfStartTag(*parser.input));
}

void onEndElement(void* pContext, const xmlChar* pName, const xmlChar* pPrefix,
                  const xmlChar* pUri) noexcept {
    auto& parser = *static_cast<xmlParserCtxt*>(pContext);
    for (const xmlNs* p = parser.node == nullptr ? nullptr : parser.node->nsDef; p != nullptr; p = p->next)
        leaveDeclarations(parser, 1);
    xmlSAX2EndElementNs(pContext, pName, pPrefix, pUri);
}

void onCharacters(void* pContext, const xmlChar* pText, int nSize) noexcept {
    auto& parser = *static_cast<xmlParserCtxt*>(pContext);
    const xmlNode* const pBefore = newestNode(parser);
    xmlSAX2Characters(pContext, pText, nSize);
    if (xmlNode* const pNode = newestNode(parser); pNode != pBefore)
        keepLine(parser, pNode, countLineFeeds(view(pText, nSize)));
}

void onCData(void* pContext, const xmlChar* pText, int nSize) noexcept {
    auto& parser = *static_cast<xmlParserCtxt*>(pContext);
    const xmlNode* const pBefore = newestNode(parser);
    xmlSAX2CDataBlock(pContext, pText, nSize);
    if (xmlNode* const pNode = newestNode(parser); pNode != pBefore)
        keepLine(parser, pNode, countLineFeeds(view(pText, nSize)));
}

void onComment(void* pContext, const xmlChar* pText) noexcept {
    auto& parser = *static_cast<xmlParserCtxt*>(pContext);
    xmlSAX2Comment(pContext, pText);
    keepLine(parser, newestNode(parser), countLineFeeds(view(pText)));
}

void onInstruction(void* pContext, const xmlChar* pTarget, const xmlChar* pData) noexcept {
    auto& parser = *static_cast<xmlParserCtxt*>(pContext);
    xmlSAX2ProcessingInstruction(pContext, pTarget, pData);
    keepLine(parser, newestNode(parser), countLineFeeds(view(pData)));
}

// ---- Width and depth

void refuseDepth(xmlParserCtxt& parser, std::uint32_t nDeepest) noexcept {
    ParseError& refusal = parseOf(&parser).refusal;
    const bool bFirst = refusal.errorCode == 0;
    refuse(parser, LoadError::TooDeep, depthReason, std::to_string(nDeepest), depthRemedy);
    if (bFirst && isOutsideEntities(parser)) {
        refusal.line -= linesOfStartTag(*parser.input); // where the element begins
        refusal.column = 0;
    }
    xmlStopParser(&parser);
}

void onEntityDeclaration(void* pContext, const xmlChar* pName, int nType, const xmlChar* pPublicId,
                         const xmlChar* pSystemId, xmlChar* pContent) noexcept {
    parseOf(pContext).bEntities = true;
    auto& parser = *static_cast<xmlParserCtxt*>(pContext);
    if (lineOfTooManyAttributes(view(pContent))) {
        refuseWidth(parser, attributesReason, mostAttributes);
        return;
    }
    xmlSAX2EntityDecl(pContext, pName, nType, pPublicId, pSystemId, pContent);
}

// ---- Nothing from outside

/// The library would look an entity that is withheld from it up by itself, and read it, in a document that is
/// well-formed so far: a refusal ends that.
xmlEntity* withhold(void* pContext, const xmlChar* pName) noexcept {
    refuse(*static_cast<xmlParserCtxt*>(pContext), LoadError::ExternalEntity, "the external entity \"",
           view(pName), "\" is not loaded");
    return nullptr;
}

xmlEntity* onEntity(void* pContext, const xmlChar* pName) noexcept {
    xmlEntity* const pEntity = xmlSAX2GetEntity(pContext, pName);
    const bool bOutside = pEntity != nullptr && pEntity->etype == XML_EXTERNAL_GENERAL_PARSED_ENTITY;
    if (bOutside)
        return withhold(pContext, pName);
    if (pEntity != nullptr && pEntity->etype == XML_INTERNAL_GENERAL_ENTITY)
        growByCopy(*static_cast<xmlParserCtxt*>(pContext), *pEntity);
    return pEntity;
}

xmlEntity* onParameterEntity(void* pContext, const xmlChar* pName) noexcept {
    xmlEntity* const pEntity = xmlSAX2GetParameterEntity(pContext, pName);
    if (pEntity == nullptr)
        return nullptr;
    if (pEntity->etype == XML_EXTERNAL_PARAMETER_ENTITY)
        return withhold(pContext, pName);
    return growByParameter(*static_cast<xmlParserCtxt*>(pContext), *pEntity) ? pEntity : nullptr;
}

void onExternalSubset(void*, const xmlChar*, const xmlChar*, const xmlChar*) noexcept {}

// ---- Errors

void keepFirst(ParseError& kept, const xmlError& error) noexcept {
    if (kept.errorCode != 0)
        return;
    kept.errorCode = error.code;
    try {
        kept.reason = oneLine(error.message);
    } catch (...) {
        kept.reason.clear();
    }
    // In a finished document the line lies with the node.
    const auto* const pNode = static_cast<const xmlNode*>(error.node);
    kept.line = pNode != nullptr && pNode->_private != nullptr
                    ? static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(pNode->_private))
                    : static_cast<std::uint32_t>(std::max(error.line, 0));
    kept.column = static_cast<std::uint32_t>(std::max(error.int2, 0));
}

void onError(void* pContext, xmlErrorPtr pError) noexcept {
    Parse& parse = parseOf(pContext);
    // An entity that only a part outside could declare is no more than a warning to the library.
    // Neither does it end at a breach of the namespace rules, nor call a text ill-formed that it cut off.
    const bool bIllFormed = pError->level == XML_ERR_FATAL || pError->code == XML_WAR_UNDECLARED_ENTITY ||
                            pError->code == XML_ERR_NO_MEMORY ||
                            (pError->level == XML_ERR_ERROR && pError->domain == XML_FROM_NAMESPACE);
    const bool bInvalid = parse.bValidating && pError->level >= XML_ERR_ERROR;
    if (!bIllFormed && !bInvalid)
        return;
    keepFirst(parse.error, *pError);
    // In a document type the library goes on behind an error, and where that is in many parameter entities it
    // may never come to an end.
    auto& parser = *static_cast<xmlParserCtxt*>(pContext);
    if (pError->level == XML_ERR_FATAL && parser.inSubset != 0)
        xmlStopParser(&parser);
}

// ---- Declarations

/// The library takes one that it found no memory to keep for one that is there already, and goes on.
void noteLostDeclaration(void* pContext) noexcept {
    xmlError error{};
    error.domain = XML_FROM_PARSER;
    error.code = XML_ERR_NO_MEMORY;
    error.level = XML_ERR_FATAL;
    onError(pContext, &error);
}

xmlDtd* internalSubset(void* pContext) noexcept {
    const auto& parser = *static_cast<const xmlParserCtxt*>(pContext);
    return parser.myDoc == nullptr ? nullptr : parser.myDoc->intSubset;
}

void onElementDeclaration(void* pContext, const xmlChar* pName, int lType,
                          xmlElementContent* pContent) noexcept {
    xmlSAX2ElementDecl(pContext, pName, lType, pContent);
    if (xmlGetDtdElementDesc(internalSubset(pContext), pName) == nullptr)
        noteLostDeclaration(pContext);
}

void onAttributeDeclaration(void* pContext, const xmlChar* pElement, const xmlChar* pName, int lType,
                            int lDefault, const xmlChar* pDefault, xmlEnumeration* pValues) noexcept {
    if (!acceptDeclaredAttribute(*static_cast<xmlParserCtxt*>(pContext), pElement)) {
        xmlFreeEnumeration(pValues);
        return;
    }
    xmlSAX2AttributeDecl(pContext, pElement, pName, lType, lDefault, pDefault, pValues);
    if (xmlGetDtdAttrDesc(internalSubset(pContext), pElement, pName) == nullptr)
        noteLostDeclaration(pContext);
}

void setCallbacks(xmlSAXHandler& sax) noexcept {
    sax.startElementNs = &onStartElement;
    sax.endElementNs = &onEndElement;
    sax.characters = &onCharacters;
    sax.ignorableWhitespace = &onCharacters;
    sax.cdataBlock = &onCData;
    sax.comment = &onComment;
    sax.processingInstruction = &onInstruction;
    sax.elementDecl = &onElementDeclaration;
    sax.attributeDecl = &onAttributeDeclaration;
    sax.entityDecl = &onEntityDeclaration;
    sax.getEntity = &onEntity;
    sax.getParameterEntity = &onParameterEntity;
    sax.externalSubset = &onExternalSubset;
    sax.serror = &onError;
}

ParserPtr makeParser(Parse& parse) {
    ParserPtr pParser(xmlNewParserCtxt());
    if (pParser == nullptr)
        throw std::bad_alloc();
    parse.pParser = pParser.get();
    pParser->_private = &parse;
    setCallbacks(*pParser->sax);
    return pParser;
}

DocPtr read(Parse& parse, std::string_view sBytes, bool bUtf8) {
    parse.nGrowthLimit = growthLimit(sBytes.size());
    // Default attributes come from the internal subset: the callbacks keep the external one out.
    const int nOptions = XML_PARSE_NOENT | XML_PARSE_DTDATTR | XML_PARSE_NONET | XML_PARSE_BIG_LINES |
                         (bUtf8 ? XML_PARSE_IGNORE_ENC : 0);
    DocPtr pDoc(xmlCtxtReadMemory(parse.pParser, sBytes.data(), static_cast<int>(sBytes.size()), nullptr,
                                  bUtf8 ? "UTF-8" : nullptr, nOptions));
    // The library takes a NUL for the end of the text.
    const xmlParserInput* const pInput = parse.pParser->input;
    if (pDoc != nullptr && parse.error.errorCode == 0 && pInput != nullptr && pInput->cur < pInput->end)
        refuse(*parse.pParser, LoadError::NulCharacter, nulReason);
    if (parse.refusal.errorCode != 0)
        parse.error = parse.refusal;
    else if (pDoc == nullptr && parse.error.errorCode == 0)
        parse.error = {XML_ERR_INTERNAL_ERROR, "the document cannot be parsed", 0, 0, {}};
    return pDoc;
}

/// A document without a document type is as valid as any.
void validate(Parse& parse, xmlDoc& doc) {
    const xmlDtd* const pDtd = doc.intSubset;
    if (pDtd == nullptr)
        return;
    // Whatever has a public identifier has one of the system, too.
    if (pDtd->SystemID != nullptr) {
        parse.error.errorCode = static_cast<std::int32_t>(LoadError::ExternalDocumentType);
        parse.error.reason = "the document cannot be validated: the external document type \"" +
                             std::string(view(pDtd->SystemID)) + "\" is not loaded";
        return;
    }
    // The parser's own validator reports to the parser's callback; one of our own would report to whatever
    // the process has installed.
    parse.bValidating = true;
    if (xmlValidateDocument(&parse.pParser->vctxt, &doc) != 1 && parse.error.errorCode == 0)
        parse.error = {XML_DTD_CONTENT_ERROR, "the document does not keep to its document type", 0, 0, {}};
}

} // namespace

bool acceptDepth(xmlParserCtxt& parser, std::size_t nOpen) noexcept {
    const bool bGuarded = parseOf(&parser).bEntities;
    const std::uint32_t nDeepest = bGuarded ? deepestElementWithEntities : deepestElement;
    if (nOpen >= nDeepest && parser.input != nullptr) {
        refuseDepth(parser, nDeepest);
        return false;
    }
    // The library ends at its own depth otherwise, and at the end of a document of more than 10,000,000 bytes
    // that comes in a tag or in blanks. With this option it does without its guards against entities, too:
    // there are none.
    if (!bGuarded)
        parser.options |= static_cast<int>(XML_PARSE_HUGE);
    return true;
}

void refuseWidth(xmlParserCtxt& parser, std::string_view sReason, std::size_t nMost) noexcept {
    refuse(parser, LoadError::TooWide, sReason, std::to_string(nMost), widthRemedy);
    xmlStopParser(&parser);
}

bool acceptDeclarations(xmlParserCtxt& parser, int nNamespaces) noexcept {
    std::size_t& nInForce = parseOf(&parser).nDeclarations;
    nInForce += static_cast<std::size_t>(nNamespaces);
    if (nInForce <= mostDeclarations)
        return true;
    refuseWidth(parser, declarationsReason, mostDeclarations);
    return false;
}

std::string oneLine(const char* pMessage) {
    std::string sLine(pMessage == nullptr ? "" : pMessage);
    for (char& c : sLine)
        if (c == '\n' || c == '\r')
            c = ' ';
    const auto nEnd = sLine.find_last_not_of(' ');
    sLine.resize(nEnd == std::string::npos ? 0 : nEnd + 1);
    return sLine;
}

void initialise() {
    static std::once_flag once;
    std::call_once(once, [] { xmlInitParser(); });
}

} // namespace libxml

namespace {

/// @returns nothing, with nothing built, when the document has a document type.
std::optional<Parsed> parseDirectly(std::string_view sBytes, bool bUtf8, TreeBuilder& builder) {
    libxml::DirectTree tree(builder);
    libxml::Parse state;
    state.pDirect = &tree;
    const auto pParser = libxml::makeParser(state);
    libxml::DirectTree::setCallbacks(*pParser->sax);
    const auto pDoc = libxml::read(state, sBytes, bUtf8);
    if (state.error.errorCode == 0)
        tree.rethrow();
    if (tree.foundDocumentType()) {
        builder.discard();
        return std::nullopt;
    }
    if (state.error.errorCode == 0 && pDoc != nullptr)
        tree.finish(*pDoc);
    else
        builder.discard();
    return Parsed{std::move(state.error), nullptr};
}

Parsed parseOverLibraryTree(std::string_view sBytes, const ParseOptions& options, TreeBuilder& builder) {
    libxml::Parse state;
    const auto pParser = libxml::makeParser(state);
    auto pDoc = libxml::read(state, sBytes, options.bUtf8);
    if (options.bValidate && state.error.errorCode == 0)
        libxml::validate(state, *pDoc);
    if (state.error.errorCode != 0)
        return {std::move(state.error), nullptr};
    if (const auto nLine = libxml::buildTree(*pDoc, builder)) {
        builder.discard();
        return {tooDeep(deepestElement, *nLine), nullptr};
    }
    return {{}, libxml::mirrorOf(std::move(pDoc))};
}

} // namespace

Parsed parse(std::string_view sBytes, const ParseOptions& options, TreeBuilder& builder) {
    libxml::initialise();
    const libxml::ErrorScope errors;
    const auto sHidden = options.bUtf8 ? std::nullopt : libxml::hiddenTextOf(sBytes);
    if (const auto nLine = lineOfTooManyAttributes(sHidden ? std::string_view(*sHidden) : sBytes))
        return {tooManyAttributes(*nLine), nullptr};
    // A document without a document type is as valid as any.
    auto parsed = parseDirectly(sBytes, options.bUtf8, builder);
    errors.requireMemory();
    if (!parsed)
        parsed = parseOverLibraryTree(sBytes, options, builder);
    errors.requireMemory();
    return std::move(*parsed);
}

} // namespace halvane::dom
