#include "run/init/SchemaSkeleton.h"

#include "run/init/SchemaDeclarations.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace halvane {

namespace {

constexpr std::size_t nDeepest = 16;
constexpr std::size_t nMostNodes = 5000;

dom::Node childOf(dom::Node oNode, std::string_view sName) {
    for (dom::Node oChild = oNode.firstChild(); oChild; oChild = oChild.nextSibling())
        if (isElement(oChild) && oChild.baseName() == sName)
            return oChild;
    return {};
}

std::vector<dom::Node> elementsIn(dom::Node oNode) {
    std::vector<dom::Node> elements;
    for (dom::Node oChild = oNode.firstChild(); oChild; oChild = oChild.nextSibling())
        if (isElement(oChild))
            elements.push_back(oChild);
    return elements;
}

bool mayBeMissing(dom::Node oParticle) {
    return valueOf(oParticle, "minOccurs") == "0";
}

bool mayComeAgain(dom::Node oParticle) {
    const std::string sMost = valueOf(oParticle, "maxOccurs");
    return !sMost.empty() && sMost != "0" && sMost != "1";
}

/// How the particles around an element let it occur.
struct Occurrence {
    bool bRequired = true;
    bool bRepeated = false;

    [[nodiscard]] Occurrence inside(dom::Node oParticle) const {
        return {bRequired && !mayBeMissing(oParticle), bRepeated || mayComeAgain(oParticle)};
    }
};

class SkeletonReader {
public:
    explicit SkeletonReader(const SchemaDeclarations& declarations) : all_(declarations) {}

    SkeletonNode readElement(const Declared& element) {
        SkeletonNode node;
        node.sName = nameOf(element);
        node.sText = fixedText(element.oNode);
        const bool bAgain = std::ranges::find(open_, element.oNode.data()) != open_.end();
        ++nNodes_;
        if (bAgain || open_.size() >= nDeepest || nNodes_ > nMostNodes) {
            node.sType = simpleTypeOf(element, node);
            return node;
        }
        open_.push_back(element.oNode.data());
        readTypeOf(element, node);
        open_.pop_back();
        return node;
    }

    [[nodiscard]] std::vector<std::pair<std::string, std::string>> namespaces() const {
        return {namespaces_.begin(), namespaces_.end()};
    }

private:
    // ---- Names ----

    /// The prefix that documents have for a namespace; the schema's own is their default one.
    std::string prefixed(const std::string& sNamespace, const std::string& sLocal, bool bAttribute) {
        if (sNamespace.empty())
            return sLocal;
        const bool bOwn = sNamespace == all_.main().sNamespace && all_.main().bQualified && !bAttribute;
        std::string sPrefix = bOwn ? "" : all_.prefixOf(sNamespace);
        if (!bOwn && sPrefix.empty())
            sPrefix = fmt::format("n{}", namespaces_.size() + 1);
        namespaces_.emplace(sPrefix, sNamespace);
        return sPrefix.empty() ? sLocal : sPrefix + ":" + sLocal;
    }

    static bool isGlobal(dom::Node oNode) { return oNode.parentNode().baseName() == "schema"; }

    std::string nameOf(const Declared& element) {
        const std::string sForm = valueOf(element.oNode, "form");
        const bool bQualified =
            isGlobal(element.oNode) || sForm == "qualified" || (sForm.empty() && element.pFile->bQualified);
        return prefixed(bQualified ? element.pFile->sNamespace : "", valueOf(element.oNode, "name"), false);
    }

    // ---- Types ----

    [[nodiscard]] Declared typeNamed(const Declared& place, const std::string& sType) const {
        return all_.find("type", SchemaDeclarations::named(place.oNode, *place.pFile, sType));
    }

    void readTypeOf(const Declared& element, SkeletonNode& node) {
        if (const dom::Node oOwn = childOf(element.oNode, "complexType")) {
            readComplexType({oOwn, element.pFile}, node);
            return;
        }
        const Declared type = typeNamed(element, valueOf(element.oNode, "type"));
        if (type && type.oNode.baseName() == "complexType")
            readComplexType(type, node);
        else
            node.sType = simpleTypeOf(element, node);
    }

    void readComplexType(const Declared& type, SkeletonNode& node) {
        if (const dom::Node oSimple = childOf(type.oNode, "simpleContent"))
            readSimpleContent(derivationIn(oSimple, type), node);
        else if (const dom::Node oComplex = childOf(type.oNode, "complexContent"))
            readComplexContent(derivationIn(oComplex, type), node);
        else
            readContent(type, node);
    }

    static Declared derivationIn(dom::Node oContent, const Declared& type) {
        const dom::Node oExtension = childOf(oContent, "extension");
        return {oExtension ? oExtension : childOf(oContent, "restriction"), type.pFile};
    }

