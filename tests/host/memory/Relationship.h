#pragma once

#include "host/Relationships.h"
#include "host/memory/Faults.h"

#include <memory>
#include <string>

namespace halvane::host::memory {

/// What a relationship class is made from; the codes are those of GisRelationshipClass.
struct RelationshipDefinition {
    std::string sName = {};
    std::string sForwardPathLabel = {};
    std::string sBackwardPathLabel = {};
    std::string sFeatureDatasetName = {};
    bool bAttributed = false;
    bool bComposite = false;
    std::int32_t lNotification = 1;
    std::int32_t lCardinality = 1;
    std::string sOriginClassName = {};
    std::string sDestinationClassName = {};
    std::string sOriginPrimaryKey = {};
    std::string sOriginForeignKey = {};
    std::string sDestinationPrimaryKey = {};
    std::string sDestinationForeignKey = {};
    std::string sLinkTableName = {};
};

class MemoryRelationshipClass final : public GisRelationshipClass, private Scripted {
public:
    explicit MemoryRelationshipClass(RelationshipDefinition definition)
        : definition_(std::move(definition)) {}
    [[nodiscard]] static std::shared_ptr<MemoryRelationshipClass> make(RelationshipDefinition definition);

    [[nodiscard]] std::string name() const override;
    [[nodiscard]] std::string forwardPathLabel() const override;
    [[nodiscard]] std::string backwardPathLabel() const override;
    [[nodiscard]] std::string featureDatasetName() const override;
    [[nodiscard]] bool isAttributed() const override;
    [[nodiscard]] bool isComposite() const override;
    [[nodiscard]] std::int32_t notification() const override;
    [[nodiscard]] std::int32_t cardinality() const override;
    [[nodiscard]] std::string originClassName() const override;
    [[nodiscard]] std::string destinationClassName() const override;
    [[nodiscard]] std::string originPrimaryKey() const override;
    [[nodiscard]] std::string originForeignKey() const override;
    [[nodiscard]] std::string destinationPrimaryKey() const override;
    [[nodiscard]] std::string destinationForeignKey() const override;
    [[nodiscard]] std::string linkTableName() const override { return definition_.sLinkTableName; }

private:
    RelationshipDefinition definition_;
};
using MemoryRelationshipClassPtr = std::shared_ptr<MemoryRelationshipClass>;

} // namespace halvane::host::memory
