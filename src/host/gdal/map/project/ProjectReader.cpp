#include "host/gdal/map/project/ProjectReader.h"

#include "base/Failure.h"
#include "host/gdal/map/project/ProjectFile.h"
#include "host/gdal/map/project/ProjectMaps.h"
#include "host/gdal/map/project/ProjectRelations.h"
#include "host/gdal/source/Locations.h"

#include <libxml/tree.h>

namespace halvane::host::gdal {

MapDocumentModel readProject(const std::string& sPath, bool bConnections) {
    const MarkupDocument pDocument = parseProject(sPath);
    const MarkupElement root(xmlDocGetRootElement(pDocument.get()));
    const ElementReader reader(sPath);
    if (root.name() != "qgis")
        reader.fail(root, "it is no project: its root would be <qgis>");
    ProjectRemarks remarks(sPath);
    ProjectReferences references(reader);
    ProjectLayers layers(reader, references, remarks, folderOf(sPath), bConnections);
    MapDocumentModel model;
    model.sFolder = folderOf(sPath);
    layers.read(root);
    model.workspaces = readProjectWorkspaces(root, layers, remarks);
    model.maps = readProjectMaps(root, stemOf(sPath), layers, references, remarks);
    model.connections = layers.connections();
    model.remarks = remarks.lines();
    return model;
}

} // namespace halvane::host::gdal