    void readSimpleContent(const Declared& derivation, SkeletonNode& node) {
        if (!derivation)
            return;
        const Declared base = typeNamed(derivation, valueOf(derivation.oNode, "base"));
        if (base && base.oNode.baseName() == "complexType")
            readComplexType(base, node);
        else
            node.sType = nameOfSimple(derivation, valueOf(derivation.oNode, "base"), node);
        readAttributes(derivation, node);
    }

    /// An extension has what its base has, and then its own; a restriction says all of it once more.
    void readComplexContent(const Declared& derivation, SkeletonNode& node) {
        if (!derivation)
            return;
        const Declared base = typeNamed(derivation, valueOf(derivation.oNode, "base"));
        const bool bKnown = base && base.oNode.baseName() == "complexType" &&
                            std::ranges::find(open_, base.oNode.data()) == open_.end();
        if (bKnown && derivation.oNode.baseName() == "extension") {
            open_.push_back(base.oNode.data());
            readComplexType(base, node);
            open_.pop_back();
        }
        readContent(derivation, node);
    }

    void readContent(const Declared& type, SkeletonNode& node) {
        readAttributes(type, node);
        for (const dom::Node oChild : elementsIn(type.oNode))
            readParticle({oChild, type.pFile}, {}, node);
    }

    // ---- Particles ----

    void readParticle(const Declared& particle, Occurrence around, SkeletonNode& node) {
        const std::string_view sKind = particle.oNode.baseName();
        const Occurrence occurrence = around.inside(particle.oNode);
        if (sKind == "element")
            addElement(particle, occurrence, node);
        else if (sKind == "sequence" || sKind == "all")
            for (const dom::Node oChild : elementsIn(particle.oNode))
                readParticle({oChild, particle.pFile}, occurrence, node);
        else if (sKind == "choice")
            readChoice(particle, occurrence, node);
        else if (sKind == "group")
            readGroup(particle, occurrence, node);
    }

    /// The first of a choice stands for all of them.
    void readChoice(const Declared& choice, Occurrence occurrence, SkeletonNode& node) {
        for (const dom::Node oChild : elementsIn(choice.oNode)) {
            if (oChild.baseName() == "annotation" || oChild.baseName() == "any")
                continue;
            readParticle({oChild, choice.pFile}, occurrence, node);
            occurrence.bRequired = false;
        }
    }

    void readGroup(const Declared& reference, Occurrence occurrence, SkeletonNode& node) {
        const std::string sName = valueOf(reference.oNode, "ref");
        const Declared group =
            all_.find("group", SchemaDeclarations::named(reference.oNode, *reference.pFile, sName));
        if (!group || open_.size() >= nDeepest)
            return;
        open_.push_back(group.oNode.data());
        for (const dom::Node oChild : elementsIn(group.oNode))
            readParticle({oChild, group.pFile}, occurrence, node);
        open_.pop_back();
    }

    void addElement(const Declared& particle, Occurrence occurrence, SkeletonNode& node) {
        const Declared element = declarationOf(particle);
        if (!element || valueOf(particle.oNode, "maxOccurs") == "0")
            return;
        const char* const sMark = occurrence.bRequired   ? (occurrence.bRepeated ? "+" : "")
                                  : occurrence.bRepeated ? "*"
                                                         : "?";
        node.sContent += fmt::format("{}{}{}", node.sContent.empty() ? "" : ", ", nameOf(element), sMark);
        if (bInOptional_ && !occurrence.bRequired)
            return;
        const bool bAround = std::exchange(bInOptional_, bInOptional_ || !occurrence.bRequired);
        SkeletonNode child = readElement(element);
        bInOptional_ = bAround;
        child.bRepeated = occurrence.bRepeated;
        (occurrence.bRequired ? node.required : node.optional).push_back(std::move(child));
    }

    /// What a reference means: for an element that only others stand in for, the first of those.
    Declared declarationOf(const Declared& particle) const {
        const std::string sReference = valueOf(particle.oNode, "ref");
        if (sReference.empty())
            return particle;
        const SchemaName name = SchemaDeclarations::named(particle.oNode, *particle.pFile, sReference);
        const Declared element = all_.find("element", name);
        if (!element || valueOf(element.oNode, "abstract") != "true")
            return element;
        for (const Declared& substitute : all_.substitutes(name))
            if (valueOf(substitute.oNode, "abstract") != "true")
                return substitute;
        return element;
    }

    // ---- Attributes ----

    void readAttributes(const Declared& holder, SkeletonNode& node) {
        for (const dom::Node oChild : elementsIn(holder.oNode))
            if (oChild.baseName() == "attribute")
                addAttribute({oChild, holder.pFile}, node);
            else if (oChild.baseName() == "attributeGroup")
                readAttributeGroup({oChild, holder.pFile}, node);
    }

