#include "engine/second/Namespaces.h"

#include "base/Text.h"

#include <set>

#include <algorithm>

namespace halvane {

namespace {

constexpr std::string_view sDefault = "xmlns";
constexpr std::string_view sDeclaration = "xmlns:";

} // namespace

std::vector<Namespaces::Binding> Namespaces::all() const {
    std::vector<Binding> holding;
    std::set<std::string_view> known;
    for (auto binding = bindings_.rbegin(); binding != bindings_.rend() && binding->sPrefix != sBarrier;
         ++binding)
        if (known.insert(binding->sPrefix).second)
            holding.push_back(*binding);
    // No default namespace is one that an element around may have to be told.
    if (!known.contains(""))
        holding.push_back({"", ""});
    return holding;
}

std::string escapedAddress(std::string_view sAddress) {
    return replaceAll(replaceAll(replaceAll(sAddress, "&", "&amp;"), "<", "&lt;"), "\"", "&quot;");
}

std::string qualifiedName(std::string_view sPrefix, std::string_view sLocal) {
    std::string sName(sPrefix);
    if (!sPrefix.empty())
        sName += ':';
    return sName += sLocal;
}

std::string declarationOf(std::string_view sPrefix) {
    return sPrefix.empty() ? std::string(sDefault) : qualifiedName(sDefault, sPrefix);
}

std::string_view prefixOf(std::string_view sName) noexcept {
    const auto nColon = sName.find(':');
    return nColon == std::string_view::npos ? std::string_view() : sName.substr(0, nColon);
}

std::optional<std::string_view> declaredPrefix(std::string_view sAttribute) noexcept {
    if (sAttribute == sDefault)
        return std::string_view();
    if (sAttribute.starts_with(sDeclaration))
        return sAttribute.substr(sDeclaration.size());
    return std::nullopt;
}

void Namespaces::declareAll(dom::Node oElement) {
    for (const dom::Node oAttribute : oElement.attributes())
        if (const auto sPrefix = declaredPrefix(oAttribute.nodeName()))
            declare(*sPrefix, oAttribute.nodeValue());
}

std::optional<std::string_view> Namespaces::find(std::string_view sPrefix) const {
    if (sPrefix == "xml")
        return "http://www.w3.org/XML/1998/namespace";
    const auto nearest =
        std::find_if(bindings_.rbegin(), bindings_.rend(), [sPrefix](const Binding& binding) {
            return binding.sPrefix == sPrefix || binding.sPrefix == sBarrier;
        });
    if (nearest != bindings_.rend() && nearest->sPrefix == sPrefix)
        return nearest->sAddress;
    return sPrefix.empty() ? std::optional(std::string_view()) : std::nullopt;
}

std::vector<std::string_view> Namespaces::prefixesOf(std::string_view sAddress) const {
    std::vector<std::string_view> prefixes;
    for (auto binding = bindings_.rbegin(); binding != bindings_.rend(); ++binding)
        if (binding->sAddress == sAddress && find(binding->sPrefix) == sAddress)
            prefixes.push_back(binding->sPrefix);
    return prefixes;
}

} // namespace halvane
