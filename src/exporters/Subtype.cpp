// Writes the subtypes of a feature class, and what they hold for its fields.

#include "collection/Text.h"
#include "engine/ModExporter.h"
#include "exporters/ItemCopies.h"

#include <algorithm>
#include <array>

namespace halvane {

namespace {

/// One level of the recursion.
struct Level {
    ExportState& state;
    const host::GisFeatureClassPtr& pFeatureClass;
    const host::GisSubtypesPtr& pSubtypes;
    const ControlNode& control;
    Node oOutputElement;
    SubtypeProgress& progress; ///< shared with the levels above and below
};

void count(const Level& level, std::int64_t& lCounter) {
    if (lCounter >= level.state.options.lItemLimit)
        throw Failure::of(FailureNumber::Overflow);
    ++lCounter;
}

void exportChild(const Level& level, const ControlNode& child, Node oTarget) {
    ExportSubtypes(level.state, level.pFeatureClass, level.pSubtypes, child, oTarget, level.progress);
}

// ---- Repeated nodes ----

/// Gives each item its element. The counter is shared along the recursion, so what comes from a level below
/// another that has counted is a copy, the first item too.
class ItemElements {
public:
    ItemElements(const Level& level, std::int64_t& lCounter)
        : level_(level), lCounter_(lCounter),
          copies_(level.state, level.control, level.oOutputElement, nameOfCopies(level)) {}

    /// @param select makes the item the current subtype or field; called for each child anew, since what
    ///        lies below a child may change both.
    template<class Select>
    void exportItem(const Select& select) {
        const OutputElement oItem = lCounter_ > 0 ? copies_.next() : copies_.current();
        for (const ControlNode& child : childrenOf(level_.control)) {
            const OutputElement oTarget = makeChildOutput(level_.state, child, oItem);
            select();
            exportChild(level_, child, oTarget.node());
            checkAttributeName(level_.state, child, oItem);
        }
        reportItem(level_.state, level_.control);
        count(level_, lCounter_);
    }

private:
    /// That of the element handed in, without its prefix.
    static const dom::Name* nameOfCopies(const Level& level) {
        return level.state.oOutputManager->DOMDoc()->findName(level.oOutputElement.baseName());
    }

