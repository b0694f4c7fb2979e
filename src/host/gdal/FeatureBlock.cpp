#include "host/gdal/FeatureBlock.h"

#include "host/gdal/Errors.h"

#include <algorithm>
#include <string_view>

namespace halvane::host::gdal {

namespace {

constexpr std::size_t lMostBlockBytes = 2U << 20U;

bool hasValue(const OGRField& raw) {
    return OGR_RawField_IsUnset(&raw) == 0 && OGR_RawField_IsNull(&raw) == 0;
}

std::size_t bytesOf(const OGRFeature& feature) {
    constexpr std::size_t lBytesOfObject = 200;
    std::size_t lBytes = lBytesOfObject;
    for (int lField = 0; lField < feature.GetFieldCount(); ++lField) {
        const OGRField& raw = *feature.GetRawFieldRef(lField);
        lBytes += sizeof(OGRField);
        const OGRFieldType type = feature.GetFieldDefnRef(lField)->GetType();
        if (type == OFTString && hasValue(raw))
            lBytes += std::string_view(raw.String).size();
        else if (type == OFTBinary && hasValue(raw))
            lBytes += static_cast<std::size_t>(raw.Binary.nCount);
    }
    const OGRGeometry* pShape = feature.GetGeometryRef();
    return lBytes + (pShape == nullptr ? 0 : 2 * pShape->WkbSize());
}

/// The size of each feature would cost as much as some of its values do: so the first of sixteen stands for
/// them.
class Room {
public:
    [[nodiscard]] bool isLeft(const FeatureBlock& block) {
        constexpr std::size_t lSample = 16;
        const std::size_t lCount = block.features.size();
        if (lCount == lNextSample_ + 1) {
            lBytesEach_ = bytesOf(*block.features.back());
            lNextSample_ += lSample;
        }
        lBytes_ += lBytesEach_;
        return lBytes_ < lMostBlockBytes;
    }

private:
    std::size_t lNextSample_ = 0;
    std::size_t lBytesEach_ = 0;
    std::size_t lBytes_ = 0;
};

} // namespace

// Collecting errors costs as much as handing out a row of ten values: once for a block of rows it costs
// nothing.
void readFeatures(OGRLayer& layer, std::size_t lMostRows, const std::string& sContext, FeatureBlock& block) {
    block.features.clear();
    const ErrorScope errors;
    Room room;
    do {
        OGRFeatureUniquePtr pFeature(layer.GetNextFeature());
        if (pFeature == nullptr) {
            block.bLast = true;
            try {
                errors.raiseIfFailed(sContext);
            } catch (const Failure& failure) {
                block.failure = failure;
            }
            return;
        }
        block.features.push_back(std::move(pFeature));
    } while (block.features.size() < lMostRows && room.isLeft(block));
}

} // namespace halvane::host::gdal
