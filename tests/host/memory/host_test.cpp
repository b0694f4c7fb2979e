#include "base/Failure.h"
#include "host/IExternalProcessor.h"
#include "host/memory/Memory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace halvane::host::memory {

namespace {

using testing::ElementsAre;

template<class Operation>
FailureNumber failureOf(Operation operation) {
    try {
        static_cast<void>(operation());
    } catch (const Failure& failure) {
        return static_cast<FailureNumber>(failure.number());
    }
    return FailureNumber{};
}

} // namespace

TEST(MemoryHost, OpensRegisteredWorkspacesThroughEveryFactoryAndNotesWhichWasAsked) {
    const MemoryHostPtr pHost = MemoryHost::make();
    const MemoryWorkspacePtr pWorkspace =
        MemoryWorkspace::make("D:\\city.mdb", MemoryWorkspace::lLocalDatabase);
    pHost->registerWorkspace("D:\\city.mdb", pWorkspace);
    const GisPropertySetPtr pProperties = pHost->newPropertySet();
    pProperties->setProperty("DATABASE", std::string("D:\\city.mdb"));
    const auto pLocal = pHost->newWorkspaceFactory(WorkspaceFactoryKind::LocalDatabase);
    EXPECT_EQ(pLocal->open(*pProperties, 5), pWorkspace);
    const auto pRemote = pHost->newWorkspaceFactory(WorkspaceFactoryKind::RemoteDatabase);
    EXPECT_EQ(failureOf([&] { return pRemote->openFromFile("D:\\other.sde", 0); }),
              FailureNumber::HostFailure);
    EXPECT_THAT(
        pHost->openings(),
        ElementsAre(WorkspaceOpening{WorkspaceFactoryKind::LocalDatabase, "D:\\city.mdb", false, 5},
                    WorkspaceOpening{WorkspaceFactoryKind::RemoteDatabase, "D:\\other.sde", true, 0}));
}

TEST(MemoryHost, HasThePropertiesThatWereSet) {
    const GisPropertySetPtr pProperties = MemoryHost::make()->newPropertySet();
    pProperties->setProperty("DATABASE", 1);
    pProperties->setProperty("database", 2);
    EXPECT_EQ(pProperties->property("Database"), Value(2));
    EXPECT_TRUE(isEmpty(pProperties->property("SERVER")));
}

TEST(MemoryHost, CreatesRegisteredComponentsOnly) {
    const MemoryHostPtr pHost = MemoryHost::make();
    pHost->registerComponent("Acme.Counter", [] { return std::make_shared<IExternalProcessor>(); });
    EXPECT_NE(std::dynamic_pointer_cast<IExternalProcessor>(pHost->createComponent("ACME.counter")), nullptr);
    EXPECT_EQ(failureOf([&] { return pHost->createComponent("Acme.Other"); }),
              FailureNumber::CannotCreateComponent);
}

TEST(MemoryHost, FindsCatalogObjectsByTheirFullNameAndNotesTheNames) {
    const MemoryHostPtr pHost = MemoryHost::make();
    const auto pRoot = MemoryCatalogObject::make("Catalog", "Catalog", "Catalog");
    const auto pFile = MemoryCatalogObject::make("city.sde", "Connections\\city.sde", "Connection", pRoot);
    pHost->addCatalogObject(pFile);
    const GisCatalogPtr pCatalog = pHost->newCatalog();
    EXPECT_EQ(pCatalog->objectFromFullName("Connections\\city.sde"), pFile);
    EXPECT_EQ(pCatalog->objectFromFullName("elsewhere"), nullptr);
    EXPECT_EQ(pFile->parent()->category(), "Catalog");
    EXPECT_EQ(pRoot->parent(), nullptr);
    EXPECT_THAT(pHost->askedCatalogNames(), ElementsAre("Connections\\city.sde", "elsewhere"));
}

