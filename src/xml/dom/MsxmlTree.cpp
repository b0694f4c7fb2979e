// From MSXML's tree to ours.

#include "xml/dom/MsxmlTree.h"

#include "collection/com/HResult.h"
#include "xml/dom/Characters.h"
#include "xml/dom/MarkupScanner.h"
#include "xml/dom/TreeBuilder.h"

#include <vector>

namespace halvane::dom::msxml {

namespace {

using What = Markup::What;

/// The lines of the nodes of a document, asked for in document order.
class Lines {
public:
    explicit Lines(std::string_view sText) noexcept : scanner_(sText) {}

    std::uint32_t of(What what) noexcept {
        Markup markup;
        while (scanner_.next(markup)) {
            const bool bElement = markup.what == What::Start || markup.what == What::Empty;
            if (markup.what == what || (bElement && what == What::Start))
                return markup.nLine;
        }
        return 0;
    }

private:
    MarkupScanner scanner_;
};

class Builder {
public:
    Builder(const Source& source, TreeBuilder& builder)
        : source_(source), builder_(builder), lines_(source.text()) {}

    void build(IXMLDOMDocument2& document) {
        if (const std::string sData = source_.declaration(); !sData.empty())
            builder_.instruction("xml", sData, lines_.of(What::Instruction));
        buildChildren(document);
    }

private:
    void buildChildren(IXMLDOMNode& parent) {
        for (NodePtr pNode = relative(parent, &IXMLDOMNode::get_firstChild); pNode;
             pNode = relative(*pNode, &IXMLDOMNode::get_nextSibling))
            build(*pNode);
        endText();
    }

    void build(IXMLDOMNode& node) {
        const DOMNodeType type = typeOf(node);
        if (type == NODE_TEXT) {
            // Some versions cut a long text into several nodes.
            if (sText_.empty())
                nTextLine_ = lines_.of(What::Text);
            sText_ += valueOf(node);
            return;
        }
        endText();
        switch (type) {
        case NODE_ELEMENT:
            buildElement(node);
            break;
        case NODE_CDATA_SECTION:
            builder_.characters(Kind::CData, valueOf(node), lines_.of(What::CData));
            break;
        case NODE_COMMENT:
            builder_.characters(Kind::Comment, valueOf(node), lines_.of(What::Comment));
            break;
        case NODE_PROCESSING_INSTRUCTION:
            if (const std::string sTarget = nameOf(node); sTarget != "xml")
                builder_.instruction(sTarget, valueOf(node), lines_.of(What::Instruction));
            break;
        case NODE_DOCUMENT_TYPE:
            builder_.documentType(nameOf(node), source_.documentType());
            break;
        default:
            throw Failure(FailureNumber::DocumentFailure, "a reference to an entity that is not declared");
        }
    }

    void buildElement(IXMLDOMNode& node) {
        builder_.startElement(nameOf(node), lines_.of(What::Start));
        const bool bPreserve = buildAttributes(node, !aPreserves_.empty() && aPreserves_.back());
        aPreserves_.push_back(bPreserve);
        buildChildren(node);
        aPreserves_.pop_back();
        builder_.endElement();
    }

    /// @returns whether the element keeps its white space.
    bool buildAttributes(IXMLDOMNode& element, bool bPreserve) {
        ComPtr<IXMLDOMNamedNodeMap> pAttributes;
        com::require(element.get_attributes(pAttributes.put()), "the attributes of an element");
        if (!pAttributes)
            return bPreserve;
        LONG lCount = 0;
        com::require(pAttributes->get_length(&lCount), "the attributes of an element");
        std::vector<NodePtr> aPlain;
        for (LONG l = 0; l < lCount; ++l) {
            NodePtr pAttribute;
            com::require(pAttributes->get_item(l, pAttribute.put()), "an attribute");
            // Declarations of namespaces come first, wherever they stood.
            if (nameOf(*pAttribute).starts_with("xmlns"))
                take(*pAttribute);
            else
                aPlain.push_back(std::move(pAttribute));
        }
        for (const NodePtr& pAttribute : aPlain)
            if (const NodeData& attribute = take(*pAttribute); attribute.pName->sQualified == "xml:space")
                bPreserve = attribute.text() == "preserve";
        return bPreserve;
    }

    NodeData& take(IXMLDOMNode& attribute) {
        return builder_.attribute(nameOf(attribute), valueOf(attribute));
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
    Lines lines_;
    std::string sText_; ///< of the text nodes that touch so far
    std::uint32_t nTextLine_ = 0;
    std::vector<bool> aPreserves_; ///< of the open elements
};

} // namespace

void buildTree(IXMLDOMDocument2& document, const Source& source, TreeBuilder& builder) {
    Builder(source, builder).build(document);
}

} // namespace halvane::dom::msxml
