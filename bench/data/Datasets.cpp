#include "Datasets.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace halvane::bench {

namespace {

[[noreturn]] void fail(const std::string& sWhat) {
    throw std::runtime_error(sWhat + ": " + CPLGetLastErrorMsg());
}

OGRSpatialReference metres() {
    OGRSpatialReference reference;
    reference.importFromEPSG(25832);
    reference.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return reference;
}

} // namespace

GDALDatasetUniquePtr createDataset(const std::string& sPath) {
    if (sPath.starts_with("PG:")) {
        GDALDatasetUniquePtr pServer(GDALDataset::Open(sPath.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
        if (pServer == nullptr)
            fail("Opening the server");
        return pServer;
    }
    const char* pName = sPath.ends_with(".fgb") ? "FlatGeobuf" : "GPKG";
    GDALDriver* const pDriver = GetGDALDriverManager()->GetDriverByName(pName);
    GDALDatasetUniquePtr pDataset(
        pDriver == nullptr ? nullptr : pDriver->Create(sPath.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    if (pDataset == nullptr)
        fail("Making " + sPath);
    return pDataset;
}

OGRLayer& createLayer(GDALDataset& dataset, const std::string& sName, OGRwkbGeometryType type,
                      std::initializer_list<std::pair<const char*, OGRFieldType>> fields) {
    OGRSpatialReference reference = metres();
    CPLStringList options;
    // The bench reads rows in order; an index by place would only lengthen the making.
    const char* const pOptions = dataset.GetDriver()->GetMetadataItem(GDAL_DS_LAYER_CREATIONOPTIONLIST);
    if (pOptions != nullptr && std::string_view(pOptions).find("'SPATIAL_INDEX'") != std::string_view::npos)
        options.SetNameValue("SPATIAL_INDEX",
                             dataset.GetDriverName() == std::string_view("PostgreSQL") ? "NONE" : "NO");
    OGRLayer* const pLayer =
        dataset.CreateLayer(sName.c_str(), type == wkbNone ? nullptr : &reference, type, options.List());
    if (pLayer == nullptr)
        fail("Making layer " + sName);
    for (const auto& [pName, fieldType] : fields) {
        OGRFieldDefn definition(pName, fieldType);
        if (pLayer->CreateField(&definition) != OGRERR_NONE)
            fail("Making field " + std::string(pName));
    }
    return *pLayer;
}

void writeFeatures(GDALDataset& dataset, OGRLayer& layer, std::int64_t nCount,
                   const std::function<void(OGRFeature&, std::int64_t)>& fnFill) {
    constexpr std::int64_t nInTransaction = 200'000;
    const bool bTransactions = dataset.TestCapability(ODsCTransactions) != 0;
    OGRFeatureUniquePtr pFeature(OGRFeature::CreateFeature(layer.GetLayerDefn()));
    for (std::int64_t nBegin = 0; nBegin < nCount; nBegin += nInTransaction) {
        if (bTransactions)
            dataset.StartTransaction();
        for (std::int64_t n = nBegin; n < std::min(nCount, nBegin + nInTransaction); ++n) {
            pFeature->Reset();
            fnFill(*pFeature, n);
            if (layer.CreateFeature(pFeature.get()) != OGRERR_NONE)
                fail("Writing a feature");
        }
        if (bTransactions && dataset.CommitTransaction() != OGRERR_NONE)
            fail("Committing");
    }
}

} // namespace halvane::bench
