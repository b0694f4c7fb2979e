#pragma once

#include "host/Relationships.h"
#include "host/gdal/source/HandlePool.h"

#include <memory>
#include <string>
#include <vector>

namespace halvane::host::gdal {

/// Codes are those of GisRelationshipClass; sources that count from 0 or know a many-to-one are mapped to
/// them, a many-to-one as the one-to-many seen from its other end.
struct RelationshipFacts {
    std::string sName;
    std::string sOrigin;
    std::string sDestination;
    std::string sOriginPrimaryKey;
    std::string sOriginForeignKey;
    std::string sDestinationPrimaryKey;
    std::string sDestinationForeignKey;
    std::string sForwardLabel;
    std::string sBackwardLabel;
    std::string sFeatureDataset;
    std::int32_t lCardinality = 2;
    std::int32_t lNotification = 1;
    bool bComposite = false;
    bool bAttributed = false;
    std::string sMappingTable; ///< which rows of it link; "" without one
};

class GdalRelationshipClass : public GisRelationshipClass {
public:
    explicit GdalRelationshipClass(RelationshipFacts facts) : facts_(std::move(facts)) {}

    [[nodiscard]] std::string name() const override { return facts_.sName; }
    [[nodiscard]] std::string forwardPathLabel() const override { return facts_.sForwardLabel; }
    [[nodiscard]] std::string backwardPathLabel() const override { return facts_.sBackwardLabel; }
    [[nodiscard]] std::string featureDatasetName() const override { return facts_.sFeatureDataset; }
    [[nodiscard]] bool isAttributed() const override { return facts_.bAttributed; }
    [[nodiscard]] bool isComposite() const override { return facts_.bComposite; }
    [[nodiscard]] std::int32_t notification() const override { return facts_.lNotification; }
    [[nodiscard]] std::int32_t cardinality() const override { return facts_.lCardinality; }
    [[nodiscard]] std::string originClassName() const override { return facts_.sOrigin; }
    [[nodiscard]] std::string destinationClassName() const override { return facts_.sDestination; }
    [[nodiscard]] std::string originPrimaryKey() const override { return facts_.sOriginPrimaryKey; }
    [[nodiscard]] std::string originForeignKey() const override { return facts_.sOriginForeignKey; }
    [[nodiscard]] std::string destinationPrimaryKey() const override { return facts_.sDestinationPrimaryKey; }
    [[nodiscard]] std::string destinationForeignKey() const override { return facts_.sDestinationForeignKey; }
    [[nodiscard]] std::string linkTableName() const override { return facts_.sMappingTable; }

private:
    RelationshipFacts facts_;
};

using RelationshipList = std::vector<RelationshipFacts>;

class GdalEnumRelationshipClass : public GisEnumRelationshipClass {
public:
    explicit GdalEnumRelationshipClass(RelationshipList relationships)
        : relationships_(std::move(relationships)) {}
    [[nodiscard]] GisRelationshipClassPtr next() override;

private:
    RelationshipList relationships_;
    std::size_t nNext_ = 0;
};

/// The relationships that a data source states: its own, then its foreign keys.
[[nodiscard]] RelationshipList relationshipsOf(HandlePool& pool, const SourcePtr& pSource);

} // namespace halvane::host::gdal
