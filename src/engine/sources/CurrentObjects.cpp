#include "engine/sources/CurrentObjects.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace halvane {

namespace {

constexpr std::array<std::string_view, 9> keyNames{"DataFrame", "FeatureLayer", "FeatureClass",
                                                   "Workspace", "Table",        "RelatedTable",
                                                   "TinLayer",  "Feature",      "Point"};

} // namespace

void CurrentObjects::file() {
    std::vector<std::size_t> aChanged;
    for (std::size_t n = 0; n < aFiled_.size(); ++n)
        if (aFiled_[n].nTurn != 0)
            aChanged.push_back(n);
    std::sort(aChanged.begin(), aChanged.end(),
              [&](std::size_t n, std::size_t m) { return aFiled_[n].nTurn < aFiled_[m].nTurn; });
    for (const std::size_t n : aChanged) {
        pCollection_->SetValue(aFiled_[n].pObject, keyNames[n]);
        aFiled_[n] = {};
    }
}

dCollection& CurrentObjects::collection() {
    if (pCollection_ == nullptr)
        pCollection_ = dCollection::create();
    file();
    return *pCollection_;
}

void CurrentObjects::clear() {
    aFiled_ = {};
    pCollection_.reset();
}

} // namespace halvane
