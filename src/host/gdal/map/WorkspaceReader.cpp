#include "host/gdal/map/WorkspaceReader.h"

#include "host/gdal/facts/Values.h"

#include <string>

namespace halvane::host::gdal {

namespace {

Value readValue(const ElementReader& reader, const MarkupElement& element, const char* pAttribute,
                FieldType type) {
    const std::string sText = element.text(pAttribute);
    auto value = parseValue(sText, type);
    if (!value) {
        reader.fail(element, std::string(pAttribute) + "=\"" + sText +
                                 "\" does not fit the domain's fieldType; dates are written \"2024-01-31\"");
    }
    return *std::move(value);
}

} // namespace

DomainFacts readDomain(const ElementReader& reader, const MarkupElement& element) {
    DomainFacts domain;
    domain.kind = element.name() == "RangeDomain"  ? DomainKind::Range
                  : element.name() == "TextDomain" ? DomainKind::Text
                                                   : DomainKind::CodedValue;
    domain.sName = element.text("name");
    domain.sDescription = element.text("description");
    const char* pDefaultType = domain.kind == DomainKind::Text ? "string" : "integer";
    domain.fieldType =
        static_cast<FieldType>(indexOf(element.attribute("fieldType").value_or(pDefaultType), "smallInteger",
                                       "integer", "single", "double", "string", "date"));
    domain.lMergePolicy =
        indexOf(element.attribute("mergePolicy").value_or("default"), "default", "sum", "geometryWeighted");
    domain.lSplitPolicy = indexOf(element.attribute("splitPolicy").value_or("default"), "default",
                                  "duplicate", "geometryRatio");
    if (domain.kind == DomainKind::Range) {
        domain.vMin = readValue(reader, element, "min", domain.fieldType);
        domain.vMax = readValue(reader, element, "max", domain.fieldType);
    }
    for (const MarkupElement& code : element.children("Code"))
        domain.codes.push_back({readValue(reader, code, "value", domain.fieldType), code.text("name")});
    return domain;
}

RelationshipFacts readRelationship(const MarkupElement& element) {
    RelationshipFacts model;
    model.sName = element.text("name");
    model.sOrigin = element.text("origin");
    model.sDestination = element.text("destination");
    model.sOriginPrimaryKey = element.text("originPrimaryKey");
    model.sOriginForeignKey = element.text("originForeignKey");
    model.sDestinationPrimaryKey = element.text("destinationPrimaryKey");
    model.sDestinationForeignKey = element.text("destinationForeignKey");
    model.sMappingTable = element.text("linkTable");
    model.sForwardLabel = element.text("forwardLabel");
    model.sBackwardLabel = element.text("backwardLabel");
    model.sFeatureDataset = element.text("featureDataset");
    model.bComposite = toBool(element.text("composite"));
    model.bAttributed = toBool(element.text("attributed"));
    model.lCardinality = 1 + indexOf(element.attribute("cardinality").value_or("oneToMany"), "oneToOne",
                                     "oneToMany", "manyToMany");
    model.lNotification = 1 + indexOf(element.attribute("notification").value_or("none"), "none", "forward",
                                      "backward", "both");
    return model;
}

} // namespace halvane::host::gdal
