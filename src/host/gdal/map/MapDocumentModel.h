#pragma once

// A map document as it is written (docs/map-document.md), before any data is opened. Paths are absolute.

#include "host/Forward.h"
#include "host/gdal/facts/Domains.h"
#include "host/gdal/facts/Fields.h"
#include "host/gdal/facts/Relationships.h"
#include "host/gdal/facts/SpatialReference.h"
#include "host/gdal/objects/Layers.h"
#include "host/gdal/objects/Subtypes.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace halvane::host::gdal {

/// Where an element stands, for messages.
struct Place {
    std::string sFile;
    long lLine = 0;

    [[nodiscard]] std::string text() const { return sFile + ", line " + std::to_string(lLine); }
};

struct DataModel {
    Place place;
    std::string sLocation; ///< an absolute path, or a connection's name
    bool bConnection = false;
    std::string sWhyNot;                 ///< why it cannot be read, where that is known already; else ""
    std::string sName;                   ///< of a table; "" for its dataset's
    std::string sDataset;                ///< "" where there is only one
    std::optional<std::size_t> nDataset; ///< its place in the location, where it has no name
    std::string sShapes;                 ///< the column of the shapes; "" for the only one
    std::string sSql;                    ///< "" where the data is a dataset as it stands
    std::string sFilter;
    std::vector<RowKey> orderBy;
    std::string sCrs;
    std::string sFile;     ///< what the encoding and the options are of; "" for the location
    std::string sEncoding; ///< of texts; "" where the document says none
    std::map<std::string, std::string> openOptions; ///< by which its driver opens it
    bool bMesh = false;                             ///< a surface in a file whose place alone is asked for
    std::vector<FieldOverride> fields;
    std::optional<SubtypesFacts> subtypes;
    std::optional<ReferenceOverride> spatialReference;
};

enum class LayerKind { Feature, Raster, Tin, Group };

struct LayerModel {
    LayerKind kind = LayerKind::Feature;
    std::string sName;
    bool bNamed = true; ///< by the document; else after its data
    DataModel data;
    std::optional<SelectionChoice> selection;
    std::vector<LayerModel> layers; ///< of a group
};

struct MapModel {
    std::string sName;
    bool bShown = false;
    std::vector<LayerModel> layers;
    std::vector<DataModel> tables;
    std::optional<ReferenceOverride> spatialReference;
};

struct ConnectionModel {
    Place place;
    std::string sName;
    std::string sDatabase;
};

struct WorkspaceModel {
    Place place;
    std::string sLocation;
    bool bConnection = false;
    std::vector<DomainFacts> domains;
    std::vector<RelationshipFacts> relationships;
};

struct MapDocumentModel {
    std::string sFolder;
    std::vector<ConnectionModel> connections;
    std::vector<WorkspaceModel> workspaces;
    std::vector<MapModel> maps;       ///< one is shown
    std::vector<std::string> remarks; ///< lines on what it says and no map does
};

} // namespace halvane::host::gdal
