#include "host/com/ObjectKinds.h"

#include "base/Failure.h"

#include <array>
#include <fmt/format.h>

namespace halvane::host::com {

namespace {

using enum Member::Sort;
using enum Member::Need;

constexpr std::array aMembersOfMapDocument = {Member{"FocusMap"}, Member{"Maps"},
                                              Member{"Application", Property, Optional}};
constexpr std::array aMembersOfApplication = {Member{"NewFeatureLayer", Method},
                                              Member{"NewPropertySet", Method},
                                              Member{"NewWorkspaceFactory", Method},
                                              Member{"NewCatalog", Method, Optional},
                                              Member{"NewNumericFormat", Method, Optional},
                                              Member{"CreateComponent", Method, Optional},
                                              Member{"Today", Property, Optional},
                                              Member{"PathSeparator", Property, Optional}};
constexpr std::array aMembersOfMap = {Member{"Name"}, Member{"Layers"}, Member{"StandaloneTables"},
                                      Member{"SpatialReference"}};
constexpr std::array aMembersOfLayer = {Member{"LayerKind"}, Member{"Name"}};
constexpr std::array aMembersOfFeatureLayer = {Member{"LayerKind"},
                                               Member{"Name"},
                                               Member{"FeatureClass"},
                                               Member{"SelectionCount"},
                                               Member{"SearchSelection", Method},
                                               Member{"Table", Property, Optional},
                                               Member{"SpatialReference"}};
constexpr std::array aMembersOfRasterLayer = {Member{"LayerKind"}, Member{"Name"}, Member{"FilePath"}};
constexpr std::array aMembersOfTinLayer = {Member{"LayerKind"}, Member{"Name"}, Member{"Dataset"}};
constexpr std::array aMembersOfGroupLayer = {Member{"LayerKind"}, Member{"Name"}, Member{"Layers"}};
constexpr std::array aMembersOfDataset = {Member{"Workspace"}};
constexpr std::array aMembersOfTable = {Member{"DatasetName"}, Member{"Fields"}, Member{"Search", Method},
                                        Member{"SearchWithoutShapes", Method, Optional}, Member{"Workspace"}};
constexpr std::array aMembersOfFeatureClass = {
    Member{"DatasetName"},    Member{"Fields"},
    Member{"Search", Method}, Member{"SearchWithoutShapes", Method, Optional},
    Member{"Workspace"},      Member{"FeatureCount"},
    Member{"ShapeType"},      Member{"SpatialReference"},
    Member{"Subtypes"}};
constexpr std::array aMembersOfField = {Member{"Name"},      Member{"AliasName", Property, Optional},
                                        Member{"FieldType"}, Member{"Length"},
                                        Member{"Precision"}, Member{"IsNullable"},
                                        Member{"IsEditable"}};
constexpr std::array aMembersOfCursor = {Member{"NextRow", Method, Optional}};
constexpr std::array aMembersOfRow = {Member{"Value", Method}, Member{"ObjectId"},
                                      Member{"Shape", Property, Optional}};
constexpr std::array aMembersOfGeometry = {Member{"GeometryType"},  Member{"Length"},
                                           Member{"FromPoint"},     Member{"ToPoint"},
                                           Member{"PartCount"},     Member{"PointCount", Method},
                                           Member{"Point", Method}, Member{"ReadPoints", Method, Optional}};
constexpr std::array aMembersOfPoint = {Member{"X"}, Member{"Y"}, Member{"Z", Property, Optional},
                                        Member{"M", Property, Optional}};
constexpr std::array aMembersOfSpatialReference = {Member{"XyDomain"}, Member{"ZDomain"}, Member{"MDomain"},
                                                   Member{"Description"}};
constexpr std::array aMembersOfXyDomain = {Member{"XMin"},   Member{"YMin"},   Member{"XMax"}, Member{"YMax"},
                                           Member{"FalseX"}, Member{"FalseY"}, Member{"Scale"}};
constexpr std::array aMembersOfMeasureDomain = {Member{"Min"}, Member{"Max"}, Member{"FalseOrigin"},
                                                Member{"Scale"}};
constexpr std::array aMembersOfWorkspace = {
    Member{"PathName"},          Member{"WorkspaceType"},       Member{"OpenFeatureClass", Method},
    Member{"OpenTable", Method}, Member{"RelationshipClasses"}, Member{"Domains", Property, Optional}};
constexpr std::array aMembersOfSubtypes = {Member{"HasSubtypes"},         Member{"SubtypeFieldName"},
                                           Member{"DefaultSubtypeCode"},  Member{"SubtypeCodes"},
                                           Member{"SubtypeName", Method}, Member{"Domain", Method},
                                           Member{"DefaultValue", Method}};
constexpr std::array aMembersOfDomain = {
    Member{"Name"},        Member{"Description"},       Member{"FieldType"},       Member{"MergePolicy"},
    Member{"SplitPolicy"}, Member{"DomainType"},        Member{"MinValue"},        Member{"MaxValue"},
    Member{"CodeCount"},   Member{"CodeValue", Method}, Member{"CodeName", Method}};
constexpr std::array aMembersOfRelationshipClass = {Member{"Name"},
                                                    Member{"ForwardPathLabel"},
                                                    Member{"BackwardPathLabel"},
                                                    Member{"FeatureDatasetName"},
                                                    Member{"IsAttributed"},
                                                    Member{"IsComposite"},
                                                    Member{"Notification"},
                                                    Member{"Cardinality"},
                                                    Member{"OriginClassName"},
                                                    Member{"DestinationClassName"},
                                                    Member{"OriginPrimaryKey"},
                                                    Member{"OriginForeignKey"},
                                                    Member{"DestinationPrimaryKey"},
                                                    Member{"DestinationForeignKey"}};
constexpr std::array aMembersOfPropertySet = {Member{"SetProperty", Method}, Member{"GetProperty", Method}};
constexpr std::array aMembersOfWorkspaceFactory = {Member{"Open", Method}, Member{"OpenFromFile", Method}};
constexpr std::array aMembersOfCatalog = {Member{"ObjectFromFullName", Method}};
constexpr std::array aMembersOfCatalogObject = {Member{"Name"}, Member{"FullName"}, Member{"Category"},
                                                Member{"Parent"}};
constexpr std::array aMembersOfNumericFormat = {Member{"Configure", Method}, Member{"ValueToText", Method}};
constexpr std::array aMembersOfList = {Member{"length", Property, Optional},
                                       Member{"Count", Property, Optional}, Member{"Item", Method, Optional}};
constexpr std::array aMembersOfProcessor = {Member{"Process", Method, Optional}};

} // namespace

const ObjectKind kindMapDocument{"MapDocument", aMembersOfMapDocument};
const ObjectKind kindApplication{"Application", aMembersOfApplication};
const ObjectKind kindMap{"Map", aMembersOfMap};
const ObjectKind kindLayer{"Layer", aMembersOfLayer};
const ObjectKind kindFeatureLayer{"FeatureLayer", aMembersOfFeatureLayer};
const ObjectKind kindRasterLayer{"RasterLayer", aMembersOfRasterLayer};
const ObjectKind kindTinLayer{"TinLayer", aMembersOfTinLayer};
const ObjectKind kindGroupLayer{"GroupLayer", aMembersOfGroupLayer};
const ObjectKind kindDataset{"Dataset", aMembersOfDataset};
const ObjectKind kindTable{"Table", aMembersOfTable};
const ObjectKind kindFeatureClass{"FeatureClass", aMembersOfFeatureClass};
const ObjectKind kindField{"Field", aMembersOfField};
const ObjectKind kindCursor{"Cursor", aMembersOfCursor};
const ObjectKind kindRow{"Row", aMembersOfRow};
const ObjectKind kindGeometry{"Geometry", aMembersOfGeometry};
const ObjectKind kindPoint{"Point", aMembersOfPoint};
const ObjectKind kindSpatialReference{"SpatialReference", aMembersOfSpatialReference};
const ObjectKind kindXyDomain{"XyDomain", aMembersOfXyDomain};
const ObjectKind kindMeasureDomain{"MeasureDomain", aMembersOfMeasureDomain};
const ObjectKind kindWorkspace{"Workspace", aMembersOfWorkspace};
const ObjectKind kindSubtypes{"Subtypes", aMembersOfSubtypes};
const ObjectKind kindDomain{"Domain", aMembersOfDomain};
const ObjectKind kindRelationshipClass{"RelationshipClass", aMembersOfRelationshipClass};
const ObjectKind kindPropertySet{"PropertySet", aMembersOfPropertySet};
const ObjectKind kindWorkspaceFactory{"WorkspaceFactory", aMembersOfWorkspaceFactory};
const ObjectKind kindCatalog{"Catalog", aMembersOfCatalog};
const ObjectKind kindCatalogObject{"CatalogObject", aMembersOfCatalogObject};
const ObjectKind kindNumericFormat{"NumericFormat", aMembersOfNumericFormat};
const ObjectKind kindList{"List", aMembersOfList};
const ObjectKind kindProcessor{"Processor", aMembersOfProcessor};

std::span<const ObjectKind* const> objectKinds() noexcept {
    static constexpr std::array aKinds = {&kindMapDocument,
                                          &kindApplication,
                                          &kindMap,
                                          &kindLayer,
                                          &kindFeatureLayer,
                                          &kindRasterLayer,
                                          &kindTinLayer,
                                          &kindGroupLayer,
                                          &kindDataset,
                                          &kindTable,
                                          &kindFeatureClass,
                                          &kindField,
                                          &kindCursor,
                                          &kindRow,
                                          &kindGeometry,
                                          &kindPoint,
                                          &kindSpatialReference,
                                          &kindXyDomain,
                                          &kindMeasureDomain,
                                          &kindWorkspace,
                                          &kindSubtypes,
                                          &kindDomain,
                                          &kindRelationshipClass,
                                          &kindPropertySet,
                                          &kindWorkspaceFactory,
                                          &kindCatalog,
                                          &kindCatalogObject,
                                          &kindNumericFormat,
                                          &kindList,
                                          &kindProcessor};
    return aKinds;
}

std::size_t ObjectKind::indexOf(std::string_view sMember) const {
    for (std::size_t n = 0; n < aMembers.size(); ++n)
        if (aMembers[n].sName == sMember)
            return n;
    throw Failure(FailureNumber::InternalError,
                  fmt::format("{} has no documented member {}", sName, sMember));
}

} // namespace halvane::host::com
