#pragma once

// The host application's object model: the operations that an export needs of it, and nothing else. A binding
// (host/gdal, host/memory, ...) implements these interfaces; the engine sees only them.
//
// Every operation may throw Failure with the host's own text. Objects are shared; an empty pointer is
// "nothing". Counts and indexes are from 0. Text is UTF-8; a std::string_view returned by an object lives as
// long as the object, one returned by a row as long as the row.

#include "base/Value.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace halvane::host {

class GisMap;
class GisLayer;
class GisFeatureLayer;
class GisRasterLayer;
class GisTinLayer;
class GisGroupLayer;
class GisFeatureClass;
class GisTable;
class GisWorkspace;
class GisSubtypes;
class GisDomain;
class GisRelationshipClass;
class GisSpatialReference;
class GisGeometry;

using GisMapPtr = std::shared_ptr<GisMap>;
using GisLayerPtr = std::shared_ptr<GisLayer>;
using GisFeatureLayerPtr = std::shared_ptr<GisFeatureLayer>;
using GisRasterLayerPtr = std::shared_ptr<GisRasterLayer>;
using GisTinLayerPtr = std::shared_ptr<GisTinLayer>;
using GisGroupLayerPtr = std::shared_ptr<GisGroupLayer>;
using GisFeatureClassPtr = std::shared_ptr<GisFeatureClass>;
using GisTablePtr = std::shared_ptr<GisTable>;
using GisWorkspacePtr = std::shared_ptr<GisWorkspace>;
using GisSubtypesPtr = std::shared_ptr<GisSubtypes>;
using GisDomainPtr = std::shared_ptr<GisDomain>;
using GisRelationshipClassPtr = std::shared_ptr<GisRelationshipClass>;
using GisSpatialReferencePtr = std::shared_ptr<GisSpatialReference>;
using GisGeometryPtr = std::shared_ptr<GisGeometry>;

/// Field type codes. Codes from 9 on are the host's own and have no name here.
enum class FieldType : std::int32_t {
    SmallInteger = 0,
    Integer = 1,
    Single = 2,
    Double = 3,
    String = 4,
    Date = 5,
    Oid = 6,
    Geometry = 7,
    Blob = 8,
};

/// Shape type codes.
enum class ShapeType : std::int32_t {
    Null = 0,
    Point = 1,
    Multipoint = 2,
    Polyline = 3,
    Polygon = 4,
    Line = 13
};

class GisField : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisField"; }
    [[nodiscard]] virtual std::string_view name() const = 0;
    /// The field's name where it has no alias of its own.
    [[nodiscard]] virtual std::string_view aliasName() const = 0;
    [[nodiscard]] virtual std::int32_t typeCode() const = 0;
    /// In characters for texts, in bytes otherwise; 0 when unknown.
    [[nodiscard]] virtual std::int32_t length() const = 0;
    [[nodiscard]] virtual std::int32_t precision() const = 0;
    [[nodiscard]] virtual bool isNullable() const = 0;
    [[nodiscard]] virtual bool isEditable() const = 0;
};

class GisFields : public Object {
public:
    GisFields() = default;
    /// Tells these fields from all others that the process has seen, those at the same place in memory
    /// included.
    [[nodiscard]] std::uint64_t serialNumber() const noexcept { return nSerialNumber_; }

    [[nodiscard]] std::string_view typeName() const override { return "GisFields"; }
    [[nodiscard]] virtual std::int32_t count() const = 0;
    /// @param lIndex 0 to count() - 1. @throws Failure SubscriptOutOfRange beyond.
    [[nodiscard]] virtual const GisField& field(std::int32_t lIndex) const = 0;
    /// The first field of that name, ignoring case; -1 when none.
    [[nodiscard]] virtual std::int32_t findField(std::string_view sName) const = 0;
    /// The first field of that alias, ignoring case; -1 when none.
    [[nodiscard]] virtual std::int32_t findFieldByAliasName(std::string_view sAlias) const = 0;

private:
    [[nodiscard]] static std::uint64_t nextSerialNumber() noexcept {
        static std::atomic<std::uint64_t> nLast = 0;
        return ++nLast;
    }

