#include "host/memory/Relationship.h"

namespace halvane::host::memory {

MemoryRelationshipClassPtr MemoryRelationshipClass::make(RelationshipDefinition definition) {
    return std::make_shared<MemoryRelationshipClass>(std::move(definition));
}

std::string MemoryRelationshipClass::name() const {
    pass("GisRelationshipClass", "name");
    return definition_.sName;
}

std::string MemoryRelationshipClass::forwardPathLabel() const {
    pass("GisRelationshipClass", "forwardPathLabel");
    return definition_.sForwardPathLabel;
}

std::string MemoryRelationshipClass::backwardPathLabel() const {
    pass("GisRelationshipClass", "backwardPathLabel");
    return definition_.sBackwardPathLabel;
}

std::string MemoryRelationshipClass::featureDatasetName() const {
    pass("GisRelationshipClass", "featureDatasetName");
    return definition_.sFeatureDatasetName;
}

bool MemoryRelationshipClass::isAttributed() const {
    pass("GisRelationshipClass", "isAttributed");
    return definition_.bAttributed;
}

bool MemoryRelationshipClass::isComposite() const {
    pass("GisRelationshipClass", "isComposite");
    return definition_.bComposite;
}

std::int32_t MemoryRelationshipClass::notification() const {
    pass("GisRelationshipClass", "notification");
    return definition_.lNotification;
}

std::int32_t MemoryRelationshipClass::cardinality() const {
    pass("GisRelationshipClass", "cardinality");
    return definition_.lCardinality;
}

std::string MemoryRelationshipClass::originClassName() const {
    pass("GisRelationshipClass", "originClassName");
    return definition_.sOriginClassName;
}

std::string MemoryRelationshipClass::destinationClassName() const {
    pass("GisRelationshipClass", "destinationClassName");
    return definition_.sDestinationClassName;
}

std::string MemoryRelationshipClass::originPrimaryKey() const {
    pass("GisRelationshipClass", "originPrimaryKey");
    return definition_.sOriginPrimaryKey;
}

std::string MemoryRelationshipClass::originForeignKey() const {
    pass("GisRelationshipClass", "originForeignKey");
    return definition_.sOriginForeignKey;
}

std::string MemoryRelationshipClass::destinationPrimaryKey() const {
    pass("GisRelationshipClass", "destinationPrimaryKey");
    return definition_.sDestinationPrimaryKey;
}

std::string MemoryRelationshipClass::destinationForeignKey() const {
    pass("GisRelationshipClass", "destinationForeignKey");
    return definition_.sDestinationForeignKey;
}

} // namespace halvane::host::memory
