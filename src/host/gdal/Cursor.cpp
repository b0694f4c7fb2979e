#include "host/gdal/Cursor.h"

#include "collection/Failure.h"
#include "collection/Text.h"
#include "host/gdal/Errors.h"

#include <algorithm>
#include <system_error>
#include <unordered_set>
#include <utility>

namespace halvane::host::gdal {

namespace {

[[noreturn]] void refuseClause(const std::string& sWhere, const std::string& sLayer, const char* sWhy) {
    throw Failure(FailureNumber::HostFailure,
                  "The filter \"" + sWhere + "\" is not valid for \"" + sLayer + "\": " + sWhy);
}

// Where a quoted text or name that begins at a place ends; the text's end when it does not.
std::size_t endOfQuoted(const std::string& sWhere, std::size_t lBegin) {
    const std::size_t lEnd = sWhere.find(sWhere[lBegin], lBegin + 1);
    return lEnd == std::string::npos ? sWhere.size() : lEnd;
}

// A clause must stay within the brackets that it is put into, and nothing may stand behind it: a database
// would ignore a second statement.
void requireOneExpression(const std::string& sWhere, const std::string& sLayer) {
    int lDepth = 0;
    for (std::size_t lAt = 0; lAt < sWhere.size(); ++lAt) {
        const char c = sWhere[lAt];
        if (c == '\'' || c == '"' || c == '`')
            lAt = endOfQuoted(sWhere, lAt);
        else if (c == '-' && sWhere.compare(lAt, 2, "--") == 0)
            lAt = std::min(sWhere.find('\n', lAt), sWhere.size());
        else if (c == ';')
            refuseClause(sWhere, sLayer, "it holds more than one expression");
        else if (c == '/' && sWhere.compare(lAt, 2, "/*") == 0)
            refuseClause(sWhere, sLayer, "it holds a comment");
        else if (c == '(')
            ++lDepth;
        else if (c == ')' && --lDepth < 0)
            break;
    }
    if (lDepth != 0)
        refuseClause(sWhere, sLayer, "its brackets do not match");
}

} // namespace

void setFilter(OGRLayer& layer, const std::string& sWhere) {
    requireOneExpression(sWhere, layer.GetName());
    const ErrorScope errors;
    const OGRErr code = layer.SetAttributeFilter(sWhere.empty() ? nullptr : sWhere.c_str());
    if (code != OGRERR_NONE || errors.failed()) {
        errors.raise("The filter \"" + sWhere + "\" is not valid for \"" + layer.GetName() + "\"");
    }
}

std::string bothClauses(const std::string& sLeft, const std::string& sRight, const std::string& sLayer) {
    requireOneExpression(sLeft, sLayer);
    requireOneExpression(sRight, sLayer);
    if (sLeft.empty() || sRight.empty()) {
        return sLeft.empty() ? sRight : sLeft;
    }
    // The line breaks keep a comment at the end of a clause from swallowing the bracket.
    return "(" + sLeft + "\n) AND (" + sRight + "\n)";
}

namespace {

// Reading tells only that the whole statement failed; preparing one for the clause alone tells why.
[[noreturn]] void raiseWithReason(const LayerHandle& layer, const std::string& sWhere,
                                  const Failure& failure) {
    const std::string& sDriver = layer.source().sDriver;
    const std::string sTable = layer.layer().GetName();
    if (sDriver == "GPKG" || sDriver == "SQLite") {
        const ErrorScope errors;
        const ResultSet result(layer.dataset(),
                               "SELECT 1 FROM " + quotedName(sTable) + " WHERE " + sWhere + "\n LIMIT 0");
        const std::string sReason = errors.text();
        if (const auto lEnd = sReason.rfind("): "); errors.failed() && lEnd != std::string::npos) {
            throw Failure(FailureNumber::HostFailure, "The filter \"" + sWhere + "\" is not valid for \"" +
                                                          sTable + "\": " + sReason.substr(lEnd + 3));
        }
    }
    throw failure;
}

// A server's table, with its schema where the layer's name has one.
std::string serverTable(const std::string& sLayer) {
    const std::size_t lDot = sLayer.find('.');
    return lDot == std::string::npos
               ? quotedName(sLayer)
               : quotedName(sLayer.substr(0, lDot)) + "." + quotedName(sLayer.substr(lDot + 1));
}

// The table's columns in the order of its definition, by key; "" where the table has no key.
std::string orderedQuery(const LayerHandle& layer, const std::string& sWhere) {
    const std::string sKey = layer.layer().GetFIDColumn();
    if (layer.source().sDriver != "PostgreSQL" || sKey.empty()) {
        return {};
    }
    OGRFeatureDefn& definition = *layer.layer().GetLayerDefn();
    // By this name the driver takes the column as the identifier.
    std::string sColumns = quotedName(sKey) + " AS ogc_fid";
    for (int lColumn = 0; lColumn < definition.GetGeomFieldCount(); ++lColumn) {
        sColumns += ", " + quotedName(definition.GetGeomFieldDefn(lColumn)->GetNameRef());
    }
    for (int lColumn = 0; lColumn < definition.GetFieldCount(); ++lColumn) {
        sColumns += ", " + quotedName(definition.GetFieldDefn(lColumn)->GetNameRef());
    }
    return "SELECT " + sColumns + " FROM " + serverTable(layer.layer().GetName()) +
           (sWhere.empty() ? "" : " WHERE (" + sWhere + "\n)") + " ORDER BY " + quotedName(sKey);
}

bool haveSameFields(const OGRFeatureDefn& left, const OGRFeatureDefn& right) {
    if (left.GetFieldCount() != right.GetFieldCount()) {
        return false;
    }
    for (int lColumn = 0; lColumn < left.GetFieldCount(); ++lColumn) {
        if (left.GetFieldDefn(lColumn)->GetType() != right.GetFieldDefn(lColumn)->GetType()) {
            return false;
        }
    }
    return true;
}

} // namespace

GdalCursor::GdalCursor(LayerHandle layer, GdalFieldsPtr pFields, const std::string& sWhere)
    : layer_(std::move(layer)), pFields_(std::move(pFields)), bMayUseColumns_(sWhere.empty()) {
    sContext_ = "Reading \"" + std::string(layer_->layer().GetName()) + "\" failed";
    if (!sWhere.empty()) {
        sContext_ += " with the filter \"" + sWhere + "\"";
    }
    open(sWhere);
    if (sWhere.empty()) {
        return;
    }
    // Databases find a bad clause only when they read.
    readAhead();
    if (block_.failure) {
        raiseWithReason(*layer_, sWhere, *block_.failure);
    }
}

void GdalCursor::open(const std::string& sWhere) {
    const std::string sQuery = orderedQuery(*layer_, sWhere);
    if (sQuery.empty()) {
        if (!sWhere.empty()) {
            setFilter(layer_->layer(), sWhere);
        }
        return;
    }
    const ErrorScope errors;
    pResult_ = std::make_unique<ResultSet>(layer_->dataset(), sQuery);
    if (pResult_->layer() == nullptr || errors.failed()) {
        errors.raise(sContext_);
    }
    if (!haveSameFields(*pResult_->layer()->GetLayerDefn(), *layer_->layer().GetLayerDefn())) {
        throw Failure(FailureNumber::HostFailure, sContext_ + ": its columns cannot be read by its key");
    }
}

void GdalCursor::finish() {
    const ErrorScope errors;
    pThread_.reset();
    pColumns_.reset();
    pResult_.reset();
    layer_.reset();
}

OGRLayer& GdalCursor::rowLayer() {
    return pResult_ != nullptr ? *pResult_->layer() : layer_->layer();
}

// Blocks grow, since many cursors are asked for one row only.
void GdalCursor::readAhead() {
    constexpr std::size_t lGreatestBlock = 64;
    readFeatures(rowLayer(), lBlock_, sContext_, block_, [] { return true; });
    lBlock_ = std::min(2 * lBlock_, lGreatestBlock);
    lNext_ = 0;
}

void GdalCursor::startThread() {
    constexpr std::size_t lThreadBlock = 256;
    const auto read = [&layer = rowLayer(), &sContext = sContext_](ReadAhead<FeatureBlock>& ahead) {
        for (bool bMore = true; bMore;) {
            FeatureBlock block = ahead.blank();
            readFeatures(layer, lThreadBlock, sContext, block, [&ahead] { return !ahead.isStopped(); });
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

// The first rows are read at once: a reader of a few does not pay for a thread.
void GdalCursor::advance() {
    constexpr std::size_t lRowsAtOnce = 1024;
    if (lHandedOut_ >= lRowsAtOnce && bMayUseColumns_ && bAscending_) {
        pColumns_ = ColumnReader::tryOpen(*layer_, *pFields_, lLastId_);
    }
    if (lHandedOut_ >= lRowsAtOnce) {
        bMayUseColumns_ = false;
    }
    if (pColumns_ != nullptr) {
        rows_.clear();
        block_ = {};
        lNext_ = 0;
        return;
    }
    if (lHandedOut_ >= lRowsAtOnce && pThread_ == nullptr) {
        startThread();
    }
    if (pThread_ == nullptr) {
        readAhead();
        return;
    }
    lNext_ = 0;
    block_ = pThread_->next(std::move(block_)).value_or(FeatureBlock{{}, {}, true});
}

// What columns did not yield comes row by row: nothing at the end of the data, else the rows or the failure
// that columns cannot tell. The reading begins before the columns let go of the state that they saw.
void GdalCursor::leaveColumns() {
    columnRows_.clear();
    pBatch_.reset();
    pEarlierBatch_.reset();
    setFilter(layer_->layer(), quotedName(layer_->layer().GetFIDColumn()) + " > " + std::to_string(lLastId_));
    readAhead();
    pColumns_.reset();
}

GisRowPtr GdalCursor::nextColumnRow() {
    if (pBatch_ == nullptr || ++lBatchRow_ == pBatch_->rowCount()) {
        turnToNextBatch();
    }
    if (pBatch_ == nullptr) {
        leaveColumns();
        return nullptr;
    }
    lLastId_ = pBatch_->ids[lBatchRow_];
    if (auto pRow = columnRows_.spare()) {
        pRow->reset(pBatch_, lBatchRow_);
        return pRow;
    }
    auto pRow = std::make_shared<ColumnRow>(pFields_, pBatch_, lBatchRow_);
    columnRows_.add(pRow);
    return pRow;
}

// A row of the last batch may still be held: the one before it is the one to use again.
void GdalCursor::turnToNextBatch() {
    for (const auto& pRow : columnRows_) {
        if (pRow != nullptr && pRow.use_count() == 1) {
            pRow->release();
        }
    }
    const bool bUsed = pEarlierBatch_ != nullptr && pEarlierBatch_.use_count() == 1;
    ColumnBatchPtr pUsed = bUsed ? std::move(pEarlierBatch_) : nullptr;
    pEarlierBatch_ = std::move(pBatch_);
    pBatch_ = pColumns_->next(std::move(pUsed));
    lBatchRow_ = 0;
}

GisRowPtr GdalCursor::nextRow() {
    if (pColumns_ == nullptr && lNext_ == block_.features.size() && !block_.bLast && layer_) {
        advance();
    }
    if (pColumns_ != nullptr) {
        if (GisRowPtr pRow = nextColumnRow()) {
            return pRow;
        }
    }
    if (lNext_ == block_.features.size()) {
        finish();
        rows_.clear();
        if (block_.failure) {
            throw *std::exchange(block_.failure, std::nullopt);
        }
        return nullptr;
    }
    OGRFeatureUniquePtr& pFeature = block_.features[lNext_++];
    ++lHandedOut_;
    bAscending_ = bAscending_ && (lHandedOut_ == 1 || pFeature->GetFID() > lLastId_);
    lLastId_ = pFeature->GetFID();
    if (auto pRow = rows_.spare()) {
        pRow->exchange(pFeature);
        return pRow;
    }
    auto pRow = std::make_shared<GdalRow>(pFields_, std::move(pFeature));
    rows_.add(pRow);
    return pRow;
}

GdalSelectionCursor::GdalSelectionCursor(LayerHandle layer, GdalFieldsPtr pFields,
                                         std::vector<std::int64_t> ids)
    : layer_(std::move(layer)), pFields_(std::move(pFields)), ids_(std::move(ids)),
      bSequential_(layer_.layer().TestCapability(OLCRandomRead) == 0) {}

// One pass instead of one pass for each feature; only the selected ones are kept.
void GdalSelectionCursor::readAhead() {
    const ErrorScope errors;
    const std::unordered_set<std::int64_t> wanted(ids_.begin(), ids_.end());
    OGRLayer& layer = layer_.layer();
    while (features_.size() < wanted.size()) {
        OGRFeatureUniquePtr pFeature(layer.GetNextFeature());
        if (pFeature == nullptr) {
            errors.raiseIfFailed("Reading \"" + std::string(layer.GetName()) + "\" failed");
            return;
        }
        if (wanted.contains(pFeature->GetFID())) {
            const std::int64_t lId = pFeature->GetFID();
            features_.emplace(lId, std::move(pFeature));
        }
    }
}

GisRowPtr GdalSelectionCursor::nextRow() {
    if (lNext_ == ids_.size()) {
        return nullptr;
    }
    if (bSequential_ && lNext_ == 0) {
        readAhead();
    }
    const std::int64_t lId = ids_[lNext_++];
    OGRFeatureUniquePtr pFeature;
    if (!bSequential_) {
        const ErrorScope errors;
        pFeature.reset(layer_.layer().GetFeature(lId));
    } else if (auto found = features_.extract(lId); !found.empty()) {
        pFeature = std::move(found.mapped());
    }
    if (pFeature == nullptr) {
        throw Failure(FailureNumber::HostFailure, "\"" + std::string(layer_.layer().GetName()) +
                                                      "\" has no feature " + std::to_string(lId));
    }
    return std::make_shared<GdalRow>(pFields_, std::move(pFeature));
}

} // namespace halvane::host::gdal