    std::uint64_t nSerialNumber_ = nextSerialNumber();
};
using GisFieldsPtr = std::shared_ptr<const GisFields>;

/// A row of a table or a feature of a feature class. It keeps its values after its cursor has moved on.
class GisRow : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisRow"; }
    [[nodiscard]] virtual const GisFields& fields() const = 0;
    /// The value at a field index; Null where the row has none. The geometry field yields a GisGeometry.
    [[nodiscard]] virtual ValueView value(std::int32_t lIndex) const = 0;
    [[nodiscard]] virtual std::int64_t objectId() const = 0;
    /// The feature's shape; nothing for a plain row and for a feature without one.
    [[nodiscard]] virtual GisGeometryPtr shape() const = 0;
};
using GisRowPtr = std::shared_ptr<GisRow>;

class GisCursor : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisCursor"; }
    /// The next row; nothing at the end.
    [[nodiscard]] virtual GisRowPtr nextRow() = 0;
};
using GisCursorPtr = std::shared_ptr<GisCursor>;

/// A where clause in the host's SQL dialect.
struct GisQueryFilter {
    std::string sWhereClause;
};

/// A table, or anything that can be read as one.
class GisTable : public virtual Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisTable"; }
    /// The name as a dataset of its workspace.
    [[nodiscard]] virtual std::string datasetName() const = 0;
    [[nodiscard]] virtual GisFieldsPtr fields() const = 0;
    /// The rows that satisfy the filter; all rows without one. Rows are not recycled.
    /// @throws Failure for a filter that the host rejects: never "all rows".
    [[nodiscard]] virtual GisCursorPtr search(const GisQueryFilter* pFilter) = 0;
    /// All rows, whose shapes nobody will ask for: a host may leave them unread.
    [[nodiscard]] virtual GisCursorPtr searchWithoutShapes() { return search(nullptr); }
    [[nodiscard]] virtual GisWorkspacePtr workspace() const = 0;
};

class GisFeatureClass : public GisTable {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisFeatureClass"; }
    /// All features, without a filter.
    [[nodiscard]] virtual std::int64_t featureCount() const = 0;
    [[nodiscard]] virtual std::int32_t shapeType() const = 0;
    [[nodiscard]] virtual GisSpatialReferencePtr spatialReference() const = 0;
    /// The class seen as a holder of subtypes.
    [[nodiscard]] virtual GisSubtypesPtr subtypes() const = 0;
};

/// A layer of a map; the kinds are the derived interfaces.
class GisLayer : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisLayer"; }
    [[nodiscard]] virtual std::string name() const = 0;
};

class GisFeatureLayer : public GisLayer {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisFeatureLayer"; }
    [[nodiscard]] virtual GisFeatureClassPtr featureClass() const = 0;
    virtual void setFeatureClass(GisFeatureClassPtr pFeatureClass) = 0;
    /// How many features are selected.
    [[nodiscard]] virtual std::int32_t selectionCount() const = 0;
    /// The selected features in selection order.
    [[nodiscard]] virtual GisCursorPtr searchSelection() = 0;
    /// The layer seen as a table: its feature class.
    [[nodiscard]] virtual GisTablePtr asTable() const = 0;
    [[nodiscard]] virtual GisSpatialReferencePtr spatialReference() const = 0;
};

class GisRasterLayer : public GisLayer {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisRasterLayer"; }
    [[nodiscard]] virtual std::string filePath() const = 0;
};

/// A dataset that is neither a table nor a feature class.
class GisDataset : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisDataset"; }
    [[nodiscard]] virtual GisWorkspacePtr workspace() const = 0;
};
using GisDatasetPtr = std::shared_ptr<GisDataset>;

class GisTinLayer : public GisLayer {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisTinLayer"; }
    [[nodiscard]] virtual GisDatasetPtr dataset() const = 0;
};

class GisGroupLayer : public GisLayer {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisGroupLayer"; }
    [[nodiscard]] virtual std::int32_t layerCount() const = 0;
    [[nodiscard]] virtual GisLayerPtr layer(std::int32_t lIndex) const = 0;
};

