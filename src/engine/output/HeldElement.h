#pragma once

#include "engine/output/OutputElement.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// An element, or attributes of one, made once there is content: until then the start tag is held back. What
/// does not count as content goes with it. Output elements that stand for it borrow it.
class HeldElement {
public:
    /// @param name of the output document.
    HeldElement(const OutputElement& oParent, const dom::Name& name) : oParent_(oParent), pName_(&name) {}
    /// Attributes alone, of an element that is there.
    explicit HeldElement(const OutputElement& oElement) : oParent_(oElement) {}
    HeldElement(const HeldElement&) = delete;
    HeldElement& operator=(const HeldElement&) = delete;
    ~HeldElement() = default;

    [[nodiscard]] OutputElement output() { return OutputElement(*this); }
    [[nodiscard]] bool isMade() const noexcept { return oMade_.has_value(); }
    [[nodiscard]] OutputElement parent() const { return pName_ == nullptr ? oParent_.parent() : oParent_; }

    /// Of the element, or of that which the attributes are of.
    [[nodiscard]] std::string_view name() const {
        return pName_ == nullptr ? oParent_.name() : pName_->sQualified;
    }

    /// The element, made if it was not.
    [[nodiscard]] const OutputElement& made();
    /// See OutputElement.
    void setInline();
    /// An attribute that is no content by itself, or not yet.
    void setAttribute(const dom::Name& name, std::string_view sValue, TextKind kind);
    /// @throws Failure ObjectVariableNotSet when there is no attribute of that name.
    void fillAttribute(std::string_view sName, std::string_view sValue, TextKind kind);

private:
    struct Attribute {
        const dom::Name* pName;
        std::string sValue;
        TextKind kind;
    };

    OutputElement oParent_;
    const dom::Name* pName_ = nullptr;  ///< nothing: attributes alone
    std::vector<Attribute> attributes_; ///< while it is not made
    bool bInline_ = false;
    std::optional<OutputElement> oMade_;
};

} // namespace halvane
