// Random edits of two documents beside a plain model of them: the trees stay what the model says.

#include "base/Failure.h"
#include "fuzz/Check.h"
#include "fuzz/Input.h"
#include "fuzz/Target.h"
#include "xml/dom/Dom.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace halvane::fuzz {
namespace {

using dom::NodeType;

struct ModelNode {
    NodeType type = NodeType::Element;
    std::string sName;
    std::string sValue;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::vector<ModelNode*> children;
    ModelNode* pParent = nullptr;
};

bool isWithin(const ModelNode* pNode, const ModelNode* pAncestor) {
    while (pNode != nullptr && pNode != pAncestor)
        pNode = pNode->pParent;
    return pNode != nullptr;
}

std::string escaped(const std::string& sText, bool bAttribute) {
    std::string sAll;
    for (const char c : sText) {
        if (c == '<')
            sAll += "&lt;";
        else if (c == '&')
            sAll += "&amp;";
        else if (c == '"' && bAttribute)
            sAll += "&quot;";
        else
            sAll += c;
    }
    return sAll;
}

std::string xmlOf(const ModelNode& node) {
    if (node.type == NodeType::Text)
        return escaped(node.sValue, false);
    if (node.type == NodeType::Comment)
        return "<!--" + node.sValue + "-->";
    if (node.type == NodeType::CDataSection)
        return "<![CDATA[" + node.sValue + "]]>";
    std::string sTag = "<" + node.sName;
    for (const auto& [sName, sValue] : node.attributes)
        sTag += " " + sName + "=\"" + escaped(sValue, true) + "\"";
    std::string sContent;
    for (const ModelNode* pChild : node.children)
        sContent += xmlOf(*pChild);
    return sContent.empty() ? sTag + "/>" : sTag + ">" + sContent + "</" + node.sName + ">";
}

class Editing {
public:
    explicit Editing(Input& input) : input_(input) {
        for (std::size_t n = 0; n < 2; ++n) {
            aDocuments_.push_back(dom::Document::create());
            aDocuments_.back()->loadXML("<r/>");
            ModelNode root;
            root.sName = "r";
            add(std::move(root), aDocuments_.back()->documentElement());
        }
    }

    void run() {
        for (int lSteps = 0; lSteps < 300 && !input_.atEnd(); ++lSteps)
            step();
        for (std::size_t n = 0; n < 2; ++n)
            check(aDocuments_[n]->xml() == xmlOf(*nodes_[n].pModel), "The document is the model's",
                  aDocuments_[n]->xml() + "\n" + xmlOf(*nodes_[n].pModel));
        if (bSealed_)
            return;
        for (const Pair& pair : nodes_)
            compare(pair);
    }

private:
    struct Pair {
        ModelNode* pModel;
        dom::Node oNode;
    };

    void add(ModelNode model, dom::Node oNode) {
        model_.push_back(std::make_unique<ModelNode>(std::move(model)));
        nodes_.push_back({model_.back().get(), oNode});
    }
    std::size_t any() { return input_.below(nodes_.size()); }
    std::string text() {
        static const std::vector<std::string> aTexts{"",  "t",     "a & b",
                                                     "<", "\"q\"", "long text of some words"};
        return aTexts[input_.below(aTexts.size())];
    }
    std::string name() {
        static const std::vector<std::string> aNames{"a", "b", "p:q", "longer-name"};
        return aNames[input_.below(aNames.size())];
    }

    void step() {
        switch (input_.below(11)) {
        case 0:
        case 1:
            create(NodeType::Element);
            break;
        case 2:
            create(std::vector{NodeType::Text, NodeType::Comment, NodeType::CDataSection}[input_.below(3)]);
            break;
        case 3:
        case 4:
            insert(nodes_[any()], nodes_[any()], false);
            break;
        case 5:
            insert(nodes_[any()], nodes_[any()], true);
            break;
        case 6:
            remove(nodes_[any()]);
            break;
        case 7:
            setAttribute(nodes_[any()]);
            break;
        case 8:
            setText(any());
            break;
        case 9:
            clone(any());
            break;
        default:
            complete(any());
        }
    }

    void create(NodeType type) {
        ModelNode model;
        model.type = type;
        model.sName = type == NodeType::Element ? name() : "";
        dom::Document& document = *aDocuments_[input_.below(2)];
        const dom::Node oNode = document.createNode(static_cast<std::int32_t>(type), model.sName, "");
        if (type != NodeType::Element) {
            model.sValue = type == NodeType::Text ? text() : "value";
            dom::Node(oNode).setText(model.sValue);
        }
        add(std::move(model), oNode);
    }

    /// @param bFirst before the first child, else as the last.
    void insert(const Pair& parent, const Pair& child, bool bFirst) {
        const bool bAllowed = parent.pModel->type == NodeType::Element &&
                              !isWithin(parent.pModel, child.pModel) && child.pModel != nodes_[0].pModel &&
                              child.pModel != nodes_[1].pModel;
        if (child.pModel == nodes_[0].pModel || child.pModel == nodes_[1].pModel)
            return; // a document without a root is another story
        if (bSealed_ && &parent.oNode.ownerDocument() != &child.oNode.ownerDocument())
            return;
        auto& siblings = parent.pModel->children;
        ModelNode* const pReference = bFirst && !siblings.empty() ? siblings.front() : nullptr;
        if (bSealed_ && bFirst)
            return; // the first child may be sealed
        bool bDone = true;
        try {
            dom::Node oParent = parent.oNode;
            if (pReference == nullptr)
                oParent.appendChild(child.oNode);
            else
                oParent.insertBefore(child.oNode, oParent.firstChild());
        } catch (const Failure&) {
            bDone = false;
        }
        check(bDone == bAllowed, "A child is taken exactly where it can be one");
        if (!bDone || pReference == child.pModel)
            return;
        detach(*child.pModel);
        siblings.insert(pReference == nullptr ? siblings.end()
                                              : std::find(siblings.begin(), siblings.end(), pReference),
                        child.pModel);
        child.pModel->pParent = parent.pModel;
    }

