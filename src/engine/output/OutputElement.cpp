#include "engine/output/OutputElement.h"

#include "engine/output/HeldElement.h"

namespace halvane {

using dom::Node;

OutputElement OutputElement::made() const {
    return pHeld_ == nullptr ? *this : pHeld_->made();
}

OutputElement OutputElement::appendNode(const dom::Name& name) const {
    if (pHeld_ != nullptr)
        return pHeld_->made().appendElement(name);
    Node oParent = oNode_;
    return oParent.appendChild(oParent.ownerDocument().createElement(name));
}

void OutputElement::appendUnstreamed(const dom::Name& name, std::string_view sText, TextKind kind) const {
    if (pHeld_ != nullptr)
        pHeld_->made().appendElement(name, sText, kind);
    else
        appendNode(name).setText(sText);
}

void OutputElement::setUnstreamedText(std::string_view sText, TextKind kind) const {
    if (bShared_)
        appendText(sText, kind);
    else if (pHeld_ == nullptr)
        Node(oNode_).setText(sText);
    else if (!sText.empty() || pHeld_->isMade())
        pHeld_->made().setText(sText, kind);
}

void OutputElement::setAttribute(const dom::Name& name, std::string_view sValue, TextKind kind) const {
    if (pHeld_ != nullptr) {
        pHeld_->setAttribute(name, sValue, kind);
        if (!sValue.empty())
            (void)pHeld_->made();
    } else if (pStream_ == nullptr) {
        Node(oNode_).setAttribute(name.sQualified, sValue);
    } else if (sValue.empty()) {
        pStream_->addAttribute(depth_, name); // it may be told later
    } else {
        pStream_->addAttribute(depth_, name, sValue, kind);
    }
}

void OutputElement::setConstantAttribute(const dom::Name& name, std::string_view sValue) const {
    if (pHeld_ != nullptr)
        pHeld_->setAttribute(name, sValue, TextKind::Any);
    else
        setAttribute(name, sValue);
}

void OutputElement::setDeclaration(const dom::Name& name, std::string_view sAddress) const {
    try {
        setConstantAttribute(name, sAddress);
    } catch (...) {
        takeBack();
        throw;
    }
}

void OutputElement::takeBack() const {
    if (pStream_ == nullptr && pHeld_ == nullptr && oNode_ && oNode_.parentNode())
        (void)oNode_.parentNode().removeChild(oNode_);
}

void OutputElement::fillAttribute(std::string_view sName, std::string_view sValue, TextKind kind) const {
    if (pHeld_ != nullptr)
        pHeld_->fillAttribute(sName, sValue, kind);
    else if (pStream_ != nullptr)
        pStream_->fillAttribute(depth_, sName, sValue, kind);
    else
        oNode_.attributes().getNamedItem(sName).setText(sValue);
}

void OutputElement::appendText(std::string_view sText, TextKind kind) const {
    if (sText.empty())
        return;
    if (pStream_ != nullptr || pHeld_ != nullptr) {
        if (pHeld_ != nullptr)
            pHeld_->made().appendText(sText, kind);
        else
            pStream_->setText(depth_, sText, kind);
        return;
    }
    Node oElement = oNode_;
    Node oText = oElement.appendChild(
        oElement.ownerDocument().createNode(static_cast<std::int32_t>(dom::NodeType::Text), {}, {}));
    oText.setText(sText);
}

void OutputElement::appendCData(std::string_view sData) const {
    if (sData.empty())
        return;
    if (pHeld_ != nullptr) {
        pHeld_->made().appendCData(sData);
    } else if (pStream_ != nullptr) {
        pStream_->appendCData(depth_, sData);
    } else {
        Node oElement = oNode_;
        Node oSection = oElement.appendChild(oElement.ownerDocument().createNode(
            static_cast<std::int32_t>(dom::NodeType::CDataSection), {}, {}));
        oSection.setText(sData);
    }
}

void OutputElement::setInline() const {
    if (pHeld_ != nullptr)
        pHeld_->setInline();
    else if (pStream_ != nullptr)
        pStream_->setInline(depth_);
    else
        oNode_.setInline();
}

OutputElement OutputElement::parent() const {
    if (pHeld_ != nullptr)
        return pHeld_->parent();
    if (pStream_ != nullptr)
        return {*pStream_, depth_ - 1};
    return oNode_.parentNode();
}

std::string_view OutputElement::name() const {
    return pHeld_ != nullptr ? pHeld_->name() : node().nodeName();
}

Node OutputElement::node() const {
    if (pHeld_ != nullptr)
        return pHeld_->made().node();
    if (pStream_ != nullptr)
        throw Failure(FailureNumber::ActionNotSupported, "the element is written straight to the spool");
    return oNode_;
}

} // namespace halvane
