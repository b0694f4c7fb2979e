#include "host/gdal/source/MendedShapes.h"

#include "host/gdal/source/Encodings.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Locations.h"

#include <ogr_geometry.h>

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace halvane::host::gdal {

namespace {

bool isReadable(const std::string& sShape) {
    const ErrorScope errors;
    const std::unique_ptr<OGRGeometry> pShape(OGRGeometryFactory::createFromGML(sShape.c_str()));
    return pShape != nullptr;
}

void appendAll(std::string& sText, std::initializer_list<std::string_view> pieces) {
    for (const std::string_view sPiece : pieces)
        sText += sPiece;
}

} // namespace

std::shared_ptr<const MendedShapes> MendedShapes::of(const std::string& sPath) {
    constexpr std::uintmax_t nMostBytes = 512U << 20U; // a file is looked at in memory
    const std::string sExtension = extensionOf(sPath);
    std::error_code error;
    if ((sExtension != "gml" && sExtension != "kml") || !isFile(sPath) ||
        std::filesystem::file_size(sPath, error) > nMostBytes || error)
        return nullptr;
    std::string sContent = contentOf(sPath);
    std::optional<std::string> decoded = sExtension == "gml" ? decodedMarkup(sContent) : std::nullopt;
    const bool bDecoded = decoded.has_value();
    sContent = std::move(decoded).value_or(std::move(sContent));
    std::vector<SuspectShape> shapes =
        suspectShapesIn(sContent, sExtension == "kml" ? CoordinateForm::Kml : CoordinateForm::Gml);
    std::erase_if(shapes, [&](const SuspectShape& shape) {
        return !shape.bCertain && isReadable(sContent.substr(shape.nBegin, shape.nEnd - shape.nBegin));
    });
    return shapes.empty() && !bDecoded
               ? nullptr
               : std::shared_ptr<const MendedShapes>(new MendedShapes(sPath, sContent, shapes));
}

MendedShapes::MendedShapes(const std::string& sPath, const std::string& sContent,
                           const std::vector<SuspectShape>& shapes) {
    const std::string_view sAll = sContent;
    std::string sServed;
    std::string sMarked;
    std::size_t nServed = 0; // up to there it is copied
    std::size_t nMarked = 0;
    for (const SuspectShape& shape : shapes) {
        const std::string sNumber = std::to_string(reasons_.size());
        sServed += sAll.substr(nServed, shape.nParentBegin - nServed);
        sMarked += sAll.substr(nMarked, shape.nBegin - nMarked);
        appendAll(sMarked, {"<", shape.sPrefix, "Point><", shape.sPrefix, "coordinates>", sNumber, ",",
                            sNumber, "</", shape.sPrefix, "coordinates></", shape.sPrefix, "Point>"});
        nServed = shape.nParentEnd;
        nMarked = shape.nEnd;
        reasons_.push_back(shape.sReason);
    }
    const std::string sName = std::filesystem::path(sPath).filename().string();
    sPath_ = served_.add(sName, sServed += sAll.substr(nServed));
    sMarkedPath_ = marked_.add(sName, sMarked += sAll.substr(nMarked));
    for (const char* pBeside : {"xsd", "gfs"}) {
        served_.addBeside(sPath, pBeside);
        marked_.addBeside(sPath, pBeside);
    }
}

} // namespace halvane::host::gdal
