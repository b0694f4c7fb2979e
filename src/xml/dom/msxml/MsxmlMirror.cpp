// Selections with MSXML.

#include "base/com/Apartment.h"
#include "base/com/HResult.h"
#include "base/com/Variant.h"
#include "xml/dom/msxml/Msxml.h"
#include "xml/dom/msxml/MsxmlImage.h"

#include <charconv>

namespace halvane::dom {

namespace msxml {

namespace {

[[noreturn]] void refuse(std::string_view sExpression, const std::string& sReason) {
    throw Failure(FailureNumber::DocumentFailure, "\"" + std::string(sExpression) + "\" cannot be selected" +
                                                      (sReason.empty() ? std::string() : ": " + sReason));
}

/// What MSXML says of the call that has just failed; "" when it says nothing.
std::string lastErrorText() {
    ComPtr<IErrorInfo> pInfo;
    Bstr sText;
    if (::GetErrorInfo(0, pInfo.put()) != S_OK || FAILED(pInfo->GetDescription(sText.put())))
        return {};
    return sText.utf8();
}

std::size_t positionOf(const NodeData& node, Kind kind) noexcept {
    std::size_t nPosition = 1;
    for (NodeData* p = imaged(node.pParent->pFirstChild); p != nullptr && p != &node; p = imagedAfter(*p))
        if (kind != Kind::Element || p->kind == Kind::Element)
            ++nPosition;
    return nPosition;
}

class MsxmlMirror : public Mirror {
public:
    explicit MsxmlMirror(NodeData& top) : top_(top), image_(makeImage(top)), pDocument_(createDocument()) {
        VARIANT_BOOL bLoaded = VARIANT_FALSE;
        const Bstr sText(image_.sText);
        if (FAILED(pDocument_->loadXML(sText.get(), &bLoaded)) || bLoaded == VARIANT_FALSE)
            throw Failure(FailureNumber::DocumentFailure, "MSXML does not take the document for a selection");
        image_.sText = std::string();
        setProperty(*pDocument_, L"SelectionNamespaces", image_.sNamespaces);
    }

    std::vector<Node> select(const NodeData& context, std::string_view sXPath) override {
        if (sXPath.find('\0') != std::string_view::npos)
            refuse(sXPath, "it holds a character that XPath does not know");
        const NodePtr pContext = imageOf(context);
        const Bstr sExpression(sXPath);
        ComPtr<IXMLDOMNodeList> pList;
        ::SetErrorInfo(0, nullptr);
        if (FAILED(pContext->selectNodes(sExpression.get(), pList.put())) || !pList)
            refuse(sXPath, lastErrorText());
        return nodesOf(*pList);
    }

private:
    std::vector<Node> nodesOf(IXMLDOMNodeList& list) {
        LONG lCount = 0;
        com::require(list.get_length(&lCount), "a selection");
        std::vector<Node> aNodes;
        for (LONG l = 0; l < lCount; ++l) {
            NodePtr pNode;
            // A namespace is no node to some versions.
            if (list.get_item(l, pNode.put()) == S_OK && pNode)
                append(aNodes, *pNode);
        }
        return aNodes;
    }

    void append(std::vector<Node>& aNodes, IXMLDOMNode& image) {
        NodeData* const pNode = ownOf(image);
        if (pNode == nullptr)
            return;
        if (pNode->kind != Kind::Text && pNode->kind != Kind::CData) {
            aNodes.emplace_back(pNode);
            return;
        }
        for (NodeData* const pText : sharingImage(*pNode))
            aNodes.emplace_back(pText);
    }

    // ---- From images to our nodes

    NodeData* ownOf(IXMLDOMNode& image) {
        switch (typeOf(image)) {
        case NODE_DOCUMENT:
            return top_.kind == Kind::Document ? &top_ : nullptr;
        case NODE_ELEMENT:
            return ownElement(image);
        case NODE_ATTRIBUTE:
            return ownAttribute(image);
        default:
            return ownChild(image);
        }
    }

