#include "run/describe/DescribeData.h"

#include "exporters/FieldTypeName.h"
#include "host/Domains.h"
#include "host/Relationships.h"
#include "host/Subtypes.h"
#include "host/Tables.h"
#include "host/Workspace.h"

#include <algorithm>
#include <string_view>

namespace halvane {

namespace {

std::optional<std::string> textUnlessMissing(const Value& value) {
    if (isEmpty(value) || std::holds_alternative<Null>(value))
        return std::nullopt;
    return toText(value);
}

std::optional<std::string> domainName(const host::GisSubtypes& subtypes, std::int32_t lCode,
                                      std::string_view sField) {
    const auto pDomain = subtypes.domain(lCode, sField);
    return pDomain == nullptr ? std::nullopt : std::optional(pDomain->name());
}

FieldDescription describeField(const host::GisField& field) {
    FieldDescription description;
    description.sName = read([&] { return std::string(field.name()); });
    description.sAlias = read([&] { return std::string(field.aliasName()); });
    description.lTypeCode = read([&] { return field.typeCode(); });
    if (description.lTypeCode)
        description.sTypeLiteral = fieldTypeName(*description.lTypeCode);
    description.lLength = read([&] { return field.length(); });
    description.lPrecision = read([&] { return field.precision(); });
    description.bNullable = read([&] { return field.isNullable(); });
    description.bEditable = read([&] { return field.isEditable(); });
    return description;
}

void addDomainAndDefault(FieldDescription& field, const host::GisSubtypes& subtypes) {
    field.sDomain = read([&] { return domainName(subtypes, subtypes.defaultSubtypeCode(), *field.sName); });
    field.sDefault = read([&] {
        return textUnlessMissing(subtypes.defaultValue(subtypes.defaultSubtypeCode(), *field.sName));
    });
}

bool holdsNothing(const SubtypeFieldDescription& field) {
    return field.sDomain && !*field.sDomain && field.sDefault && !*field.sDefault;
}

std::vector<SubtypeFieldDescription> subtypeFields(const host::GisTable& table,
                                                   const host::GisSubtypes& subtypes, std::int32_t lCode) {
    std::vector<SubtypeFieldDescription> all;
    const auto pFields = table.fields();
    const std::int32_t lCount = pFields->count();
    for (std::int32_t i = 0; i < lCount; ++i) {
        SubtypeFieldDescription field;
        field.sField = pFields->field(i).name();
        field.sDomain = read([&] { return domainName(subtypes, lCode, field.sField); });
        field.sDefault = read([&] { return textUnlessMissing(subtypes.defaultValue(lCode, field.sField)); });
        if (!holdsNothing(field))
            all.push_back(std::move(field));
    }
    return all;
}

std::vector<std::string> linesOf(std::string_view sText) {
    std::vector<std::string> lines;
    while (!sText.empty()) {
        const auto lEnd = sText.find('\n');
        if (lEnd != 0)
            lines.emplace_back(sText.substr(0, lEnd));
        sText.remove_prefix(lEnd == std::string_view::npos ? sText.size() : lEnd + 1);
    }
    return lines;
}

constexpr std::int32_t lRangeDomain = 1;

DomainDescription describeDomain(const host::GisDomain& domain) {
    DomainDescription description;
    description.sName = read([&] { return domain.name(); });
    description.sDescription = read([&] { return domain.description(); });
    description.lFieldType = read([&] { return domain.fieldType(); });
    description.lType = read([&] { return domain.domainType(); });
    description.lMergePolicy = read([&] { return domain.mergePolicy(); });
    description.lSplitPolicy = read([&] { return domain.splitPolicy(); });
    const bool bRange = description.lType && *description.lType == lRangeDomain;
    description.sMin =
        read([&] { return bRange ? textUnlessMissing(domain.minValue()) : std::optional<std::string>(); });
    description.sMax =
        read([&] { return bRange ? textUnlessMissing(domain.maxValue()) : std::optional<std::string>(); });
    description.codes = readItems([&] { return domain.codeCount(); },
                                  [&](std::int32_t lIndex) {
                                      const auto code = domain.code(lIndex);
                                      return CodeDescription{toText(code.vCode), code.sName};
                                  });
    return description;
}

RelationshipDescription describeRelationship(const host::GisRelationshipClass& relationship) {
    RelationshipDescription description;
    description.sName = read([&] { return relationship.name(); });
    description.lCardinality = read([&] { return relationship.cardinality(); });
    description.lNotification = read([&] { return relationship.notification(); });
    description.bComposite = read([&] { return relationship.isComposite(); });
    description.bAttributed = read([&] { return relationship.isAttributed(); });
    description.sOriginClass = read([&] { return relationship.originClassName(); });
    description.sDestinationClass = read([&] { return relationship.destinationClassName(); });
    description.sForwardLabel = read([&] { return relationship.forwardPathLabel(); });
    description.sBackwardLabel = read([&] { return relationship.backwardPathLabel(); });
    description.sOriginPrimaryKey = read([&] { return relationship.originPrimaryKey(); });
    description.sOriginForeignKey = read([&] { return relationship.originForeignKey(); });
    description.sDestinationPrimaryKey = read([&] { return relationship.destinationPrimaryKey(); });
    description.sDestinationForeignKey = read([&] { return relationship.destinationForeignKey(); });
    description.sFeatureDataset = read([&] { return relationship.featureDatasetName(); });
    return description;
}

} // namespace

std::optional<SpatialReferenceDescription> describeReference(const host::GisSpatialReferencePtr& pReference) {
    if (pReference == nullptr)
        return std::nullopt;
    SpatialReferenceDescription description;
    description.lines = read([&] { return linesOf(pReference->description()); });
    description.xy = read([&] { return pReference->xyDomain(); });
    description.z = read([&] { return pReference->zDomain(); });
    description.m = read([&] { return pReference->mDomain(); });
    return description;
}

ReadingList<FieldDescription> describeFields(const host::GisTable& table,
                                             const host::GisSubtypesPtr& pSubtypes) {
    const auto fields = read([&] { return present(table.fields(), "it has no fields"); });
    if (!fields)
        return {std::nullopt, fields.sWhyNot};
    return readItems([&] { return (*fields)->count(); },
                     [&](std::int32_t lIndex) {
                         FieldDescription field = describeField((*fields)->field(lIndex));
                         if (pSubtypes != nullptr && field.sName)
                             addDomainAndDefault(field, *pSubtypes);
                         return field;
                     });
}

void nameShapesByTheirType(ReadingList<FieldDescription>& fields, std::int32_t lShapeType) {
    if (!fields)
        return;
    for (auto& field : *fields.fact)
        if (field && field->lTypeCode &&
            *field->lTypeCode == static_cast<std::int32_t>(host::FieldType::Geometry))
            field->sTypeLiteral = shapeTypeName(lShapeType);
}

std::optional<SubtypesDescription> describeSubtypes(const host::GisTable& table,
                                                    const host::GisSubtypesPtr& pSubtypes) {
    if (pSubtypes == nullptr || !pSubtypes->hasSubtypes())
        return std::nullopt;
    SubtypesDescription description;
    description.sField = read([&] { return pSubtypes->subtypeFieldName(); });
    description.lDefaultCode = read([&] { return pSubtypes->defaultSubtypeCode(); });
    description.subtypes =
        readItems([&] { return pSubtypes->subtypeCount(); },
                  [&](std::int32_t lIndex) {
                      SubtypeDescription subtype;
                      subtype.lCode = pSubtypes->subtypeCode(lIndex);
                      subtype.sName = read([&] { return pSubtypes->subtypeName(subtype.lCode); });
                      subtype.fields = read([&] { return subtypeFields(table, *pSubtypes, subtype.lCode); });
                      return subtype;
                  });
    if (description.subtypes) {
        // An export stops at the first subtype with an empty name; so does what can be named.
        auto& all = *description.subtypes.fact;
        all.erase(std::find_if(all.begin(), all.end(),
                               [](const auto& one) { return one && one->sName && one->sName->empty(); }),
                  all.end());
    }
    return description;
}

WorkspaceDescription describeWorkspace(host::GisWorkspace& workspace, Reading<std::string> sPath) {
    WorkspaceDescription description;
    description.sPath = std::move(sPath);
    description.lType = read([&] { return workspace.typeCode(); });
    description.domains = read([&]() -> std::vector<Reading<DomainDescription>> {
        const auto pRole = workspace.domainsRole();
        if (pRole == nullptr)
            return {};
        const auto pDomains = present(pRole->domains(), "it lists none");
        return readEnumeration(*pDomains, describeDomain);
    });
    description.relationships = read([&] {
        const auto pRelationships = present(workspace.relationshipClasses(), "it lists none");
        return readEnumeration(*pRelationships, describeRelationship);
    });
    return description;
}

} // namespace halvane
