#include "telling/ControlPlaces.h"

#include "engine/control/ClsXMLNode.h"

#include <algorithm>
#include <utility>

namespace halvane {

namespace {

/// What attributes with a prefix say of how often a node writes its element.
struct Extras {
    bool bDissolved = false; ///< its children are written into the element around
    bool bConditional = false;
    bool bRepeats = false;
    bool bUnnamed = false; ///< it may write elements that no node is named like
};

Extras extrasOf(dom::Node oNode) {
    Extras extras;
    for (const dom::Node oAttribute : oNode.attributes()) {
        const auto sName = oAttribute.nodeName();
        if (sName.find(':') == std::string_view::npos || sName.starts_with("xmlns:"))
            continue;
        const auto sBase = oAttribute.baseName();
        if (sBase == "Omit") {
            extras.bDissolved = oAttribute.nodeValue() == "Self";
            extras.bConditional = true;
        } else if ((sBase == "As" && oAttribute.nodeValue() == "xml") || sBase == "Geometry") {
            extras.bUnnamed = true;
        } else if (sBase == "When") {
            extras.bConditional = true;
        } else if (sBase == "Include") {
            extras.bDissolved = true;
        } else if (sBase == "Rows" || sBase == "ForEach") {
            extras.bRepeats = true;
        }
    }
    return extras;
}

std::string_view withoutPrefix(std::string_view sName) {
    return sName.substr(sName.rfind(':') + 1); // npos + 1 is 0
}

} // namespace

ControlPlaces::ControlPlaces(dom::Node oControlRoot, std::unordered_set<std::uint32_t> unsure)
    : unsure_(std::move(unsure)) {
    top_.children.push_back(&makeEntry(oControlRoot));
    writers_.push_back({&top_});
    begins_.push_back(0);
}

ControlPlaces::Entry& ControlPlaces::makeEntry(dom::Node oNode) {
    Entry& entry = entries_.emplace_back();
    entry.oNode = oNode;
    entry.sName = ClsXMLNode(oNode).TagName();
    addChildren(entry, oNode, true);
    return entry;
}

// As deep as the control file, whose loading limits it.
void ControlPlaces::addChildren(Entry& entry, dom::Node oNode, bool bSure) {
    for (dom::Node oChild = oNode.firstChild(); oChild; oChild = oChild.nextSibling()) {
        if (oChild.nodeType() != dom::NodeType::Element)
            continue;
        const ClsXMLNode child(oChild);
        const Extras extras = extrasOf(oChild);
        const bool bRepeats = extras.bRepeats || child.Entries() == "Multiple";
        const bool bChildSure =
            bSure && !bRepeats && !extras.bConditional && !unsure_.contains(oChild.line());
        const std::size_t nFirst = entry.children.size();
        if (extras.bDissolved && extras.bUnnamed) {
            entry.unnamed.push_back(&entries_.emplace_back());
            entry.unnamed.back()->oNode = oChild;
        }
        if (extras.bDissolved) {
            addChildren(entry, oChild, bChildSure);
            if (bRepeats) // after its last child its first may come again
                for (std::size_t n = nFirst; n < entry.children.size(); ++n)
                    entry.children[n]->nNext = nFirst;
            continue;
        }
        Entry& made = makeEntry(oChild);
        if (child.Target() == "Attribute") {
            entry.attributes.push_back(&made);
            continue;
        }
        made.bRepeats = bRepeats;
        made.bSure = bChildSure;
        made.nNext = bRepeats ? nFirst : nFirst + 1;
        entry.children.push_back(&made);
    }
}

/// @returns whether the writer has a child of the name, which may come now.
bool ControlPlaces::addMatchesOf(std::size_t nWriter, std::string_view sName, bool bTrustSure) {
    const auto& children = writers_[nWriter].pEntry->children;
    const std::size_t nFirst = writers_.size();
    std::size_t nNext = children.size();
    for (std::size_t n = writers_[nWriter].nFrom; n < children.size(); ++n) {
        if (children[n]->sName == sName) {
            writers_.push_back({children[n]});
            nNext = std::min(nNext, children[n]->nNext);
        }
        if (bTrustSure && children[n]->bSure)
            break; // it must come before what follows it
    }
    if (writers_.size() == nFirst)
        return false;
    writers_[nWriter].nFrom = nNext;
    return true;
}

bool ControlPlaces::addMatches(std::string_view sName, bool bTrustSure) {
    const std::size_t nEnd = writers_.size();
    std::size_t nFitting = 0;
    for (std::size_t n = begins_.back(); n < nEnd; ++n) {
        Writer& writer = writers_[n];
        if (writer.bRefuted)
            continue;
        const bool bFits = addMatchesOf(n, sName, bTrustSure);
        writers_[n].bRefuted = !bFits;
        nFitting += bFits ? 1U : 0U;
    }
    if (nFitting == 0) // then it is no node's, but part of a value
        for (std::size_t n = begins_.back(); n < nEnd; ++n)
            writers_[n].bRefuted = false;
    return nFitting > 0;
}

/// Of the innermost open element, the nodes that write elements of any name into it.
bool ControlPlaces::addUnnamed() {
    const std::size_t nEnd = writers_.size();
    for (std::size_t n = begins_.back(); n < nEnd; ++n)
        for (const Entry* const pEntry : writers_[n].pEntry->unnamed)
            writers_.push_back({pEntry});
    return writers_.size() > nEnd;
}

void ControlPlaces::begin(std::string_view sName) {
    const std::size_t nBegin = writers_.size();
    static_cast<void>(addMatches(sName, true) || addMatches(sName, false) || addUnnamed());
    begins_.push_back(nBegin);
}

void ControlPlaces::end() {
    if (begins_.size() == 1)
        return;
    writers_.erase(writers_.begin() + static_cast<std::ptrdiff_t>(begins_.back()), writers_.end());
    begins_.pop_back();
}

std::vector<dom::Node> ControlPlaces::writers(std::string_view sAttribute) const {
    std::vector<dom::Node> elements;
    std::vector<dom::Node> attributes;
    std::size_t nEnd = writers_.size();
    for (std::size_t nLevel = begins_.size(); nLevel > 1 && elements.empty(); --nLevel) {
        const std::size_t nBegin = begins_[nLevel - 1];
        for (std::size_t n = nBegin; n < nEnd; ++n) {
            if (writers_[n].bRefuted)
                continue;
            elements.push_back(writers_[n].pEntry->oNode);
            for (const Entry* pAttribute : writers_[n].pEntry->attributes)
                if (!sAttribute.empty() && withoutPrefix(pAttribute->sName) == sAttribute)
                    attributes.push_back(pAttribute->oNode);
        }
        nEnd = nBegin;
    }
    return attributes.empty() ? elements : attributes;
}

} // namespace halvane
