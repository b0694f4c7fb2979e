#pragma once

#include "RunProgram.h"

#include <ogrsf_frmts.h>

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

namespace halvane::bench {

[[nodiscard]] inline GDALDatasetUniquePtr openDataset(const char* pPath) {
    GDALDatasetUniquePtr pDataset(GDALDataset::Open(pPath, GDAL_OF_VECTOR | GDAL_OF_READONLY));
    if (pDataset == nullptr)
        throw std::runtime_error("The data cannot be opened");
    return pDataset;
}

[[nodiscard]] inline OGRLayer& layerOf(GDALDataset& dataset, const char* pName) {
    OGRLayer* const pLayer = dataset.GetLayerByName(pName);
    if (pLayer == nullptr)
        throw std::runtime_error(std::string("There is no layer ") + pName);
    return *pLayer;
}

/// Spares the reading of columns that a document does not tell of.
inline void ignoreColumns(OGRLayer& layer, std::initializer_list<const char*> names) {
    std::vector<const char*> aNames(names);
    aNames.push_back(nullptr);
    if (layer.SetIgnoredFields(aNames.data()) != OGRERR_NONE)
        throw std::runtime_error("The columns cannot be left out");
}

/// Runs a program PROGRAM DATA DOCUMENT.
template<class Write>
int runProgram(int argc, char** argv, const Write& write) {
    return runAlone(argc, argv, [&write](const char* pData, const char* pDocument) {
        GDALAllRegister();
        write(pData, pDocument);
    });
}

} // namespace halvane::bench
