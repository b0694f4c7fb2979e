#pragma once

#include "host/Map.h"
#include "host/SpatialReference.h"
#include "run/describe/LayerSketch.h"
#include "run/describe/Reading.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace halvane {

/// Codes are those of host objects. Values are texts as an export writes them.

struct FieldDescription {
    Reading<std::string> sName;
    Reading<std::string> sAlias;
    Reading<std::int32_t> lTypeCode;
    std::string sTypeLiteral; ///< that an export writes; "" for a type without one
    Reading<std::int32_t> lLength;
    Reading<std::int32_t> lPrecision;
    Reading<bool> bNullable;
    Reading<bool> bEditable;
    /// In the default subtype, where the class or table has subtypes.
    Reading<std::optional<std::string>> sDomain{std::optional<std::string>{}, {}};
    Reading<std::optional<std::string>> sDefault{std::optional<std::string>{}, {}};
};

/// What a subtype holds for a field; a field for which it holds nothing is not listed.
struct SubtypeFieldDescription {
    std::string sField;
    Reading<std::optional<std::string>> sDomain;
    Reading<std::optional<std::string>> sDefault;
};

struct SubtypeDescription {
    std::int32_t lCode = 0;
    Reading<std::string> sName;
    Reading<std::vector<SubtypeFieldDescription>> fields;
};

struct SubtypesDescription {
    Reading<std::string> sField;
    Reading<std::int32_t> lDefaultCode;
    ReadingList<SubtypeDescription> subtypes;
};

struct SpatialReferenceDescription {
    Reading<std::vector<std::string>> lines; ///< a keyword and its value each
    Reading<std::optional<host::XyDomain>> xy;
    Reading<std::optional<host::MeasureDomain>> z;
    Reading<std::optional<host::MeasureDomain>> m;
};

struct TableDescription {
    Reading<std::string> sDataset;
    Reading<std::optional<std::size_t>> lWorkspace; ///< index into MapDescription::workspaces
    ReadingList<FieldDescription> fields;
};

struct FeatureClassDescription {
    TableDescription table;
    Reading<std::int32_t> lShapeType;
    Reading<std::int64_t> lFeatures; ///< all of the layer's, selected or not
    Reading<std::optional<SubtypesDescription>> subtypes;
    std::optional<Reading<LayerSketch>> sketch; ///< where it was asked for
};

enum class LayerKind { Feature, Raster, Tin, Group, Other };

/// Only what stands under the layer's kind is filled.
struct LayerDescription {
    Reading<std::string> sName;
    LayerKind kind = LayerKind::Other;
    // Feature
    Reading<FeatureClassDescription> featureClass;
    Reading<std::int32_t> lSelected;
    Reading<std::optional<SpatialReferenceDescription>> spatialReference;
    // Raster
    Reading<std::string> sFilePath;
    // Tin
    Reading<std::optional<std::size_t>> lWorkspace;
    // Group
    ReadingList<LayerDescription> members;
};

struct OneMapDescription {
    Reading<std::string> sName;
    Reading<bool> bShown;
    Reading<std::optional<SpatialReferenceDescription>> spatialReference;
    ReadingList<LayerDescription> layers;
    ReadingList<TableDescription> tables;
};

struct CodeDescription {
    std::string sCode;
    std::string sName;
};

struct DomainDescription {
    Reading<std::string> sName;
    Reading<std::string> sDescription;
    Reading<std::int32_t> lFieldType;
    Reading<std::int32_t> lType;
    Reading<std::int32_t> lMergePolicy;
    Reading<std::int32_t> lSplitPolicy;
    Reading<std::optional<std::string>> sMin; ///< nothing unless it is a range
    Reading<std::optional<std::string>> sMax;
    ReadingList<CodeDescription> codes; ///< none unless it is one of coded values
};

struct RelationshipDescription {
    Reading<std::string> sName;
    Reading<std::int32_t> lCardinality;
    Reading<std::int32_t> lNotification;
    Reading<bool> bComposite;
    Reading<bool> bAttributed;
    Reading<std::string> sOriginClass;
    Reading<std::string> sDestinationClass;
    Reading<std::string> sForwardLabel;
    Reading<std::string> sBackwardLabel;
    Reading<std::string> sOriginPrimaryKey;
    Reading<std::string> sOriginForeignKey;
    Reading<std::string> sDestinationPrimaryKey;
    Reading<std::string> sDestinationForeignKey;
    Reading<std::string> sFeatureDataset;
};

struct WorkspaceDescription {
    Reading<std::string> sPath;
    Reading<std::int32_t> lType;
    ReadingList<DomainDescription> domains; ///< none where it cannot hold any
    ReadingList<RelationshipDescription> relationships;
};

/// Everything that a control file could name in a map document.
struct MapDescription {
    ReadingList<OneMapDescription> maps;
    /// Each once, in the order in which layers and tables lead to them, then those that only the document
    /// names.
    std::vector<WorkspaceDescription> workspaces;
};

/// Asks the host for everything. Never throws for what the host does: a question that fails leaves its
/// reason in the place of its answer.
/// @param named workspaces that the document names, whether or not a layer or a table lies in them.
/// @param sketchPoints all shapes are read, too, and drawn with that many points for each layer; 0: only
/// their extents are told.
[[nodiscard]] MapDescription describeMap(const host::GisMapDocument& document,
                                         const std::vector<host::GisWorkspacePtr>& named = {},
                                         std::optional<std::size_t> sketchPoints = {});

} // namespace halvane
