#pragma once

#include "host/Layers.h"
#include "host/memory/Table.h"

#include <memory>
#include <string>
#include <vector>

namespace halvane::host::memory {

/// A layer of a kind: what is common to all kinds.
template<class Kind>
class MemoryLayerOf : public Kind, protected Scripted {
public:
    explicit MemoryLayerOf(std::string sName) : sName_(std::move(sName)) {}

    [[nodiscard]] std::string name() const override {
        pass("GisLayer", "name");
        return sName_;
    }

private:
    std::string sName_;
};

class MemoryFeatureLayer final : public MemoryLayerOf<GisFeatureLayer> {
public:
    MemoryFeatureLayer(std::string sName, GisFeatureClassPtr pFeatureClass);
    [[nodiscard]] static std::shared_ptr<MemoryFeatureLayer> make(std::string sName,
                                                                  GisFeatureClassPtr pFeatureClass);

    /// Selects the features with these identifiers; searchSelection yields them in this order.
    void select(std::vector<std::int64_t> aObjectIds) { aSelectedIds_ = std::move(aObjectIds); }
    /// Instead of that of the feature class.
    void setSpatialReference(GisSpatialReferencePtr pReference) { pReference_ = std::move(pReference); }

    [[nodiscard]] GisFeatureClassPtr featureClass() const override;
    void setFeatureClass(GisFeatureClassPtr pFeatureClass) override;
    [[nodiscard]] std::int32_t selectionCount() const override;
    [[nodiscard]] GisCursorPtr searchSelection() override;
    [[nodiscard]] GisTablePtr asTable() const override;
    [[nodiscard]] GisSpatialReferencePtr spatialReference() const override;

private:
    GisFeatureClassPtr pFeatureClass_;
    GisSpatialReferencePtr pReference_;
    std::vector<std::int64_t> aSelectedIds_;
};
using MemoryFeatureLayerPtr = std::shared_ptr<MemoryFeatureLayer>;

class MemoryRasterLayer final : public MemoryLayerOf<GisRasterLayer> {
public:
    MemoryRasterLayer(std::string sName, std::string sFilePath);
    [[nodiscard]] static std::shared_ptr<MemoryRasterLayer> make(std::string sName, std::string sFilePath);

    [[nodiscard]] std::string filePath() const override;

private:
    std::string sFilePath_;
};

class MemoryDataset final : public GisDataset, private Scripted {
public:
    explicit MemoryDataset(GisWorkspacePtr pWorkspace) : pWorkspace_(std::move(pWorkspace)) {}
    [[nodiscard]] static std::shared_ptr<MemoryDataset> make(GisWorkspacePtr pWorkspace);

    [[nodiscard]] GisWorkspacePtr workspace() const override;

private:
    GisWorkspacePtr pWorkspace_;
};

class MemoryTinLayer final : public MemoryLayerOf<GisTinLayer> {
public:
    MemoryTinLayer(std::string sName, GisDatasetPtr pDataset);
    [[nodiscard]] static std::shared_ptr<MemoryTinLayer> make(std::string sName, GisDatasetPtr pDataset);

    [[nodiscard]] GisDatasetPtr dataset() const override;

private:
    GisDatasetPtr pDataset_;
};

class MemoryGroupLayer final : public MemoryLayerOf<GisGroupLayer> {
public:
    MemoryGroupLayer(std::string sName, std::vector<GisLayerPtr> aLayers);
    [[nodiscard]] static std::shared_ptr<MemoryGroupLayer> make(std::string sName,
                                                                std::vector<GisLayerPtr> aLayers);

    [[nodiscard]] std::int32_t layerCount() const override;
    [[nodiscard]] GisLayerPtr layer(std::int32_t lIndex) const override;

private:
    std::vector<GisLayerPtr> aLayers_;
};

} // namespace halvane::host::memory
