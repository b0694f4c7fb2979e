// Selections with libxml2.

#include "base/Failure.h"
#include "xml/dom/Characters.h"
#include "xml/dom/libxml2/LibXmlErrors.h"

#include <libxml/xpathInternals.h>

namespace halvane::dom {

namespace libxml {

namespace {

using ContextPtr = Owned<xmlXPathContext, xmlXPathFreeContext>;
using ResultPtr = Owned<xmlXPathObject, xmlXPathFreeObject>;

/// What a selection is told.
struct Told {
    ErrorScope& scope;
    std::string& sMessage;
};

void keepMessage(void* pTold, xmlErrorPtr pError) noexcept {
    const Told& told = *static_cast<Told*>(pTold);
    told.scope.note(pError);
    try {
        if (told.sMessage.empty() && pError != nullptr)
            told.sMessage = oneLine(pError->message);
    } catch (...) { // no exception passes through the C library
        told.sMessage.clear();
    }
}

class LibXmlMirror : public Mirror {
public:
    explicit LibXmlMirror(DocPtr pDoc) : pDoc_(std::move(pDoc)) {}

    std::vector<Node> select(const NodeData& context, std::string_view sXPath) override {
        const std::string sExpression(sXPath);
        if (sXPath.find('\0') != std::string_view::npos)
            refuse(sExpression, "it holds a character that XPath does not know");
        ErrorScope errors;
        std::string sMessage;
        Told told{errors, sMessage};
        prepare();
        errors.requireMemory();
        // What XPath does not know, like the XML declaration, stands for the document.
        pContext_->node = context.pMirror == nullptr ? reinterpret_cast<xmlNode*>(pDoc_.get())
                                                     : static_cast<xmlNode*>(context.pMirror);
        pContext_->error = &keepMessage;
        pContext_->userData = &told;
        // Not compiled first: that way the library does not stand it when memory runs out.
        ResultPtr pResult(xmlXPathEval(bytes(sExpression), pContext_.get()));
        if (errors.ranOut())
            static_cast<void>(pResult.release()); // half made: not fit to be given back
        errors.requireMemory();
        if (pResult == nullptr)
            refuse(sExpression, sMessage);
        if (pResult->type != XPATH_NODESET)
            refuse(sExpression, "it does not yield nodes");
        return nodesOf(pResult->nodesetval);
    }

private:
    [[noreturn]] static void refuse(const std::string& sExpression, const std::string& sReason) {
        throw Failure(FailureNumber::DocumentFailure, "\"" + sExpression + "\" cannot be selected" +
                                                          (sReason.empty() ? std::string() : ": " + sReason));
    }

    void prepare() {
        if (pContext_ != nullptr)
            return;
        xmlXPathOrderDocElems(pDoc_.get()); // makes sorting large results fast
        ContextPtr pContext(xmlXPathNewContext(pDoc_.get()));
        if (pContext == nullptr)
            throw std::bad_alloc();
        const xmlNode* const pRoot = xmlDocGetRootElement(pDoc_.get());
        for (const xmlNs* pNs = pRoot == nullptr ? nullptr : pRoot->nsDef; pNs != nullptr; pNs = pNs->next)
            if (pNs->prefix != nullptr && xmlXPathRegisterNs(pContext.get(), pNs->prefix, pNs->href) != 0)
                throw std::bad_alloc();
        pContext_ = std::move(pContext);
    }

    static std::vector<Node> nodesOf(xmlNodeSet* pSet) {
        std::vector<Node> aNodes;
        if (pSet == nullptr)
            return aNodes;
        xmlXPathNodeSetSort(pSet);
        for (int n = 0; n < pSet->nodeNr; ++n) {
            const xmlNode* const pNode = pSet->nodeTab[n];
            // Namespace nodes, and the document above a detached tree, are no nodes of ours.
            if (pNode->type != XML_NAMESPACE_DECL && pNode->_private != nullptr)
                aNodes.emplace_back(static_cast<NodeData*>(pNode->_private));
        }
        return aNodes;
    }

    DocPtr pDoc_;
    ContextPtr pContext_;
};

/// Copies a tree of ours into a document of the library's.
class MirrorMaker {
public:
    explicit MirrorMaker(NodeData& top) : top_(top), pDoc_(checked(xmlNewDoc(bytes("1.0")))) {}

    DocPtr make() {
        bNamespaces_ = declaresNamespaces();
        pParent_ = reinterpret_cast<xmlNode*>(pDoc_.get());
        if (top_.kind == Kind::Document)
            pair(*pDoc_, top_);
        else
            add(top_);
        for (NodeData* pNode = &top_; (pNode = advance(*pNode)) != nullptr;)
            add(*pNode);
        errors_.requireMemory();
        return std::move(pDoc_);
    }

private:
    template<class Object>
    static Object* checked(Object* pObject) {
        if (pObject == nullptr)
            throw std::bad_alloc();
        return pObject;
    }

    bool declaresNamespaces() const {
        for (NodeData* pNode = &top_; pNode != nullptr; pNode = following(pNode, &top_))
            for (const NodeData* p = pNode->pFirstAttribute; p != nullptr; p = p->pNext)
                if (isDeclaration(*p))
                    return true;
        return false;
    }

    static bool isDeclaration(const NodeData& attribute) noexcept {
        const std::string& sName = attribute.pName->sQualified;
        return sName == "xmlns" || sName.starts_with("xmlns:");
    }

