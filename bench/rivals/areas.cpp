// Writes the document of control/areas.xml, and nothing else, row by row.

#include "Output.h"
#include "Program.h"

namespace {

using namespace halvane::bench;

void putRing(Output& out, const OGRLinearRing& ring) {
    out.put("<Part>\r\n");
    for (int l = 0; l < ring.getNumPoints(); ++l) {
        out.put("<Vertex x=\"");
        putReal(out, ring.getX(l));
        out.put("\" y=\"");
        putReal(out, ring.getY(l));
        out.put("\"/>\r\n");
    }
    out.put("</Part>\r\n");
}

void putArea(Output& out, OGRFeature& feature) {
    out.put("<Area number=\"");
    putWhole(out, feature.GetFieldAsInteger(0));
    out.put("\">\r\n<Vertex>\r\n");
    for (const OGRLinearRing* pRing : *feature.GetGeometryRef()->toPolygon())
        putRing(out, *pRing);
    out.put("</Vertex>\r\n</Area>\r\n");
}

void writeAreas(const char* pData, const char* pDocument) {
    const auto pDataset = openDataset(pData);
    OGRLayer& layer = layerOf(*pDataset, "areas");
    // The document tells the number alone.
    ignoreColumns(layer, {"kind"});
    Output out(pDocument);
    out.put("<Areas>\r\n<Layer>\r\n");
    while (const OGRFeatureUniquePtr pFeature{layer.GetNextFeature()})
        putArea(out, *pFeature);
    out.put("</Layer>\r\n</Areas>");
    out.flush();
}

} // namespace

int main(int argc, char** argv) {
    return runProgram(argc, argv, writeAreas);
}
