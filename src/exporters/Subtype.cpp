// Writes the subtypes of a feature class, and what they hold for its fields.

#include "base/Text.h"
#include "engine/ModExporter.h"
#include "engine/TracedItem.h"
#include "exporters/ItemCopies.h"
#include "exporters/Property.h"
#include "host/Domains.h"
#include "host/Subtypes.h"
#include "host/Tables.h"

#include <algorithm>
#include <array>

namespace halvane {

namespace {

/// One control node of the recursion.
struct SubtypeNode {
    ExportState& state;
    const host::GisFeatureClassPtr& pFeatureClass;
    const host::GisSubtypesPtr& pSubtypes;
    const ControlNode& control;
    const OutputElement& oOutputElement;
    SubtypeProgress& progress; ///< shared with the levels above and below
};

bool isOfSecondEdition(const ExportState& state) {
    return state.pControlTree != nullptr && state.pControlTree->root().pSecond != nullptr;
}

void count(const SubtypeNode& node, std::int64_t& lCounter) {
    if (lCounter >= node.state.options.lItemLimit)
        throw Failure::of(FailureNumber::Overflow);
    ++lCounter;
}

void exportChild(const SubtypeNode& node, const ControlNode& child, const OutputElement& oTarget) {
    ExportSubtypes(node.state, node.pFeatureClass, node.pSubtypes, child, oTarget, node.progress);
}

// ---- Repeated nodes ----

/// Gives each item its element. The counter is shared along the recursion, so what comes from a node below
/// another that has counted is a copy, the first item too.
class ItemElements {
public:
    ItemElements(const SubtypeNode& node, std::int64_t& lCounter)
        : node_(node), lCounter_(lCounter),
          copies_(node.state, node.control, node.oOutputElement, nameOfCopies(node)) {}

    /// @param select makes the item the current subtype or field; called for each child anew, since what
    ///        lies below a child may change both.
    /// @returns false where no more are wanted.
    template<class Select>
    bool exportItem(const Select& select) {
        const TracedItem item(node_.state, node_.control);
        if (!item.isWanted())
            return false;
        const OutputElement oItem = lCounter_ > 0 ? copies_.next() : copies_.firstInItem();
        for (const ControlNode& child : childrenOf(node_.control)) {
            const OutputElement oTarget = makeChildOutput(node_.state, child, oItem);
            select();
            exportChild(node_, child, oTarget);
            checkAttributeName(node_.state, child, oItem);
        }
        reportItem(node_.state, node_.control);
        count(node_, lCounter_);
        return true;
    }

private:
    /// That of the element handed in; in the first edition, without its prefix.
    static const dom::Name* nameOfCopies(const SubtypeNode& node) {
        std::string_view sName = node.oOutputElement.name();
        if (!isOfSecondEdition(node.state))
            sName.remove_prefix(sName.find(':') + 1);
        return node.state.oOutputManager->DOMDoc()->findName(sName);
    }

