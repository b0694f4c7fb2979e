#include "base/Failure.h"
#include "host/IExternalProcessor.h"
#include "host/Layers.h"
#include "host/memory/Memory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

TEST(MemoryWorkspace, HasNoDomainsRoleWhereItRefuses) {
    const MemoryWorkspacePtr pWorkspace = MemoryWorkspace::make("D:\\data", MemoryWorkspace::lFolder);
    EXPECT_NE(pWorkspace->domainsRole(), nullptr);
    pWorkspace->refuseDomains();
    EXPECT_EQ(pWorkspace->domainsRole(), nullptr);
}

TEST(MemorySubtypes, FindTheirFieldsIgnoringCaseAndFailForAnUnknownCode) {
    const MemorySubtypesPtr pSubtypes = MemorySubtypes::make("KIND", 2);
    pSubtypes->addSubtype(2, "Street");
    pSubtypes->setDefaultValue(2, "surface", 5);
    EXPECT_EQ(pSubtypes->defaultValue(2, "SURFACE"), Value(5));
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
