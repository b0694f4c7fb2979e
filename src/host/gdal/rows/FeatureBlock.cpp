#include "host/gdal/rows/FeatureBlock.h"

#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Interruption.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace halvane::host::gdal {

namespace {

constexpr std::size_t nMostBlockBytes = 2U << 20U;

std::size_t bytesOf(const OGRField& raw, OGRFieldType type) {
    switch (type) {
    case OFTString:
        return std::string_view(raw.String).size();
    case OFTBinary:
        return static_cast<std::size_t>(raw.Binary.nCount);
    case OFTIntegerList:
    case OFTInteger64List:
    case OFTRealList:
        // The number of the values stands alike in all lists.
        return static_cast<std::size_t>(raw.IntegerList.nCount) * sizeof(double);
    case OFTStringList: {
        std::size_t nBytes = 0;
        for (int lText = 0; lText < raw.StringList.nCount; ++lText)
            nBytes += std::string_view(raw.StringList.paList[lText]).size();
        return nBytes;
    }
    default:
        return 0;
    }
}

/// How much memory features take. Only the columns whose values differ in size are looked at: all of them
/// cost a tenth of the reading.
class Scale {
public:
    explicit Scale(OGRFeatureDefn& definition)
        : nFixedBytes_(200 + static_cast<std::size_t>(definition.GetFieldCount()) * sizeof(OGRField)) {
        for (int lField = 0; lField < definition.GetFieldCount(); ++lField) {
            const OGRFieldType type = definition.GetFieldDefn(lField)->GetType();
            if (type != OFTInteger && type != OFTInteger64 && type != OFTReal && type != OFTDate &&
                type != OFTTime && type != OFTDateTime)
                columns_.emplace_back(lField, type);
        }
    }

    [[nodiscard]] std::size_t bytesOf(const OGRFeature& feature) const {
        std::size_t nBytes = nFixedBytes_;
        for (const auto& [lField, type] : columns_) {
            const OGRField& raw = *feature.GetRawFieldRef(lField);
            if (OGR_RawField_IsUnset(&raw) == 0 && OGR_RawField_IsNull(&raw) == 0)
                nBytes += gdal::bytesOf(raw, type);
        }
        const OGRGeometry* pShape = feature.GetGeometryRef();
        return nBytes + (pShape == nullptr ? 0 : 2 * pShape->WkbSize());
    }

private:
    std::size_t nFixedBytes_;
    std::vector<std::pair<int, OGRFieldType>> columns_;
};

} // namespace

// Collecting errors costs as much as handing out a row of ten values: once for a block of rows it costs
// nothing. What is reported of a feature that comes all the same does not end the reading.
void readFeatures(OGRLayer& layer, std::size_t nMostRows, const std::string& sContext, FeatureBlock& block,
                  MissingRows& missing, RowCheck* pCheck, const std::function<bool()>& fnWanted) {
    block.clear();
    ErrorScope errors;
    const Scale scale(*layer.GetLayerDefn());
    std::size_t nBytes = 0;
    while (block.features.size() < nMostRows && nBytes < nMostBlockBytes && fnWanted()) {
        OGRFeatureUniquePtr pFeature(layer.GetNextFeature());
        if (pFeature == nullptr) {
            block.bLast = true;
            try {
                missing.note(errors);
                errors.raiseIfFailed(sContext);
                missing.raiseIfAny(sContext);
            } catch (const Failure& failure) {
                block.failure = failure;
            }
            return;
        }
        if (RowFaultsPtr pFaults = pCheck == nullptr ? nullptr : pCheck->faultsOf(*pFeature, errors))
            block.faults.emplace_back(block.features.size(), std::move(pFaults));
        missing.note(errors);
        errors.clear();
        nBytes += scale.bytesOf(*pFeature);
        block.features.push_back(std::move(pFeature));
    }
}

void forEachFeature(const LayerHandle& handle, const std::string& sContext,
                    const std::function<void(OGRFeature&, const ErrorScope&)>& take) {
    ErrorScope errors;
    while (const OGRFeatureUniquePtr pFeature{handle.layer().GetNextFeature()}) {
        endIfInterrupted();
        take(*pFeature, errors);
        handle.missingRows().note(errors);
        errors.clear();
    }
    handle.missingRows().note(errors);
    errors.raiseIfFailed(sContext);
    handle.missingRows().raiseIfAny(sContext);
}

RowFaultsPtr FeatureBlock::faultsOf(std::size_t nFeature) const {
    const auto pFaults =
        std::find_if(faults.begin(), faults.end(), [&](const auto& one) { return one.first == nFeature; });
    return pFaults == faults.end() ? nullptr : pFaults->second;
}

void FeatureBlock::clear() {
    features.clear();
    faults.clear();
}

} // namespace halvane::host::gdal
