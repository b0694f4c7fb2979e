#pragma once

// Projects of QGIS as texts, each with what a test needs of one.

#include <string>
#include <string_view>
#include <vector>

namespace halvane::test {

/// A layer of a project.
struct ProjectLayerText {
    std::string sId;
    std::string sSource;
    std::string sProvider = "ogr";
    std::string sMore = {};                                    ///< elements inside it
    std::string sAttributes = "type='vector' geometry='Line'"; ///< of its element
};

inline std::string escaped(std::string_view sText) {
    std::string sEscaped;
    for (const char c : sText)
        sEscaped += c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
    return sEscaped;
}

inline std::string projectLayer(const ProjectLayerText& layer) {
    return "<maplayer " + layer.sAttributes + "><id>" + layer.sId + "</id><datasource>" +
           escaped(layer.sSource) + "</datasource><layername>" + layer.sId +
           "</layername><provider encoding='UTF-8'>" + layer.sProvider + "</provider>" + layer.sMore +
           "</maplayer>";
}

inline std::string treeLayer(std::string_view sId) {
    return "<layer-tree-layer id='" + std::string(sId) + "' checked='Qt::Checked'/>";
}

/// @param sTree what stands in the tree; "" for all layers at its top. @param sRest further elements.
inline std::string projectText(const std::vector<ProjectLayerText>& layers, std::string sTree = {},
                               const std::string& sRest = {}) {
    std::string sLayers;
    for (const ProjectLayerText& layer : layers)
        sLayers += projectLayer(layer);
    if (sTree.empty())
        for (const ProjectLayerText& layer : layers)
            sTree += treeLayer(layer.sId);
    return "<!DOCTYPE qgis PUBLIC 'http://project.invalid/qgis.dtd' 'SYSTEM'>\n"
           "<qgis version='3.22.16'><title>City</title>\n<layer-tree-group>" +
           sTree + "</layer-tree-group>\n<projectlayers>" + sLayers + "</projectlayers>\n" + sRest +
           "</qgis>\n";
}

inline std::string referenceText(std::string_view sCode) {
    return "<spatialrefsys><wkt></wkt><authid>" + std::string(sCode) + "</authid></spatialrefsys>";
}

} // namespace halvane::test
