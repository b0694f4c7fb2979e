#include "xml/dom/libxml2/LibXmlGrowth.h"

#include "xml/dom/Width.h"
#include "xml/dom/libxml2/LibXmlParsing.h"

#include <new>
#include <string>

namespace halvane::dom::libxml {

namespace {

bool grow(xmlParserCtxt& parser, std::size_t nBytes) noexcept {
    Parse& parse = parseOf(&parser);
    parse.nGrowth += nBytes;
    if (parse.nGrowth <= parse.nGrowthLimit)
        return true;
    refuse(parser, LoadError::TooMuchGrowth, growthReason);
    xmlStopParser(&parser);
    return false;
}

std::size_t sizeOfDefaults(int nAttributes, int nDefaulted, const xmlChar* const* ppAttributes) noexcept {
    constexpr int valuesPerAttribute = 5; // name, prefix, URI, begin and end of the value
    std::size_t nSize = 0;
    for (int n = nAttributes - nDefaulted; n < nAttributes; ++n) {
        const xmlChar* const* const ppValues = ppAttributes + n * valuesPerAttribute;
        nSize += bytesOfAddedNode + static_cast<std::size_t>(ppValues[4] - ppValues[3]);
    }
    return nSize;
}

std::size_t sizeOfText(const xmlNode* pFirst) noexcept {
    std::size_t nSize = 0;
    for (const xmlNode* pText = pFirst; pText != nullptr; pText = pText->next)
        nSize += view(pText->content).size();
    return nSize;
}

/// The next node of an entity's content in document order.
const xmlNode* followingIn(const xmlEntity& entity, const xmlNode* pNode) noexcept {
    if (pNode->type == XML_ELEMENT_NODE && pNode->children != nullptr)
        return pNode->children;
    const void* const pTop = &entity;
    while (pNode->next == nullptr) {
        pNode = pNode->parent;
        if (pNode == nullptr || pNode == pTop)
            return nullptr;
    }
    return pNode->next;
}

std::size_t sizeOfContent(const xmlEntity& entity) noexcept {
    std::size_t nSize = 0;
    for (const xmlNode* pNode = entity.children; pNode != nullptr; pNode = followingIn(entity, pNode)) {
        nSize += bytesOfAddedNode;
        if (pNode->type != XML_ELEMENT_NODE) {
            nSize += view(pNode->content).size();
            continue;
        }
        for (const xmlAttr* p = pNode->properties; p != nullptr; p = p->next)
            nSize += bytesOfAddedNode + sizeOfText(p->children);
    }
    return nSize;
}

} // namespace

bool growByDefaults(xmlParserCtxt& parser, int nAttributes, int nDefaulted,
                    const xmlChar* const* ppAttributes) noexcept {
    return nDefaulted == 0 || grow(parser, sizeOfDefaults(nAttributes, nDefaulted, ppAttributes));
}

bool acceptDeclaredAttribute(xmlParserCtxt& parser, const xmlChar* pElement) noexcept {
    try {
        if (++parseOf(&parser).declaredAttributes[std::string(view(pElement))] <= mostAttributes)
            return true;
    } catch (const std::bad_alloc&) { // NOLINT(bugprone-empty-catch): as good as too many
    }
    refuseWidth(parser, attributesReason, mostAttributes);
    return false;
}

bool growByParameter(xmlParserCtxt& parser, const xmlEntity& entity) noexcept {
    return grow(parser, bytesOfAddedNode + static_cast<std::size_t>(entity.length));
}

void growByCopy(xmlParserCtxt& parser, const xmlEntity& entity) noexcept {
    if (entity.children == nullptr)
        return;
    try {
        const auto [it, bNew] = parseOf(&parser).copied.try_emplace(&entity, 0);
        if (bNew)
            it->second = sizeOfContent(entity);
        grow(parser, it->second);
    } catch (const std::bad_alloc&) {
        grow(parser, parseOf(&parser).nGrowthLimit + 1);
    }
}

} // namespace halvane::dom::libxml
