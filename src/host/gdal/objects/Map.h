#pragma once

#include "host/Explanations.h"
#include "host/Map.h"
#include "host/gdal/objects/Layers.h"

#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace halvane::host::gdal {

/// What a map is made of.
struct MapParts {
    std::vector<GisLayerPtr> layers;
    std::vector<DataReference> tables;
};

class GdalMap : public GisMap, public TableProblems {
public:
    GdalMap(std::string sName, std::vector<GisLayerPtr> layers, std::vector<DataReference> tables,
            std::optional<ReferenceOverride> reference)
        : sName_(std::move(sName)), parts_{std::move(layers), std::move(tables)},
          reference_(std::move(reference)) {}
    /// A map of many files, each opened when its layers or tables are looked for: who uses a layer of a
    /// thousand files opens its file once, and mostly none of those after it.
    /// @param addMore adds what further files hold; false when there are none left.
    GdalMap(std::string sName, MapParts parts, std::function<bool(MapParts&)> addMore)
        : sName_(std::move(sName)), parts_(std::move(parts)), addMore_(std::move(addMore)) {}

    [[nodiscard]] std::string name() const override { return sName_; }
    [[nodiscard]] std::int32_t layerCount() const override;
    [[nodiscard]] GisLayerPtr layer(std::int32_t lIndex) const override;
    [[nodiscard]] std::int32_t standaloneTableCount() const override;
    /// Nothing when the table's data cannot be opened.
    [[nodiscard]] GisTablePtr standaloneTable(std::int32_t lIndex) const override;
    [[nodiscard]] std::string standaloneTableProblem(std::int32_t lIndex) const override;
    void requireReadableTable(std::string_view sName) const override;
    [[nodiscard]] std::int32_t layersFoundFor(std::int32_t lIndex) const override;
    [[nodiscard]] std::int32_t standaloneTablesFoundFor(std::int32_t lIndex) const override;
    /// What the map document says; without that, the reference of the first layer that has one.
    [[nodiscard]] GisSpatialReferencePtr spatialReference() const override;

    /// The first feature layer of that name, ignoring case; groups are entered. Nothing when there is none.
    [[nodiscard]] std::shared_ptr<GdalFeatureLayer> findFeatureLayer(std::string_view sName) const;
    /// Opens all data and tells of what cannot be opened, a line for each.
    [[nodiscard]] std::vector<std::string> problems() const;

private:
    /// @returns false when there was nothing more to find.
    bool findMore() const;
    [[nodiscard]] const MapParts& allParts() const;

    std::string sName_;
    mutable MapParts parts_;
    mutable std::function<bool(MapParts&)> addMore_; ///< nothing once all is found
    std::optional<ReferenceOverride> reference_;
};
using GdalMapPtr = std::shared_ptr<GdalMap>;

class GdalMapDocument : public GisMapDocument {
public:
    /// @param nShown the index of the map that is shown.
    /// @param remarks lines on what it says that is allowed but will not do what was meant.
    GdalMapDocument(std::vector<GdalMapPtr> maps, std::size_t nShown, std::vector<std::string> remarks = {})
        : maps_(std::move(maps)), nShown_(nShown), remarks_(std::move(remarks)) {}

    [[nodiscard]] GisMapPtr focusMap() const override { return shownMap(); }
    [[nodiscard]] std::int32_t mapCount() const override;
    [[nodiscard]] GisMapPtr map(std::int32_t lIndex) const override;

    [[nodiscard]] GdalMapPtr shownMap() const { return maps_.at(nShown_); }
    [[nodiscard]] const std::vector<GdalMapPtr>& maps() const { return maps_; }
    [[nodiscard]] const std::vector<std::string>& remarks() const { return remarks_; }

private:
    std::vector<GdalMapPtr> maps_;
    std::size_t nShown_;
    std::vector<std::string> remarks_;
};
using GdalMapDocumentPtr = std::shared_ptr<GdalMapDocument>;

/// A map document with one map of all layers, rasters and tables of a dataset or of a folder.
/// @throws Failure when nothing there can be read.
[[nodiscard]] GdalMapDocumentPtr mapOfDataset(const EnvironmentPtr& pEnvironment, const std::string& sPath);

} // namespace halvane::host::gdal