    /// The next node in document order; keeps pParent_ the image of its parent.
    NodeData* advance(NodeData& node) {
        if (node.pFirstChild != nullptr) {
            if (node.pMirror != nullptr)
                pParent_ = static_cast<xmlNode*>(node.pMirror);
            return node.pFirstChild;
        }
        NodeData* pNode = &node;
        while (pNode != &top_ && pNode->pNext == nullptr) {
            pNode = pNode->pParent;
            pParent_ = pNode == &top_ ? pParent_ : static_cast<xmlNode*>(pNode->pParent->pMirror);
        }
        return pNode == &top_ ? nullptr : pNode->pNext;
    }

    void add(NodeData& node) {
        node.pMirror = nullptr;
        xmlNode* const pImage = imageOf(node);
        if (pImage == nullptr)
            return;
        pair(*pImage, node);
        append(pImage);
        if (node.kind == Kind::Element)
            addAttributes(node, *pImage);
    }

    /// Not xmlAddChild, which would melt texts that touch into one.
    void append(xmlNode* pImage) noexcept {
        pImage->parent = pParent_;
        pImage->prev = pParent_->last;
        (pParent_->last == nullptr ? pParent_->children : pParent_->last->next) = pImage;
        pParent_->last = pImage;
    }

    xmlNode* imageOf(const NodeData& node) {
        const std::string sText = safe(node.text());
        const auto nSize = static_cast<int>(sText.size());
        switch (node.kind) {
        case Kind::Element:
            return checked(xmlNewDocNode(pDoc_.get(), nullptr, bytes(node.pName->sQualified), nullptr));
        case Kind::Text:
            return checked(xmlNewDocTextLen(pDoc_.get(), bytes(sText), nSize));
        case Kind::CData:
            return checked(xmlNewCDataBlock(pDoc_.get(), bytes(sText), nSize));
        case Kind::Comment:
            return checked(xmlNewDocComment(pDoc_.get(), bytes(sText)));
        case Kind::ProcessingInstruction:
            return node.pName->sQualified == "xml"
                       ? nullptr
                       : checked(xmlNewDocPI(pDoc_.get(), bytes(node.pName->sQualified), bytes(sText)));
        case Kind::Fragment:
            return checked(xmlNewDocNode(pDoc_.get(), nullptr, bytes("document-fragment"), nullptr));
        default:
            return nullptr;
        }
    }

    static std::string safe(std::string_view sText) {
        CharacterRepairs ignored;
        return cleaned(sText, ignored);
    }

    void addAttributes(const NodeData& element, xmlNode& image) {
        if (bNamespaces_)
            declareNamespaces(element, image);
        setName(element, image);
        xmlAttr* pFirst = nullptr;
        xmlAttr* pLast = nullptr;
        for (NodeData* p = element.pFirstAttribute; p != nullptr; p = p->pNext) {
            p->pMirror = nullptr;
            if (bNamespaces_ && isDeclaration(*p))
                continue;
            const std::string sValue = safe(p->text());
            const auto name = resolve(*p, image, false);
            // The library walks to the end of the attributes that it finds: it finds none.
            image.properties = nullptr;
            xmlAttr* const pAttribute = xmlNewNsProp(&image, name.pNs, bytes(name.sLocal), bytes(sValue));
            if (pAttribute != nullptr) {
                pAttribute->prev = pLast;
                (pLast == nullptr ? pFirst : pLast->next) = pAttribute;
                pLast = pAttribute;
            }
            image.properties = pFirst;
            pair(*checked(pAttribute), *p);
        }
    }

    void declareNamespaces(const NodeData& element, xmlNode& image) {
        for (const NodeData* p = element.pFirstAttribute; p != nullptr; p = p->pNext) {
            if (!isDeclaration(*p))
                continue;
            const std::string sPrefix(p->pName->sQualified == "xmlns" ? std::string_view()
                                                                      : p->pName->base());
            const std::string sUri = safe(p->text());
            xmlNewNs(&image, bytes(sUri), sPrefix.empty() ? nullptr : bytes(sPrefix));
        }
    }

    struct ResolvedName {
        xmlNs* pNs;
        std::string sLocal;
    };

    /// A prefix that nothing declares remains a part of the name.
    ResolvedName resolve(const NodeData& node, xmlNode& image, bool bElement) {
        const Name& name = *node.pName;
        const bool bXml = name.sQualified.starts_with("xml:");
        if ((!bNamespaces_ && !bXml) || (name.nBase == 0 && !bElement))
            return {nullptr, name.sQualified};
        const std::string sPrefix = name.sQualified.substr(0, name.nBase == 0 ? 0 : name.nBase - 1);
        xmlNs* const pNs = xmlSearchNs(pDoc_.get(), &image, name.nBase == 0 ? nullptr : bytes(sPrefix));
        if (pNs == nullptr || name.nBase == 0)
            return {pNs, name.sQualified};
        return {pNs, std::string(name.base())};
    }

    void setName(const NodeData& element, xmlNode& image) {
        const auto name = resolve(element, image, true);
        image.ns = name.pNs;
        if (name.sLocal != element.pName->sQualified)
            xmlNodeSetName(&image, bytes(name.sLocal));
    }

    const ErrorScope errors_;
    NodeData& top_;
    DocPtr pDoc_;
    xmlNode* pParent_ = nullptr;
    bool bNamespaces_ = false;
};

} // namespace

std::unique_ptr<Mirror> mirrorOf(DocPtr pDoc) {
    return std::make_unique<LibXmlMirror>(std::move(pDoc));
}

} // namespace libxml

std::unique_ptr<Mirror> makeMirror(NodeData& top) {
    libxml::initialise();
    return libxml::mirrorOf(libxml::MirrorMaker(top).make());
}

} // namespace halvane::dom
