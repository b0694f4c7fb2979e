// From libxml2's parser to our tree, without a tree of the library's.

#include "xml/dom/libxml2/LibXmlDirect.h"

#include "xml/dom/Characters.h"
#include "xml/dom/TreeBuilder.h"

#include <libxml/SAX2.h>

namespace halvane::dom::libxml {

/// What the library calls. No exception passes through it: the first one stops the parser.
struct DirectTree::Callbacks {
    template<class Step>
    static void take(void* pContext, Step&& step) noexcept {
        auto& parser = *static_cast<xmlParserCtxt*>(pContext);
        DirectTree& tree = *parseOf(pContext).pDirect;
        if (tree.pFailure_ != nullptr)
            return;
        try {
            step(tree, parser);
        } catch (...) {
            tree.pFailure_ = std::current_exception();
            xmlStopParser(&parser);
        }
    }

    static std::uint32_t line(const xmlParserCtxt& parser) noexcept {
        return parser.input == nullptr ? 0 : static_cast<std::uint32_t>(parser.input->line);
    }

    static void startElement(void* pContext, const xmlChar* pName, const xmlChar* pPrefix, const xmlChar*,
                             int nNamespaces, const xmlChar** ppNamespaces, int nAttributes, int,
                             const xmlChar** ppAttributes) noexcept {
        take(pContext, [&](DirectTree& tree, xmlParserCtxt& parser) {
            if (!acceptDepth(parser, tree.depth()) || !acceptDeclarations(parser, nNamespaces))
                return;
            tree.startElement(parser, pName, pPrefix);
            tree.declareNamespaces(ppNamespaces, nNamespaces);
            tree.addAttributes(ppAttributes, nAttributes);
        });
    }

    static void endElement(void* pContext, const xmlChar*, const xmlChar*, const xmlChar*) noexcept {
        take(pContext, [](DirectTree& tree, xmlParserCtxt& parser) { tree.endElement(parser); });
    }

    static void characters(void* pContext, const xmlChar* pText, int nSize) noexcept {
        take(pContext, [&](DirectTree& tree, const xmlParserCtxt& parser) {
            tree.characters(Kind::Text, view(pText, nSize), line(parser));
        });
    }

    static void cData(void* pContext, const xmlChar* pText, int nSize) noexcept {
        take(pContext, [&](DirectTree& tree, const xmlParserCtxt& parser) {
            tree.characters(Kind::CData, view(pText, nSize), line(parser));
        });
    }

    static void comment(void* pContext, const xmlChar* pText) noexcept {
        take(pContext,
             [&](DirectTree& tree, const xmlParserCtxt& parser) { tree.comment(view(pText), line(parser)); });
    }

    static void instruction(void* pContext, const xmlChar* pTarget, const xmlChar* pData) noexcept {
        take(pContext, [&](DirectTree& tree, const xmlParserCtxt& parser) {
            tree.instruction(view(pTarget), view(pData), line(parser));
        });
    }