    NodeData* ownElement(IXMLDOMNode& image) {
        const auto pElement = com::ComPtr(&image).query<IXMLDOMElement>(IID_IXMLDOMElement);
        static const Bstr sName(numberAttribute);
        com::Variant number;
        if (!pElement || pElement->getAttribute(sName.get(), number.put()) != S_OK ||
            number.get().vt != VT_BSTR)
            return nullptr;
        const std::string sNumber = com::utf8Of(number.get().bstrVal);
        std::size_t nNumber = image_.aElements.size();
        std::from_chars(sNumber.data(), sNumber.data() + sNumber.size(), nNumber);
        return nNumber < image_.aElements.size() ? image_.aElements[nNumber] : nullptr;
    }

    NodeData* ownAttribute(IXMLDOMNode& image) {
        static const Bstr parent(std::wstring_view(L".."));
        NodePtr pElement;
        if (image.selectSingleNode(parent.get(), pElement.put()) != S_OK || !pElement)
            return nullptr;
        NodeData* const pOwner = ownElement(*pElement);
        const std::string sName = nameOf(image);
        if (pOwner == nullptr || sName.starts_with("xmlns"))
            return nullptr;
        NodeData* pAttribute = pOwner->pFirstAttribute;
        while (pAttribute != nullptr && pAttribute->pName->sQualified != sName)
            pAttribute = pAttribute->pNext;
        return pAttribute;
    }

    /// A text, comment or instruction: counted from the element before it.
    NodeData* ownChild(IXMLDOMNode& image) {
        std::size_t nBetween = 0;
        NodePtr pBefore = relative(image, &IXMLDOMNode::get_previousSibling);
        while (pBefore && typeOf(*pBefore) != NODE_ELEMENT) {
            ++nBetween;
            pBefore = relative(*pBefore, &IXMLDOMNode::get_previousSibling);
        }
        NodeData* pNode = pBefore ? ownElement(*pBefore) : nullptr;
        if (pBefore) {
            pNode = pNode == nullptr ? nullptr : imagedAfter(*pNode);
        } else {
            const NodePtr pParent = relative(image, &IXMLDOMNode::get_parentNode);
            const NodeData* const pOwner = pParent ? ownOf(*pParent) : nullptr;
            pNode = pOwner == nullptr ? nullptr : imaged(pOwner->pFirstChild);
        }
        for (; nBetween > 0 && pNode != nullptr; --nBetween)
            pNode = imagedAfter(*pNode);
        return pNode;
    }

    // ---- From our nodes to images

    /// What has no image stands for the document.
    NodePtr imageOf(const NodeData& node) {
        NodePtr pImage;
        const std::string sPath = pathOf(node);
        if (!sPath.empty()) {
            const Bstr sExpression(sPath);
            pDocument_->selectSingleNode(sExpression.get(), pImage.put());
        }
        return pImage ? pImage : NodePtr(pDocument_.get());
    }

    /// An XPath that begins at the document; "" for the document itself and for what has no image.
    std::string pathOf(const NodeData& node) const {
        if (&node == &top_)
            return node.kind == Kind::Element || node.kind == Kind::Fragment ? "/*" : "";
        const std::string sParent = pathOf(*node.pParent);
        switch (node.kind) {
        case Kind::Element:
            return sParent + "/*[" + std::to_string(positionOf(node, Kind::Element)) + "]";
        case Kind::Attribute:
            return sParent + "/@*[name()='" + node.pName->sQualified + "']";
        case Kind::Text:
        case Kind::CData:
        case Kind::Comment:
        case Kind::ProcessingInstruction:
            return sParent + "/node()[" + std::to_string(positionOf(node, node.kind)) + "]";
        default:
            return {};
        }
    }

    com::Apartment apartment_{com::Apartment::For::Components};
    NodeData& top_;
    Image image_;
    DocumentPtr pDocument_;
};

} // namespace

} // namespace msxml

std::unique_ptr<Mirror> makeMirror(NodeData& top) {
    return std::make_unique<msxml::MsxmlMirror>(top);
}

} // namespace halvane::dom