TEST(MemoryHost, FormatsNumbersWithTheConfiguredDecimalsAndNotesTheSettings) {
    const MemoryHostPtr pHost = MemoryHost::make();
    const GisNumericFormatPtr pFormat = pHost->newNumericFormat();
    pFormat->configure({1, 0, 15, 2, 0, 0, 0});
    EXPECT_EQ(pFormat->valueToText(1.005), "1.01");
    EXPECT_EQ(pFormat->valueToText(7), "7");
    EXPECT_THAT(pHost->numericFormats(), ElementsAre(ElementsAre(1, 0, 15, 2, 0, 0, 0)));
}

TEST(MemoryHost, TellsTheDateAndTheSeparatorThatWereSet) {
    const MemoryHostPtr pHost = MemoryHost::make();
    pHost->setToday({1999, 12, 31});
    EXPECT_EQ(pHost->today(), (Date{1999, 12, 31}));
    EXPECT_EQ(pHost->pathSeparator(), '\\');
    pHost->setPathSeparator('/');
    EXPECT_EQ(pHost->pathSeparator(), '/');
}

TEST(MemoryHost, MakesFeatureLayersWithoutAFeatureClass) {
    const GisFeatureLayerPtr pLayer = MemoryHost::make()->newFeatureLayer();
    EXPECT_EQ(pLayer->featureClass(), nullptr);
    const auto pFeatures = MemoryFeatureClass::make("WELLS", ShapeType::Point, {});
    pLayer->setFeatureClass(pFeatures);
    EXPECT_EQ(pLayer->featureClass(), pFeatures);
}

TEST(MemoryWorkspace, OpensItsDatasetsByNameIgnoringCase) {
    const MemoryWorkspacePtr pWorkspace = MemoryWorkspace::make("D:\\data", MemoryWorkspace::lFolder);
    const MemoryTablePtr pTable = MemoryTable::make("OWNERS", {});
    const MemoryFeatureClassPtr pFeatures = MemoryFeatureClass::make("PARCELS", ShapeType::Polygon, {});
    pWorkspace->add(pTable);
    pWorkspace->add(pFeatures);
    EXPECT_EQ(pWorkspace->openTable("owners"), pTable);
    EXPECT_EQ(pWorkspace->openTable("Parcels"), pFeatures);
    EXPECT_EQ(pWorkspace->openFeatureClass("parcels"), pFeatures);
    EXPECT_EQ(failureOf([&] { return pWorkspace->openFeatureClass("OWNERS"); }), FailureNumber::HostFailure);
    EXPECT_EQ(failureOf([&] { return pWorkspace->openTable("ROADS"); }), FailureNumber::HostFailure);
    EXPECT_EQ(pTable->workspace(), pWorkspace);
    EXPECT_EQ(pFeatures->workspace(), pWorkspace);
}

TEST(MemoryWorkspace, EnumeratesDomainsAndRelationshipClasses) {
    const MemoryWorkspacePtr pWorkspace = MemoryWorkspace::make("D:\\data", MemoryWorkspace::lFolder);
    const auto pCodes = MemoryDomain::coded("Surface", FieldType::Integer, {{1, "Gravel"}, {2, "Asphalt"}});
    const auto pRange = MemoryDomain::range("Width", FieldType::Double, 2.5, 30.0);
    pWorkspace->add(GisDomainPtr(pCodes));
    pWorkspace->add(GisDomainPtr(pRange));
    RelationshipDefinition definition;
    definition.sName = "OwnerOf";
    definition.lCardinality = 2;
    pWorkspace->add(GisRelationshipClassPtr(MemoryRelationshipClass::make(definition)));
    const GisEnumDomainPtr pDomains = pWorkspace->domainsRole()->domains();
    EXPECT_EQ(pDomains->next(), pCodes);
    EXPECT_EQ(pDomains->next(), pRange);
    EXPECT_EQ(pDomains->next(), nullptr);
    const GisEnumRelationshipClassPtr pRelationships = pWorkspace->relationshipClasses();
    EXPECT_EQ(pRelationships->next()->cardinality(), 2);
    EXPECT_EQ(pRelationships->next(), nullptr);
    pWorkspace->refuseDomains();
    EXPECT_EQ(pWorkspace->domainsRole(), nullptr);
}

