// Makes one file of the bench's data: halvane_bench_data KIND COUNT PATH

#include "Makers.h"

#include <gdal_priv.h>

#include <cstdint>
#include <exception>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace halvane::bench;

void make(const std::string& sKind, std::int64_t nCount, const std::string& sPath) {
    using Maker = void (*)(const std::string&, std::int64_t);
    const std::map<std::string, Maker> makers{
        {"points", makePoints},
        {"server-points", makeServerPoints},
        {"areas", makeAreas},
        {"huge-area", makeHugeArea},
        {"area-of-rings", makeAreaOfRings},
        {"related", makeRelated},
        {"nested", makeNested},
        {"structure", makeStructure},
        {"structure-control", makeStructureControl},
        {"tree-control", makeTreeControl},
        {"files", makeFolder},
        {"small", [](const std::string& sSmall, std::int64_t) { makeSmall(sSmall); }}};
    const auto pFound = makers.find(sKind);
    if (pFound == makers.end())
        throw std::runtime_error("There is no data of kind " + sKind);
    pFound->second(sPath, nCount);
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() != 3) {
        std::cerr << "usage: halvane_bench_data KIND COUNT PATH\n";
        return 2;
    }
    try {
        GDALAllRegister();
        // The file is made anew when the making breaks off: it need not survive a crash.
        CPLSetConfigOption("OGR_SQLITE_SYNCHRONOUS", "OFF");
        make(arguments[0], std::stoll(arguments[1]), arguments[2]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "halvane_bench_data: " << error.what() << '\n';
        return 1;
    }
}