class GisMap : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisMap"; }
    [[nodiscard]] virtual std::string name() const = 0;
    [[nodiscard]] virtual std::int32_t layerCount() const = 0;
    [[nodiscard]] virtual GisLayerPtr layer(std::int32_t lIndex) const = 0;
    [[nodiscard]] virtual std::int32_t standaloneTableCount() const = 0;
    /// May be nothing: a table whose data is gone.
    [[nodiscard]] virtual GisTablePtr standaloneTable(std::int32_t lIndex) const = 0;
    /// How many layers are known once the one at an index has been looked for: more than the index exactly
    /// if there is one. A map that finds its layers one after the other need not find all for that.
    [[nodiscard]] virtual std::int32_t layersFoundFor(std::int32_t /*lIndex*/) const { return layerCount(); }
    /// The same of standalone tables.
    [[nodiscard]] virtual std::int32_t standaloneTablesFoundFor(std::int32_t /*lIndex*/) const {
        return standaloneTableCount();
    }
    [[nodiscard]] virtual GisSpatialReferencePtr spatialReference() const = 0;
};

class GisMapDocument : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisMapDocument"; }
    /// The map that the document currently shows.
    [[nodiscard]] virtual GisMapPtr focusMap() const = 0;
    [[nodiscard]] virtual std::int32_t mapCount() const = 0;
    [[nodiscard]] virtual GisMapPtr map(std::int32_t lIndex) const = 0;
};
using GisMapDocumentPtr = std::shared_ptr<GisMapDocument>;

class GisPoint : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisPoint"; }
    [[nodiscard]] virtual double x() const = 0;
    [[nodiscard]] virtual double y() const = 0;
    /// Not a number when the point has none.
    [[nodiscard]] virtual double z() const = 0;
    [[nodiscard]] virtual double m() const = 0;
};
using GisPointPtr = std::shared_ptr<GisPoint>;

/// The numbers of a point; not a number where it has none.
struct PointValues {
    double dX = 0, dY = 0, dZ = 0, dM = 0;
};

class GisGeometry : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisGeometry"; }
    /// A ShapeType code.
    [[nodiscard]] virtual std::int32_t geometryType() const = 0;
    /// In the layer's own units; for areas the sum of the rings.
    [[nodiscard]] virtual double length() const = 0;
    /// The point itself for a point, else the first and the last vertex. Nothing for an empty shape.
    [[nodiscard]] virtual GisPointPtr fromPoint() const = 0;
    [[nodiscard]] virtual GisPointPtr toPoint() const = 0;
    [[nodiscard]] virtual std::int32_t partCount() const = 0;
    [[nodiscard]] virtual std::int32_t pointCount(std::int32_t lPart) const = 0;
    [[nodiscard]] virtual GisPointPtr point(std::int32_t lPart, std::int32_t lIndex) const = 0;
    /// The numbers of that point and those after it, as far as they fit, where the host has them at hand
    /// without making objects. @returns how many; 0: the points have to be asked for one by one.
    [[nodiscard]] virtual std::size_t readPoints(std::int32_t /*lPart*/, std::int32_t /*lFirst*/,
                                                 std::span<PointValues> /*aPoints*/) const {
        return 0;
    }
};

struct XyDomain {
    double dXMin = 0, dYMin = 0, dXMax = 0, dYMax = 0;
    double dFalseX = 0, dFalseY = 0, dScale = 0;
};
/// A Z or M domain.
struct MeasureDomain {
    double dMin = 0, dMax = 0;
    double dFalseOrigin = 0, dScale = 0;
};

class GisSpatialReference : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisSpatialReference"; }
    /// Nothing where the reference has no such domain.
    [[nodiscard]] virtual std::optional<XyDomain> xyDomain() const = 0;
    [[nodiscard]] virtual std::optional<MeasureDomain> zDomain() const = 0;
    [[nodiscard]] virtual std::optional<MeasureDomain> mDomain() const = 0;
    /// One keyword and its value a line, lines separated by line feeds.
    [[nodiscard]] virtual std::string description() const = 0;
};

struct CodedValue {
    Value vCode;
    std::string sName;
};

