#include "base/Failure.h"
#include "host/Rows.h"
#include "host/memory/Memory.h"

#include <gtest/gtest.h>

#include <array>

namespace halvane::host::memory {

namespace {

template<class Operation>
std::string failureTextOf(Operation operation) {
    try {
        static_cast<void>(operation());
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.number(), static_cast<std::int32_t>(FailureNumber::HostFailure));
        return failure.description();
    }
    return "";
}

MemoryTablePtr threeRows() {
    const MemoryTablePtr pTable = MemoryTable::make("ROADS", {field("OID", FieldType::Oid)});
    for (std::int32_t i = 1; i <= 3; ++i)
        pTable->addRow({i});
    return pTable;
}

} // namespace

TEST(MemoryFaults, FailTheNextCallOfAnOperationOnce) {
    const MemoryHostPtr pHost = MemoryHost::make();
    const GisCursorPtr pCursor = threeRows()->search(nullptr);
    pHost->faults().failAt("nextRow");
    EXPECT_EQ(failureTextOf([&] { return pCursor->nextRow(); }), "nextRow failed by request");
    EXPECT_EQ(pCursor->nextRow()->objectId(), 1);
}

TEST(MemoryFaults, FailTheNthCallOfAnOperationFromNowOn) {
    const MemoryHostPtr pHost = MemoryHost::make();
    const GisCursorPtr pCursor = threeRows()->search(nullptr);
    static_cast<void>(pCursor->nextRow());
    pHost->faults().failAt("nextRow", 2);
    EXPECT_EQ(pCursor->nextRow()->objectId(), 2);
    EXPECT_EQ(failureTextOf([&] { return pCursor->nextRow(); }), "nextRow failed by request");
    EXPECT_EQ(pCursor->nextRow()->objectId(), 3);
}

TEST(MemoryFaults, FailTheNthCallOfAnyKindFromNowOn) {
    const MemoryHostPtr pHost = MemoryHost::make();
    const MemoryTablePtr pTable = threeRows();
    pHost->faults().failAtCall(3);
    const GisCursorPtr pCursor = pTable->search(nullptr);
    const GisRowPtr pRow = pCursor->nextRow();
    EXPECT_EQ(failureTextOf([&] { return pRow->objectId(); }), "objectId failed by request");
    EXPECT_EQ(pRow->objectId(), 1);
}

TEST(MemoryFaults, FailEveryCallOfAnOperationUntilCleared) {
    const MemoryHostPtr pHost = MemoryHost::make();
    const MemoryTablePtr pTable = threeRows();
    pHost->faults().failAlways("datasetName");
    EXPECT_NE(failureTextOf([&] { return pTable->datasetName(); }), "");
    EXPECT_NE(failureTextOf([&] { return pTable->datasetName(); }), "");
    pHost->faults().clear();
    EXPECT_EQ(pTable->datasetName(), "ROADS");
}

TEST(MemoryFaults, TellOperationsOfTheSameNameApartByTheirInterface) {
    const MemoryHostPtr pHost = MemoryHost::make();
    const MemoryMapPtr pMap = MemoryMap::make("City");
    const auto pLayer = MemoryRasterLayer::make("Relief", "D:\\dem.img");
    pHost->faults().failAt("GisMap.name");
    EXPECT_EQ(pLayer->name(), "Relief");
    EXPECT_EQ(failureTextOf([&] { return pMap->name(); }), "name failed by request");
}

TEST(MemoryFaults, CountEveryCallFailedOnesIncluded) {
    const MemoryHostPtr pHost = MemoryHost::make();
    FaultScript& faults = pHost->faults();
    const MemoryMapPtr pMap = MemoryMap::make("City");
    EXPECT_EQ(faults.callCount(), 0);
    faults.failAt("name");
    EXPECT_NE(failureTextOf([&] { return pMap->name(); }), "");
    static_cast<void>(pMap->name());
    static_cast<void>(pMap->layerCount());
    EXPECT_EQ(faults.callCount(), 3);
    EXPECT_EQ(faults.callCount("name"), 2);
    EXPECT_EQ(faults.callCount("GisMap.layerCount"), 1);
    EXPECT_EQ(faults.callCount("GisLayer.name"), 0);
    faults.reset();
    EXPECT_EQ(faults.callCount(), 0);
    EXPECT_EQ(faults.callCount("name"), 0);
}

TEST(MemoryFaults, OfPointsAreMetAlsoWhereTheShapeHasNumbersAtHand) {
    const MemoryHostPtr pHost = MemoryHost::make();
    const auto pShape = MemoryGeometry::multipoint({{1, 2}, {3, 4}});
    pShape->keepAtHand(2);
    std::array<PointValues, 2> aRead;
    EXPECT_EQ(pShape->readPoints(0, 0, aRead), 2U);
    pHost->faults().failAlways("GisPoint.y");
    EXPECT_EQ(pShape->readPoints(0, 0, aRead), 0U);
}

TEST(MemoryFaults, AreSharedByAllObjectsMadeWhileTheHostLives) {
    const MemoryHostPtr pHost = MemoryHost::make();
    const MemoryTablePtr pTable = threeRows();
    const GisRowPtr pRow = pTable->search(nullptr)->nextRow();
    const auto pPoint = MemoryGeometry::point({1, 2})->point(0, 0);
    pHost->faults().reset();
    static_cast<void>(pRow->value(0));
    static_cast<void>(pRow->fields().field(0).name());
    static_cast<void>(pPoint->x());
    static_cast<void>(pHost->newCatalog()->objectFromFullName(""));
    EXPECT_EQ(pHost->faults().callCount(), 7);
}

TEST(MemoryFaults, OfOneHostDoNotReachTheObjectsOfAnother) {
    const MemoryHostPtr pFirst = MemoryHost::make();
    const MemoryTablePtr pTable = threeRows();
    const MemoryHostPtr pSecond = MemoryHost::make();
    pSecond->faults().failAtCall(1);
    EXPECT_EQ(pTable->search(nullptr)->nextRow()->objectId(), 1);
    EXPECT_EQ(pFirst->faults().callCount(), 3);
}

} // namespace halvane::host::memory
