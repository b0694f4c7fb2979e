#include "component/com/CallerDocument.h"

#include "base/com/Bstr.h"
#include "base/com/HResult.h"
#include "base/com/Variant.h"
#include "component/com/SelectionPrefixes.h"
#include "xml/dom/Depth.h"

#include <msxml2.h>

#include <optional>

namespace halvane::server {

namespace {

using SourceNode = com::ComPtr<IXMLDOMNode>;

dom::NodeType typeOf(IXMLDOMNode& node) {
    DOMNodeType type = NODE_INVALID;
    com::require(node.get_nodeType(&type), "IXMLDOMNode.nodeType");
    return static_cast<dom::NodeType>(type);
}

std::string nameOf(IXMLDOMNode& node) {
    com::Bstr sName;
    com::require(node.get_nodeName(sName.put()), "IXMLDOMNode.nodeName");
    return sName.utf8();
}

std::string namespaceOf(IXMLDOMNode& node) {
    com::Bstr sNamespace;
    com::require(node.get_namespaceURI(sNamespace.put()), "IXMLDOMNode.namespaceURI");
    return sNamespace.utf8();
}

std::string valueOf(IXMLDOMNode& node) {
    com::Variant value;
    com::require(node.get_nodeValue(value.put()), "IXMLDOMNode.nodeValue");
    return V_VT(&value.get()) == VT_BSTR ? com::utf8Of(V_BSTR(&value.get())) : std::string();
}

SourceNode firstChildOf(IXMLDOMNode& node) {
    SourceNode child;
    com::require(node.get_firstChild(child.put()), "IXMLDOMNode.firstChild");
    return child;
}

SourceNode nextSiblingOf(IXMLDOMNode& node) {
    SourceNode sibling;
    com::require(node.get_nextSibling(sibling.put()), "IXMLDOMNode.nextSibling");
    return sibling;
}

/// Not every version lists all declarations among the attributes, but each knows the namespace of a name.
void declareNamespace(dom::Node oElement, std::string_view sName, std::string_view sNamespace) {
    const auto nColon = sName.find(':');
    if (sName.starts_with("xml:"))
        return; // declared by itself
    const std::string sDeclaration =
        nColon == std::string_view::npos ? "xmlns" : "xmlns:" + std::string(sName.substr(0, nColon));
    for (dom::Node oAround = oElement; oAround; oAround = oAround.parentNode()) {
        if (const auto sDeclared = oAround.getAttribute(sDeclaration)) {
            if (*sDeclared != sNamespace)
                oElement.setAttribute(sDeclaration, sNamespace);
            return;
        }
    }
    if (!sNamespace.empty())
        oElement.setAttribute(sDeclaration, sNamespace);
}

void copyAttributes(IXMLDOMNode& source, dom::Node oElement) {
    com::ComPtr<IXMLDOMNamedNodeMap> attributes;
    com::require(source.get_attributes(attributes.put()), "IXMLDOMNode.attributes");
    long nAttributes = 0;
    if (attributes)
        com::require(attributes->get_length(&nAttributes), "IXMLDOMNamedNodeMap.length");
    for (long i = 0; i < nAttributes; ++i) {
        SourceNode attribute;
        if (FAILED(attributes->get_item(i, attribute.put())) || !attribute)
            continue; // a declaration that is counted and cannot be had
        oElement.setAttribute(nameOf(*attribute), valueOf(*attribute));
    }
}

/// Copies trees node by node. The program that made them may have nested their elements without limit.
class TreeCopy {
public:
    explicit TreeCopy(dom::Document& target) : target_(target), oParent_(target.asNode()) {}

    void run(IXMLDOMDocument& document) {
        // Not from sibling to sibling: a document type may refuse to tell its own.
        com::ComPtr<IXMLDOMNodeList> children;
        com::require(document.get_childNodes(children.put()), "IXMLDOMDocument.childNodes");
        for (;;) {
            SourceNode child;
            com::require(children->nextNode(child.put()), "IXMLDOMNodeList.nextNode");
            if (!child)
                return;
            const dom::Node oDocument = oParent_;
            copyTree(*child);
            oParent_ = oDocument;
        }
    }

private:
    struct Open {
        SourceNode source;
        dom::Node oParent;
    };

    void copyTree(IXMLDOMNode& top) {
        if (!enter(top, 0))
            return;
        oParent_ = oEntered_;
        SourceNode source = firstChildOf(top);
        while (source) {
            SourceNode child = enter(*source, aOpen_.size() + 1) ? firstChildOf(*source) : nullptr;
            if (child) {
                aOpen_.push_back({std::move(source), oParent_});
                oParent_ = oEntered_;
                source = std::move(child);
                continue;
            }
            source = nextSiblingOf(*source);
            while (!source && !aOpen_.empty()) {
                source = nextSiblingOf(*aOpen_.back().source);
                oParent_ = aOpen_.back().oParent;
                aOpen_.pop_back();
            }
        }
    }

    /// Copies a node without its children. @returns whether its children are to be copied, into oEntered_.
    /// @throws Failure DocumentFailure for an element with too many around it.
    bool enter(IXMLDOMNode& source, std::size_t nAround) {
        const dom::NodeType type = typeOf(source);
        switch (type) {
        case dom::NodeType::Element:
            // As a document that is parsed: selections rely on it.
            if (nAround >= dom::deepestElement)
                throw Failure(FailureNumber::DocumentFailure, dom::tooDeep(dom::deepestElement, 0).reason);
            enterElement(source);
            return true;
        case dom::NodeType::EntityReference:
            oEntered_ = oParent_; // its children are what it stands for
            return true;
        case dom::NodeType::Text:
        case dom::NodeType::CDataSection:
        case dom::NodeType::Comment:
        case dom::NodeType::ProcessingInstruction:
            copyLeaf(source, type);
            return false;
        default:
            return false;
        }
    }

    void enterElement(IXMLDOMNode& source) {
        const std::string sName = nameOf(source);
        const std::string sNamespace = namespaceOf(source);
        oEntered_ = oParent_.appendChild(
            target_.createNode(static_cast<std::int32_t>(dom::NodeType::Element), sName, sNamespace));
        copyAttributes(source, oEntered_);
        declareNamespace(oEntered_, sName, sNamespace);
    }

    void copyLeaf(IXMLDOMNode& source, dom::NodeType type) {
        const bool bNamed = type == dom::NodeType::ProcessingInstruction;
        const std::string sName = bNamed ? nameOf(source) : std::string();
        if (sName == "xml")
            return; // the declaration of the file it came from
        auto oLeaf = target_.createNode(static_cast<std::int32_t>(type), sName, "");
        oLeaf.setText(valueOf(source));
        oParent_.appendChild(oLeaf);
    }

    dom::Document& target_;
    dom::Node oParent_;
    dom::Node oEntered_;
    std::vector<Open> aOpen_;
};

} // namespace

dom::DocumentPtr presentContentOf(IXMLDOMDocument* oDocument) {
    if (oDocument == nullptr)
        return nullptr;
    auto pContent = dom::Document::create();
    TreeCopy(*pContent).run(*oDocument);
    takeSelectionPrefixes(*oDocument, *pContent);
    return pContent;
}

} // namespace halvane::server
