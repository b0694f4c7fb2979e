#pragma once

#include "host/gdal/source/Queries.h"

#include <ogrsf_frmts.h>

#include <memory>
#include <utility>

namespace halvane::host::gdal {

/// The features of a query as those of a table that has the same columns. Of some types the library makes
/// another type of value in a query than in a table.
class RetypedLayer final : public OGRLayer {
public:
    /// @param table outlives it.
    RetypedLayer(std::unique_ptr<ResultSet> pResult, OGRLayer& table)
        : pResult_(std::move(pResult)), definition_(*table.GetLayerDefn()) {}

    void ResetReading() override { pResult_->layer()->ResetReading(); }
    OGRFeature* GetNextFeature() override {
        const OGRFeatureUniquePtr pFound(pResult_->layer()->GetNextFeature());
        if (pFound == nullptr)
            return nullptr;
        OGRFeatureUniquePtr pRetyped(OGRFeature::CreateFeature(&definition_));
        pRetyped->SetFrom(pFound.get());
        pRetyped->SetFID(pFound->GetFID());
        return pRetyped.release();
    }
    OGRFeatureDefn* GetLayerDefn() override { return &definition_; }
    int TestCapability(const char* /*pCapability*/) override { return FALSE; }

private:
    std::unique_ptr<ResultSet> pResult_;
    OGRFeatureDefn& definition_;
};

} // namespace halvane::host::gdal