    const SubtypeNode& node_;
    std::int64_t& lCounter_;
    ItemCopies copies_;
};

void repeatOverSubtypes(const SubtypeNode& node) {
    ItemElements items(node, node.progress.lSubtypeCounter);
    const std::int32_t lCount = node.pSubtypes->subtypeCount();
    for (std::int32_t i = 0; i < lCount; ++i) {
        const std::int32_t lCode = node.pSubtypes->subtypeCode(i);
        // An empty name ends the enumeration.
        if (node.pSubtypes->subtypeName(lCode).empty())
            return;
        if (!items.exportItem([&] {
                node.progress.lSubtypeCode = lCode;
                node.progress.sFieldName.clear();
            }))
            return;
    }
}

bool isSubtypeField(const host::GisField& field, std::string_view sUpperName) {
    constexpr std::array<std::string_view, 3> shapeFields{"SHAPE", "SHAPE_AREA", "SHAPE_LENGTH"};
    return field.isEditable() &&
           std::find(shapeFields.begin(), shapeFields.end(), sUpperName) == shapeFields.end();
}

void repeatOverFields(const SubtypeNode& node) {
    ItemElements items(node, node.progress.lFieldCounter);
    const auto pFields = node.pFeatureClass->fields();
    const std::int32_t lCount = pFields->count();
    for (std::int32_t i = 0; i < lCount; ++i) {
        const host::GisField& field = pFields->field(i);
        const std::string sName = upperCase(field.name());
        if (isSubtypeField(field, sName) && !items.exportItem([&] { node.progress.sFieldName = sName; }))
            return;
    }
}

void repeat(const SubtypeNode& node) {
    switch (node.control.pBinding->kind) {
    case DataSourceKind::SubType:
    case DataSourceKind::SubTypeInOtherCase:
        repeatOverSubtypes(node);
        break;
    case DataSourceKind::SubTypeFieldInfo:
        repeatOverFields(node);
        break;
    default:
        node.state.notice(Notice::RepeatIsSilent, node.control.merged.sDataSource);
    }
}

// ---- Groups and properties ----

/// A child that targets an attribute is made and stays empty.
void exportChildren(const SubtypeNode& node) {
    for (const ControlNode& child : childrenOf(node.control)) {
        const OutputElement oTarget = makeChildOutput(node.state, child, node.oOutputElement);
        if (child.bTargetsAttribute) {
            const ActiveNodeScope scope(node.state, child);
            node.state.notice(Notice::AttributeStaysEmpty, child.sTagName);
            checkAttributeName(node.state, child, oTarget);
            continue;
        }
        node.progress.sFieldName.clear();
        exportChild(node, child, oTarget);
    }
}

std::string fieldNameText(const SubtypeNode& node) {
    return node.pSubtypes->subtypeFieldName();
}

std::string defaultCodeText(const SubtypeNode& node) {
    return std::to_string(node.pSubtypes->defaultSubtypeCode());
}

std::string nameText(const SubtypeNode& node) {
    return node.pSubtypes->subtypeName(node.progress.lSubtypeCode);
}

std::string codeText(const SubtypeNode& node) {
    return std::to_string(node.progress.lSubtypeCode);
}

std::string currentFieldText(const SubtypeNode& node) {
    return node.progress.sFieldName;
}

std::string domainText(const SubtypeNode& node) {
    const auto pDomain = node.pSubtypes->domain(node.progress.lSubtypeCode, node.progress.sFieldName);
    return pDomain == nullptr ? std::string() : pDomain->name();
}

std::string defaultValueText(const SubtypeNode& node) {
    return toText(node.pSubtypes->defaultValue(node.progress.lSubtypeCode, node.progress.sFieldName));
}

using ReadSubtypeProperty = std::string (*)(const SubtypeNode&);
constexpr std::array<Property<ReadSubtypeProperty>, 7> subtypeProperties{{
    {"SubTypeFieldName", fieldNameText},
    {"DefaultSubTypeCode", defaultCodeText},
    {"SubTypeName", nameText},
    {"SubTypeCode", codeText},
    {"FieldName", currentFieldText},
    {"SubtypeDomain", domainText},
    {"SubTypeDefaultValue", defaultValueText},
}};

std::string propertyText(const SubtypeNode& node) {
    const std::string_view sProperty = node.control.own.sDataProperty;
    const auto* pProperty = findProperty(node.state, subtypeProperties, sProperty);
    return pProperty == nullptr ? std::string() : pProperty->second(node);
}

/// Into the output that the caller made: unlike a field's, a subtype's property makes none of its own.
void writeProperty(const SubtypeNode& node) {
    const OutputElement& oTarget = node.oOutputElement;
    const std::string sValue = propertyText(node);
    if (node.control.bTargetsAttribute)
        oTarget.fillAttribute(node.control.sTagName, sValue);
    else
        oTarget.setText(sValue);
}

} // namespace

void ExportSubtypes(ExportState& state, const host::GisFeatureClassPtr& pFeatureClass,
                    const host::GisSubtypesPtr& pSubtypes, const ControlNode& control,
                    const OutputElement& oOutputElement, SubtypeProgress& progress) {
    const ActiveNodeScope scope(state, control);
    trapFailures(state, [&] {
        if (pSubtypes == nullptr || !pSubtypes->hasSubtypes())
            return;
        const SubtypeNode node{state, pFeatureClass, pSubtypes, control, oOutputElement, progress};
        if (!control.hasChildren())
            writeProperty(node);
        else if (control.bRepeated)
            repeat(node);
        else
            exportChildren(node);
    });
}

} // namespace halvane