    void readAttributeGroup(const Declared& reference, SkeletonNode& node) {
        const std::string sName = valueOf(reference.oNode, "ref");
        const Declared group =
            all_.find("attributeGroup", SchemaDeclarations::named(reference.oNode, *reference.pFile, sName));
        if (!group || open_.size() >= nDeepest)
            return;
        open_.push_back(group.oNode.data());
        readAttributes(group, node);
        open_.pop_back();
    }

    void addAttribute(const Declared& use, SkeletonNode& node) {
        const std::string sUse = valueOf(use.oNode, "use");
        const std::string sReference = valueOf(use.oNode, "ref");
        const SchemaName name = SchemaDeclarations::named(use.oNode, *use.pFile, sReference);
        const Declared attribute = sReference.empty() ? use : all_.find("attribute", name);
        if (sUse == "prohibited" || !attribute)
            return;
        SkeletonNode child;
        child.bAttribute = true;
        child.sName = prefixed(isGlobal(attribute.oNode) ? attribute.pFile->sNamespace : "",
                               valueOf(attribute.oNode, "name"), true);
        child.sText = fixedText(use.oNode);
        if (child.sText.empty())
            child.sText = fixedText(attribute.oNode);
        child.sType = simpleTypeOf(attribute, child);
        (sUse == "required" ? node.required : node.optional).push_back(std::move(child));
    }

    // ---- Texts ----

    static std::string fixedText(dom::Node oNode) {
        const std::string sFixed = valueOf(oNode, "fixed");
        return sFixed.empty() ? valueOf(oNode, "default") : sFixed;
    }

    /// The type of the text of an element or attribute, for people; "" for one whose content is of elements.
    std::string simpleTypeOf(const Declared& holder, SkeletonNode& node) const {
        if (const dom::Node oOwn = childOf(holder.oNode, "simpleType"))
            return nameOfRestriction({oOwn, holder.pFile}, node);
        const std::string sType = valueOf(holder.oNode, "type");
        return sType.empty() || childOf(holder.oNode, "complexType") ? "" : nameOfSimple(holder, sType, node);
    }

    std::string nameOfSimple(const Declared& place, const std::string& sType, SkeletonNode& node) const {
        const Declared type = typeNamed(place, sType);
        if (!type)
            return sType.substr(sType.find(':') + 1);
        return type.oNode.baseName() == "simpleType" ? nameOfRestriction(type, node) : "";
    }

    std::string nameOfRestriction(const Declared& type, SkeletonNode& node) const {
        const dom::Node oRestriction = childOf(type.oNode, "restriction");
        if (!oRestriction)
            return valueOf(type.oNode, "name");
        std::string sValues;
        for (const dom::Node oFacet : elementsIn(oRestriction)) {
            if (oFacet.baseName() != "enumeration")
                continue;
            const std::string sValue = valueOf(oFacet, "value");
            if (node.sText.empty())
                node.sText = sValue;
            sValues += (sValues.empty() ? "" : " | ") + sValue;
        }
        if (!sValues.empty())
            return sValues;
        SkeletonNode unheeded;
        const std::string sBase = valueOf(oRestriction, "base");
        const std::string sOfBase = nameOfSimple({oRestriction, type.pFile}, sBase, unheeded);
        if (node.sText.empty())
            node.sText = unheeded.sText;
        return sOfBase;
    }

    const SchemaDeclarations& all_;
    std::vector<const dom::NodeData*> open_; ///< declarations that are being read
    std::map<std::string, std::string> namespaces_;
    std::size_t nNodes_ = 0;
    bool bInOptional_ = false; ///< what is optional there is named alone
};

} // namespace

std::optional<SchemaSkeleton> schemaSkeleton(const dom::SchemaFiles& files,
                                             std::vector<std::string>& problems) {
    const SchemaDeclarations declarations(files);
    std::vector<Declared> roots;
    for (const Declared& element : declarations.ownElements())
        if (valueOf(element.oNode, "abstract") != "true")
            roots.push_back(element);
    if (roots.empty()) {
        problems.emplace_back("--schema: it declares no element that a document could begin with");
        return std::nullopt;
    }
    std::stable_partition(roots.begin(), roots.end(), [&](const Declared& element) {
        return !declarations.isReferredTo(SchemaDeclarations::nameOf(element));
    });
    SkeletonReader reader(declarations);
    SchemaSkeleton skeleton;
    skeleton.root = reader.readElement(roots.front());
    skeleton.namespaces = reader.namespaces();
    for (std::size_t n = 1; n < roots.size(); ++n)
        skeleton.otherRoots.push_back(valueOf(roots[n].oNode, "name"));
    return skeleton;
}

} // namespace halvane
