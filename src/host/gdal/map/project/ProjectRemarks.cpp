#include "host/gdal/map/project/ProjectRemarks.h"

#include <algorithm>
#include <cstddef>

namespace halvane::host::gdal {

void ProjectRemarks::add(std::string_view sKind, std::string sThing) {
    auto pKind =
        std::find_if(kinds_.begin(), kinds_.end(), [&](const auto& kind) { return kind.first == sKind; });
    if (pKind == kinds_.end())
        pKind = kinds_.insert(pKind, {std::string(sKind), {}});
    pKind->second.push_back(std::move(sThing));
}

std::vector<std::string> ProjectRemarks::lines() const {
    constexpr std::size_t nMost = 10;
    std::vector<std::string> lines;
    for (const auto& [sKind, things] : kinds_) {
        if (things.front().empty()) {
            lines.push_back(sFile_ + ": " + sKind);
            continue;
        }
        std::string sLine = sFile_ + ": " + sKind + ": ";
        for (std::size_t nThing = 0; nThing < std::min(things.size(), nMost); ++nThing)
            sLine += (nThing == 0 ? "\"" : ", \"") + things[nThing] + "\"";
        if (things.size() > nMost)
            sLine += " and " + std::to_string(things.size() - nMost) + " more";
        lines.push_back(std::move(sLine));
    }
    return lines;
}

} // namespace halvane::host::gdal