    const Level& level_;
    std::int64_t& lCounter_;
    ItemCopies copies_;
};

void repeatOverSubtypes(const Level& level) {
    ItemElements items(level, level.progress.lSubtypeCounter);
    const std::int32_t lCount = level.pSubtypes->subtypeCount();
    for (std::int32_t i = 0; i < lCount; ++i) {
        const std::int32_t lCode = level.pSubtypes->subtypeCode(i);
        // An empty name ends the enumeration.
        if (level.pSubtypes->subtypeName(lCode).empty())
            return;
        items.exportItem([&] {
            level.progress.lSubtypeCode = lCode;
            level.progress.sFieldName.clear();
        });
    }
}

bool isSubtypeField(const host::GisField& field, std::string_view sUpperName) {
    constexpr std::array<std::string_view, 3> shapeFields{"SHAPE", "SHAPE_AREA", "SHAPE_LENGTH"};
    return field.isEditable() &&
           std::find(shapeFields.begin(), shapeFields.end(), sUpperName) == shapeFields.end();
}

void repeatOverFields(const Level& level) {
    ItemElements items(level, level.progress.lFieldCounter);
    const auto pFields = level.pFeatureClass->fields();
    const std::int32_t lCount = pFields->count();
    for (std::int32_t i = 0; i < lCount; ++i) {
        const host::GisField& field = pFields->field(i);
        const std::string sName = upperCase(field.name());
        if (isSubtypeField(field, sName))
            items.exportItem([&] { level.progress.sFieldName = sName; });
    }
}

void repeat(const Level& level) {
    switch (level.control.pBinding->kind) {
    case DataSourceKind::SubType:
    case DataSourceKind::SubTypeInOtherCase:
        repeatOverSubtypes(level);
        break;
    case DataSourceKind::SubTypeFieldInfo:
        repeatOverFields(level);
        break;
    default:
        level.state.notice(Notice::RepeatIsSilent, level.control.merged.sDataSource);
    }
}

// ---- Groups and properties ----

/// A child that targets an attribute is made and stays empty.
void exportChildren(const Level& level) {
    for (const ControlNode& child : childrenOf(level.control)) {
        const OutputElement oTarget = makeChildOutput(level.state, child, level.oOutputElement);
        if (child.bTargetsAttribute) {
            const ActiveNodeScope scope(level.state, child.oNode);
            level.state.notice(Notice::AttributeStaysEmpty, child.sTagName);
            checkAttributeName(level.state, child, oTarget);
            continue;
        }
        level.progress.sFieldName.clear();
        exportChild(level, child, oTarget.node());
    }
}

std::string fieldNameText(const Level& level) {
    return level.pSubtypes->subtypeFieldName();
}

std::string defaultCodeText(const Level& level) {
    return std::to_string(level.pSubtypes->defaultSubtypeCode());
}

std::string nameText(const Level& level) {
    return level.pSubtypes->subtypeName(level.progress.lSubtypeCode);
}

std::string codeText(const Level& level) {
    return std::to_string(level.progress.lSubtypeCode);
}

std::string currentFieldText(const Level& level) {
    return level.progress.sFieldName;
}

std::string domainText(const Level& level) {
    const auto pDomain = level.pSubtypes->domain(level.progress.lSubtypeCode, level.progress.sFieldName);
    return pDomain == nullptr ? std::string() : pDomain->name();
}

std::string defaultValueText(const Level& level) {
    return toText(level.pSubtypes->defaultValue(level.progress.lSubtypeCode, level.progress.sFieldName));
}

using ReadProperty = std::string (*)(const Level&);
constexpr std::array<std::pair<std::string_view, ReadProperty>, 7> properties{{
    {"SubTypeFieldName", fieldNameText},
    {"DefaultSubTypeCode", defaultCodeText},
    {"SubTypeName", nameText},
    {"SubTypeCode", codeText},
    {"FieldName", currentFieldText},
    {"SubtypeDomain", domainText},
    {"SubTypeDefaultValue", defaultValueText},
}};

std::string propertyText(const Level& level) {
    const std::string_view sProperty = level.control.own.sDataProperty;
    const auto* pProperty = std::find_if(properties.begin(), properties.end(), [&](const auto& entry) {
        return equalIgnoringCase(entry.first, sProperty);
    });
    if (pProperty != properties.end())
        return pProperty->second(level);
    level.state.notice(Notice::UnknownProperty, sProperty);
    return {};
}

/// Into the output that the caller made: unlike a field's, a subtype's property makes none of its own.
void writeProperty(const Level& level) {
    const OutputElement oTarget = level.oOutputElement;
    const std::string sValue = propertyText(level);
    if (level.control.bTargetsAttribute)
        oTarget.fillAttribute(level.control.sTagName, sValue);
    else
        oTarget.setText(sValue);
}

} // namespace

void ExportSubtypes(ExportState& state, const host::GisFeatureClassPtr& pFeatureClass,
                    const host::GisSubtypesPtr& pSubtypes, const ControlNode& control, Node oOutputElement,
                    SubtypeProgress& progress) {
    const ActiveNodeScope scope(state, control.oNode);
    trapFailures(state, [&] {
        if (pSubtypes == nullptr || !pSubtypes->hasSubtypes())
            return;
        const Level level{state, pFeatureClass, pSubtypes, control, oOutputElement, progress};
        if (!control.hasChildren())
            writeProperty(level);
        else if (control.bRepeated)
            repeat(level);
        else
            exportChildren(level);
    });
}

} // namespace halvane
