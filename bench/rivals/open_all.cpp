// Opens the files of a folder, one after the other, and does nothing else.

#include "Program.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

namespace {

/// Files that the drivers read along with another.
bool isPart(const std::filesystem::path& path) {
    constexpr std::array<std::string_view, 10> aParts{".dbf", ".shx", ".prj", ".cpg", ".xsd",
                                                      ".dat", ".map", ".id",  ".mid", ".xml"};
    return std::find(aParts.begin(), aParts.end(), path.extension().string()) != aParts.end();
}

} // namespace

int main(int argc, char** argv) {
    using namespace halvane::bench;
    return runProgram(argc, argv, [](const char* pFolder, const char*) {
        for (const auto& entry : std::filesystem::directory_iterator(pFolder)) {
            if (isPart(entry.path()))
                continue;
            const GDALDatasetUniquePtr pDataset(
                GDALDataset::Open(entry.path().c_str(), GDAL_OF_VECTOR | GDAL_OF_RASTER | GDAL_OF_READONLY));
            if (pDataset == nullptr)
                throw std::runtime_error(entry.path().string() + " cannot be opened");
        }
    });
}
