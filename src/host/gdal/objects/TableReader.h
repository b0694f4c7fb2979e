#pragma once

#include "host/Forward.h"
#include "host/gdal/objects/TableData.h"
#include "host/gdal/rows/Clause.h"
#include "host/gdal/rows/RowRanks.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace halvane::host::gdal {

class GdalWorkspace;
using GdalWorkspacePtr = std::shared_ptr<GdalWorkspace>;

/// What a map document says of a dataset beyond what the data says.
struct TableOverrides {
    std::string sName;           ///< instead of the dataset's own; "" for that
    std::string sSql;            ///< computes the table from the datasets of its source; "" for none
    std::string sFilter;         ///< defines which rows the table has; "" for all
    std::string sFilterPlace;    ///< where it is written, as the three that follow
    std::vector<RowKey> orderBy; ///< which order the rows have; empty for the data's
    std::string sCrs; ///< the code of the reference that shapes are transformed to; "" for the data's
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
    /// All rows, or fewer: databases leave rows out for which the condition does not hold.
    [[nodiscard]] GisCursorPtr searchNarrowed(const RowCondition& condition, bool bShapes) const;
    [[nodiscard]] std::int64_t count() const;
    /// @throws Failure when the data does not bear out what a map document says: a filter that it rejects,
    ///         a field or a domain that it does not have.
    void testOverrides() const;
    /// @throws Failure when the data does not bear out its order or its reference.
    void testOrderAndReference() const;
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
    [[nodiscard]] GisCursorPtr searchPlain(bool bShapes, const std::string& sNarrowing) const;
    [[nodiscard]] GisCursorPtr searchUnordered(const std::string& sWhere) const;
    [[nodiscard]] std::vector<std::int64_t> idsWhereUnordered(const std::string& sWhere) const;
    [[nodiscard]] const RowRanks& ranks() const;
    [[nodiscard]] ShapeChange shapeChange() const;
    [[nodiscard]] std::optional<XyDomain> transformedExtent() const;
    [[nodiscard]] std::vector<std::int64_t> readIds(const LayerHandle& handle, const Clause& clause) const;
    [[nodiscard]] std::vector<std::int64_t> readPlaces(const LayerHandle& handle, const Clause& clause) const;
    /// What the filter and a clause both let through.
    [[nodiscard]] Clause within(const LayerHandle& handle, const std::string& sWhere) const;

    TableDataPtr pData_;
    GdalWorkspacePtr pWorkspace_;
    TableOverridesPtr pOverrides_;
    mutable GdalFieldsPtr pFields_;
    mutable std::shared_ptr<const RowRanks> pRanks_;
};

} // namespace halvane::host::gdal
