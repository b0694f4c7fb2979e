// Writes the document of the control file "structure-control", and nothing else, layer by layer.

#include "Output.h"
#include "Program.h"

#include <algorithm>
#include <filesystem>

namespace {

using namespace halvane::bench;

const char* typeName(OGRFieldType type) {
    switch (type) {
    case OFTInteger:
        return "vemiFieldTypeInteger";
    case OFTReal:
        return "vemiFieldTypeDouble";
    case OFTDate:
        return "vemiFieldTypeDate";
    default:
        return "vemiFieldTypeString";
    }
}

void putField(Output& out, std::string_view sName, std::string_view sType) {
    out.put("<Field>\r\n<Name>");
    out.put(sName);
    out.put("</Name>\r\n<Type>");
    out.put(sType);
    out.put("</Type>\r\n</Field>\r\n");
}

void putLayer(Output& out, OGRLayer& layer) {
    out.put("<Layer name=\"");
    out.put(layer.GetName());
    out.put("\" count=\"");
    putWhole(out, layer.GetFeatureCount());
    out.put("\">\r\n<Fields>\r\n");
    putField(out, layer.GetFIDColumn(), "vemiFieldTypeOID");
    putField(out, layer.GetGeometryColumn(), "vemiGeometryPoint");
    OGRFeatureDefn& definition = *layer.GetLayerDefn();
    for (int l = 0; l < definition.GetFieldCount(); ++l)
        putField(out, definition.GetFieldDefn(l)->GetNameRef(),
                 typeName(definition.GetFieldDefn(l)->GetType()));
    out.put("</Fields>\r\n</Layer>\r\n");
}

/// In the order of the numbers at the ends of their names; the file lists them otherwise.
std::vector<OGRLayer*> layersInOrder(GDALDataset& dataset) {
    constexpr std::size_t nBeforeNumber = 6;
    std::vector<OGRLayer*> layers;
    for (int l = 0; l < dataset.GetLayerCount(); ++l)
        layers.push_back(dataset.GetLayer(l));
    std::sort(layers.begin(), layers.end(), [](OGRLayer* pLeft, OGRLayer* pRight) {
        return std::string_view(pLeft->GetName()).substr(nBeforeNumber) <
               std::string_view(pRight->GetName()).substr(nBeforeNumber);
    });
    return layers;
}

void putFile(Output& out, const std::string& sPath) {
    const auto pDataset = openDataset(sPath.c_str());
    for (OGRLayer* const pLayer : layersInOrder(*pDataset)) {
        if (pLayer->GetGeomType() != wkbNone) {
            putLayer(out, *pLayer);
            continue;
        }
        out.put("<Table name=\"");
        out.put(pLayer->GetName());
        out.put("\"/>\r\n");
    }
}

void writeStructure(const char* pFolder, const char* pDocument) {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(pFolder))
        paths.push_back(entry.path().string());
    std::sort(paths.begin(), paths.end());
    Output out(pDocument);
    out.put("<Structure>\r\n");
    for (const std::string& sPath : paths)
        putFile(out, sPath);
    out.put("</Structure>");
    out.flush();
}

} // namespace

int main(int argc, char** argv) {
    return runProgram(argc, argv, writeStructure);
}
