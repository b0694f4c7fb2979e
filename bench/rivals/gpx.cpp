// Writes the document of control/gpx.xml, and nothing else, row by row.

#include "Output.h"
#include "Program.h"

#include <cstdio>

namespace {

using namespace halvane::bench;

/// With seven decimals at most.
void putDegrees(Output& out, double dDegrees) {
    char* const pText = out.reserve(40);
    char* pEnd = std::to_chars(pText, pText + 40, dDegrees, std::chars_format::fixed, 7).ptr;
    while (pEnd[-1] == '0')
        --pEnd;
    if (pEnd[-1] == '.')
        --pEnd;
    out.commit(pEnd);
}

void putPoint(Output& out, const OGRFeature& feature, const OGRPoint& place) {
    out.put("<wpt lat=\"");
    putDegrees(out, place.getY());
    out.put("\" lon=\"");
    putDegrees(out, place.getX());
    out.put("\">\r\n<name>");
    putText(out, feature.GetRawFieldRef(4)->String);
    out.put("</name>\r\n");
    if (const int lNumber = feature.GetRawFieldRef(0)->Integer; lNumber > 10) {
        out.put("<desc>");
        putText(out, feature.GetRawFieldRef(6)->String);
        out.put(" no. ");
        putWhole(out, lNumber);
        out.put("</desc>\r\n");
    }
    out.put("</wpt>\r\n");
}

void writeGpx(const char* pData, const char* pDocument) {
    const auto pDataset = openDataset(pData);
    OGRLayer& layer = layerOf(*pDataset, "points");
    ignoreColumns(layer, {"code", "height", "share", "remark", "built", "balance", "value"});
    OGRSpatialReference degrees;
    degrees.importFromEPSG(4326);
    degrees.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    const std::unique_ptr<OGRCoordinateTransformation> pToDegrees(
        OGRCreateCoordinateTransformation(layer.GetSpatialRef(), &degrees));
    Output out(pDocument);
    out.put("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<gpx xmlns=\"http://www.topografix.com/GPX/1/1\" "
            "version=\"1.1\" creator=\"Halvane\">\r\n");
    while (const OGRFeatureUniquePtr pFeature{layer.GetNextFeature()}) {
        if (std::string_view(pFeature->GetRawFieldRef(6)->String) == "park")
            continue;
        OGRPoint place = *pFeature->GetGeometryRef()->toPoint();
        if (place.transform(pToDegrees.get()) != OGRERR_NONE)
            throw std::runtime_error("A point has no place in degrees");
        putPoint(out, *pFeature, place);
    }
    out.put("</gpx>");
    out.flush();
}

} // namespace

int main(int argc, char** argv) {
    return runProgram(argc, argv, writeGpx);
}
