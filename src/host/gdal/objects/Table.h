#pragma once

#include "host/Explanations.h"
#include "host/Tables.h"
#include "host/gdal/facts/Fields.h"
#include "host/gdal/facts/SpatialReference.h"
#include "host/gdal/facts/SubtypesFacts.h"
#include "host/gdal/rows/EqualityIndex.h"
#include "host/gdal/rows/Geometry.h"
#include "host/gdal/rows/RowOrder.h"
#include "host/gdal/source/DataFiles.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace halvane::host::gdal {

class GdalWorkspace;
using GdalWorkspacePtr = std::shared_ptr<GdalWorkspace>;

/// What tables over the same dataset share: where it is, and its fields once read.
class TableData {
public:
    TableData(std::shared_ptr<HandlePool> pPool, DatasetEntry entry);

    [[nodiscard]] const DatasetEntry& entry() const { return entry_; }
    /// As the data has them. @throws Failure when the dataset cannot be opened.
    [[nodiscard]] GdalFieldsPtr fields();
    [[nodiscard]] const std::optional<SubtypesFacts>& subtypes();
    /// The extents of the shapes that a filter lets through, "" for all; each is found once.
    [[nodiscard]] static LayerExtents extentsOf(const std::shared_ptr<TableData>& pData,
                                                const std::string& sFilter);
    [[nodiscard]] LayerHandle openLayer() { return pPool_->acquireLayer(entry_.pSource, entry_.sName); }
    /// How many rows a filter lets through, "" for all.
    [[nodiscard]] std::int64_t count(const std::string& sFilter);
    /// For a table without rows. @throws Failure when it has none because it cannot be read.
    void testReadable();
    /// For the end of a reading. @param lRows how many rows came. @param bAll whether all rows were asked
    /// for.
    /// @throws Failure when others are there and were left out.
    void testEnd(std::int64_t lRows, bool bAll);
    /// Whether all rows that the file tells of are there; where it tells, they are counted once.
    [[nodiscard]] bool isWhole();
    [[nodiscard]] const RowOrder& order(const LayerHandle& handle);
    [[nodiscard]] EqualityIndexes& indexes() { return indexes_; }

private:
    std::shared_ptr<HandlePool> pPool_;
    struct Extents {
        std::optional<XyDomain> xy; ///< bounds only
        std::optional<MeasureDomain> z;
        std::optional<MeasureDomain> m;
    };
    static void widen(Extents& extents, std::unique_ptr<OGRGeometry> pShape);
    [[nodiscard]] const Extents& readExtents(const std::string& sFilter);
    [[nodiscard]] std::optional<XyDomain> fullExtent();
    [[nodiscard]] const CoordinateGrid& grid();

    /// What is wrong with the file; "" for nothing. @param lRows how many rows it has; counted where they are
    /// not known.
    [[nodiscard]] const std::string& damage(std::optional<std::int64_t> lRows);

    DatasetEntry entry_;
    std::weak_ptr<const GdalFields> pFields_; ///< thousands of tables' fields would fill the memory
    std::map<std::string, Extents> extents_;  // by filter
    std::optional<CoordinateGrid> grid_;
    std::optional<SubtypesFacts> subtypes_;
    bool bSubtypesRead_ = false;
    bool bReadable_ = false;                     // tested
    std::map<std::string, std::int64_t> counts_; // by filter, where they took a reading
    std::optional<std::string> sDamage_;         // tested
    std::optional<RowOrder> order_;
    EqualityIndexes indexes_;
};
using TableDataPtr = std::shared_ptr<TableData>;

/// What a map document says of a dataset beyond what the data says.
struct TableOverrides {
    std::string sName;        ///< instead of the dataset's own; "" for that
    std::string sFilter;      ///< defines which rows the table has; "" for all
    std::string sFilterPlace; ///< where it is written
    std::vector<FieldOverride> fields;
    std::optional<ReferenceOverride> reference;
    std::optional<SubtypesFacts> subtypes;
};

using TableOverridesPtr = std::shared_ptr<const TableOverrides>;
/// Those of a dataset of which nothing is said.
[[nodiscard]] const TableOverridesPtr& noOverrides();

/// The reading of a table, for plain tables and feature classes alike.
class TableReader {
public:
    TableReader(TableDataPtr pData, GdalWorkspacePtr pWorkspace, TableOverridesPtr pOverrides);