TEST(MemoryDomain, HasCodesOrBounds) {
    const auto pCodes = MemoryDomain::coded("Surface", FieldType::Integer, {{1, "Gravel"}, {2, "Asphalt"}});
    EXPECT_EQ(pCodes->domainType(), 2);
    EXPECT_EQ(pCodes->codeCount(), 2);
    EXPECT_EQ(pCodes->code(1).sName, "Asphalt");
    EXPECT_EQ(failureOf([&] { return pCodes->minValue(); }), FailureNumber::ActionNotSupported);
    EXPECT_EQ(failureOf([&] { return pCodes->code(2); }), FailureNumber::SubscriptOutOfRange);
    const auto pRange = MemoryDomain::range("Width", FieldType::Double, 2.5, 30.0);
    pRange->setPolicies(1, 2);
    EXPECT_EQ(pRange->domainType(), 1);
    EXPECT_EQ(pRange->fieldType(), 3);
    EXPECT_EQ(pRange->maxValue(), Value(30.0));
    EXPECT_EQ(pRange->codeCount(), 0);
    EXPECT_EQ(pRange->mergePolicy(), 1);
    EXPECT_EQ(pRange->splitPolicy(), 2);
}

TEST(MemorySubtypes, HoldDomainsAndDefaultsByCodeAndField) {
    const MemorySubtypesPtr pSubtypes = MemorySubtypes::make("KIND", 2);
    const auto pDomain = MemoryDomain::coded("Surface", FieldType::Integer, {});
    pSubtypes->addSubtype(1, "Path");
    pSubtypes->addSubtype(2, "Street");
    pSubtypes->setDomain(2, "SURFACE", pDomain);
    pSubtypes->setDefaultValue(2, "surface", 5);
    EXPECT_TRUE(pSubtypes->hasSubtypes());
    EXPECT_EQ(pSubtypes->subtypeCount(), 2);
    EXPECT_EQ(pSubtypes->subtypeCode(1), 2);
    EXPECT_EQ(pSubtypes->subtypeName(1), "Path");
    EXPECT_EQ(pSubtypes->defaultSubtypeCode(), 2);
    EXPECT_EQ(pSubtypes->domain(2, "Surface"), pDomain);
    EXPECT_EQ(pSubtypes->domain(1, "Surface"), nullptr);
    EXPECT_EQ(pSubtypes->defaultValue(2, "SURFACE"), Value(5));
    EXPECT_TRUE(isEmpty(pSubtypes->defaultValue(2, "LANES")));
    EXPECT_EQ(failureOf([&] { return pSubtypes->subtypeName(3); }), FailureNumber::HostFailure);
}

TEST(MemoryMapDocument, ShowsItsFirstMapUnlessToldOtherwise) {
    const MemoryMapPtr pCity = MemoryMap::make("City");
    const MemoryMapPtr pCounty = MemoryMap::make("County");
    const MemoryMapDocumentPtr pDocument = MemoryMapDocument::make({pCity, pCounty});
    EXPECT_EQ(pDocument->focusMap(), pCity);
    pDocument->setFocusMap(pCounty);
    EXPECT_EQ(pDocument->focusMap(), pCounty);
    EXPECT_EQ(pDocument->mapCount(), 2);
    EXPECT_EQ(pDocument->map(0), pCity);
    EXPECT_EQ(MemoryMapDocument::make({})->focusMap(), nullptr);
    EXPECT_EQ(failureOf([&] { return pDocument->map(2); }), FailureNumber::SubscriptOutOfRange);
}

