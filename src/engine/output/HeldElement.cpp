#include "engine/output/HeldElement.h"

#include <algorithm>

namespace halvane {

const OutputElement& HeldElement::made() {
    if (oMade_)
        return *oMade_;
    const OutputElement oMade = pName_ == nullptr ? oParent_.made() : oParent_.appendElement(*pName_);
    try {
        for (const auto& attribute : attributes_)
            oMade.setAttribute(*attribute.pName, attribute.sValue, attribute.kind);
    } catch (...) {
        if (pName_ != nullptr)
            oMade.takeBack();
        throw;
    }
    if (bInline_)
        oMade.setInline();
    attributes_.clear();
    oMade_ = oMade;
    return *oMade_;
}

void HeldElement::setInline() {
    if (oMade_)
        oMade_->setInline();
    else
        bInline_ = true;
}

void HeldElement::setAttribute(const dom::Name& name, std::string_view sValue, TextKind kind) {
    if (oMade_) {
        oMade_->setAttribute(name, sValue, kind);
        return;
    }
    const auto known = std::ranges::find(attributes_, &name, &Attribute::pName);
    if (known == attributes_.end())
        attributes_.push_back({&name, std::string(sValue), kind});
    else
        *known = {&name, std::string(sValue), kind};
}

void HeldElement::fillAttribute(std::string_view sName, std::string_view sValue, TextKind kind) {
    if (oMade_) {
        oMade_->fillAttribute(sName, sValue, kind);
        return;
    }
    const auto held = std::ranges::find_if(
        attributes_, [sName](const Attribute& attribute) { return attribute.pName->sQualified == sName; });
    if (held == attributes_.end())
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    held->sValue = sValue;
    held->kind = kind;
    if (!sValue.empty())
        (void)made();
}

} // namespace halvane
