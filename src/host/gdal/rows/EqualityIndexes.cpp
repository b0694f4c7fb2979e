#include "host/gdal/rows/EqualityIndexes.h"

#include "host/gdal/rows/FeatureCursor.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace halvane::host::gdal {

namespace {

/// The features that an index has found.
class IndexedFeatures : public FeatureSource {
public:
    IndexedFeatures(std::shared_ptr<EqualityIndex> pIndex, std::vector<std::int64_t> ids)
        : pIndex_(std::move(pIndex)), ids_(std::move(ids)) {}

    void read(FeatureBlock& block) override {
        constexpr std::size_t lMostAhead = 64;
        const std::size_t lCount = std::min(lMostAhead, ids_.size() - lRead_);
        block = pIndex_->rows(std::span(ids_).subspan(lRead_, lCount));
        lRead_ += lCount;
        block.bLast = lRead_ == ids_.size();
    }

private:
    std::shared_ptr<EqualityIndex> pIndex_;
    std::vector<std::int64_t> ids_;
    std::size_t lRead_ = 0;
};

} // namespace

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
        entry.pIndex = EqualityIndex::tryBuild(openLayer(), clause);
        entry.bRefused = entry.pIndex == nullptr;
        if (entry.bRefused)
            return nullptr;
    }
    return std::make_shared<FeatureCursor>(
        pFields, std::make_unique<IndexedFeatures>(entry.pIndex, entry.pIndex->find(clause)));
}

void EqualityIndexes::noteAnswered(const EqualityClause& clause) {
    entries_.try_emplace({clause.sField, clause.bText});
}

} // namespace halvane::host::gdal
