#pragma once

#include "host/Layers.h"
#include "host/gdal/objects/Environment.h"
#include "host/gdal/source/QueryTable.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace halvane::host::gdal {

/// Where a layer's data is: resolved when the data is first needed, so that a map of thousands of layers
/// opens at once.
struct DataReference {
    EnvironmentPtr pEnvironment;
    std::string sLocation;               ///< an absolute path, or the name of a connection
    bool bConnection = false;            ///< whether sLocation names a connection
    std::string sDataset;                ///< "" for the only dataset of the location
    std::optional<std::size_t> nDataset; ///< its place in the location, where it has no name
    std::string sShapes;                 ///< the column of the shapes; "" for the only one
    bool bMesh = false;                  ///< a surface in a file that is not opened
    std::optional<DatasetEntry> entry;   ///< where it is already known
    TableOverridesPtr pOverrides = noOverrides();
    std::string sPlace;  ///< where a map document refers to it; "" without one
    std::string sWhyNot; ///< why it cannot be read, where that is known already; else ""

    /// @throws Failure when the data cannot be opened.
    [[nodiscard]] GdalWorkspacePtr openWorkspace() const;
    /// That of a surface: of a mesh the folder of its file, which must be there.
    [[nodiscard]] GdalWorkspacePtr openSurfaceWorkspace() const;
    [[nodiscard]] TableDataPtr openData() const;
    [[nodiscard]] GdalFeatureClassPtr openFeatureClass() const;
    [[nodiscard]] GisTablePtr openTable() const;
    /// Looks at what a map document has the data computed, ordered and transformed by, unless the source
    /// cannot be opened. @throws Failure for what cannot be followed.
    void testComputing() const;
    /// Whether the data has been seen already and nothing is said of it that could be wrong.
    [[nodiscard]] bool isKnown() const {
        return entry && pOverrides->sSql.empty() && pOverrides->sCrs.empty() && pOverrides->orderBy.empty() &&
               pOverrides->sFilter.empty() && pOverrides->fields.empty() && !pOverrides->reference &&
               !pOverrides->subtypes;
    }

private:
    [[nodiscard]] TableDataPtr findData(GdalWorkspace& workspace) const;
    void testShapes(TableData& data) const;
    [[nodiscard]] TableQuery query(const GdalWorkspace& workspace) const;
};

/// Features chosen by a person: identifiers in their order, or a clause that chooses them.
struct SelectionChoice {
    std::vector<std::int64_t> ids;
    std::string sWhere;
    std::string sPlace = {}; ///< where a map document says it; "" without one
};

class GdalFeatureLayer : public GisFeatureLayer {
public:
    /// A layer without a feature class.
    GdalFeatureLayer() = default;
    GdalFeatureLayer(std::string sName, DataReference data)
        : sName_(std::move(sName)), data_(std::move(data)) {}

    /// A layer made without a name bears its feature class's.
    [[nodiscard]] std::string name() const override;
    /// @throws Failure when the layer's data cannot be opened.
    [[nodiscard]] GisFeatureClassPtr featureClass() const override;
    void setFeatureClass(GisFeatureClassPtr pFeatureClass) override;
    [[nodiscard]] std::int32_t selectionCount() const override;
    [[nodiscard]] GisCursorPtr searchSelection() override;
    [[nodiscard]] GisTablePtr asTable() const override { return featureClass(); }
    [[nodiscard]] GisSpatialReferencePtr spatialReference() const override;

    /// The layer's reference with what a map says of its own.
    [[nodiscard]] GisSpatialReferencePtr
    spatialReference(const std::optional<ReferenceOverride>& overrides) const;
    /// Replaces the selection. It is tested against the data when it is first used, or by testSelection().
    void select(SelectionChoice choice);
    /// @throws Failure when a chosen feature does not exist or the clause is rejected.
    void testSelection() const { static_cast<void>(selectedIds()); }
    /// Opens the data as far as that has not been done. @throws Failure for what is wrong with it.
    void testData() const;

private:
    [[nodiscard]] const std::vector<std::int64_t>& selectedIds() const;
    [[nodiscard]] std::vector<std::int64_t> idsOf(const SelectionChoice& choice) const;
    [[nodiscard]] const TableReader& reader() const;

    std::string sName_;
    std::optional<DataReference> data_;
    mutable GisFeatureClassPtr pFeatureClass_;
    std::optional<SelectionChoice> selection_;
    mutable std::optional<std::vector<std::int64_t>> selectedIds_;
};

class GdalRasterLayer : public GisRasterLayer {
public:
    /// @param pSource where it is already known.
    GdalRasterLayer(std::string sName, DataReference data, SourcePtr pSource)
        : sName_(std::move(sName)), data_(std::move(data)), pSource_(std::move(pSource)) {}

    [[nodiscard]] std::string name() const override { return sName_; }
    /// @throws Failure when the raster cannot be opened.
    [[nodiscard]] std::string filePath() const override;

    /// The raster's own with what a map says of its own. @throws Failure when the raster cannot be opened.
    [[nodiscard]] GisSpatialReferencePtr
    spatialReference(const std::optional<ReferenceOverride>& overrides) const;

private:
    [[nodiscard]] SourcePtr findSource() const;
    [[nodiscard]] Handle open() const;

    std::string sName_;
    DataReference data_;
    mutable SourcePtr pSource_;
    mutable std::string sFilePath_;
};

class GdalDataset : public GisDataset {
public:
    explicit GdalDataset(GdalWorkspacePtr pWorkspace) : pWorkspace_(std::move(pWorkspace)) {}
    [[nodiscard]] GisWorkspacePtr workspace() const override { return pWorkspace_; }

private:
    GdalWorkspacePtr pWorkspace_;
};

class GdalTinLayer : public GisTinLayer {
public:
    GdalTinLayer(std::string sName, DataReference data) : sName_(std::move(sName)), data_(std::move(data)) {}
    [[nodiscard]] std::string name() const override { return sName_; }
    /// @throws Failure when the data cannot be opened.
    [[nodiscard]] GisDatasetPtr dataset() const override;

    /// The data's own with what a map says of its own. @throws Failure when the data cannot be opened.
    [[nodiscard]] GisSpatialReferencePtr
    spatialReference(const std::optional<ReferenceOverride>& overrides) const;

private:
    std::string sName_;
    DataReference data_;
};

class GdalGroupLayer : public GisGroupLayer {
public:
    GdalGroupLayer(std::string sName, std::vector<GisLayerPtr> layers)
        : sName_(std::move(sName)), layers_(std::move(layers)) {}
    [[nodiscard]] std::string name() const override { return sName_; }
    [[nodiscard]] std::int32_t layerCount() const override;
    [[nodiscard]] GisLayerPtr layer(std::int32_t lIndex) const override;

private:
    std::string sName_;
    std::vector<GisLayerPtr> layers_;
};

} // namespace halvane::host::gdal
