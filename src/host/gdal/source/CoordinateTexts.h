#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::host::gdal {

/// A shape in GML or KML whose coordinates are none, or may be none.
struct SuspectShape {
    std::size_t nBegin = 0;       ///< of the outermost element of the shape
    std::size_t nEnd = 0;         ///< behind it
    std::size_t nParentBegin = 0; ///< of the element that holds nothing else; nBegin where there is none
    std::size_t nParentEnd = 0;
    std::string sPrefix; ///< of its elements' names, with the colon
    std::string sReason; ///< what its coordinates are
    bool bCertain = false;
};

enum class CoordinateForm : std::uint8_t { Gml, Kml };

/// Finds them in a text that is one document. What is no such markup is left to those who parse it.
[[nodiscard]] std::vector<SuspectShape> suspectShapesIn(std::string_view sText, CoordinateForm form);

} // namespace halvane::host::gdal