class GisDomain : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisDomain"; }
    [[nodiscard]] virtual std::string name() const = 0;
    [[nodiscard]] virtual std::string description() const = 0;
    /// A FieldType code.
    [[nodiscard]] virtual std::int32_t fieldType() const = 0;
    [[nodiscard]] virtual std::int32_t mergePolicy() const = 0;
    [[nodiscard]] virtual std::int32_t splitPolicy() const = 0;
    /// 1 range, 2 coded values, 3 text.
    [[nodiscard]] virtual std::int32_t domainType() const = 0;
    /// Range domains only. @throws Failure ActionNotSupported otherwise.
    [[nodiscard]] virtual Value minValue() const = 0;
    [[nodiscard]] virtual Value maxValue() const = 0;
    /// Coded-value domains only; 0 otherwise.
    [[nodiscard]] virtual std::int32_t codeCount() const = 0;
    [[nodiscard]] virtual CodedValue code(std::int32_t lIndex) const = 0;
};

class GisEnumDomain : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisEnumDomain"; }
    [[nodiscard]] virtual GisDomainPtr next() = 0;
};
using GisEnumDomainPtr = std::shared_ptr<GisEnumDomain>;

/// A workspace seen as a holder of domains.
class GisWorkspaceDomains : public virtual Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisWorkspaceDomains"; }
    [[nodiscard]] virtual GisEnumDomainPtr domains() const = 0;
};
using GisWorkspaceDomainsPtr = std::shared_ptr<GisWorkspaceDomains>;

class GisSubtypes : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisSubtypes"; }
    [[nodiscard]] virtual bool hasSubtypes() const = 0;
    [[nodiscard]] virtual std::string subtypeFieldName() const = 0;
    [[nodiscard]] virtual std::int32_t defaultSubtypeCode() const = 0;
    /// Subtypes in the order of their enumeration.
    [[nodiscard]] virtual std::int32_t subtypeCount() const = 0;
    [[nodiscard]] virtual std::int32_t subtypeCode(std::int32_t lIndex) const = 0;
    [[nodiscard]] virtual std::string subtypeName(std::int32_t lCode) const = 0;
    /// Nothing where the field has no domain in that subtype.
    [[nodiscard]] virtual GisDomainPtr domain(std::int32_t lCode, std::string_view sFieldName) const = 0;
    [[nodiscard]] virtual Value defaultValue(std::int32_t lCode, std::string_view sFieldName) const = 0;
};

class GisRelationshipClass : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisRelationshipClass"; }
    [[nodiscard]] virtual std::string name() const = 0;
    [[nodiscard]] virtual std::string forwardPathLabel() const = 0;
    [[nodiscard]] virtual std::string backwardPathLabel() const = 0;
    /// "" when it is in none.
    [[nodiscard]] virtual std::string featureDatasetName() const = 0;
    [[nodiscard]] virtual bool isAttributed() const = 0;
    [[nodiscard]] virtual bool isComposite() const = 0;
    /// 1 none, 2 forward, 3 backward, 4 both.
    [[nodiscard]] virtual std::int32_t notification() const = 0;
    /// 1 one to one, 2 one to many, 3 many to many.
    [[nodiscard]] virtual std::int32_t cardinality() const = 0;
    [[nodiscard]] virtual std::string originClassName() const = 0;
    [[nodiscard]] virtual std::string destinationClassName() const = 0;
    [[nodiscard]] virtual std::string originPrimaryKey() const = 0;
    [[nodiscard]] virtual std::string originForeignKey() const = 0;
    [[nodiscard]] virtual std::string destinationPrimaryKey() const = 0;
    [[nodiscard]] virtual std::string destinationForeignKey() const = 0;
};

class GisEnumRelationshipClass : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisEnumRelationshipClass"; }
    [[nodiscard]] virtual GisRelationshipClassPtr next() = 0;
};
using GisEnumRelationshipClassPtr = std::shared_ptr<GisEnumRelationshipClass>;

