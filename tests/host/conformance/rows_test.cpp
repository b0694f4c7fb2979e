// Rows and their values, and the cursors that yield them.

#include "host/conformance/Conformance.h"

namespace halvane::test::conformance {

namespace {

using namespace host;

class Rows : public HostTest {
protected:
    /// The same for the roads and for the signs.
    void ofEachTable(const std::function<void(GisTable&, const TownTable&)>& test) {
        inTown([&](const OpenTown& open) {
            test(*open.roads(), town().roads);
            test(*open.signs(), town().signs);
        });
    }
};
class Cursors : public Rows {};

/// A row's values are those of the description, in the types of their fields.
void expectValues(const GisRow& row, const TownRow& told, const TownTable& table) {
    for (std::size_t n = 0; n < table.aFields.size(); ++n) {
        const TownField& field = table.aFields[n];
        const auto lIndex = static_cast<std::int32_t>(n);
        SCOPED_TRACE(field.sName);
        if (field.type == FieldType::Geometry) {
            EXPECT_EQ(objectAs<GisGeometry>(toValue(row.value(lIndex))) != nullptr, told.shape.has_value());
        } else if (field.type == FieldType::Oid) {
            EXPECT_EQ(toText(row.value(lIndex)), std::to_string(told.nObjectId));
        } else if (const auto bytes = told.bytes.find(field.sName); bytes != told.bytes.end()) {
            const ValueView view = row.value(lIndex);
            const auto* pHeld = std::get_if<Bytes>(&view);
            ASSERT_NE(pHeld, nullptr);
            EXPECT_EQ(std::vector(pHeld->begin(), pHeld->end()), bytes->second);
        } else {
            const auto value = told.values.find(field.sName);
            const Value vExpected = value == told.values.end() ? Value(Null()) : value->second;
            EXPECT_EQ(toValue(row.value(lIndex)), vExpected) << toText(row.value(lIndex));
        }
    }
}

void expectRows(GisCursor& cursor, const TownTable& table) {
    for (const TownRow& told : table.aRows) {
        const GisRowPtr pRow = cursor.nextRow();
        ASSERT_NE(pRow, nullptr) << told.nObjectId;
        EXPECT_EQ(pRow->objectId(), told.nObjectId);
        expectValues(*pRow, told, table);
    }
    EXPECT_EQ(cursor.nextRow(), nullptr);
}

} // namespace

TEST_F(Rows, HaveTheValuesOfTheirFieldsInTheirTypes) {
    ofEachTable([](GisTable& table, const TownTable& told) { expectRows(*table.search(nullptr), told); });
}

TEST_F(Rows, KnowTheFieldsOfTheirTable) {
    ofEachTable([](GisTable& table, const TownTable& told) {
        const GisRowPtr pRow = table.search(nullptr)->nextRow();
        ASSERT_EQ(pRow->fields().count(), static_cast<std::int32_t>(told.aFields.size()));
        EXPECT_EQ(pRow->fields().field(0).name(), told.aFields[0].sName);
    });
}

TEST_F(Rows, FailBeyondTheirFields) {
    ofEachTable([](GisTable& table, const TownTable& told) {
        const GisRowPtr pRow = table.search(nullptr)->nextRow();
        EXPECT_TRUE(isOutOfRange(
            [&] { return toText(pRow->value(static_cast<std::int32_t>(told.aFields.size()))); }));
        EXPECT_TRUE(isOutOfRange([&] { return toText(pRow->value(-1)); }));
    });
}

TEST_F(Rows, KeepTheirValuesWhenTheCursorHasMovedOnAndGone) {
    ofEachTable([](GisTable& table, const TownTable& told) {
        GisCursorPtr pCursor = table.search(nullptr);
        std::vector<GisRowPtr> aRows;
        while (GisRowPtr pRow = pCursor->nextRow())
            aRows.push_back(std::move(pRow));
        pCursor.reset();
        ASSERT_EQ(aRows.size(), told.aRows.size());
        for (std::size_t n = 0; n < aRows.size(); ++n)
            expectValues(*aRows[n], told.aRows[n], told);
    });
}

TEST_F(Rows, LendTextsAsLongAsTheyLive) {
    ofEachTable([](GisTable& table, const TownTable& told) {
        const std::int32_t lText = told.indexOf(FieldType::String);
        const GisCursorPtr pCursor = table.search(nullptr);
        const GisRowPtr pFirst = pCursor->nextRow();
        const ValueView text = pFirst->value(lText);
        while (const GisRowPtr pRow = pCursor->nextRow())
            static_cast<void>(pRow->value(lText));
        EXPECT_EQ(toValue(text),
                  told.aRows[0].values.at(told.aFields[static_cast<std::size_t>(lText)].sName));
    });
}

TEST_F(Rows, OfPlainTablesHaveNoShape) {
    inTown([](const OpenTown& open) {
        const GisCursorPtr pCursor = open.signs()->search(nullptr);
        while (const GisRowPtr pRow = pCursor->nextRow())
            EXPECT_EQ(pRow->shape(), nullptr);
    });
}

TEST_F(Cursors, YieldTheSameRowsInTheSameOrderEachTime) {
    ofEachTable([](GisTable& table, const TownTable& told) {
        EXPECT_EQ(idsOf(*table.search(nullptr)), idsOf(told));
        EXPECT_EQ(idsOf(*table.search(nullptr)), idsOf(told));
    });
}

TEST_F(Cursors, YieldNothingAfterTheEndHoweverOftenAsked) {
    ofEachTable([](GisTable& table, const TownTable& told) {
        const GisCursorPtr pCursor = table.search(nullptr);
        EXPECT_EQ(idsOf(*pCursor).size(), told.aRows.size());
        EXPECT_EQ(pCursor->nextRow(), nullptr);
        EXPECT_EQ(pCursor->nextRow(), nullptr);
    });
}

TEST_F(Cursors, OfOneTableDoNotDisturbOneAnother) {
    ofEachTable([](GisTable& table, const TownTable& told) {
        std::vector<std::int64_t> aOuter;
        const GisCursorPtr pOuter = table.search(nullptr);
        while (const GisRowPtr pRow = pOuter->nextRow()) {
            aOuter.push_back(pRow->objectId());
            EXPECT_EQ(idsOf(*table.search(nullptr)), idsOf(told));
        }
        EXPECT_EQ(aOuter, idsOf(told));
    });
}

TEST_F(Cursors, LeftInTheMiddleDoNotShortenTheNext) {
    ofEachTable([](GisTable& table, const TownTable& told) {
        static_cast<void>(table.search(nullptr)->nextRow());
        EXPECT_EQ(idsOf(*table.search(nullptr)), idsOf(told));
    });
}

TEST_F(Cursors, WithoutShapesYieldTheSameValues) {
    ofEachTable([](GisTable& table, const TownTable& told) {
        const std::int32_t lText = told.indexOf(FieldType::String);
        const std::string& sText = told.aFields[static_cast<std::size_t>(lText)].sName;
        const GisCursorPtr pCursor = table.searchWithoutShapes();
        for (const TownRow& row : told.aRows) {
            const GisRowPtr pRow = pCursor->nextRow();
            ASSERT_NE(pRow, nullptr) << row.nObjectId;
            EXPECT_EQ(pRow->objectId(), row.nObjectId);
            EXPECT_EQ(toValue(pRow->value(lText)), row.values.at(sText));
        }
        EXPECT_EQ(pCursor->nextRow(), nullptr);
    });
}

class Searches : public HostTest {};

TEST_F(Searches, YieldTheRowsThatSatisfyTheClauseInTheOrderOfTheTable) {
    inTown([this](const OpenTown& open) {
        const GisFeatureClassPtr pRoads = open.roads();
        for (const TownClause& clause : town().aRoadClauses) {
            const GisQueryFilter filter{clause.sWhere};
            EXPECT_EQ(idsOf(*pRoads->search(&filter)), clause.aIds) << clause.sWhere;
        }
    });
}

TEST_F(Searches, FindSeveralRows) {
    inTown([](const OpenTown& open) {
        const GisQueryFilter filter{"ROAD = 1"};
        EXPECT_EQ(idsOf(*open.signs()->search(&filter)), (std::vector<std::int64_t>{1, 3}));
    });
}

TEST_F(Searches, ForRejectedClausesFailAndNeverYieldAllRows) {
    inTown([this](const OpenTown& open) {
        const GisFeatureClassPtr pRoads = open.roads();
        for (const std::string& sWhere : town().aRejectedClauses) {
            const GisQueryFilter filter{sWhere};
            EXPECT_TRUE(failsWithNumberAndText([&] { return idsOf(*pRoads->search(&filter)); })) << sWhere;
        }
        EXPECT_EQ(idsOf(*pRoads->search(nullptr)), idsOf(town().roads)) << "nothing of them stays";
    });
}

} // namespace halvane::test::conformance
