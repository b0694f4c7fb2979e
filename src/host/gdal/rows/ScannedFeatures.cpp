#include "host/gdal/rows/ScannedFeatures.h"

#include "base/Failure.h"
#include "host/gdal/rows/Filtering.h"
#include "host/gdal/source/Errors.h"

#include <algorithm>
#include <set>
#include <system_error>
#include <utility>

namespace halvane::host::gdal {

namespace {

// The table's columns in the order of its definition, by key; "" where the table has no key.
// @param texts the columns that are asked for as texts.
std::string orderedQuery(const LayerHandle& layer, const Clause& clause, const std::set<int>& texts) {
    const std::string sKey = layer.layer().GetFIDColumn();
    if (!isServer(layer.source()) || sKey.empty())
        return {};
    OGRFeatureDefn& definition = *layer.layer().GetLayerDefn();
    // By this name the driver takes the column as the identifier.
    std::string sColumns = quotedName(sKey) + " AS ogc_fid";
    for (int lColumn = 0; lColumn < definition.GetGeomFieldCount(); ++lColumn)
        sColumns += ", " + quotedName(definition.GetGeomFieldDefn(lColumn)->GetNameRef());
    for (int lColumn = 0; lColumn < definition.GetFieldCount(); ++lColumn) {
        const std::string sName = quotedName(definition.GetFieldDefn(lColumn)->GetNameRef());
        sColumns += ", " + sName + (texts.contains(lColumn) ? "::text AS " + sName : "");
    }
    return "SELECT " + sColumns + " FROM " + serverTable(layer.layer().GetName()) + clause.condition() +
           " ORDER BY " + quotedName(sKey);
}

// The columns whose values have different types.
std::set<int> differingColumns(const OGRFeatureDefn& left, const OGRFeatureDefn& right) {
    std::set<int> columns;
    for (int lColumn = 0; lColumn < std::min(left.GetFieldCount(), right.GetFieldCount()); ++lColumn)
        if (left.GetFieldDefn(lColumn)->GetType() != right.GetFieldDefn(lColumn)->GetType())
            columns.insert(lColumn);
    return columns;
}

} // namespace

ScannedFeatures::ScannedFeatures(LayerHandle layer, RowOrder order, const Clause& clause)
    : layer_(std::move(layer)), check_(*layer_), order_(std::move(order)), clause_(clause) {
    sContext_ = "Reading \"" + std::string(layer_->layer().GetName()) + "\" failed";
    if (!clause.isEmpty())
        sContext_ += " with the filter \"" + clause.text() + "\"";
    open(clause);
}

void ScannedFeatures::open(const Clause& clause) {
    const std::string sQuery = orderedQuery(*layer_, clause, {});
    if (sQuery.empty()) {
        setFilter(layer_->layer(), clause, order_);
        return;
    }
    pResult_ = resultOf(sQuery);
    const OGRFeatureDefn& wanted = *layer_->layer().GetLayerDefn();
    const auto differing = differingColumns(*pResult_->layer()->GetLayerDefn(), wanted);
    if (pResult_->layer()->GetLayerDefn()->GetFieldCount() != wanted.GetFieldCount())
        throw Failure(FailureNumber::HostFailure, sContext_ + ": its columns cannot be read by its key");
    if (differing.empty())
        return;
    // From a text the library makes the value that it makes of the table's.
    pResult_ = resultOf(orderedQuery(*layer_, clause, differing));
    pRetyped_ = std::make_unique<RetypedLayer>(std::move(pResult_), layer_->layer());
}

std::unique_ptr<ResultSet> ScannedFeatures::resultOf(const std::string& sQuery) {
    pRetyped_.reset();
    pResult_.reset();
    const ErrorScope errors;
    auto pResult = std::make_unique<ResultSet>(layer_->dataset(), sQuery);
    if (pResult->layer() == nullptr || errors.failed())
        errors.raise(sContext_);
    return pResult;
}

ScannedFeatures::~ScannedFeatures() {
    const ErrorScope errors;
    pThread_.reset();
    pRetyped_.reset();
    pResult_.reset();
    check_.reset();
    layer_.reset();
}

OGRLayer& ScannedFeatures::rowLayer() {
    if (pRetyped_ != nullptr)
        return *pRetyped_;
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
    open(Clause(quotedName(layer.GetFIDColumn()) + " > " + std::to_string(lId), layer.GetName())
             .with(clause_));
    readAtOnce(block);
}

// Blocks grow, since many cursors are asked for one row only.
void ScannedFeatures::readAtOnce(FeatureBlock& block) {
    constexpr std::size_t nGreatestBlock = 64;
    readFeatures(rowLayer(), nBlock_, sContext_, block, layer_->missingRows(), &*check_, [] { return true; });
    nBlock_ = std::min(2 * nBlock_, nGreatestBlock);
    nRead_ += block.features.size();
}

void ScannedFeatures::startThread() {
    constexpr std::size_t nThreadBlock = 256;
    const auto read = [&layer = rowLayer(), &sContext = sContext_, &missing = layer_->missingRows(),
                       pCheck = &*check_](ReadAhead<FeatureBlock>& ahead) {
        for (bool bMore = true; bMore;) {
            FeatureBlock block = ahead.blank();
            readFeatures(layer, nThreadBlock, sContext, block, missing, pCheck,
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
