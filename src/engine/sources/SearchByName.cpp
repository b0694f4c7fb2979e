// Finding maps and tags by name.

#include "base/Text.h"
#include "engine/ModExporter.h"

namespace halvane {

namespace {

bool isNamed(const host::GisMap* pMap, std::string_view sName) {
    if (pMap == nullptr)
        return false;
    return equalIgnoringCase(pMap->name(), sName);
}

} // namespace

host::GisMapPtr FindMapByName(ExportState& state, const host::GisMapDocumentPtr& pMapDoc,
                              std::string_view sName) {
    host::GisMapPtr pFound;
    trapFailures(state, [&] {
        const std::int32_t lCount = pMapDoc == nullptr ? 0 : pMapDoc->mapCount();
        for (std::int32_t i = 0; i < lCount && pFound == nullptr; ++i) {
            auto pMap = pMapDoc->map(i);
            if (isNamed(pMap.get(), sName))
                pFound = std::move(pMap);
        }
    });
    return pFound;
}

bool IsTagNameListed(ExportState& state, std::string_view sTagName) {
    bool bListed = false;
    trapFailures(state, [&] {
        if (state.dTagNames != nullptr)
            bListed = !state.dTagNames->GetValueString(sTagName).empty();
    });
    return bListed;
}

std::string LookupTagLayerName(ExportState& state, std::string_view sTag) {
    std::string sName;
    trapFailures(state, [&] {
        if (state.dTagNames != nullptr)
            sName = state.dTagNames->GetValueString(sTag);
    });
    return sName;
}

namespace {

/// The first selected node whose TagName equals the tag, ignoring case.
Node firstWithTag(dom::NodeList oNodes, std::string_view sTag) {
    for (Node oNode = oNodes.nextNode(); oNode; oNode = oNodes.nextNode()) {
        const auto sTagName = oNode.getAttribute("TagName");
        if (sTagName.has_value() && equalIgnoringCase(*sTagName, sTag))
            return oNode;
    }
    return {};
}

} // namespace

Node FindTagNode(ExportState& state, Node oRoot, std::string_view sNodePath, std::string_view sTag) {
    Node oFound;
    if (!oRoot || trimBlanks(sNodePath).empty())
        return oFound;
    if (sNodePath.ends_with('/'))
        sNodePath.remove_suffix(1);
    trapFailures(state, [&] { oFound = firstWithTag(oRoot.selectNodes(sNodePath), sTag); });
    return oFound;
}

std::string LookupFieldAlias(ExportState& state, Node oNode, std::string_view sTagName) {
    std::string sAlias;
    if (!oNode)
        return sAlias;
    trapFailures(state, [&] {
        if (const Node oField = firstWithTag(oNode.selectNodes("QvFields/QvField"), sTagName))
            sAlias = oField.getAttribute("Alias").value_or(std::string_view());
    });
    return sAlias;
}

} // namespace halvane
