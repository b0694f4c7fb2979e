#pragma once

#include "host/gdal/Layers.h"

#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace halvane::host::gdal {

class GdalMap : public GisMap {
public:
    GdalMap(std::string sName, std::vector<GisLayerPtr> layers, std::vector<DataReference> tables,
            std::optional<ReferenceOverride> reference)
        : sName_(std::move(sName)), layers_(std::move(layers)), tables_(std::move(tables)),
          reference_(std::move(reference)) {}

    [[nodiscard]] std::string name() const override { return sName_; }
    [[nodiscard]] std::int32_t layerCount() const override;
    [[nodiscard]] GisLayerPtr layer(std::int32_t lIndex) const override;
    [[nodiscard]] std::int32_t standaloneTableCount() const override;
    /// Nothing when the table's data cannot be opened.
    [[nodiscard]] GisTablePtr standaloneTable(std::int32_t lIndex) const override;
    /// What the map document says; without that, the reference of the first layer that has one.
    [[nodiscard]] GisSpatialReferencePtr spatialReference() const override;

    /// The first feature layer of that name, ignoring case; groups are entered. Nothing when there is none.
    [[nodiscard]] std::shared_ptr<GdalFeatureLayer> findFeatureLayer(std::string_view sName) const;
    /// Opens all data and tells of what cannot be opened, a line for each.
    [[nodiscard]] std::vector<std::string> problems() const;

private:
    std::string sName_;
    std::vector<GisLayerPtr> layers_;
    std::vector<DataReference> tables_;
    std::optional<ReferenceOverride> reference_;
};
using GdalMapPtr = std::shared_ptr<GdalMap>;

class GdalMapDocument : public GisMapDocument {
public:
    /// @param lShown the index of the map that is shown.
    GdalMapDocument(std::vector<GdalMapPtr> maps, std::size_t lShown)
        : maps_(std::move(maps)), lShown_(lShown) {}

    [[nodiscard]] GisMapPtr focusMap() const override { return shownMap(); }
    [[nodiscard]] std::int32_t mapCount() const override;
    [[nodiscard]] GisMapPtr map(std::int32_t lIndex) const override;

    [[nodiscard]] GdalMapPtr shownMap() const { return maps_.at(lShown_); }
    [[nodiscard]] const std::vector<GdalMapPtr>& maps() const { return maps_; }

private:
    std::vector<GdalMapPtr> maps_;
    std::size_t lShown_;
};
using GdalMapDocumentPtr = std::shared_ptr<GdalMapDocument>;

/// A map document with one map of all layers, rasters and tables of a dataset or of a folder.
/// @throws Failure when nothing there can be read.
[[nodiscard]] GdalMapDocumentPtr mapOfDataset(const EnvironmentPtr& pEnvironment, const std::string& sPath);

} // namespace halvane::host::gdal