    static void documentType(void* pContext, const xmlChar*, const xmlChar*, const xmlChar*) noexcept {
        take(pContext, [](DirectTree& tree, xmlParserCtxt& parser) {
            tree.bDocumentType_ = true;
            xmlStopParser(&parser);
        });
    }
};

void DirectTree::setCallbacks(xmlSAXHandler& sax) noexcept {
    sax.startElementNs = &Callbacks::startElement;
    sax.endElementNs = &Callbacks::endElement;
    sax.characters = &Callbacks::characters;
    sax.ignorableWhitespace = &Callbacks::characters;
    sax.cdataBlock = &Callbacks::cData;
    sax.comment = &Callbacks::comment;
    sax.processingInstruction = &Callbacks::instruction;
    sax.internalSubset = &Callbacks::documentType;
}

void DirectTree::finish(const xmlDoc& doc) {
    // -1: there is no XML declaration.
    if (doc.standalone != -1)
        builder_.declaration(declarationOf(doc));
}

const Name& DirectTree::name(const xmlChar* pPrefix, const xmlChar* pLocal) {
    constexpr std::uintptr_t spread = 0x9E3779B97F4A7C15; // short names lie a few bytes apart
    constexpr unsigned shift = 56;
    const std::size_t nPlace = (reinterpret_cast<std::uintptr_t>(pLocal) * spread) >> shift;
    KnownName& known = aKnown_.at(nPlace);
    if (known.pLocal == pLocal && known.pPrefix == pPrefix)
        return *known.pName;
    sName_.clear();
    if (pPrefix != nullptr)
        sName_.append(view(pPrefix)).append(":");
    sName_.append(view(pLocal));
    known = {pPrefix, pLocal, &builder_.name(sName_)};
    return *known.pName;
}

void DirectTree::startElement(const xmlParserCtxt& parser, const xmlChar* pName, const xmlChar* pPrefix) {
    flush();
    const std::uint32_t nLines = parser.input == nullptr ? 0 : linesOfStartTag(*parser.input);
    builder_.startElement(name(pPrefix, pName), Callbacks::line(parser) - nLines);
    aOpen_.push_back({aOpen_.back().bPreserves, 0});
}

void DirectTree::declareNamespaces(const xmlChar* const* ppNamespaces, int nCount) {
    aOpen_.back().nDeclarations = static_cast<std::size_t>(nCount);
    for (int n = 0; n < nCount; ++n) {
        const xmlChar* const pPrefix = ppNamespaces[2 * n];
        sName_ = "xmlns";
        if (pPrefix != nullptr)
            sName_.append(":").append(view(pPrefix));
        builder_.attribute(sName_, view(ppNamespaces[2 * n + 1]));
    }
}

void DirectTree::addAttributes(const xmlChar* const* ppAttributes, int nCount) {
    constexpr int valuesPerAttribute = 5; // name, prefix, URI, begin and end of the value
    for (int n = 0; n < nCount; ++n) {
        const xmlChar* const* const ppValues = ppAttributes + n * valuesPerAttribute;
        const std::string_view sValue = view(ppValues[3], static_cast<int>(ppValues[4] - ppValues[3]));
        builder_.attribute(name(ppValues[1], ppValues[0]), sValue);
        if (ppValues[1] != nullptr && view(ppValues[1]) == "xml" && view(ppValues[0]) == "space")
            aOpen_.back().bPreserves = sValue == "preserve";
    }
}

void DirectTree::endElement(xmlParserCtxt& parser) {
    flush();
    builder_.endElement();
    leaveDeclarations(parser, aOpen_.back().nDeclarations);
    aOpen_.pop_back();
}

/// The library gives a text in pieces; CDATA sections that touch are one.
void DirectTree::characters(Kind kind, std::string_view sText, std::uint32_t nLineAtEnd) {
    if (pending_.bThere && pending_.kind != kind)
        flush();
    if (!pending_.bThere) {
        pending_.bThere = true;
        pending_.kind = kind;
        pending_.nLine = nLineAtEnd - countLineFeeds(sText);
    }
    pending_.sText.append(sText);
}

void DirectTree::comment(std::string_view sText, std::uint32_t nLineAtEnd) {
    flush();
    builder_.characters(Kind::Comment, sText, nLineAtEnd - countLineFeeds(sText));
}

void DirectTree::instruction(std::string_view sTarget, std::string_view sData, std::uint32_t nLineAtEnd) {
    flush();
    builder_.instruction(sTarget, sData, nLineAtEnd - countLineFeeds(sData));
}

/// White space between elements goes.
void DirectTree::flush() {
    if (!pending_.bThere)
        return;
    pending_.bThere = false;
    if (pending_.kind == Kind::CData || aOpen_.back().bPreserves || !isXmlWhiteSpace(pending_.sText))
        builder_.characters(pending_.kind, pending_.sText, pending_.nLine);
    pending_.sText.clear();
}

} // namespace halvane::dom::libxml
