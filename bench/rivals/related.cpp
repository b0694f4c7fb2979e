// Writes the document of control/related.xml, and nothing else, with one query for each parent.

#include "Output.h"
#include "Program.h"

namespace {

using namespace halvane::bench;

void putChildren(Output& out, OGRLayer& children, int lLink) {
    if (children.SetAttributeFilter(("link = " + std::to_string(lLink)).c_str()) != OGRERR_NONE)
        throw std::runtime_error("The filter is refused");
    bool bAny = false;
    out.put("<Children>\r\n");
    while (const OGRFeatureUniquePtr pChild{children.GetNextFeature()}) {
        out.put("<Child>");
        putText(out, pChild->GetFieldAsString(1));
        out.put("</Child>\r\n");
        bAny = true;
    }
    out.put(bAny ? "</Children>\r\n" : "<Child/>\r\n</Children>\r\n");
}

void writeRelated(const char* pData, const char* pDocument) {
    const auto pDataset = openDataset(pData);
    // A query on the handle that reads the parents would set their reading back.
    const auto pChildrenDataset = openDataset(pData);
    OGRLayer& parents = layerOf(*pDataset, "parents");
    OGRLayer& children = layerOf(*pChildrenDataset, "children");
    ignoreColumns(parents, {"OGR_GEOMETRY"});
    ignoreColumns(children, {"amount"});
    Output out(pDocument);
    out.put("<Related>\r\n<Layer>\r\n");
    while (const OGRFeatureUniquePtr pParent{parents.GetNextFeature()}) {
        out.put("<Parent name=\"");
        putAttribute(out, pParent->GetFieldAsString(1));
        out.put("\">\r\n");
        putChildren(out, children, pParent->GetFieldAsInteger(0));
        out.put("</Parent>\r\n");
    }
    out.put("</Layer>\r\n</Related>");
    out.flush();
}

} // namespace

int main(int argc, char** argv) {
    return runProgram(argc, argv, writeRelated);
}
