#include "xml/dom/WideElements.h"

namespace halvane::dom {

NodeData* WideElements::find(const NodeData& element, std::string_view sName) {
    Known& known = byElement_[&element];
    NodeData* pNew = known.pLast == nullptr ? element.pFirstAttribute : known.pLast->pNext;
    for (; pNew != nullptr; pNew = pNew->pNext) {
        known.byName.emplace(pNew->pName->sQualified, pNew);
        known.pLast = pNew;
    }
    const auto it = known.byName.find(sName);
    return it == known.byName.end() ? nullptr : it->second;
}

} // namespace halvane::dom
