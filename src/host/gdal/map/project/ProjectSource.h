#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::host::gdal {

/// Where a layer of a project has its data, as the text of its data source says it. Nothing is looked for.
struct ProjectSource {
    std::string sFile; ///< as it is written; "" where there is none
    std::string sDataset;
    std::optional<std::size_t> nDataset; ///< its place in the file, where it has no name
    std::string sShapes;                 ///< the column of the shapes; "" for the only one
    std::string sSql;                    ///< a SELECT that computes the layer
    std::string sFilter;
    std::string sDatabase; ///< the address of a server's database, with its password; "" for a file
    std::string sServer;   ///< what the database is called, without a password
    std::string sCrs;      ///< of coordinates in columns
    std::string sEncoding;
    std::map<std::string, std::string> openOptions; ///< of the file's driver
    bool bMesh = false;
    bool bOwnExpression = false;     ///< its subset is one of the program that wrote the project
    std::string sWhyNot;             ///< why it cannot be read; "" where it may be
    std::vector<std::string> untold; ///< what it says beyond that
};

/// @param sProvider the name of what reads the source in the program that wrote the project.
[[nodiscard]] ProjectSource projectSourceOf(std::string_view sProvider, const std::string& sText);

} // namespace halvane::host::gdal
