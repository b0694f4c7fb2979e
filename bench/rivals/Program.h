#pragma once

#include <ogrsf_frmts.h>

#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>

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

/// Runs a program PROGRAM DATA DOCUMENT.
template<class Write>
int runProgram(int argc, char** argv, const Write& write) {
    if (argc != 3) {
        std::cerr << "usage: " << argv[0] << " DATA DOCUMENT\n";
        return 2;
    }
    try {
        GDALAllRegister();
        write(argv[1], argv[2]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << argv[0] << ": " << error.what() << '\n';
        return 1;
    }
}

} // namespace halvane::bench
