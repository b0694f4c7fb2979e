#pragma once

#include "host/SpatialReference.h"
#include "host/gdal/facts/Fields.h"
#include "host/gdal/facts/SpatialReference.h"
#include "host/gdal/facts/SubtypesFacts.h"
#include "host/gdal/rows/EqualityIndexes.h"
#include "host/gdal/rows/RowOrder.h"
#include "host/gdal/source/DataFiles.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace halvane::host::gdal {

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
    /// @throws Failure when it cannot be opened, or its definition cannot be read now.
    [[nodiscard]] LayerHandle openLayer();
    /// A loop over all rows, among those that are under way.
    [[nodiscard]] static GisCursorPtr watched(const std::shared_ptr<TableData>& pData, GisCursorPtr pRows);
    /// The same for so many rows.
    [[nodiscard]] GisCursorPtr watched(GisCursorPtr pRows, std::size_t nRows) const;
    /// How many rows a filter lets through, "" for all.
    [[nodiscard]] std::int64_t count(const std::string& sFilter);
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

    /// With another handle only where this one has no fields.
    void testReadable(LayerHandle& handle);
    [[noreturn]] void failWithoutDefinition(LayerHandle& handle) const;
    /// How many fields some handle found. @throws Failure when there are none because they cannot be read.
    [[nodiscard]] int fieldsRead();
    /// What is wrong with the file; "" for nothing. @param lRows how many rows it has; counted where they are
    /// not known.
    [[nodiscard]] const std::string& damage(std::optional<std::int64_t> lRows);

    DatasetEntry entry_;
    std::weak_ptr<const GdalFields> pFields_; ///< thousands of tables' fields would fill the memory
    std::map<std::string, Extents> extents_;  // by filter
    std::optional<CoordinateGrid> grid_;
    std::optional<SubtypesFacts> subtypes_;
    bool bSubtypesRead_ = false;
    std::map<std::string, std::int64_t> counts_; // by filter, where they took a reading
    std::optional<int> lFieldsRead_;
    std::optional<std::string> sDamage_; // tested
    std::optional<RowOrder> order_;
    EqualityIndexes indexes_;
};
using TableDataPtr = std::shared_ptr<TableData>;

} // namespace halvane::host::gdal
