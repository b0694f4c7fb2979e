// From MSXML's tree to ours.

#include "xml/dom/msxml/MsxmlTree.h"

#include "base/com/HResult.h"
#include "xml/dom/Characters.h"
#include "xml/dom/MarkupScanner.h"
#include "xml/dom/TreeBuilder.h"

#include <algorithm>
#include <vector>

namespace halvane::dom::msxml {

namespace {

using What = Markup::What;

/// Walks the text along with MSXML's nodes, in document order.
class Walk {
public:
    explicit Walk(std::string_view sText) noexcept : scanner_(sText) {}

    /// The piece of text that the next node of a kind was made from; empty once there is none.
    Markup to(What what) noexcept {
        Markup markup;
        while (scanner_.next(markup)) {
            const bool bElement = markup.what == What::Start || markup.what == What::Empty;
            if (markup.what == what || (bElement && what == What::Start))
                return markup;
        }
        return {};
    }
    std::uint32_t lineOf(What what) noexcept { return to(what).nLine; }

private:
    MarkupScanner scanner_;
};

class Builder {
public:
    Builder(const Source& source, TreeBuilder& builder)
        : source_(source), builder_(builder), walk_(source.text()) {}

    void build(IXMLDOMDocument2& document) {
        if (const std::string sData = source_.declaration(); !sData.empty())
            builder_.instruction("xml", sData, walk_.lineOf(What::Instruction));
        // Not from sibling to sibling: some versions do not know what comes after a document type.
        ComPtr<IXMLDOMNodeList> pChildren;
        com::require(document.get_childNodes(pChildren.put()), "the nodes of a document");
        NodePtr pChild;
        while (pChildren->nextNode(pChild.put()) == S_OK && pChild)
            buildBranch(*pChild);
    }

private:
    /// A child of the document with all inside it, without recursion: it may be deep, and the stack small.
    void buildBranch(IXMLDOMNode& top) {
        if (!begin(top))
            return;
        std::vector<NodePtr> aOpen; // elements inside the top one
        NodePtr pNode = relative(top, &IXMLDOMNode::get_firstChild);
        for (;;) {
            if (!pNode) {
                endElement();
                if (aOpen.empty())
                    return;
                pNode = relative(*aOpen.back(), &IXMLDOMNode::get_nextSibling);
                aOpen.pop_back();
            } else if (begin(*pNode)) {
                aOpen.push_back(pNode);
                pNode = relative(*aOpen.back(), &IXMLDOMNode::get_firstChild);
            } else {
                pNode = relative(*pNode, &IXMLDOMNode::get_nextSibling);
            }
        }
    }

    /// @returns whether an element has begun, whose children come next.
    bool begin(IXMLDOMNode& node) {
        const DOMNodeType type = typeOf(node);
        if (type == NODE_TEXT) {
            // Some versions cut a long text into several nodes.
            if (sText_.empty())
                nTextLine_ = walk_.lineOf(What::Text);
            sText_ += valueOf(node);
            return false;
        }
        endText();
        switch (type) {
        case NODE_ELEMENT:
            beginElement(node);
            return true;
        case NODE_CDATA_SECTION:
            builder_.characters(Kind::CData, valueOf(node), walk_.lineOf(What::CData));
            break;
        case NODE_COMMENT:
            builder_.characters(Kind::Comment, valueOf(node), walk_.lineOf(What::Comment));
            break;
        case NODE_PROCESSING_INSTRUCTION:
            if (const std::string sTarget = nameOf(node); sTarget != "xml")
                builder_.instruction(sTarget, valueOf(node), walk_.lineOf(What::Instruction));
            break;
        case NODE_DOCUMENT_TYPE:
            builder_.documentType(nameOf(node), source_.documentType());
            break;
        default:
            throw Failure(FailureNumber::DocumentFailure, "a reference to an entity that is not declared");
        }
        return false;
    }

    void beginElement(IXMLDOMNode& node) {
        const Markup tag = walk_.to(What::Start);
        const std::string sName = nameOf(node);
        builder_.startElement(sName, tag.nLine);
        declareNamespaces(tag.sText.substr(std::min(sName.size() + 1, tag.sText.size())));
        const bool bPreserve = buildAttributes(node, !aPreserves_.empty() && aPreserves_.back());
        aPreserves_.push_back(bPreserve);
    }

    void endElement() {
        endText();
        aPreserves_.pop_back();
        builder_.endElement();
    }

    /// Not every version lists all declarations among the attributes, least of all in order. They come
    /// first, wherever they stand.
    void declareNamespaces(std::string_view sAttributes) {
        WrittenAttribute attribute;
        while (takeAttribute(sAttributes, attribute))
            if (isDeclaration(attribute.sName))
                builder_.attribute(attribute.sName, withoutReferences(attribute.sValue));
    }

    static bool isDeclaration(std::string_view sName) noexcept {
        return sName == "xmlns" || sName.starts_with("xmlns:");
    }

    /// @returns whether the element keeps its white space.
    bool buildAttributes(IXMLDOMNode& element, bool bPreserve) {
        ComPtr<IXMLDOMNamedNodeMap> pAttributes;
        com::require(element.get_attributes(pAttributes.put()), "the attributes of an element");
        LONG lCount = 0;
        com::require(pAttributes->get_length(&lCount), "the attributes of an element");
        for (LONG l = 0; l < lCount; ++l) {
            NodePtr pAttribute;
            if (FAILED(pAttributes->get_item(l, pAttribute.put())) || !pAttribute)
                continue; // a declaration that is counted and cannot be had
            const std::string sName = nameOf(*pAttribute);
            if (isDeclaration(sName))
                continue;
            const NodeData& attribute = builder_.attribute(sName, valueOf(*pAttribute));
            if (sName == "xml:space")
                bPreserve = attribute.text() == "preserve";
        }
        return bPreserve;
    }

    /// White space between elements is left out unless the document keeps it.
    void endText() {
        const bool bPreserve = !aPreserves_.empty() && aPreserves_.back();
        if (!sText_.empty() && (bPreserve || !isXmlWhiteSpace(sText_)))
            builder_.characters(Kind::Text, sText_, nTextLine_);
        sText_.clear();
    }

    const Source& source_;
    TreeBuilder& builder_;
    Walk walk_;
    std::string sText_; ///< of the text nodes that touch so far
    std::uint32_t nTextLine_ = 0;
    std::vector<bool> aPreserves_; ///< of the open elements
};

} // namespace

void buildTree(IXMLDOMDocument2& document, const Source& source, TreeBuilder& builder) {
    Builder(source, builder).build(document);
}

} // namespace halvane::dom::msxml
