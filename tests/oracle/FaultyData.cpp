#include "oracle/FaultyData.h"

#include "base/Failure.h"
#include "host/Rows.h"
#include "host/memory/Layers.h"

namespace halvane::oracle {

namespace {

[[noreturn]] void fail(const std::string& sWhat) {
    throw Failure(FailureNumber::HostFailure, sWhat + " failed");
}

class FaultyRow final : public host::GisRow {
public:
    FaultyRow(host::GisRowPtr pRow, TableFaultsPtr pFaults)
        : pRow_(std::move(pRow)), pFaults_(std::move(pFaults)) {}

    [[nodiscard]] const host::GisFields& fields() const override { return pRow_->fields(); }
    [[nodiscard]] ValueView value(std::int32_t lIndex) const override {
        if (pFaults_->nValueRow == pRow_->objectId() && pFaults_->lValueField == lIndex)
            fail("value " + std::to_string(lIndex) + " of row " + std::to_string(pFaults_->nValueRow));
        return pRow_->value(lIndex);
    }
    [[nodiscard]] std::int64_t objectId() const override { return pRow_->objectId(); }
    [[nodiscard]] host::GisGeometryPtr shape() const override {
        if (pFaults_->nShapeRow == pRow_->objectId())
            fail("shape of row " + std::to_string(pFaults_->nShapeRow));
        return pRow_->shape();
    }

private:
    host::GisRowPtr pRow_;
    TableFaultsPtr pFaults_;
};

class FaultyCursor final : public host::GisCursor {
public:
    FaultyCursor(host::GisCursorPtr pCursor, TableFaultsPtr pFaults, bool bFiltered)
        : pCursor_(std::move(pCursor)), pFaults_(std::move(pFaults)), bFiltered_(bFiltered) {}

    [[nodiscard]] host::GisRowPtr nextRow() override {
        if (!bFiltered_ && pFaults_->lNextRow == lCalls_++)
            fail("row " + std::to_string(pFaults_->lNextRow));
        auto pRow = pCursor_->nextRow();
        return pRow == nullptr ? nullptr : std::make_shared<FaultyRow>(std::move(pRow), pFaults_);
    }

private:
    host::GisCursorPtr pCursor_;
    TableFaultsPtr pFaults_;
    bool bFiltered_;
    std::int32_t lCalls_ = 0;
};

host::GisCursorPtr searchWithFaults(host::GisTable& table, const host::GisQueryFilter* pFilter,
                                    const TableFaultsPtr& pFaults) {
    if (pFilter == nullptr ? pFaults->bSearch : pFaults->bFilteredSearch)
        fail(pFilter == nullptr ? "search" : "search for " + pFilter->sWhereClause);
    return faulty(table.search(pFilter), pFaults, pFilter != nullptr);
}

} // namespace

host::GisCursorPtr faulty(host::GisCursorPtr pCursor, const TableFaultsPtr& pFaults, bool bFiltered) {
    return std::make_shared<FaultyCursor>(std::move(pCursor), pFaults, bFiltered);
}

host::GisCursorPtr FaultyTable::search(const host::GisQueryFilter* pFilter) {
    return searchWithFaults(*pTable_, pFilter, pFaults_);
}

host::GisCursorPtr FaultyFeatureClass::search(const host::GisQueryFilter* pFilter) {
    return searchWithFaults(*pClass_, pFilter, pFaults_);
}

std::int64_t FaultyFeatureClass::featureCount() const {
    if (pFaults_->bFeatureCount)
        fail("feature count");
    return pClass_->featureCount();
}

FaultyFeatureLayer::FaultyFeatureLayer(std::string sName, FaultyFeatureClassPtr pClass,
                                       const std::vector<std::int64_t>& aSelected, bool bClassFails)
    : sName_(std::move(sName)), pClass_(std::move(pClass)), bClassFails_(bClassFails) {
    const auto pLayer = host::memory::MemoryFeatureLayer::make(sName_, pClass_->inner());
    pLayer->select(aSelected);
    pLayer_ = pLayer;
}

host::GisFeatureClassPtr FaultyFeatureLayer::featureClass() const {
    if (bClassFails_)
        fail("class of " + sName_);
    return pClass_;
}

void FaultyFeatureLayer::setFeatureClass(host::GisFeatureClassPtr /*pFeatureClass*/) {
    throw Failure::of(FailureNumber::ActionNotSupported);
}

host::GisCursorPtr FaultyFeatureLayer::searchSelection() {
    if (pClass_->faults()->bSearch)
        fail("search of the selection");
    return faulty(pLayer_->searchSelection(), pClass_->faults(), false);
}

} // namespace halvane::oracle
