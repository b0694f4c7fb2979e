#include "engine/output/OutputElement.h"

namespace halvane {

using dom::Node;

Node OutputElement::appendNode(const dom::Name& name) const {
    Node oParent = oNode_;
    return oParent.appendChild(oParent.ownerDocument().createElement(name));
}

void OutputElement::setAttribute(const dom::Name& name, std::string_view sValue, TextKind kind) const {
    if (pStream_ == nullptr)
        Node(oNode_).setAttribute(name.sQualified, sValue);
    else if (sValue.empty())
        pStream_->addAttribute(depth_, name); // it may be told later
    else
        pStream_->addAttribute(depth_, name, sValue, kind);
}

void OutputElement::fillAttribute(std::string_view sName, std::string_view sValue, TextKind kind) const {
    if (pStream_ != nullptr)
        pStream_->fillAttribute(depth_, sName, sValue, kind);
    else
        oNode_.attributes().getNamedItem(sName).setText(sValue);
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
