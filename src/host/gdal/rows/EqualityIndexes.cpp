#include "host/gdal/rows/EqualityIndexes.h"

namespace halvane::host::gdal {

GisCursorPtr EqualityIndexes::search(const EqualityClause& clause, const GdalFieldsPtr& pFields,
                                     const std::function<LayerHandle()>& openLayer) {
    const auto pFound = entries_.find({clause.sField, clause.bText});
    if (pFound == entries_.end() || pFound->second.bRefused)
        return nullptr;
    Entry& entry = pFound->second;
    if (entry.pIndex != nullptr && !entry.pIndex->isCurrent()) {
        // The next clause shows whether it is still one; then a new index is built.
        entries_.erase(pFound);
        return nullptr;
    }
    if (entry.pIndex == nullptr) {
        entry.pIndex = EqualityIndex::tryBuild(openLayer(), clause, *pFields);
        entry.bRefused = entry.pIndex == nullptr;
        if (entry.bRefused)
            return nullptr;
    }
    return entry.pIndex->search(clause, pFields);
}

void EqualityIndexes::noteAnswered(const EqualityClause& clause) {
    entries_.try_emplace({clause.sField, clause.bText});
}

} // namespace halvane::host::gdal
