#pragma once

#include <cpl_vsi.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace halvane::tests {

/// Makes a zipped archive, or adds to it. @returns its path.
inline std::string writeArchive(const std::string& sPath,
                                const std::vector<std::pair<std::string, std::string>>& members) {
    for (const auto& [sName, sText] : members) {
        VSILFILE* pFile = VSIFOpenL(("/vsizip/{" + sPath + "}/" + sName).c_str(), "wb");
        if (pFile == nullptr || VSIFWriteL(sText.data(), 1, sText.size(), pFile) != sText.size() ||
            VSIFCloseL(pFile) != 0)
            throw std::runtime_error("cannot write an archive");
    }
    return sPath;
}

} // namespace halvane::tests
