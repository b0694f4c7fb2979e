#include "engine/OutputElement.h"

namespace halvane {

using dom::Node;

OutputElement OutputElement::appendElement(const dom::Name& name) const {
    if (pStream_ != nullptr)
        return {*pStream_, pStream_->appendElement(depth_, name)};
    Node oParent = oNode_;
    return oParent.appendChild(oParent.ownerDocument().createElement(name));
}

void OutputElement::setAttribute(const dom::Name& name, std::string_view sValue) const {
    if (pStream_ == nullptr) {
        Node(oNode_).setAttribute(name.sQualified, sValue);
        return;
    }
    pStream_->addAttribute(depth_, name);
    if (!sValue.empty())
        pStream_->fillAttribute(depth_, name.sQualified, sValue);
}

void OutputElement::fillAttribute(std::string_view sName, std::string_view sValue) const {
    if (pStream_ != nullptr)
        pStream_->fillAttribute(depth_, sName, sValue);
    else
        oNode_.attributes().getNamedItem(sName).setText(sValue);
}

void OutputElement::setText(std::string_view sText) const {
    if (pStream_ != nullptr)
        pStream_->setText(depth_, sText);
    else
        Node(oNode_).setText(sText);
}

OutputElement OutputElement::parent() const {
    if (pStream_ != nullptr)
        return {*pStream_, depth_ - 1};
    return oNode_.parentNode();
}

Node OutputElement::node() const {
    if (pStream_ != nullptr)
        throw Failure(FailureNumber::ActionNotSupported, "the element is written straight to the spool");
    return oNode_;
}

} // namespace halvane
