// Writes the field definitions of a feature class.

#include "engine/ModExporter.h"
#include "engine/TracedItem.h"
#include "exporters/FieldTypeName.h"
#include "exporters/Property.h"
#include "host/Tables.h"

#include <array>

namespace halvane {

namespace {

using host::GisField;

/// The geometry field reads as the shape type of the current feature class.
std::string typeText(const ExportState& state, const GisField& field) {
    if (field.typeCode() != static_cast<std::int32_t>(host::FieldType::Geometry))
        return std::string(fieldTypeName(field.typeCode()));
    if (state.pFeatureClass == nullptr)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    return std::string(shapeTypeName(state.pFeatureClass->shapeType()));
}

std::string nameText(const ExportState& /*state*/, const GisField& field) {
    return std::string(field.name());
}

std::string aliasText(const ExportState& /*state*/, const GisField& field) {
    return std::string(field.aliasName());
}

template<std::int32_t (GisField::*pRead)() const>
std::string numberText(const ExportState& /*state*/, const GisField& field) {
    return std::to_string((field.*pRead)());
}

template<bool (GisField::*pRead)() const>
std::string flagText(const ExportState& /*state*/, const GisField& field) {
    return toText(ValueView((field.*pRead)()));
}

using ReadFieldProperty = std::string (*)(const ExportState&, const GisField&);
constexpr std::array<Property<ReadFieldProperty>, 7> fieldProperties{{
    {"FieldName", nameText},
    {"FieldIsNull", flagText<&GisField::isNullable>},
    {"FieldLength", numberText<&GisField::length>},
    {"FieldPrecision", numberText<&GisField::precision>},
    {"FieldEditable", flagText<&GisField::isEditable>},
    {"FieldType", typeText},
    {"FieldAlias", aliasText},
}};

/// One element per field, made for one child of the repeated node.
void exportFieldsAs(ExportState& state, const host::GisFields& fields, const ControlNode& repeated,
                    const ControlNode& child, const OutputElement& oOutputElement) {
    const ActiveNodeScope scope(state, child);
    const std::int32_t lCount = fields.count();
    for (std::int32_t i = 0; i < lCount; ++i) {
        const TracedItem item(state, child);
        if (!item.isWanted())
            break;
        const OutputElement oFieldElement = makeChildOutput(state, child, oOutputElement);
        for (const ControlNode& property : childrenOf(child))
            ExportFieldProperty(state, fields.field(i), property, oFieldElement);
        if (!child.bTargetsAttribute)
            completeItem(state, oFieldElement.node());
        reportItem(state, repeated);
    }
}

} // namespace

std::string FieldPropertyText(ExportState& state, const GisField& field, std::string_view sProperty) {
    const auto* pProperty = findProperty(state, fieldProperties, sProperty);
    return pProperty == nullptr ? std::string() : pProperty->second(state, field);
}

void ExportFieldProperty(ExportState& state, const GisField& field, const ControlNode& property,
                         const OutputElement& oOutputElement) {
    const ActiveNodeScope scope(state, property);
    trapFailures(state, [&] {
        writeChildValue(state, property, oOutputElement,
                        FieldPropertyText(state, field, property.own.sDataProperty));
    });
}

void ExportFields(ExportState& state, const host::GisFeatureClassPtr& pFeatureClass,
                  const ControlNode& control, const OutputElement& oOutputElement) {
    const ActiveNodeScope scope(state, control);
    trapFailures(state, [&] {
        if (!control.bRepeated)
            return;
        for (const ControlNode& child : childrenOf(control))
            exportFieldsAs(state, *pFeatureClass->fields(), control, child, oOutputElement);
    });
}

} // namespace halvane
