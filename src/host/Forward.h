#pragma once

// The host application's object model: the operations that an export needs of it, and nothing else. A binding
// (host/gdal, host/com, ...) implements the interfaces of this folder; the engine sees only them.
//
// Every operation may throw Failure with the host's own text. Objects are shared; an empty pointer is
// "nothing". Counts and indexes are from 0. Text is UTF-8; a std::string_view returned by an object lives as
// long as the object, one returned by a row as long as the row.
//
// Here are the names of the objects and the pointers to them, for whoever only hands them on.

#include <memory>

namespace halvane::host {

class GisFields;
class GisPoint;
class GisGeometry;
class GisSpatialReference;
class GisTransformation;
class GisDomain;
class GisEnumDomain;
class GisWorkspaceDomains;
class GisSubtypes;
class GisRelationshipClass;
class GisEnumRelationshipClass;
class GisRow;
class GisCursor;
class GisTable;
class GisFeatureClass;
class GisLayer;
class GisFeatureLayer;
class GisRasterLayer;
class GisDataset;
class GisTinLayer;
class GisGroupLayer;
class GisMap;
class GisMapDocument;
class GisWorkspace;
class GisPropertySet;
class GisWorkspaceFactory;
class GisCatalogObject;
class GisCatalog;
class GisNumericFormat;
class GisHost;
struct RowCondition;

using GisFieldsPtr = std::shared_ptr<const GisFields>;
using GisPointPtr = std::shared_ptr<GisPoint>;
using GisGeometryPtr = std::shared_ptr<GisGeometry>;
using GisSpatialReferencePtr = std::shared_ptr<GisSpatialReference>;
using GisTransformationPtr = std::shared_ptr<const GisTransformation>;
using GisDomainPtr = std::shared_ptr<GisDomain>;
using GisEnumDomainPtr = std::shared_ptr<GisEnumDomain>;
using GisWorkspaceDomainsPtr = std::shared_ptr<GisWorkspaceDomains>;
using GisSubtypesPtr = std::shared_ptr<GisSubtypes>;
using GisRelationshipClassPtr = std::shared_ptr<GisRelationshipClass>;
using GisEnumRelationshipClassPtr = std::shared_ptr<GisEnumRelationshipClass>;
using GisRowPtr = std::shared_ptr<GisRow>;
using GisCursorPtr = std::shared_ptr<GisCursor>;
using GisTablePtr = std::shared_ptr<GisTable>;
using GisFeatureClassPtr = std::shared_ptr<GisFeatureClass>;
using GisLayerPtr = std::shared_ptr<GisLayer>;
using GisFeatureLayerPtr = std::shared_ptr<GisFeatureLayer>;
using GisRasterLayerPtr = std::shared_ptr<GisRasterLayer>;
using GisDatasetPtr = std::shared_ptr<GisDataset>;
using GisTinLayerPtr = std::shared_ptr<GisTinLayer>;
using GisGroupLayerPtr = std::shared_ptr<GisGroupLayer>;
using GisMapPtr = std::shared_ptr<GisMap>;
using GisMapDocumentPtr = std::shared_ptr<GisMapDocument>;
using GisWorkspacePtr = std::shared_ptr<GisWorkspace>;
using GisPropertySetPtr = std::shared_ptr<GisPropertySet>;
using GisWorkspaceFactoryPtr = std::shared_ptr<GisWorkspaceFactory>;
using GisCatalogObjectPtr = std::shared_ptr<GisCatalogObject>;
using GisCatalogPtr = std::shared_ptr<GisCatalog>;
using GisNumericFormatPtr = std::shared_ptr<GisNumericFormat>;
using GisHostPtr = std::shared_ptr<GisHost>;

} // namespace halvane::host
