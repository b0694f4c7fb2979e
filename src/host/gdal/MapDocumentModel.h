#pragma once

// A map document as it is written (docs/map-document.md), before any data is opened. Paths are absolute.

#include "host/Host.h"
#include "host/gdal/Fields.h"
#include "host/gdal/Layers.h"
#include "host/gdal/SpatialReference.h"

#include <cstdint>
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

struct SubtypeFieldModel {
    std::string sName;
    std::optional<std::string> sDomain;
    std::optional<std::string> sDefault;
};

struct SubtypeModel {
    std::int32_t lCode = 0;
    std::string sName;
    std::vector<SubtypeFieldModel> fields;
};

struct SubtypesModel {
    std::string sField;
    std::int32_t lDefault = 0;
    std::vector<SubtypeModel> subtypes;
};

struct DataModel {
    Place place;
    std::string sLocation; ///< an absolute path, or a connection's name
    bool bConnection = false;
    std::string sDataset; ///< "" where there is only one
    std::string sFilter;
    std::vector<FieldOverride> fields;
    std::optional<SubtypesModel> subtypes;
    std::optional<ReferenceOverride> spatialReference;
};

enum class LayerKind { Feature, Raster, Tin, Group };

struct LayerModel {
    LayerKind kind = LayerKind::Feature;
    std::string sName;
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

enum class DomainKind : std::int32_t { Range = 1, CodedValue = 2, Text = 3 };

struct CodeModel {
    std::string sValue;
    std::string sName;
};

struct DomainModel {
    Place place;
    DomainKind kind = DomainKind::CodedValue;
    std::string sName;
    std::string sDescription;
    FieldType fieldType = FieldType::Integer;
    std::int32_t lMergePolicy = 0;
    std::int32_t lSplitPolicy = 0;
    std::string sMin;
    std::string sMax;
    std::vector<CodeModel> codes;
};

struct RelationshipModel {
    std::string sName;
    std::string sOrigin;
    std::string sDestination;
    std::string sOriginPrimaryKey;
    std::string sOriginForeignKey;
    std::string sDestinationPrimaryKey;
    std::string sDestinationForeignKey;
    std::string sForwardLabel;
    std::string sBackwardLabel;
    std::string sFeatureDataset;
    std::int32_t lCardinality = 2;
    std::int32_t lNotification = 1;
    bool bComposite = false;
    bool bAttributed = false;
};

struct WorkspaceModel {
    Place place;
    std::string sLocation;
    bool bConnection = false;
    std::vector<DomainModel> domains;
    std::vector<RelationshipModel> relationships;
};

struct MapDocumentModel {
    std::string sFolder;
    std::vector<ConnectionModel> connections;
    std::vector<WorkspaceModel> workspaces;
    std::vector<MapModel> maps; ///< one is shown
};

} // namespace halvane::host::gdal
