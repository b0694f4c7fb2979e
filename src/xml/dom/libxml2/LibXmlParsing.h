#pragma once

// What the two ways of parsing share: by the library's tree (LibXmlParsing.cpp), and straight to ours.

#include "xml/dom/Depth.h"
#include "xml/dom/libxml2/LibXml.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace halvane::dom::libxml {

class DirectTree;

/// One parse; what the library's callbacks find through the parser's private pointer. Parsers that the
/// library makes for the contents of entities share it.
struct Parse {
    xmlParserCtxt* pParser = nullptr;
    ParseError refusal; ///< of something outside the document
    ParseError error;   ///< the first one that makes the document ill-formed or invalid
    bool bValidating = false;
    bool bEntities = false;  ///< the document type declares some
    std::size_t nGrowth = 0; ///< bytes that the document type has added so far
    std::size_t nGrowthLimit = 0;
    std::unordered_map<const xmlEntity*, std::size_t> copied; ///< what a further reference to an entity adds
    std::unordered_map<std::string, std::size_t> declaredAttributes; ///< by the document type, of an element
    std::size_t nDeclarations = 0; ///< of namespaces, in force where the parser stands
    DirectTree* pDirect = nullptr; ///< of a parse straight to our tree
};

[[nodiscard]] inline Parse& parseOf(void* pContext) noexcept {
    return *static_cast<Parse*>(static_cast<xmlParserCtxt*>(pContext)->_private);
}

/// Refuses the document whose parser, or that of an entity in it, stands here; the first refusal counts. Its
/// reason is the three texts joined.
void refuse(xmlParserCtxt& parser, LoadError number, std::string_view sBefore, std::string_view sName = {},
            std::string_view sBehind = {}) noexcept;

[[nodiscard]] std::uint32_t countLineFeeds(std::string_view sText) noexcept;

/// How many lines lie between the "<" of the start tag and the place where the parser stands: no "<" can
/// stand in between.
[[nodiscard]] std::uint32_t linesOfStartTag(const xmlParserInput& input) noexcept;

/// @param nOpen the number of elements around the one that begins.
/// @returns false, and ends the parse, at an element that is nested too deeply.
[[nodiscard]] bool acceptDepth(xmlParserCtxt& parser, std::size_t nOpen) noexcept;

/// Refuses a document by a limit of Width.h, and stops the parser.
void refuseWidth(xmlParserCtxt& parser, std::string_view sReason, std::size_t nMost) noexcept;

/// Counts the namespaces that an element declares. @returns false, with the document refused and the parser
/// stopped, beyond mostDeclarations.
[[nodiscard]] bool acceptDeclarations(xmlParserCtxt& parser, int nNamespaces) noexcept;
/// Counts them out again at the end of the element.
inline void leaveDeclarations(xmlParserCtxt& parser, std::size_t nNamespaces) noexcept {
    parseOf(&parser).nDeclarations -= nNamespaces;
}

/// The text of the XML declaration of a document that has one.
[[nodiscard]] std::string declarationOf(const xmlDoc& doc);

} // namespace halvane::dom::libxml
