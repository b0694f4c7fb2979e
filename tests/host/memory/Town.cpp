#include "host/memory/Town.h"

namespace halvane::test {

using namespace conformance;
using namespace host;
using namespace host::memory;

namespace {

constexpr const char* pDatabase = "C:\\town.mdb";
constexpr const char* pPhoto = "C:\\photo.tif";

std::vector<FieldDefinition> fieldsOf(const TownTable& table) {
    std::vector<FieldDefinition> aFields;
    for (const TownField& told : table.aFields) {
        FieldDefinition made = field(told.sName, told.type);
        made.sAlias = told.sAlias;
        made.lLength = told.lLength;
        aFields.push_back(std::move(made));
    }
    return aFields;
}

ObjectPtr shapeOf(const TownShape& told) {
    std::vector<Part> aParts;
    for (const auto& aTold : told.aParts) {
        Part part;
        for (const PointValues& point : aTold)
            part.push_back({point.dX, point.dY, point.dZ, point.dM});
        aParts.push_back(std::move(part));
    }
    return MemoryGeometry::polyline(std::move(aParts));
}

Value valueOf(const TownRow& row, const TownField& field) {
    if (field.type == FieldType::Oid)
        return row.nObjectId;
    if (field.type == FieldType::Geometry)
        return row.shape.has_value() ? Value(shapeOf(*row.shape)) : Value(Null());
    const auto value = row.values.find(field.sName);
    return value == row.values.end() ? Value(Null()) : value->second;
}

template<class Table>
void fill(Table& table, const TownTable& told) {
    for (const TownRow& row : told.aRows) {
        std::vector<Value> aValues;
        for (const TownField& field : told.aFields)
            aValues.push_back(valueOf(row, field));
        table.addRow(std::move(aValues));
        for (const auto& [sField, aBytes] : row.bytes)
            table.setBytes(sField, aBytes);
    }
}

MemorySpatialReferencePtr referenceOf(const TownReference& told) {
    auto pReference = MemorySpatialReference::make(told.sFirstLine + "\nUNITS DD");
    pReference->setCode(told.sCode, told.bNorthFirst);
    if (told.xyDomain.has_value())
        pReference->setXyDomain(*told.xyDomain);
    if (told.zDomain.has_value())
        pReference->setZDomain(*told.zDomain);
    if (told.mDomain.has_value())
        pReference->setMDomain(*told.mDomain);
    return pReference;
}

/// Its coordinates lie where the town says, beside the roads'.
MemorySpatialReferencePtr registeredReferenceOf(const TownTransformation& told) {
    auto pReference = MemorySpatialReference::make("");
    pReference->setCode(told.sCode);
    pReference->setPlace({told.from.dX - told.to.dX, told.from.dY - told.to.dY, 1});
    return pReference;
}

std::vector<GisDomainPtr> domainsOf(const Town& town) {
    std::vector<GisDomainPtr> aDomains;
    for (const TownDomain& told : town.aDomains) {
        auto pDomain = told.bounds.has_value() ? MemoryDomain::range(told.sName, told.fieldType,
                                                                     told.bounds->first, told.bounds->second)
                                               : MemoryDomain::coded(told.sName, told.fieldType, told.aCodes);
        pDomain->setDescription(told.sDescription);
        pDomain->setPolicies(told.lMergePolicy, told.lSplitPolicy);
        aDomains.push_back(std::move(pDomain));
    }
    return aDomains;
}

MemorySubtypesPtr subtypesOf(const TownSubtypes& told, const std::vector<GisDomainPtr>& aDomains) {
    auto pSubtypes = MemorySubtypes::make(told.sField, told.lDefaultCode);
    for (const auto& [lCode, sName] : told.aSubtypes)
        pSubtypes->addSubtype(lCode, sName);
    for (const auto& rule : told.aRules) {
        for (const GisDomainPtr& pDomain : aDomains)
            if (pDomain->name() == rule.sDomain)
                pSubtypes->setDomain(rule.lCode, rule.sField, pDomain);
        pSubtypes->setDefaultValue(rule.lCode, rule.sField, rule.vDefault);
    }
    return pSubtypes;
}

GisRelationshipClassPtr relationshipClassOf(const TownRelationshipClass& told) {
    RelationshipDefinition definition;
    definition.sName = told.sName;
    definition.sForwardPathLabel = told.sForwardPathLabel;
    definition.sBackwardPathLabel = told.sBackwardPathLabel;
    definition.sFeatureDatasetName = told.sFeatureDatasetName;
    definition.bAttributed = told.bAttributed;
    definition.bComposite = told.bComposite;
    definition.lNotification = told.lNotification;
    definition.lCardinality = told.lCardinality;
    definition.sOriginClassName = told.sOriginClassName;
    definition.sDestinationClassName = told.sDestinationClassName;
    definition.sOriginPrimaryKey = told.sOriginPrimaryKey;
    definition.sOriginForeignKey = told.sOriginForeignKey;
    definition.sDestinationPrimaryKey = told.sDestinationPrimaryKey;
    definition.sDestinationForeignKey = told.sDestinationForeignKey;
    return MemoryRelationshipClass::make(std::move(definition));
}

/// A layer of no kind that an export knows.
class OtherLayer final : public GisLayer {
public:
    explicit OtherLayer(std::string sName) : sName_(std::move(sName)) {}
    [[nodiscard]] std::string name() const override { return sName_; }

private:
    std::string sName_;
};

GisLayerPtr layerOf(const TownLayer& told, const MemoryFeatureClassPtr& pRoads,
                    const MemoryWorkspacePtr& pWorkspace) {
    switch (told.kind) {
    case TownLayer::Kind::Feature: {
        auto pLayer = MemoryFeatureLayer::make(told.sName, pRoads);
        pLayer->select(told.aSelected);
        return pLayer;
    }
    case TownLayer::Kind::Raster:
        return MemoryRasterLayer::make(told.sName, pPhoto);
    case TownLayer::Kind::Tin:
        return MemoryTinLayer::make(told.sName, MemoryDataset::make(pWorkspace));
    case TownLayer::Kind::Group: {
        std::vector<GisLayerPtr> aMembers;
        for (const TownLayer& member : told.aMembers)
            aMembers.push_back(layerOf(member, pRoads, pWorkspace));
        return MemoryGroupLayer::make(told.sName, std::move(aMembers));
    }
    default:
        return std::make_shared<OtherLayer>(told.sName);
    }
}

} // namespace

OpenTown townInMemory(const Town& town) {
    const MemoryHostPtr pHost = MemoryHost::make();
    const auto pWorkspace = MemoryWorkspace::make(pDatabase, MemoryWorkspace::lLocalDatabase);
    const auto aDomains = domainsOf(town);
    const auto pRoads = MemoryFeatureClass::make(town.roads.sName, ShapeType::Polyline, fieldsOf(town.roads));
    fill(*pRoads, town.roads);
    pRoads->setSubtypes(subtypesOf(town.subtypes, aDomains));
    pRoads->setSpatialReference(referenceOf(town.roadsReference));
    const auto pSigns = MemoryTable::make(town.signs.sName, fieldsOf(town.signs));
    fill(*pSigns, town.signs);
    pWorkspace->add(pRoads);
    pWorkspace->add(pSigns);
    pWorkspace->add(relationshipClassOf(town.relationshipClass));
    for (const GisDomainPtr& pDomain : aDomains)
        pWorkspace->add(pDomain);
    pHost->registerWorkspace(pDatabase, pWorkspace);
    pHost->registerReference(town.transformation.sCode, registeredReferenceOf(town.transformation));
    const auto pMap = MemoryMap::make("Town");
    for (const TownLayer& layer : town.aLayers)
        pMap->addLayer(layerOf(layer, pRoads, pWorkspace));
    pMap->addTable(pSigns);
    pMap->addTable(nullptr);
    pMap->setSpatialReference(referenceOf(town.mapReference));
    return {pHost, MemoryMapDocument::make({pMap, MemoryMap::make("Region")}), pDatabase, pDatabase, pPhoto};
}

} // namespace halvane::test
