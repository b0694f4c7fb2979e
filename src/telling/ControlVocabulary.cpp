#include "telling/ControlVocabulary.h"

#include "engine/sources/DataSourceKind.h"

#include <array>

namespace halvane {

namespace {

using std::string_view;

constexpr std::array<string_view, controlWords> attributes{
    "Name",    "DataSource", "DataFrame",    "Identity",  "IdentityValue", "DataProperty",
    "Entries", "Target",     "DataLocation", "LinkField", "MeasureField",  "DecimalPlace"};

constexpr std::array<string_view, 1> entries{"Multiple"};
constexpr std::array<string_view, 1> targets{"Attribute"};
constexpr std::array<string_view, 4> identities{"LayerName", "TableName", "TagName", "FieldName"};
constexpr std::array<string_view, 74> properties{"LayerName",
                                                 "TableName",
                                                 "FeatureCount",
                                                 "Path",
                                                 "WorkspaceType",
                                                 "SPATIALREFERENCE.PROJECTION",
                                                 "SPATIALREFERENCE.ZONE",
                                                 "SPATIALREFERENCE.DATUM",
                                                 "SPATIALREFERENCE.SPHEROID",
                                                 "SPATIALREFERENCE.UNITS",
                                                 "SPATIALREFERENCE.FIPSZONE",
                                                 "SPATIALREFERENCE.ZUNITS",
                                                 "SPATIALREFERENCE.XSHIFT",
                                                 "SPATIALREFERENCE.YSHIFT",
                                                 "SPATIALREFERENCE.PARAMETERS",
                                                 "SPATIALREFERENCE.XMIN",
                                                 "SPATIALREFERENCE.XMAX",
                                                 "SPATIALREFERENCE.YMIN",
                                                 "SPATIALREFERENCE.YMAX",
                                                 "SPATIALREFERENCE.FALSEX",
                                                 "SPATIALREFERENCE.FALSEY",
                                                 "SPATIALREFERENCE.XYSCALE",
                                                 "SPATIALREFERENCE.ZMIN",
                                                 "SPATIALREFERENCE.ZMAX",
                                                 "SPATIALREFERENCE.FALSEZ",
                                                 "SPATIALREFERENCE.ZSCALE",
                                                 "SPATIALREFERENCE.MMIN",
                                                 "SPATIALREFERENCE.MMAX",
                                                 "SPATIALREFERENCE.FALSEM",
                                                 "SPATIALREFERENCE.MSCALE",
                                                 "Geometry.Length",
                                                 "Geometry.X",
                                                 "Geometry.Y",
                                                 "Geometry.Z",
                                                 "Geometry.Measure",
                                                 "RelationshipName",
                                                 "Cardinality",
                                                 "ForwardPathLabel",
                                                 "BackwardPathLabel",
                                                 "FeatureDataset",
                                                 "IsAttibuted",
                                                 "IsComposite",
                                                 "Notification",
                                                 "RelationshipRules",
                                                 "OriginClassName",
                                                 "DestinationClassName",
                                                 "OriginPrimaryKey",
                                                 "OriginForeignKey",
                                                 "DestinationPrimaryKey",
                                                 "DestinationForeignKey",
                                                 "DomainName",
                                                 "DomainDescription",
                                                 "DomainFieldType",
                                                 "DomainMergePolicy",
                                                 "DomainSplitPolicy",
                                                 "DomainType",
                                                 "DomainRangeMin",
                                                 "DomainRangeMax",
                                                 "DomainCodedValues",
                                                 "DomainCodeValue",
                                                 "DomainCodeName",
                                                 "FieldName",
                                                 "FieldAlias",
                                                 "FieldType",
                                                 "FieldLength",
                                                 "FieldPrecision",
                                                 "FieldIsNull",
                                                 "FieldEditable",
                                                 "SubTypeFieldName",
                                                 "DefaultSubTypeCode",
                                                 "SubTypeName",
                                                 "SubTypeCode",
                                                 "SubtypeDomain",
                                                 "SubTypeDefaultValue"};

} // namespace

const ControlVocabulary& controlVocabulary() {
    static const std::array<ControlVocabulary::Keyword, 4> keywords{
        {{ControlWord::Entries, entries},
         {ControlWord::Target, targets},
         {ControlWord::Identity, identities},
         {ControlWord::DataSource, dataSourceWords(), true}}};
    static const ControlVocabulary vocabulary{attributes, keywords, properties};
    return vocabulary;
}

} // namespace halvane
