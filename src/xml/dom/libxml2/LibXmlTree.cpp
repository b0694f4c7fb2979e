// From libxml2's tree to ours.

#include "xml/dom/libxml2/LibXmlTree.h"

#include "base/Failure.h"
#include "xml/dom/Characters.h"
#include "xml/dom/Depth.h"
#include "xml/dom/TreeBuilder.h"
#include "xml/dom/libxml2/LibXmlParsing.h"

#include <cstdint>
#include <new>
#include <vector>

namespace halvane::dom::libxml {

namespace {

/// The line that was kept in the node while it was parsed, else its parent's.
std::uint32_t lineOf(const xmlNode& node) noexcept {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(node._private));
}

bool isTextNode(const xmlNode* pNode) noexcept {
    return pNode != nullptr && pNode->type == XML_TEXT_NODE;
}

class Builder {
public:
    Builder(xmlDoc& doc, TreeBuilder& builder) : doc_(doc), builder_(builder) {}

    std::optional<std::uint32_t> build() {
        pair(doc_, builder_.document());
        // -1: there is no XML declaration.
        if (doc_.standalone != -1)
            builder_.declaration(declarationOf(doc_));
        for (xmlNode* pNode = doc_.children; pNode != nullptr;)
            pNode = step(*pNode);
        return tooDeep_;
    }

private:
    /// Takes one node over. @returns the next one in document order.
    xmlNode* step(xmlNode& node) {
        switch (node.type) {
        case XML_ELEMENT_NODE:
            return enter(node);
        case XML_TEXT_NODE:
            return takeText(node);
        case XML_CDATA_SECTION_NODE:
            pair(node, builder_.characters(Kind::CData, view(node.content), line(node)));
            break;
        case XML_COMMENT_NODE:
            pair(node, builder_.characters(Kind::Comment, view(node.content), line(node)));
            break;
        case XML_PI_NODE:
            pair(node, builder_.instruction(view(node.name), view(node.content), line(node)));
            break;
        case XML_DTD_NODE:
            takeDocumentType(node);
            break;
        default:
            throw Failure(FailureNumber::DocumentFailure, "a reference to an entity that is not declared");
        }
        return after(node);
    }

    /// Leaves the elements that end here.
    xmlNode* after(xmlNode& node) noexcept {
        xmlNode* pNode = &node;
        while (pNode->next == nullptr) {
            pNode = pNode->parent;
            if (pNode->type != XML_ELEMENT_NODE)
                return nullptr;
            builder_.endElement();
            aPreserves_.pop_back();
            aLines_.pop_back();
        }
        return pNode->next;
    }

    xmlNode* enter(xmlNode& node) {
        const std::uint32_t nLine = line(node);
        if (aLines_.size() >= deepestElement) {
            tooDeep_ = nLine;
            return nullptr;
        }
        NodeData& element = builder_.startElement(qualified(node.ns, node.name, sName_), nLine);
        pair(node, element);
        takeAttributes(node);
        aPreserves_.push_back(preservesSpace(node));
        aLines_.push_back(nLine);
        if (node.children != nullptr)
            return node.children;
        builder_.endElement();
        aPreserves_.pop_back();
        aLines_.pop_back();
        return after(node);
    }

    bool preservesSpace(const xmlNode& node) const {
        for (const xmlAttr* p = node.properties; p != nullptr; p = p->next)
            if (view(p->name) == "space" && p->ns != nullptr &&
                view(p->ns->href) == "http://www.w3.org/XML/1998/namespace")
                return valueOf(*p) == "preserve";
        return !aPreserves_.empty() && aPreserves_.back();
    }

    std::string valueOf(const xmlAttr& attribute) const {
        const TextPtr pValue(xmlNodeListGetString(&doc_, attribute.children, 1));
        return std::string(view(pValue.get()));
    }

    void takeAttributes(xmlNode& node) {
        for (const xmlNs* p = node.nsDef; p != nullptr; p = p->next) {
            sName_ = "xmlns";
            if (p->prefix != nullptr)
                sName_.append(":").append(view(p->prefix));
            builder_.attribute(sName_, view(p->href));
        }
        for (xmlAttr* p = node.properties; p != nullptr; p = p->next) {
            const auto sQualified = qualified(p->ns, p->name, sName_);
            const xmlNode* const pOnly = p->children;
            if (isTextNode(pOnly) && pOnly->next == nullptr)
                pair(*p, builder_.attribute(sQualified, view(pOnly->content)));
            else
                pair(*p, builder_.attribute(sQualified, valueOf(*p)));
        }
    }

    xmlNode* takeText(xmlNode& node) {
        while (isTextNode(node.next)) {
            xmlNode& next = *node.next;
            if (xmlNodeAddContent(&node, next.content), node.content == nullptr)
                throw std::bad_alloc();
            remove(next);
        }
        const bool bPreserve = !aPreserves_.empty() && aPreserves_.back();
        if (bPreserve || !isXmlWhiteSpace(view(node.content))) {
            pair(node, builder_.characters(Kind::Text, view(node.content), line(node)));
            return after(node);
        }
        xmlNode* const pNext = after(node);
        remove(node);
        return pNext;
    }

    static void remove(xmlNode& node) noexcept {
        xmlUnlinkNode(&node);
        xmlFreeNode(&node);
    }

    void takeDocumentType(xmlNode& node) {
        const BufferPtr pBuffer(xmlBufferCreate());
        if (pBuffer == nullptr || xmlNodeDump(pBuffer.get(), &doc_, &node, 0, 0) < 0)
            throw std::bad_alloc();
        pair(node, builder_.documentType(view(node.name), view(xmlBufferContent(pBuffer.get()))));
    }

    std::uint32_t line(const xmlNode& node) const noexcept {
        const std::uint32_t nLine = lineOf(node);
        return nLine != 0 || aLines_.empty() ? nLine : aLines_.back();
    }

    xmlDoc& doc_;
    TreeBuilder& builder_;
    std::string sName_;
    std::vector<bool> aPreserves_; ///< of the open elements
    std::vector<std::uint32_t> aLines_;
    std::optional<std::uint32_t> tooDeep_;
};

} // namespace

std::string declarationOf(const xmlDoc& doc) {
    std::string sData = "version=\"1.0\"";
    if (doc.encoding != nullptr)
        sData.append(" encoding=\"").append(view(doc.encoding)).append("\"");
    if (doc.standalone == 0 || doc.standalone == 1)
        sData.append(doc.standalone == 1 ? " standalone=\"yes\"" : " standalone=\"no\"");
    return sData;
}

std::optional<std::uint32_t> buildTree(xmlDoc& doc, TreeBuilder& builder) {
    return Builder(doc, builder).build();
}

} // namespace halvane::dom::libxml