    [[nodiscard]] const std::string& datasetName() const {
        return pOverrides_->sName.empty() ? pData_->entry().sName : pOverrides_->sName;
    }
    [[nodiscard]] const GdalWorkspacePtr& workspace() const { return pWorkspace_; }
    [[nodiscard]] TableData& data() const { return *pData_; }
    [[nodiscard]] const std::string& filter() const { return pOverrides_->sFilter; }
    [[nodiscard]] GdalFieldsPtr fields() const;
    [[nodiscard]] GisSpatialReferencePtr spatialReference() const {
        return spatialReference(pOverrides_->reference);
    }
    [[nodiscard]] GisSpatialReferencePtr
    spatialReference(const std::optional<ReferenceOverride>& overrides) const;
    [[nodiscard]] GisSubtypesPtr subtypes() const;
    [[nodiscard]] GisCursorPtr search(const std::string& sWhere) const;
    /// All rows, without their shapes where the format can leave them unread.
    [[nodiscard]] GisCursorPtr searchWithoutShapes() const;
    [[nodiscard]] std::int64_t count() const;
    /// @throws Failure when the data does not bear out what a map document says: a filter that it rejects,
    ///         a field or a domain that it does not have.
    void testOverrides() const;
    /// The identifiers of the rows that satisfy a clause, in the order of the rows.
    [[nodiscard]] std::vector<std::int64_t> idsWhere(const std::string& sWhere) const;
    /// Those of the identifiers that no row of the table has.
    [[nodiscard]] std::vector<std::int64_t> missingIds(const std::vector<std::int64_t>& ids) const;
    [[nodiscard]] GisCursorPtr searchIds(std::vector<std::int64_t> ids) const;

private:
    /// @throws Failure for a filter that the data rejects, with its place.
    void testFilter() const;
    /// What reading with the filter yields. @throws Failure of the filter itself where it is to blame.
    template<class Call>
    [[nodiscard]] auto withFilter(Call call) const;
    [[nodiscard]] GisCursorPtr searchAll(const std::string& sWhere) const;
    [[nodiscard]] std::vector<std::int64_t> readIds(const LayerHandle& handle,
                                                    const std::string& sWhere) const;
    [[nodiscard]] std::vector<std::int64_t> readPlaces(const LayerHandle& handle,
                                                       const std::string& sWhere) const;

    TableDataPtr pData_;
    GdalWorkspacePtr pWorkspace_;
    TableOverridesPtr pOverrides_;
    mutable GdalFieldsPtr pFields_;
};

class GdalTable : public GisTable, public FieldRules {
public:
    explicit GdalTable(TableReader reader) : reader_(std::move(reader)) {}

    [[nodiscard]] std::string datasetName() const override { return reader_.datasetName(); }
    [[nodiscard]] GisFieldsPtr fields() const override { return reader_.fields(); }
    [[nodiscard]] GisCursorPtr search(const GisQueryFilter* pFilter) override {
        return reader_.search(pFilter == nullptr ? "" : pFilter->sWhereClause);
    }
    [[nodiscard]] GisWorkspacePtr workspace() const override;
    [[nodiscard]] GisSubtypesPtr fieldRules() const override { return reader_.subtypes(); }

    [[nodiscard]] const TableReader& reader() const { return reader_; }

private:
    TableReader reader_;
};

class GdalFeatureClass : public GisFeatureClass {
public:
    explicit GdalFeatureClass(TableReader reader) : reader_(std::move(reader)) {}

    [[nodiscard]] std::string datasetName() const override { return reader_.datasetName(); }
    [[nodiscard]] GisFieldsPtr fields() const override { return reader_.fields(); }
    [[nodiscard]] GisCursorPtr search(const GisQueryFilter* pFilter) override {
        return reader_.search(pFilter == nullptr ? "" : pFilter->sWhereClause);
    }
    [[nodiscard]] GisCursorPtr searchWithoutShapes() override { return reader_.searchWithoutShapes(); }
    [[nodiscard]] GisWorkspacePtr workspace() const override;
    [[nodiscard]] std::int64_t featureCount() const override { return reader_.count(); }
    [[nodiscard]] std::int32_t shapeType() const override;
    [[nodiscard]] GisSpatialReferencePtr spatialReference() const override {
        return reader_.spatialReference();
    }
    [[nodiscard]] GisSubtypesPtr subtypes() const override { return reader_.subtypes(); }

    [[nodiscard]] const TableReader& reader() const { return reader_; }

private:
    TableReader reader_;
};
using GdalFeatureClassPtr = std::shared_ptr<GdalFeatureClass>;

/// The shape type code of a layer; 0 when it holds shapes of several types.
[[nodiscard]] std::int32_t shapeTypeOf(OGRLayer& layer);

} // namespace halvane::host::gdal