TEST(MemoryMap, HoldsLayersOfEveryKindAndTables) {
    const MemoryMapPtr pMap = MemoryMap::make("City");
    const auto pRaster = MemoryRasterLayer::make("Relief", "D:\\data\\dem.img");
    const auto pTin = MemoryTinLayer::make("Surface", MemoryDataset::make(nullptr));
    const MemoryTablePtr pTable = MemoryTable::make("OWNERS", {});
    pMap->addLayer(MemoryGroupLayer::make("Ground", {pRaster, pTin}));
    pMap->addTable(nullptr);
    pMap->addTable(pTable);
    EXPECT_EQ(pMap->layerCount(), 1);
    const auto pGroup = std::dynamic_pointer_cast<GisGroupLayer>(pMap->layer(0));
    ASSERT_NE(pGroup, nullptr);
    EXPECT_EQ(pGroup->layerCount(), 2);
    EXPECT_EQ(pGroup->layer(1), pTin);
    EXPECT_EQ(pRaster->filePath(), "D:\\data\\dem.img");
    EXPECT_EQ(pMap->standaloneTableCount(), 2);
    EXPECT_EQ(pMap->standaloneTable(0), nullptr);
    EXPECT_EQ(pMap->standaloneTable(1), pTable);
}

TEST(MemorySpatialReference, HasTheDomainsThatWereSet) {
    const auto pReference = MemorySpatialReference::make("Projection UTM\nZone 33");
    EXPECT_FALSE(pReference->xyDomain().has_value());
    EXPECT_FALSE(pReference->mDomain().has_value());
    pReference->setXyDomain({0, 1, 2, 3, 4, 5, 6});
    pReference->setZDomain({-100, 9000, -100, 1000});
    EXPECT_EQ(pReference->xyDomain()->dYMax, 3);
    EXPECT_EQ(pReference->zDomain()->dScale, 1000);
    EXPECT_EQ(pReference->description(), "Projection UTM\nZone 33");
    const auto pFeatures = MemoryFeatureClass::make("WELLS", ShapeType::Point, {});
    pFeatures->setSpatialReference(pReference);
    EXPECT_EQ(MemoryFeatureLayer::make("Wells", pFeatures)->spatialReference(), pReference);
}

TEST(MemoryGeometry, HasPartsVerticesAndEnds) {
    const MemoryGeometryPtr pLine = MemoryGeometry::polyline({{{0, 0}, {3, 4}}, {{10, 0, 7, 1.5}, {10, 2}}});
    EXPECT_EQ(pLine->geometryType(), 3);
    EXPECT_EQ(pLine->partCount(), 2);
    EXPECT_EQ(pLine->pointCount(1), 2);
    EXPECT_EQ(pLine->length(), 7);
    EXPECT_EQ(pLine->point(1, 0)->z(), 7);
    EXPECT_EQ(pLine->point(1, 0)->m(), 1.5);
    EXPECT_TRUE(std::isnan(pLine->point(0, 0)->z()));
    EXPECT_EQ(pLine->fromPoint()->x(), 0);
    EXPECT_EQ(pLine->toPoint()->y(), 2);
    EXPECT_EQ(failureOf([&] { return pLine->point(0, 2); }), FailureNumber::SubscriptOutOfRange);
    EXPECT_EQ(failureOf([&] { return pLine->pointCount(2); }), FailureNumber::SubscriptOutOfRange);
}

TEST(MemoryGeometry, HasNoLengthForPointsAndNoEndsWhenEmpty) {
    EXPECT_EQ(MemoryGeometry::multipoint({{0, 0}, {3, 4}})->length(), 0);
    EXPECT_EQ(MemoryGeometry::multipoint({{0, 0}, {3, 4}})->pointCount(0), 2);
    const MemoryGeometryPtr pPoint = MemoryGeometry::point({1, 2});
    EXPECT_EQ(pPoint->fromPoint()->x(), 1);
    EXPECT_EQ(pPoint->toPoint()->y(), 2);
    EXPECT_EQ(MemoryGeometry::empty(ShapeType::Polygon)->fromPoint(), nullptr);
    EXPECT_EQ(MemoryGeometry::empty(ShapeType::Polygon)->toPoint(), nullptr);
    EXPECT_EQ(MemoryGeometry::polygon({{{0, 0}, {1, 0}, {0, 0}}})->geometryType(), 4);
}

} // namespace halvane::host::memory
