#include "oracle/Vocabulary.h"

namespace halvane::oracle {

const Words& kinds() {
    static const Words aKinds{"Map",
                              "FeatureLayer",
                              "MapLayer",
                              "Feature",
                              "FeatureTable",
                              "WorkspaceDomain",
                              "Workspace",
                              "Table",
                              "RelatedTable",
                              "RelatedRecord",
                              "TinLayer",
                              "RasterLayer",
                              "Relationship",
                              "SubType",
                              "SubTypeFieldInfo",
                              "TinWorkspace",
                              "RasterWorkspace",
                              "Record",
                              "Field",
                              "Time",
                              "External",
                              "Geometry.Length",
                              "Geometry.Vertice",
                              "geometry.point",
                              "maplayer",
                              "map",
                              "Nothing",
                              " "};
    return aKinds;
}

const Words& referenceProperties() {
    static const Words aNames{
        "PROJECTION", "DATUM",  "UNITS",  "ZONE",   "FIPSZONE", "SPHEROID", "ZUNITS", "XSHIFT", "YSHIFT",
        "PARAMETERS", "XMIN",   "XMAX",   "YMIN",   "YMAX",     "ZMIN",     "ZMAX",   "MMIN",   "MMAX",
        "FALSEX",     "FALSEY", "FALSEZ", "FALSEM", "XYSCALE",  "ZSCALE",   "MSCALE", "VDATUM", "XYUNITS"};
    return aNames;
}

const Words& domainProperties() {
    static const Words aNames{
        "DomainName", "DomainDescription", "DomainFieldType", "DomainMergePolicy", "DomainSplitPolicy",
        "DomainType", "DomainRangeMax",    "DomainRangeMin",  "domainname",        "DomainNothing"};
    return aNames;
}

const Words& relationshipProperties() {
    static const Words aNames{"RelationshipName",      "Cardinality",      "ForwardPathLabel",
                              "BackwardPathLabel",     "FeatureDataset",   "IsAttibuted",
                              "IsAttributed",          "IsComposite",      "Notification",
                              "RelationshipRules",     "OriginClassName",  "DestinationClassName",
                              "OriginPrimaryKey",      "OriginForeignKey", "DestinationPrimaryKey",
                              "DestinationForeignKey", "cardinality"};
    return aNames;
}

const Words& fieldProperties() {
    static const Words aNames{"FieldName",      "FieldType",  "FieldLength", "FieldIsNull", "FieldEditable",
                              "FieldPrecision", "FieldAlias", "fieldtype",   "FieldNothing"};
    return aNames;
}

const Words& subtypeProperties() {
    static const Words aNames{"SubTypeFieldName",    "DefaultSubTypeCode", "SubTypeName",
                              "SubTypeCode",         "FieldName",          "SubtypeDomain",
                              "SubTypeDefaultValue", "SubTypeNothing"};
    return aNames;
}

} // namespace halvane::oracle
