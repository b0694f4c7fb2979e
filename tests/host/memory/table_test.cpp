#include "base/Failure.h"
#include "host/memory/Memory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace halvane::host::memory {

namespace {

using testing::ElementsAre;

MemoryTablePtr routes() {
    const MemoryTablePtr pTable =
        MemoryTable::make("ROUTES", {field("OID", FieldType::Oid), field("ROUTE_ID", FieldType::String),
                                     field("LANES", FieldType::SmallInteger), field("LEN", FieldType::Double),
                                     field("OPENED", FieldType::Date)});
    pTable->addRow({10, "R17", 2, 1.5, Date{2001, 2, 3}});
    pTable->addRow({20, "R18", 4, 17.0, Null()});
    pTable->addRow({30, Null(), std::int64_t{2}, 1.5, Null()});
    return pTable;
}

std::vector<std::int64_t> idsOf(const GisCursorPtr& pCursor) {
    std::vector<std::int64_t> aIds;
    while (const GisRowPtr pRow = pCursor->nextRow())
        aIds.push_back(pRow->objectId());
    return aIds;
}

std::vector<std::int64_t> found(const MemoryTablePtr& pTable, std::string sWhereClause) {
    const GisQueryFilter filter{std::move(sWhereClause)};
    return idsOf(pTable->search(&filter));
}

} // namespace

TEST(MemoryTable, YieldsAllRowsWithoutAFilter) {
    EXPECT_THAT(idsOf(routes()->search(nullptr)), ElementsAre(10, 20, 30));
}

TEST(MemoryTable, FiltersANumericFieldByANumber) {
    EXPECT_THAT(found(routes(), "LANES=2"), ElementsAre(10, 30));
    EXPECT_THAT(found(routes(), "LANES = 4"), ElementsAre(20));
    EXPECT_THAT(found(routes(), "LEN = 1.5"), ElementsAre(10, 30));
    EXPECT_THAT(found(routes(), "LEN=17"), ElementsAre(20));
    EXPECT_THAT(found(routes(), "LANES=-1"), ElementsAre());
}

TEST(MemoryTable, FiltersATextFieldByAQuotedText) {
    EXPECT_THAT(found(routes(), "ROUTE_ID='R17'"), ElementsAre(10));
    EXPECT_THAT(found(routes(), "ROUTE_ID = 'R18'"), ElementsAre(20));
    EXPECT_THAT(found(routes(), "ROUTE_ID='r17'"), ElementsAre());
    EXPECT_THAT(found(routes(), "ROUTE_ID=''"), ElementsAre());
}

TEST(MemoryTable, MatchesFieldNamesInFiltersIgnoringCase) {
    EXPECT_THAT(found(routes(), "route_id='R17'"), ElementsAre(10));
}

TEST(MemoryTable, RejectsEveryOtherFilter) {
    for (const char* sClause : {"ROUTE_ID=R17", "ROUTE_ID=17", "LANES='2'", "LANES=", "LANES", "WIDTH=2",
                                "=2", "LANES=2 OR LANES=4", "LANES>=2", "ROUTE_ID='O'Brien'", "ROUTE_ID='",
                                "OPENED='2001-02-03'", "1=1", "LANES==2"}) {
        try {
            static_cast<void>(found(routes(), sClause));
            ADD_FAILURE() << sClause;
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.number(), static_cast<std::int32_t>(FailureNumber::HostFailure));
        }
    }
}

TEST(MemoryTable, NotesEveryWhereClause) {
    const MemoryTablePtr pTable = routes();
    static_cast<void>(pTable->search(nullptr));
    static_cast<void>(found(pTable, "LANES=2"));
    EXPECT_THROW(static_cast<void>(found(pTable, "LANES = ABC")), Failure);
    EXPECT_THAT(pTable->whereClauses(), ElementsAre("LANES=2", "LANES = ABC"));
}

