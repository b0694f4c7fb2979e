#pragma once

#include "xml/dom/Dom.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// Which namespaces prefixes stand for where one element after the other is entered and left. Texts are views
/// into what declares them. The prefix "" is the default namespace.
class Namespaces {
public:
    /// Whatever is declared from here on is forgotten by leave().
    void enter() { levels_.push_back(bindings_.size()); }
    void leave() {
        bindings_.resize(levels_.back());
        levels_.pop_back();
    }
    void declare(std::string_view sPrefix, std::string_view sAddress) {
        bindings_.push_back({sPrefix, sAddress});
    }
    /// The same at the level around.
    void declareAround(std::string_view sPrefix, std::string_view sAddress) {
        bindings_.insert(bindings_.begin() + static_cast<std::ptrdiff_t>(levels_.back()++),
                         {sPrefix, sAddress});
    }
    /// What was declared around is not known from here on, until the element is left.
    void isolate() { bindings_.push_back({sBarrier, {}}); }
    /// Declares what the element's attributes declare.
    void declareAll(dom::Node oElement);

    /// @returns nothing for a prefix that is not declared; "" for no default namespace.
    [[nodiscard]] std::optional<std::string_view> find(std::string_view sPrefix) const;
    struct Binding {
        std::string_view sPrefix;
        std::string_view sAddress;
    };
    /// All that hold, each prefix once.
    [[nodiscard]] std::vector<Binding> all() const;

    /// What stands for that address here, the nearest first.
    [[nodiscard]] std::vector<std::string_view> prefixesOf(std::string_view sAddress) const;

private:
    /// No prefix.
    static constexpr std::string_view sBarrier = ":";

    std::vector<Binding> bindings_;
    std::vector<std::size_t> levels_;
};

/// What stands before the colon of a name; "" for a name without one.
[[nodiscard]] std::string_view prefixOf(std::string_view sName) noexcept;
/// A name with that prefix; "": without one.
[[nodiscard]] std::string qualifiedName(std::string_view sPrefix, std::string_view sLocal);
/// The attribute that declares a prefix; "": the default namespace.
[[nodiscard]] std::string declarationOf(std::string_view sPrefix);
/// An address as the value of an attribute.
[[nodiscard]] std::string escapedAddress(std::string_view sAddress);
/// The prefix that an attribute declares, "" for the default namespace; nothing for any other attribute.
[[nodiscard]] std::optional<std::string_view> declaredPrefix(std::string_view sAttribute) noexcept;

} // namespace halvane
