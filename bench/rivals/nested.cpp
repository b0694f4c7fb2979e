// Writes the document of control/nested.xml, and nothing else, with all children and grandchildren read in
// one pass each beforehand.

#include "Output.h"
#include "Program.h"

#include <unordered_map>

namespace {

using namespace halvane::bench;

struct Grandchild {
    std::string sName;
    double dAmount;
};
struct Child {
    int lNumber;
    std::string sName;
};
template<class Row>
using ByLink = std::unordered_map<int, std::vector<Row>>;

ByLink<Child> readChildren(GDALDataset& dataset) {
    OGRLayer& children = layerOf(dataset, "children");
    ByLink<Child> rows;
    while (const OGRFeatureUniquePtr pChild{children.GetNextFeature()})
        rows[pChild->GetFieldAsInteger(0)].push_back(
            {pChild->GetFieldAsInteger(2), pChild->GetFieldAsString(1)});
    return rows;
}

ByLink<Grandchild> readGrandchildren(GDALDataset& dataset) {
    OGRLayer& grandchildren = layerOf(dataset, "grandchildren");
    ByLink<Grandchild> rows;
    while (const OGRFeatureUniquePtr pRow{grandchildren.GetNextFeature()})
        rows[pRow->GetFieldAsInteger(0)].push_back({pRow->GetFieldAsString(1), pRow->GetFieldAsDouble(2)});
    return rows;
}

void putName(Output& out, std::string_view sName) {
    out.put("<Name>");
    putText(out, sName);
    out.put("</Name>\r\n");
}

template<class Row, class Put>
void putRows(const ByLink<Row>& rows, int lLink, const Put& put) {
    if (const auto pFound = rows.find(lLink); pFound != rows.end())
        for (const Row& row : pFound->second)
            put(row);
}

void putGrandchild(Output& out, const Grandchild& grandchild) {
    out.put("<Grandchild>\r\n");
    putName(out, grandchild.sName);
    out.put("<Amount>");
    putReal(out, grandchild.dAmount);
    out.put("</Amount>\r\n</Grandchild>\r\n");
}

void writeNested(const char* pData, const char* pDocument) {
    const auto pDataset = openDataset(pData);
    const auto children = readChildren(*pDataset);
    const auto grandchildren = readGrandchildren(*pDataset);
    OGRLayer& parents = layerOf(*pDataset, "parents");
    ignoreColumns(parents, {"OGR_GEOMETRY"});
    Output out(pDocument);
    out.put("<Nested>\r\n<Layer>\r\n");
    while (const OGRFeatureUniquePtr pParent{parents.GetNextFeature()}) {
        out.put("<Parent>\r\n");
        putName(out, pParent->GetFieldAsString(1));
        putRows(children, pParent->GetFieldAsInteger(0), [&](const Child& child) {
            out.put("<Child>\r\n");
            putName(out, child.sName);
            putRows(grandchildren, child.lNumber,
                    [&](const Grandchild& grandchild) { putGrandchild(out, grandchild); });
            out.put("</Child>\r\n");
        });
        out.put("</Parent>\r\n");
    }
    out.put("</Layer>\r\n</Nested>");
    out.flush();
}

} // namespace

int main(int argc, char** argv) {
    return runProgram(argc, argv, writeNested);
}
