#pragma once

#include "host/gdal/source/CoordinateTexts.h"
#include "host/gdal/source/MemoryFiles.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace halvane::host::gdal {

/// A GML or KML file whose driver would take coordinates that are none for others, or end the rows at them,
/// or does not know its encoding: in memory, without the shapes of such coordinates and in UTF-8, for as long
/// as the object lives.
class MendedShapes {
public:
    /// Nothing for a file of another format, and for one that its driver reads as it should be.
    [[nodiscard]] static std::shared_ptr<const MendedShapes> of(const std::string& sPath);

    /// For the data library alone.
    [[nodiscard]] const std::string& path() const { return sPath_; }
    /// The same file with a point in the place of each such shape: x and y are its number.
    [[nodiscard]] const std::string& markedPath() const { return sMarkedPath_; }
    /// @param nShape its number. What the coordinates are, with their line.
    [[nodiscard]] const std::string& reason(std::size_t nShape) const { return reasons_.at(nShape); }
    [[nodiscard]] std::size_t count() const { return reasons_.size(); }

private:
    MendedShapes(const std::string& sPath, const std::string& sContent,
                 const std::vector<SuspectShape>& shapes);

    MemoryFiles served_;
    MemoryFiles marked_;
    std::string sPath_;
    std::string sMarkedPath_;
    std::vector<std::string> reasons_;
};

} // namespace halvane::host::gdal
