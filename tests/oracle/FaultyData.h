#pragma once

// Tables, layers and rows that fail where they are told to: tied to a row or an object, not to the number of
// calls, so that they fail alike however often a caller asks.

#include "host/Layers.h"
#include "host/Tables.h"
#include "host/memory/Table.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace halvane::oracle {

/// What of a table fails.
struct TableFaults {
    std::int32_t lNextRow = -1;    ///< the nextRow call of each whole-table or selection cursor, from 0
    std::int64_t nValueRow = -1;   ///< the identifier of the row whose value fails
    std::int32_t lValueField = -1; ///< the index of that value
    std::int64_t nShapeRow = -1;   ///< the identifier of the row whose shape fails
    bool bSearch = false;          ///< every search without a filter
    bool bFilteredSearch = false;  ///< every search with one
    bool bFeatureCount = false;

    [[nodiscard]] bool any() const {
        return lNextRow >= 0 || nValueRow >= 0 || nShapeRow >= 0 || bSearch || bFilteredSearch ||
               bFeatureCount;
    }
};
using TableFaultsPtr = std::shared_ptr<const TableFaults>;

/// A cursor over the rows of another, with the faults of its table.
[[nodiscard]] host::GisCursorPtr faulty(host::GisCursorPtr pCursor, const TableFaultsPtr& pFaults,
                                        bool bFiltered);

class FaultyTable final : public host::GisTable {
public:
    FaultyTable(host::GisTablePtr pTable, TableFaultsPtr pFaults)
        : pTable_(std::move(pTable)), pFaults_(std::move(pFaults)) {}

    [[nodiscard]] std::string datasetName() const override { return pTable_->datasetName(); }
    [[nodiscard]] host::GisFieldsPtr fields() const override { return pTable_->fields(); }
    [[nodiscard]] host::GisCursorPtr search(const host::GisQueryFilter* pFilter) override;
    [[nodiscard]] host::GisWorkspacePtr workspace() const override { return pTable_->workspace(); }

private:
    host::GisTablePtr pTable_;
    TableFaultsPtr pFaults_;
};

class FaultyFeatureClass final : public host::GisFeatureClass {
public:
    FaultyFeatureClass(host::memory::MemoryFeatureClassPtr pClass, TableFaultsPtr pFaults)
        : pClass_(std::move(pClass)), pFaults_(std::move(pFaults)) {}

    [[nodiscard]] std::string datasetName() const override { return pClass_->datasetName(); }
    [[nodiscard]] host::GisFieldsPtr fields() const override { return pClass_->fields(); }
    [[nodiscard]] host::GisCursorPtr search(const host::GisQueryFilter* pFilter) override;
    [[nodiscard]] host::GisWorkspacePtr workspace() const override { return pClass_->workspace(); }
    [[nodiscard]] std::int64_t featureCount() const override;
    [[nodiscard]] std::int32_t shapeType() const override { return pClass_->shapeType(); }
    [[nodiscard]] host::GisSpatialReferencePtr spatialReference() const override {
        return pClass_->spatialReference();
    }
    [[nodiscard]] host::GisSubtypesPtr subtypes() const override { return pClass_->subtypes(); }

    [[nodiscard]] const host::memory::MemoryFeatureClassPtr& inner() const noexcept { return pClass_; }
    [[nodiscard]] const TableFaultsPtr& faults() const noexcept { return pFaults_; }

private:
    host::memory::MemoryFeatureClassPtr pClass_;
    TableFaultsPtr pFaults_;
};
using FaultyFeatureClassPtr = std::shared_ptr<FaultyFeatureClass>;

/// A layer over such a class.
class FaultyFeatureLayer final : public host::GisFeatureLayer {
public:
    /// @param bClassFails whether asking for its class fails.
    FaultyFeatureLayer(std::string sName, FaultyFeatureClassPtr pClass,
                       const std::vector<std::int64_t>& aSelected, bool bClassFails);

    [[nodiscard]] std::string name() const override { return sName_; }
    [[nodiscard]] host::GisFeatureClassPtr featureClass() const override;
    void setFeatureClass(host::GisFeatureClassPtr pFeatureClass) override;
    [[nodiscard]] std::int32_t selectionCount() const override { return pLayer_->selectionCount(); }
    [[nodiscard]] host::GisCursorPtr searchSelection() override;
    [[nodiscard]] host::GisTablePtr asTable() const override { return featureClass(); }
    [[nodiscard]] host::GisSpatialReferencePtr spatialReference() const override {
        return pLayer_->spatialReference();
    }

private:
    std::string sName_;
    FaultyFeatureClassPtr pClass_;
    host::GisFeatureLayerPtr pLayer_;
    bool bClassFails_;
};

} // namespace halvane::oracle
