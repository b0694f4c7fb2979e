// Writes the document of control/related.xml, and nothing else, with all children read in one pass
// beforehand.

#include "Output.h"
#include "Program.h"

#include <unordered_map>

namespace {

using namespace halvane::bench;

using NamesByLink = std::unordered_map<int, std::vector<std::string>>;

NamesByLink readChildren(GDALDataset& dataset) {
    OGRLayer& children = layerOf(dataset, "children");
    ignoreColumns(children, {"amount"});
    NamesByLink names;
    while (const OGRFeatureUniquePtr pChild{children.GetNextFeature()})
        names[pChild->GetFieldAsInteger(0)].emplace_back(pChild->GetFieldAsString(1));
    return names;
}

void putChildren(Output& out, const NamesByLink& names, int lLink) {
    const auto pFound = names.find(lLink);
    if (pFound == names.end()) {
        out.put("<Children>\r\n<Child/>\r\n</Children>\r\n");
        return;
    }
    out.put("<Children>\r\n");
    for (const std::string& sName : pFound->second) {
        out.put("<Child>");
        putText(out, sName);
        out.put("</Child>\r\n");
    }
    out.put("</Children>\r\n");
}

void writeRelated(const char* pData, const char* pDocument) {
    const auto pDataset = openDataset(pData);
    const NamesByLink names = readChildren(*pDataset);
    OGRLayer& parents = layerOf(*pDataset, "parents");
    ignoreColumns(parents, {"OGR_GEOMETRY"});
    Output out(pDocument);
    out.put("<Related>\r\n<Layer>\r\n");
    while (const OGRFeatureUniquePtr pParent{parents.GetNextFeature()}) {
        out.put("<Parent name=\"");
        putAttribute(out, pParent->GetFieldAsString(1));
        out.put("\">\r\n");
        putChildren(out, names, pParent->GetFieldAsInteger(0));
        out.put("</Parent>\r\n");
    }
    out.put("</Layer>\r\n</Related>");
    out.flush();
}

} // namespace

int main(int argc, char** argv) {
    return runProgram(argc, argv, writeRelated);
}