    static void detach(ModelNode& model) {
        if (model.pParent != nullptr)
            std::erase(model.pParent->children, &model);
        model.pParent = nullptr;
    }

    void remove(const Pair& child) {
        if (child.pModel->pParent == nullptr)
            return;
        child.oNode.parentNode().removeChild(child.oNode);
        detach(*child.pModel);
    }

    void setAttribute(const Pair& element) {
        const std::string sName = name();
        const std::string sValue = text();
        bool bDone = true;
        try {
            dom::Node(element.oNode).setAttribute(sName, sValue);
        } catch (const Failure&) {
            bDone = false;
        }
        check(bDone == (element.pModel->type == NodeType::Element), "Elements alone have attributes");
        if (!bDone)
            return;
        auto& attributes = element.pModel->attributes;
        const auto found = std::find_if(attributes.begin(), attributes.end(),
                                        [&](const auto& attribute) { return attribute.first == sName; });
        if (found == attributes.end())
            attributes.emplace_back(sName, sValue);
        else
            found->second = sValue;
    }

    void setText(std::size_t nNode) {
        ModelNode& model = *nodes_[nNode].pModel;
        dom::Node oNode = nodes_[nNode].oNode;
        if (model.type != NodeType::Element) {
            model.sValue = model.type == NodeType::Text ? text() : "other";
            oNode.setText(model.sValue);
            return;
        }
        if (bSealed_)
            return; // sealed children among those replaced
        const std::string sText = text();
        oNode.setText(sText);
        if (!sText.empty() && model.children.size() == 1 && model.children.front()->type == NodeType::Text) {
            model.children.front()->sValue = sText; // the same node
            return;
        }
        while (!model.children.empty())
            detach(*model.children.back());
        if (sText.empty())
            return;
        ModelNode child;
        child.type = NodeType::Text;
        child.sValue = sText;
        child.pParent = &model;
        add(std::move(child), oNode.firstChild());
        model.children.push_back(nodes_.back().pModel);
    }

    void clone(std::size_t nNode) {
        if (bSealed_ || nodes_.size() > 500)
            return;
        const bool bDeep = input_.below(2) == 1;
        addCopy(*nodes_[nNode].pModel, nodes_[nNode].oNode.cloneNode(bDeep), nullptr, bDeep);
    }
    void addCopy(const ModelNode& original, dom::Node oCopy, ModelNode* pParent, bool bDeep) {
        ModelNode copy = original;
        copy.children.clear();
        copy.pParent = pParent;
        add(std::move(copy), oCopy);
        ModelNode* const pCopy = nodes_.back().pModel;
        if (pParent != nullptr)
            pParent->children.push_back(pCopy);
        if (!bDeep)
            return;
        dom::Node oChild = oCopy.firstChild();
        for (const ModelNode* pChild : original.children) {
            addCopy(*pChild, oChild, pCopy, true);
            oChild = oChild.nextSibling();
        }
    }

    /// Handles on a completed item and what is in it end.
    void complete(std::size_t nNode) {
        ModelNode* const pModel = nodes_[nNode].pModel;
        if (pModel->type != NodeType::Element || pModel->pParent == nullptr ||
            !(isWithin(pModel, nodes_[0].pModel) || isWithin(pModel, nodes_[1].pModel)))
            return;
        nodes_[nNode].oNode.ownerDocument().markComplete(nodes_[nNode].oNode);
        std::erase_if(nodes_, [&](const Pair& pair) { return isWithin(pair.pModel, pModel); });
        bSealed_ = true;
    }

    void compare(const Pair& pair) const {
        const ModelNode& model = *pair.pModel;
        const dom::Node oNode = pair.oNode;
        check(oNode.nodeType() == model.type, "A node keeps its type");
        check(oNode.xml() == xmlOf(model), "A node's text is the model's", oNode.xml() + "\n" + xmlOf(model));
        if (model.type != NodeType::Element)
            return;
        check(oNode.nodeName() == model.sName, "A node keeps its name");
        check(oNode.childNodes().length() == static_cast<std::int32_t>(model.children.size()),
              "Children are counted");
        dom::Node oChild = oNode.lastChild();
        for (auto child = model.children.rbegin(); child != model.children.rend(); ++child) {
            check(oChild && oChild.parentNode() == oNode, "A child knows its parent");
            oChild = oChild.previousSibling();
        }
        check(!oChild, "There are no more children");
        check(oNode.attributes().length() == static_cast<std::int32_t>(model.attributes.size()),
              "Attributes are counted");
        for (const auto& [sName, sValue] : model.attributes)
            check(oNode.getAttribute(sName) == sValue, "An attribute has its value");
    }

    Input& input_;
    std::vector<dom::DocumentPtr> aDocuments_;
    std::vector<std::unique_ptr<ModelNode>> model_;
    std::vector<Pair> nodes_; ///< the first two are the roots
    bool bSealed_ = false;
};

} // namespace
} // namespace halvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t nSize) {
    halvane::fuzz::Input input(pBytes, nSize);
    halvane::fuzz::Editing(input).run();
    return 0;
}
