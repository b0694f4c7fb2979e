// What expressions are computed of, where it is at hand and where it is not.

#include "engine/second/GroupScope.h"
#include "engine/second/NodeExpression.h"
#include "engine/second/RowScope.h"
#include "exporters/second/SecondEditionTest.h"

#include <gmock/gmock.h>

namespace halvane::test {

namespace {

using namespace host;
using namespace host::memory;
using ::testing::HasSubstr;

class NodeExpressions : public SecondEditionTest {
protected:
    NodeExpressions() { state.options.pSecondEdition = &edition; }

    static NodeExpression read(const std::string& sExpression) {
        return NodeExpression(expression::Expression(sExpression));
    }
    /// The value as text, or "failed: …".
    std::string valueOf(const std::string& sExpression) {
        try {
            return toText(read(sExpression).value(state));
        } catch (const Failure& failure) {
            return "failed: " + failure.description();
        }
    }
};

TEST_F(NodeExpressions, HaveNoFieldsWithoutARow) {
    EXPECT_EQ(valueOf("NAME"), "failed: no row is at hand that \"NAME\" could be a field of");
    const RowScope before(state, nullptr);
    EXPECT_EQ(valueOf("NAME"), "failed: no row is at hand that \"NAME\" could be a field of")
        << "the loop has not come to its first row";
    EXPECT_EQ(valueOf("../NAME || 'x'"), "failed: no row is at hand that \"NAME\" could be a field of");
    EXPECT_EQ(valueOf("$Item"), "0");
    EXPECT_EQ(valueOf("../$Item"), "");
}

TEST_F(NodeExpressions, HaveNoGroupWithoutOne) {
    EXPECT_EQ(valueOf("sum(LANES)"), "failed: no group of rows is at hand");
    EXPECT_EQ(valueOf("$Count"), "");
    const RowScope around(state, nullptr);
    EXPECT_EQ(valueOf("$Count"), "") << "the row is of no group";
}

TEST_F(NodeExpressions, CountTheGroupThatTheRowIsIn) {
    const auto pCursor = world.pRoads->search(nullptr);
    std::vector<GisRowPtr> rows{pCursor->nextRow(), pCursor->nextRow()};
    RowScope outer(state, nullptr);
    outer.turnTo(*rows.front());
    const GroupScope group(state, outer, rows);
    RowScope inner(state, nullptr);
    inner.turnTo(*rows.back());
    EXPECT_EQ(valueOf("$Count"), "2");
    EXPECT_EQ(valueOf("../$Count"), "2");
    EXPECT_EQ(valueOf("../../$Count"), "");
    EXPECT_EQ(valueOf("sum(LANES) || ' ' || NAME"), "3 Mill Lane");
}

TEST_F(NodeExpressions, HaveNoValueThatNobodyGave) {
    EXPECT_EQ(valueOf("$nobody"), "");
    EXPECT_EQ(valueOf("coalesce($nobody, 'none')"), "none");
    EXPECT_EQ(valueOf("$who"), "O'Brien");
}

TEST_F(NodeExpressions, HoldForNumbersOtherThanZeroAlone) {
    const auto holds = [&](const std::string& sCondition) {
        return NodeExpression(expression::Expression(sCondition).asCondition()).holds(state);
    };
    EXPECT_TRUE(holds("1"));
    EXPECT_TRUE(holds("0.5"));
    EXPECT_TRUE(holds("-2"));
    EXPECT_FALSE(holds("0"));
    EXPECT_FALSE(holds("0.0"));
    EXPECT_FALSE(holds("null"));
    EXPECT_FALSE(holds("'text'"));
}

TEST_F(NodeExpressions, TellOfFieldsThatComputedTextsLack) {
    EXPECT_EQ(inRoads("<n Name='N' h:Text='{upper(NOWHERE)}|'/>"),
              "<R><N>|</N></R><R><N>|</N></R><R><N>|</N></R>");
    EXPECT_TRUE(observer.noticed("N", Notice::FieldNotFound));
    EXPECT_EQ(failures(), "");
}

TEST_F(NodeExpressions, KnowTheFieldOfALoopWhereARowHasIt) {
    EXPECT_EQ(in("<n Name='N' h:Text='{$Value}|{upper($Value)}|'/>"), "<N>||</N>") << "no loop over fields";
    EXPECT_EQ(in("<t Name='T' h:ForEach='Table'><f Name='F' h:ForEach='Field' h:When='$Item = 2' "
                 "h:Text='{$Value}|{upper($Value)}|'/></t>"),
              "<T><F>||</F></T>")
        << "no row";
    EXPECT_EQ(
        inRoads("<f Name='F' h:ForEach='Field' h:When='$Item = 3'><s Name='S' DataSource='RelatedTable' "
                "Identity='LayerName' IdentityValue='SIGNS' h:Rows='Each' h:Link='ROUTE_ID=ROUTE_ID' "
                "h:Limit='1' h:Text='{KIND} {$Value} {upper($Value)}'/></f>"),
        "<R><F><S>Stop High Street HIGH STREET</S></F></R><R><F/></R><R><F><S>Stop Quay QUAY</S></F></R>")
        << "the row further out";
    EXPECT_EQ(failures(), "");
}

TEST_F(NodeExpressions, TellWhetherTheFieldOfALoopHoldsAShape) {
    world.pRoads->addRow({std::int64_t{4}, Null()});
    const auto ofFields = [&](const std::string& sRest) {
        return in("<l DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' h:Omit='Self'>"
                  "<r Name='R' DataSource='Feature' Entries='Multiple' h:Where='OID &gt; 2'>"
                  "<f Name='F' h:ForEach='Field' h:When='$Item &lt; 3" +
                  sRest + "/></r></l>");
    };
    EXPECT_EQ(ofFields("' h:Text='{$Value}|{$Value is null}'"),
              "<R><F>3|0</F><F>|0</F></R><R><F>4|0</F><F>|1</F></R>");
    EXPECT_EQ(ofFields(" and $Value is not null' h:Text='{$Item}'"),
              "<R><F>1</F><F>2</F></R><R><F>1</F></R>");
    EXPECT_EQ(failures(), "");
    EXPECT_EQ(ofFields("' h:Text='{$Value}|'"), "<R><F>3|</F><F>|</F></R><R><F>4|</F><F>|</F></R>");
    EXPECT_EQ(failures(), "") << "a shape has no text, and is not looked at";
}

TEST_F(NodeExpressions, AreLeftOutWhereAFieldCannotBeRead) {
    world.pHost->faults().failAt("GisRow.value", 2);
    EXPECT_EQ(inRoads("<n Name='N' h:Text='{NAME}'/><l Name='L' h:Text='{LANES + 1}'/>"),
              "<R><N>High Street</N></R><R><N>Mill Lane</N><L>2</L></R><R><N>Quay</N><L>5</L></R>");
    EXPECT_EQ(failures(), "L: value failed by request\n");
    world.pHost->faults().failAt("GisRow.value", 1);
    EXPECT_EQ(inRoads("<f Name='F' h:ForEach='Field' h:When='$Item = 3' h:Text='{$Value}'/>"),
              "<R/><R><F>Mill Lane</F></R><R><F>Quay</F></R>");
    EXPECT_EQ(failures(), "F: value failed by request\n");
}

TEST_F(NodeExpressions, TellTheCodeOfTheReferenceAtHand) {
    const auto coded = [](const std::string& sCode) {
        auto pReference = MemorySpatialReference::make(sCode);
        pReference->setCode(sCode);
        return pReference;
    };
    world.pTownMap->setSpatialReference(coded("EPSG:1"));
    world.pRoads->setSpatialReference(coded("EPSG:2"));
    edition.fnReferenceOf = [&](std::string_view sCode) { return coded(std::string(sCode)); };
    EXPECT_EQ(in("<m Name='M' h:Text='{$Crs}'/>"), "<M>EPSG:1</M>");
    EXPECT_EQ(
        inRoads("<n Name='N' h:Text='{$Crs}'/><o Name='O' h:Crs='EPSG:3' h:Text='{$Crs}'/>").substr(0, 38),
        "<R><N>EPSG:2</N><O>EPSG:3</O></R><R><N");
    EXPECT_EQ(in("<l Name='L' h:ForEach='Layer' h:When=\"$Layer in ('Photo', 'Relief')\" "
                 "h:Text='{$Layer} {$Crs}'/>"),
              "<L>Photo EPSG:1</L><L>Relief EPSG:1</L>")
        << "a raster is drawn in the map's";
}

TEST_F(NodeExpressions, AreNoLimitsThatCountNothing) {
    const auto limited = [&](const std::string& sLimit) {
        return in("<m Name='M' h:ForEach='Map' h:When='$Item = 1'><t Name='T' DataSource='Table' "
                  "Identity='TableName' IdentityValue='SIGNS' Entries='Multiple' h:Rows='Each' h:Limit='" +
                  sLimit + "' h:Text='{KIND}'/></m>");
    };
    EXPECT_EQ(limited("$Item"), "<M><T>Stop</T></M>");
    EXPECT_EQ(limited("$Item + 1"), "<M><T>Stop</T><T>Yield</T></M>");
    for (const std::string sLimit :
         {"$Item - 2", "$Item / 2.0", "nullif($Item, 1)", "$Item * 1000000000000000000", "$Layer"}) {
        EXPECT_EQ(limited(sLimit), "<M/>") << sLimit;
        EXPECT_THAT(failures(), HasSubstr("is no whole number from 0 on")) << sLimit;
    }
}

TEST_F(NodeExpressions, AreComputedUntilTheObserverEndsTheExport) {
    const std::string sNode = "<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS' "
                              "Entries='Multiple' h:Rows='Each' h:Where='0' h:Text='{KIND}'/>";
    EXPECT_EQ(in(sNode), "");
    const int lVisits = observer.lVisits;
    EXPECT_GE(lVisits, 2) << "each row that is looked at";
    observer.lVisits = 0;
    observer.lCancelAtVisit = lVisits;
    EXPECT_THAT(in(sNode), HasSubstr("not saved: "));
}

} // namespace

} // namespace halvane::test
