#include "base/Failure.h"
#include "host/Rows.h"
#include "host/Tables.h"
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

TEST(MemoryTable, HasItsFieldsAsTheyAreDefined) {
    const MemoryTablePtr pTable =
        MemoryTable::make("T", {field("OID", FieldType::Oid), field("LEN", FieldType::Double).precision(12),
                                field("NAME", FieldType::String).notNull(), field("EXTRA", 12).readOnly()});
    const GisFieldsPtr pFields = pTable->fields();
    EXPECT_EQ(pFields->field(1).precision(), 12);
    EXPECT_FALSE(pFields->field(2).isNullable());
    EXPECT_EQ(pFields->field(3).typeCode(), 12);
    EXPECT_FALSE(pFields->field(3).isEditable());
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

} // namespace halvane::host::memory
