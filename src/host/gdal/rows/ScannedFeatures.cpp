#include "host/gdal/rows/ScannedFeatures.h"

#include "base/Failure.h"
#include "host/gdal/rows/Filtering.h"
#include "host/gdal/source/Errors.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace halvane::host::gdal {

namespace {

// The table's columns in the order of its definition, by key; "" where the table has no key.
std::string orderedQuery(const LayerHandle& layer, const Clause& clause) {
    const std::string sKey = layer.layer().GetFIDColumn();
    if (!isServer(layer.source()) || sKey.empty())
        return {};
    OGRFeatureDefn& definition = *layer.layer().GetLayerDefn();
    // By this name the driver takes the column as the identifier.
    std::string sColumns = quotedName(sKey) + " AS ogc_fid";
    for (int lColumn = 0; lColumn < definition.GetGeomFieldCount(); ++lColumn)
        sColumns += ", " + quotedName(definition.GetGeomFieldDefn(lColumn)->GetNameRef());
    for (int lColumn = 0; lColumn < definition.GetFieldCount(); ++lColumn)
        sColumns += ", " + quotedName(definition.GetFieldDefn(lColumn)->GetNameRef());
    return "SELECT " + sColumns + " FROM " + serverTable(layer.layer().GetName()) + clause.condition() +
           " ORDER BY " + quotedName(sKey);
}

bool haveSameFields(const OGRFeatureDefn& left, const OGRFeatureDefn& right) {
    if (left.GetFieldCount() != right.GetFieldCount())
        return false;
    for (int lColumn = 0; lColumn < left.GetFieldCount(); ++lColumn)
        if (left.GetFieldDefn(lColumn)->GetType() != right.GetFieldDefn(lColumn)->GetType())
            return false;
    return true;
}

} // namespace

ScannedFeatures::ScannedFeatures(LayerHandle layer, RowOrder order, const Clause& clause)
    : layer_(std::move(layer)), check_(*layer_), order_(std::move(order)) {
    sContext_ = "Reading \"" + std::string(layer_->layer().GetName()) + "\" failed";
    if (!clause.isEmpty())
        sContext_ += " with the filter \"" + clause.text() + "\"";
    open(clause);
}

void ScannedFeatures::open(const Clause& clause) {
    const std::string sQuery = orderedQuery(*layer_, clause);
    if (sQuery.empty()) {
        setFilter(layer_->layer(), clause, order_);
        return;
    }
    const ErrorScope errors;
    pResult_ = std::make_unique<ResultSet>(layer_->dataset(), sQuery);
    if (pResult_->layer() == nullptr || errors.failed())
        errors.raise(sContext_);
    if (!haveSameFields(*pResult_->layer()->GetLayerDefn(), *layer_->layer().GetLayerDefn()))
        throw Failure(FailureNumber::HostFailure, sContext_ + ": its columns cannot be read by its key");
}

ScannedFeatures::~ScannedFeatures() {
    const ErrorScope errors;
    pThread_.reset();
    pResult_.reset();
    check_.reset();
    layer_.reset();
}

OGRLayer& ScannedFeatures::rowLayer() {
    return pResult_ != nullptr ? *pResult_->layer() : layer_->layer();
}

void ScannedFeatures::read(FeatureBlock& block) {
    if (isLong() && pThread_ == nullptr)
        startThread();
    if (pThread_ == nullptr)
        readAtOnce(block);
    else
        block = pThread_->next(std::move(block)).value_or(FeatureBlock{{}, {}, {}, true});
}

void ScannedFeatures::readBehind(std::int64_t lId, FeatureBlock& block) {
    OGRLayer& layer = layer_->layer();
    setFilter(layer, Clause(quotedName(layer.GetFIDColumn()) + " > " + std::to_string(lId), layer.GetName()),
              order_);
    readAtOnce(block);
}

// Blocks grow, since many cursors are asked for one row only.
void ScannedFeatures::readAtOnce(FeatureBlock& block) {
    constexpr std::size_t lGreatestBlock = 64;
    readFeatures(rowLayer(), lBlock_, sContext_, block, layer_->missingRows(), &*check_, [] { return true; });
    lBlock_ = std::min(2 * lBlock_, lGreatestBlock);
    lRead_ += block.features.size();
}

void ScannedFeatures::startThread() {
    constexpr std::size_t lThreadBlock = 256;
    const auto read = [&layer = rowLayer(), &sContext = sContext_, &missing = layer_->missingRows(),
                       pCheck = &*check_](ReadAhead<FeatureBlock>& ahead) {
        for (bool bMore = true; bMore;) {
            FeatureBlock block = ahead.blank();
            readFeatures(layer, lThreadBlock, sContext, block, missing, pCheck,
                         [&ahead] { return !ahead.isStopped(); });
            bMore = !block.bLast;
            bMore = ahead.put(std::move(block)) && bMore;
        }
    };
    try {
        pThread_ = std::make_unique<ReadAhead<FeatureBlock>>(read);
    } catch (const std::system_error&) {
        // No thread can be had.
    }
}

} // namespace halvane::host::gdal