TEST(MemoryTable, FindsFieldsByNameAndByAliasIgnoringCase) {
    const MemoryTablePtr pTable = MemoryTable::make(
        "T", {field("OID", FieldType::Oid), field("LEN", FieldType::Double).alias("Length").precision(12),
              field("NAME", FieldType::String).length(40).notNull(), field("EXTRA", 12).readOnly()});
    const GisFieldsPtr pFields = pTable->fields();
    EXPECT_EQ(pFields->count(), 4);
    EXPECT_EQ(pFields->findField("len"), 1);
    EXPECT_EQ(pFields->findField("Length"), -1);
    EXPECT_EQ(pFields->findFieldByAliasName("LENGTH"), 1);
    EXPECT_EQ(pFields->findFieldByAliasName("name"), 2);
    EXPECT_EQ(pFields->field(1).precision(), 12);
    EXPECT_EQ(pFields->field(2).length(), 40);
    EXPECT_FALSE(pFields->field(2).isNullable());
    EXPECT_EQ(pFields->field(2).typeCode(), 4);
    EXPECT_EQ(pFields->field(3).typeCode(), 12);
    EXPECT_FALSE(pFields->field(3).isEditable());
    EXPECT_FALSE(pFields->field(0).isEditable());
    EXPECT_THROW(static_cast<void>(pFields->field(4)), Failure);
}

TEST(MemoryRow, KeepsItsValuesAfterItsCursorHasMovedOn) {
    GisCursorPtr pCursor = routes()->search(nullptr);
    const GisRowPtr pFirst = pCursor->nextRow();
    static_cast<void>(pCursor->nextRow());
    pCursor.reset();
    EXPECT_EQ(std::get<std::string_view>(pFirst->value(1)), "R17");
    EXPECT_EQ(std::get<double>(pFirst->value(3)), 1.5);
}

TEST(MemoryRow, HasNullWhereNoValueWasGivenAndFailsBeyondItsFields) {
    const MemoryTablePtr pTable =
        MemoryTable::make("T", {field("A", FieldType::Integer), field("B", FieldType::Integer)});
    EXPECT_EQ(pTable->addRow({1}), 1);
    EXPECT_EQ(pTable->addRow({2}), 2);
    const GisRowPtr pRow = pTable->search(nullptr)->nextRow();
    EXPECT_TRUE(isNull(pRow->value(1)));
    EXPECT_THROW(static_cast<void>(pRow->value(2)), Failure);
    EXPECT_THROW(static_cast<void>(pRow->value(-1)), Failure);
    EXPECT_EQ(pRow->shape(), nullptr);
}

TEST(MemoryRow, LendsBytes) {
    const MemoryTablePtr pTable = MemoryTable::make("T", {field("DATA", FieldType::Blob)});
    pTable->addRow({});
    pTable->setBytes("data", {std::byte{'f'}, std::byte{'o'}, std::byte{'o'}});
    EXPECT_EQ(toText(pTable->search(nullptr)->nextRow()->value(0)), "Zm9v");
}

TEST(MemoryFeatureClass, HasItsFeaturesShapesInTheGeometryField) {
    const auto pFeatures = MemoryFeatureClass::make(
        "WELLS", ShapeType::Point, {field("OID", FieldType::Oid), field("SHAPE", FieldType::Geometry)});
    const MemoryGeometryPtr pShape = MemoryGeometry::point({1, 2});
    pFeatures->addRow({7, pShape});
    pFeatures->addRow({8, Null()});
    const GisCursorPtr pCursor = pFeatures->search(nullptr);
    const GisRowPtr pRow = pCursor->nextRow();
    EXPECT_EQ(pRow->shape(), pShape);
    EXPECT_EQ(std::get<ObjectPtr>(pRow->value(1)), pShape);
    EXPECT_EQ(pCursor->nextRow()->shape(), nullptr);
    EXPECT_EQ(pFeatures->featureCount(), 2);
    EXPECT_EQ(pFeatures->shapeType(), 1);
    EXPECT_FALSE(pFeatures->subtypes()->hasSubtypes());
}

TEST(MemoryFeatureLayer, YieldsItsSelectionInSelectionOrder) {
    const auto pFeatures =
        MemoryFeatureClass::make("WELLS", ShapeType::Point, {field("OID", FieldType::Oid)});
    for (std::int32_t i = 1; i <= 4; ++i)
        pFeatures->addRow({i});
    const MemoryFeatureLayerPtr pLayer = MemoryFeatureLayer::make("Wells", pFeatures);
    EXPECT_EQ(pLayer->selectionCount(), 0);
    pLayer->select({4, 1});
    EXPECT_EQ(pLayer->selectionCount(), 2);
    EXPECT_THAT(idsOf(pLayer->searchSelection()), ElementsAre(4, 1));
    EXPECT_EQ(pLayer->asTable(), pFeatures);
}

} // namespace halvane::host::memory
