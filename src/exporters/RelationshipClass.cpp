// Writes the relationship classes of a data source.

#include "engine/ModExporter.h"
#include "engine/TracedItem.h"
#include "engine/output/ItemCounter.h"
#include "engine/sources/Binding.h"
#include "exporters/ItemCopies.h"
#include "exporters/Property.h"
#include "host/Relationships.h"

#include <array>

namespace halvane {

namespace {

using host::GisRelationshipClass;

std::string notificationName(std::int32_t lCode) {
    switch (lCode) {
    case 1:
        return "vemiRelNotificationNone";
    case 2:
        return "vemiRelNotificationForward";
    case 3:
        return "vemiRelNotificationBackward";
    case 4:
        return "vemiRelNotificationBoth";
    default:
        return {};
    }
}

std::string cardinalityName(std::int32_t lCode) {
    switch (lCode) {
    case 1:
        return "vemiRelCardinalityOneToOne";
    case 2:
        return "vemiRelCardinalityOneToMany";
    case 3:
        return "vemiRelCardinalityManyToMany";
    default:
        return {};
    }
}

template<std::string (GisRelationshipClass::*pRead)() const>
std::string textOf(const GisRelationshipClass& relationship) {
    return (relationship.*pRead)();
}

template<bool (GisRelationshipClass::*pRead)() const>
std::string flagOf(const GisRelationshipClass& relationship) {
    return toText(ValueView((relationship.*pRead)()));
}

std::string notificationOf(const GisRelationshipClass& relationship) {
    return notificationName(relationship.notification());
}

std::string cardinalityOf(const GisRelationshipClass& relationship) {
    return cardinalityName(relationship.cardinality());
}

/// Rules are recognised, but none is ever read.
std::string rulesOf(const GisRelationshipClass& /*relationship*/) {
    return {};
}

using ReadRelationshipProperty = std::string (*)(const GisRelationshipClass&);
// "IsAttibuted" is the keyword that control files use; the correct spelling is none.
constexpr std::array<Property<ReadRelationshipProperty>, 15> relationshipProperties{{
    {"RelationshipName", textOf<&GisRelationshipClass::name>},
    {"ForwardPathLabel", textOf<&GisRelationshipClass::forwardPathLabel>},
    {"FeatureDataset", textOf<&GisRelationshipClass::featureDatasetName>},
    {"IsAttibuted", flagOf<&GisRelationshipClass::isAttributed>},
    {"IsComposite", flagOf<&GisRelationshipClass::isComposite>},
    {"Notification", notificationOf},
    {"RelationshipRules", rulesOf},
    {"BackwardPathLabel", textOf<&GisRelationshipClass::backwardPathLabel>},
    {"Cardinality", cardinalityOf},
    {"DestinationClassName", textOf<&GisRelationshipClass::destinationClassName>},
    {"OriginClassName", textOf<&GisRelationshipClass::originClassName>},
    {"DestinationForeignKey", textOf<&GisRelationshipClass::destinationForeignKey>},
    {"DestinationPrimaryKey", textOf<&GisRelationshipClass::destinationPrimaryKey>},
    {"OriginForeignKey", textOf<&GisRelationshipClass::originForeignKey>},
    {"OriginPrimaryKey", textOf<&GisRelationshipClass::originPrimaryKey>},
}};

/// The counter counts the property calls of children as well as the classes.
void exportClass(ExportState& state, const GisRelationshipClass& relationship, const ControlNode& control,
                 const OutputElement& oItemElement, ItemCounter& counter) {
    if (!control.hasChildren())
        ExportRelationshipProperty(state, relationship, control, oItemElement);
    for (const ControlNode& child : childrenOf(control)) {
        ExportRelationshipProperty(state, relationship, child, oItemElement);
        counter.increment();
    }
}

} // namespace

std::string RelationshipPropertyText(ExportState& state, const GisRelationshipClass& relationship,
                                     std::string_view sProperty) {
    const auto* pProperty = findProperty(state, relationshipProperties, sProperty);
    return pProperty == nullptr ? std::string() : pProperty->second(relationship);
}

void ExportRelationshipProperty(ExportState& state, const GisRelationshipClass& relationship,
                                const ControlNode& property, const OutputElement& oOutputElement) {
    const ActiveNodeScope scope(state, property);
    trapFailures(state, [&] {
        writeChildValue(state, property, oOutputElement,
                        RelationshipPropertyText(state, relationship, property.own.sDataProperty));
    });
}

void ExportRelationshipClasses(ExportState& state, const ControlNode& control,
                               OutputElement& oOutputElement) {
    const ActiveNodeScope scope(state, control);
    trapFailures(state, [&] {
        const auto pClasses =
            objectAs<host::GisEnumRelationshipClass>(resolveWithoutIdentity(state, *control.pBinding));
        if (pClasses == nullptr)
            return;
        ItemCopies copies(state, control, oOutputElement, control.pName);
        ItemCounter counter(state.options.lItemLimit);
        while (const auto pRelationship = pClasses->next()) {
            const TracedItem item(state, control);
            if (!item.isWanted())
                break;
            oOutputElement = counter.value() > 0 ? copies.next() : copies.firstInItem();
            exportClass(state, *pRelationship, control, oOutputElement, counter);
            reportItem(state, control);
            counter.increment();
        }
    });
}

} // namespace halvane