class GisWorkspace : public virtual Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisWorkspace"; }
    /// The workspace's path; never with a password in it.
    [[nodiscard]] virtual std::string pathName() const = 0;
    /// 0 folder of files, 1 local database, 2 remote database.
    [[nodiscard]] virtual std::int32_t typeCode() const = 0;
    /// @throws Failure when there is none of that name.
    [[nodiscard]] virtual GisFeatureClassPtr openFeatureClass(std::string_view sName) = 0;
    [[nodiscard]] virtual GisTablePtr openTable(std::string_view sName) = 0;
    /// The datasets of type 11.
    [[nodiscard]] virtual GisEnumRelationshipClassPtr relationshipClasses() const = 0;
    /// Nothing when the workspace cannot hold domains.
    [[nodiscard]] virtual GisWorkspaceDomainsPtr domainsRole() = 0;
};

/// A name/value set of connection properties.
class GisPropertySet : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisPropertySet"; }
    virtual void setProperty(std::string_view sName, const Value& vValue) = 0;
    [[nodiscard]] virtual Value property(std::string_view sName) const = 0;
};
using GisPropertySetPtr = std::shared_ptr<GisPropertySet>;

class GisWorkspaceFactory : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisWorkspaceFactory"; }
    /// Opens the workspace at the property "DATABASE"; @throws Failure when it cannot be opened.
    [[nodiscard]] virtual GisWorkspacePtr open(const GisPropertySet& properties,
                                               std::int32_t lWindowHandle) = 0;
    [[nodiscard]] virtual GisWorkspacePtr openFromFile(std::string_view sPath,
                                                       std::int32_t lWindowHandle) = 0;
};
using GisWorkspaceFactoryPtr = std::shared_ptr<GisWorkspaceFactory>;

enum class WorkspaceFactoryKind { Default, LocalDatabase, Share, RemoteDatabase };

/// An object of the host's catalog.
class GisCatalogObject : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisCatalogObject"; }
    [[nodiscard]] virtual std::string name() const = 0;
    [[nodiscard]] virtual std::string fullName() const = 0;
    [[nodiscard]] virtual std::string category() const = 0;
    /// Nothing at the root.
    [[nodiscard]] virtual std::shared_ptr<GisCatalogObject> parent() const = 0;
};
using GisCatalogObjectPtr = std::shared_ptr<GisCatalogObject>;

class GisCatalog : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisCatalog"; }
    /// Nothing when there is no object of that name.
    [[nodiscard]] virtual GisCatalogObjectPtr objectFromFullName(std::string_view sFullName) = 0;
};
using GisCatalogPtr = std::shared_ptr<GisCatalog>;

/// A number format of the host. The fourth of its seven settings is the number of decimal places.
class GisNumericFormat : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisNumericFormat"; }
    virtual void configure(const std::array<std::int32_t, 7>& aSettings) = 0;
    [[nodiscard]] virtual std::string valueToText(double dValue) const = 0;
    /// Whether the texts are made of ASCII digits, signs, points and letters alone: nothing to escape in
    /// them.
    [[nodiscard]] virtual bool yieldsPlainTexts() const { return false; }
    /// The same, appended to a text.
    virtual void appendValue(std::string& sText, double dValue) const { sText.append(valueToText(dValue)); }
};
using GisNumericFormatPtr = std::shared_ptr<GisNumericFormat>;

/// What the host application makes for its clients.
class GisHost : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisHost"; }
    /// A feature layer without a feature class.
    [[nodiscard]] virtual GisFeatureLayerPtr newFeatureLayer() = 0;
    [[nodiscard]] virtual GisPropertySetPtr newPropertySet() = 0;
    [[nodiscard]] virtual GisWorkspaceFactoryPtr newWorkspaceFactory(WorkspaceFactoryKind kind) = 0;
    [[nodiscard]] virtual GisCatalogPtr newCatalog() = 0;
    [[nodiscard]] virtual GisNumericFormatPtr newNumericFormat() = 0;
    /// A new component by its programmatic identifier. @throws Failure CannotCreateComponent.
    [[nodiscard]] virtual ObjectPtr createComponent(std::string_view sProgId) = 0;
    /// Today's date where the host runs.
    [[nodiscard]] virtual Date today() const = 0;
    /// What separates the folders in the host's file paths: "\" or "/".
    [[nodiscard]] virtual char pathSeparator() const = 0;
};
using GisHostPtr = std::shared_ptr<GisHost>;

} // namespace halvane::host
