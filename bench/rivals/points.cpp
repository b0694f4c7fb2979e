// Writes the document of control/points.xml, and nothing else, row by row.

#include "Output.h"
#include "Program.h"

namespace {

using namespace halvane::bench;

bool isMissing(const OGRField& field) {
    return OGR_RawField_IsUnset(&field) != 0 || OGR_RawField_IsNull(&field) != 0;
}

template<class Put>
void putOptional(Output& out, const OGRField& field, std::string_view sName, const Put& put) {
    out.put("<");
    out.put(sName);
    if (isMissing(field)) {
        out.put("/>\r\n");
        return;
    }
    out.put(">");
    put();
    out.put("</");
    out.put(sName);
    out.put(">\r\n");
}

void putPoint(Output& out, OGRFeature& feature) {
    const auto field = [&feature](int lColumn) -> const OGRField& {
        return *feature.GetRawFieldRef(lColumn);
    };
    out.put("<Point>\r\n<Number>");
    putWhole(out, field(0).Integer);
    out.put("</Number>\r\n<Code>");
    putWhole(out, field(1).Integer64);
    out.put("</Code>\r\n<Height>");
    putReal(out, field(2).Real);
    out.put("</Height>\r\n<Share>");
    putReal(out, field(3).Real);
    out.put("</Share>\r\n<Title>");
    putText(out, field(4).String);
    out.put("</Title>\r\n");
    putOptional(out, field(5), "Remark", [&] { putText(out, field(5).String); });
    out.put("<Kind>");
    putText(out, field(6).String);
    out.put("</Kind>\r\n");
    putOptional(out, field(7), "Built",
                [&] { putDate(out, field(7).Date.Year, field(7).Date.Month, field(7).Date.Day); });
    putOptional(out, field(8), "Balance", [&] { putWhole(out, field(8).Integer); });
    putOptional(out, field(9), "Value", [&] { putReal(out, field(9).Real); });
    out.put("</Point>\r\n");
}

void writePoints(const char* pData, const char* pDocument) {
    const auto pDataset = openDataset(pData);
    OGRLayer& layer = layerOf(*pDataset, "points");
    // The document tells nothing of the shapes.
    ignoreColumns(layer, {"OGR_GEOMETRY"});
    Output out(pDocument);
    out.put("<Points>\r\n<Layer>\r\n");
    while (const OGRFeatureUniquePtr pFeature{layer.GetNextFeature()})
        putPoint(out, *pFeature);
    out.put("</Layer>\r\n</Points>");
    out.flush();
}

} // namespace

int main(int argc, char** argv) {
    return runProgram(argc, argv, writePoints);
}
