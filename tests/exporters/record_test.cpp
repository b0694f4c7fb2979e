// The fields of one row, and the texts of values.

#include "support/ExportTest.h"

#include "host/Tables.h"

#include <gtest/gtest.h>

#include <deque>
#include <optional>
#include <string_view>

namespace halvane::test {
namespace {

class RecordTest : public ExportTest {
protected:
    RecordTest() {
        state.oOutputManager = std::make_unique<ClsXMLManager>();
        state.oOutputManager->setDOMDoc(dom::Document::create());
        state.pFeatureLayer = world.pRoadsLayer;
        state.pTable = world.pSigns;
    }

    const ControlNode& parseRecord(const std::string& sXml) {
        return aControls.emplace_back(state, sXml).root();
    }
    static GisRowPtr rowOf(host::GisTable& table, int lPosition) {
        const auto pCursor = table.search(nullptr);
        GisRowPtr pRow;
        for (int i = 0; i <= lPosition; ++i)
            pRow = pCursor->nextRow();
        return pRow;
    }
    std::string road(const std::string& sXml, int lPosition = 0) {
        Node oOut = state.oOutputManager->CreateNode("Out", nullptr, 1);
        ExportFeatureRecord(state, parseRecord(sXml), oOut, rowOf(*world.pRoads, lPosition));
        return oOut.xml();
    }
    std::string sign(const std::string& sXml, std::int32_t lDecimals = 0, int lPosition = 0) {
        Node oOut = state.oOutputManager->CreateNode("Out", nullptr, 1);
        ExportTableRecord(state, parseRecord(sXml), oOut, rowOf(*world.pSigns, lPosition), lDecimals);
        return oOut.xml();
    }

    std::deque<ControlText> aControls;
    dom::DocumentPtr oTags;
};

TEST_F(RecordTest, WritesOneNodePerChildAsElementOrAttribute) {
    EXPECT_EQ(road("<r><a Name='The Name' IdentityValue='name'/><b Name='lanes' Target='Attribute' "
                   "IdentityValue='LANES'/></r>"),
              "<Out lanes=\"2\"><TheName>High Street</TheName></Out>");
}

TEST_F(RecordTest, ReadsOnlyTheChildsOwnIdentityValue) {
    EXPECT_EQ(road("<r IdentityValue='NAME'><a Name='A'/></r>"), "<Out><A/></Out>");
}

TEST_F(RecordTest, WritesAFeaturesObjectIdentifierForOidInAnyLetterCase) {
    EXPECT_EQ(road("<r><a Name='A' IdentityValue='objectid'/><b Name='B' IdentityValue='Oid'/></r>", 2),
              "<Out><A>3</A><B>3</B></Out>");
}

TEST_F(RecordTest, NoticesAnAttributeOfTheIdentifiersNameOnceForItsFields) {
    road("<r><a Name='A' IdentityValue='OID'/></r>");
    EXPECT_TRUE(observer.aNotices.empty());
    const auto pOdd =
        host::memory::MemoryFeatureClass::make("ODD", host::ShapeType::Point,
                                               {host::memory::field("ObjectID", host::FieldType::Integer),
                                                host::memory::field("FID", host::FieldType::Oid)});
    pOdd->addRow({std::int32_t{70}, std::int64_t{1}});
    pOdd->addRow({std::int32_t{80}, std::int64_t{2}});
    const ControlNode& record = parseRecord("<r><a Name='A' IdentityValue='OBJECTID'/></r>");
    Node oOut = state.oOutputManager->CreateNode("Out", nullptr, 1);
    for (const int lPosition : {0, 1})
        ExportFeatureRecord(state, record, oOut, rowOf(*pOdd, lPosition));
    EXPECT_EQ(oOut.xml(), "<Out><A>1</A><A>2</A></Out>");
    ASSERT_EQ(observer.aNotices.size(), 1U);
    EXPECT_EQ(observer.aNotices.front().notice, Notice::IdentifierWritten);
    EXPECT_EQ(observer.aNotices.front().sDetail, "OBJECTID");
}

TEST_F(RecordTest, LooksObjectidUpAsAnOrdinaryFieldInATable) {
    EXPECT_EQ(sign("<r><a Name='A' IdentityValue='objectid'/><b Name='B' IdentityValue='OID'/></r>"),
              "<Out><A/><B>1</B></Out>");
}

TEST_F(RecordTest, FormatsFloatingPointFieldsWithTheRecordNodesOwnDecimalPlaces) {
    EXPECT_EQ(road("<r DecimalPlace='1'><a Name='A' IdentityValue='WIDTH'/></r>"), "<Out><A>7.3</A></Out>");
    EXPECT_EQ(road("<r DecimalPlace=' 1.5 '><a Name='A' IdentityValue='WIDTH' DecimalPlace='0'/></r>"),
              "<Out><A>7.25</A></Out>")
        << "1.5 is rounded to 2";
}

TEST_F(RecordTest, FormatsWithFifteenDecimalsForDecimalPlacesThatAreNoNumber) {
    EXPECT_EQ(road("<r DecimalPlace='abc'><a Name='A' IdentityValue='WIDTH'/></r>", 2),
              "<Out><A>12.125</A></Out>");
}

TEST_F(RecordTest, FormatsATablesFieldsWithTheDecimalPlacesOfItsCaller) {
    EXPECT_EQ(sign("<r DecimalPlace='2'><a Name='A' IdentityValue='HEIGHT'/></r>", 1),
              "<Out><A>2.5</A></Out>");
    EXPECT_EQ(world.pHost->numericFormats().back(), (std::array<std::int32_t, 7>{1, 0, 15, 1, 0, 0, 0}));
}

TEST_F(RecordTest, WritesAnEmptyElementOrAttributeForNull) {
    EXPECT_EQ(
        road("<r><a Name='A' IdentityValue='WIDTH'/><b Name='b' Target='Attribute' IdentityValue='WIDTH'/>"
             "<c Name='C' IdentityValue='OPENED'/></r>",
             1),
        "<Out b=\"\"><A/><C/></Out>");
}

TEST_F(RecordTest, WritesWholeNumbersAndTextsUnformatted) {
    EXPECT_EQ(road("<r DecimalPlace='1'><a Name='A' IdentityValue='LANES'/><b Name='B' "
                   "IdentityValue='ROUTE_ID'/></r>"),
              "<Out><A>2</A><B>R17</B></Out>");
}

TEST_F(RecordTest, FindsAFieldByTheAliasFiledForItsTag) {
    oTags = dom::Document::create();
    ASSERT_TRUE(oTags->loadXML(
        "<l><QvFields><QvField TagName='Other' Alias='Lanes'/>"
        "<QvField TagName='Title' Alias='Street name'/><QvField TagName='TITLE' Alias='Lanes'/>"
        "</QvFields></l>"));
    state.oSharedNode = oTags->documentElement();
    EXPECT_EQ(road("<r><a Name='A' Identity='TagName' IdentityValue='tItLe'/></r>"),
              "<Out><A>High Street</A></Out>");
}

TEST_F(RecordTest, LooksATagWithoutAnEntryUpByAnEmptyAlias) {
    EXPECT_EQ(road("<r><a Name='A' Identity='TagName' IdentityValue='Title'/></r>"), "<Out><A/></Out>");
    EXPECT_TRUE(observer.noticed("a", Notice::FieldNotFound) || observer.noticed("A", Notice::FieldNotFound));
}

TEST_F(RecordTest, ReturnsAnAliasExactlyAsWritten) {
    oTags = dom::Document::create();
    ASSERT_TRUE(oTags->loadXML("<l><QvFields><QvField TagName='T' Alias=' Mixed Case '/></QvFields></l>"));
    EXPECT_EQ(LookupFieldAlias(state, oTags->documentElement(), "t"), " Mixed Case ");
    EXPECT_EQ(LookupFieldAlias(state, oTags->documentElement(), "u"), "");
    EXPECT_EQ(LookupFieldAlias(state, Node(), "t"), "");
}

TEST_F(RecordTest, SkipsTheRemainingChildrenAfterAFailure) {
    world.pHost->faults().failAt("value");
    EXPECT_EQ(road("<r><a Name='A' IdentityValue='OID'/><b Name='B' IdentityValue='NAME'/><c Name='C' "
                   "IdentityValue='OID'/></r>"),
              "<Out><A>1</A></Out>");
    EXPECT_NE(state.lModErrNum, 0);
}

TEST_F(RecordTest, DoesNothingWithoutARowOrItsLayerOrTable) {
    Node oOut = state.oOutputManager->CreateNode("Out", nullptr, 1);
    const ControlNode& oRecord = parseRecord("<r><a Name='A' IdentityValue='NAME'/></r>");
    ExportFeatureRecord(state, oRecord, oOut, nullptr);
    ExportTableRecord(state, oRecord, oOut, nullptr, 0);
    state.pFeatureLayer.reset();
    ExportFeatureRecord(state, oRecord, oOut, rowOf(*world.pRoads, 0));
    state.pTable.reset();
    ExportTableRecord(state, oRecord, oOut, rowOf(*world.pSigns, 0), 0);
    EXPECT_EQ(oOut.xml(), "<Out/>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(RecordTest, ConfiguresTheHostsNumberFormatWithSevenSettings) {
    (void)FormatNumber(state, 1.5, 3);
    EXPECT_EQ(world.pHost->numericFormats().back(), (std::array<std::int32_t, 7>{1, 0, 15, 3, 0, 0, 0}));
}

TEST_F(RecordTest, ConfiguresTheHostsNumberFormatOnlyWhereItMayHaveChanged) {
    const auto timesConfigured = [&] {
        return world.pHost->faults().callCount("GisNumericFormat.configure");
    };
    const std::string sWidth = "<r DecimalPlace='2'><a Name='A' IdentityValue='WIDTH'/></r>";
    road(sWidth);
    road(sWidth, 2);
    EXPECT_EQ(timesConfigured(), 1);
    road("<r DecimalPlace='3'><a Name='A' IdentityValue='WIDTH'/></r>");
    EXPECT_EQ(timesConfigured(), 2) << "for other decimal places";
    ++state.nGeneration;
    road("<r DecimalPlace='3'><a Name='A' IdentityValue='WIDTH'/></r>");
    EXPECT_EQ(timesConfigured(), 3) << "after somebody else has acted";
}

TEST_F(RecordTest, FindsAFieldOnceUntilTheHostMayHaveChanged) {
    FoundField found;
    const auto timesLookedFor = [&] {
        (void)RecordFieldText(state, *rowOf(*world.pRoads, 0), "", "NAME", 0, found);
        return world.pHost->faults().callCount("GisFields.findField");
    };
    EXPECT_EQ(timesLookedFor(), 1);
    EXPECT_EQ(timesLookedFor(), 1);
    ++state.nGeneration;
    EXPECT_EQ(timesLookedFor(), 2);
    oTags = dom::Document::create();
    ASSERT_TRUE(oTags->loadXML("<v><q TagName='Street' Alias='NAME'/></v>"));
    state.oSharedNode = oTags->documentElement().firstChild();
    EXPECT_EQ(timesLookedFor(), 3) << "under another tag a field may have another name";
    EXPECT_EQ(timesLookedFor(), 3);
}

TEST_F(RecordTest, LeavesNumbersUnescapedWhereTheirFormatYieldsPlainTextsAlone) {
    EXPECT_EQ(FormatNumber(state, 12.5, 3).kind, TextKind::Any) << "this host's format promises nothing";
    state.bNumericTextsPlain = true;
    EXPECT_EQ(FormatNumber(state, 12.5, 3).kind, TextKind::Plain);
    ++state.nGeneration;
    EXPECT_EQ(FormatNumber(state, 12.5, 3).kind, TextKind::Any) << "the format is asked anew";
}

/// Remembers whether the last missing field was looked for by its tag.
class HearsOfMissingFields : public RecordingObserver {
public:
    void nodeNoticed(dom::Node /*oControlNode*/, Notice notice, std::string_view /*sDetail*/,
                     const Surroundings& around) override {
        if (notice == Notice::FieldNotFound)
            byTag = around.bByTag;
    }
    std::optional<bool> byTag;
};

TEST_F(RecordTest, TellsWhetherAMissingFieldWasLookedForByItsTag) {
    HearsOfMissingFields hearing;
    state.options.pObserver = &hearing;
    road("<r><a Name='A' IdentityValue='Nowhere'/></r>");
    EXPECT_EQ(hearing.byTag, false);
    road("<r><a Name='A' Identity='TagName' IdentityValue='Nowhere'/></r>");
    EXPECT_EQ(hearing.byTag, true);
}

/// Fails in the middle of a number.
class HalfFormat : public host::GisNumericFormat {
public:
    void configure(const std::array<std::int32_t, 7>& /*aSettings*/) override {}
    [[nodiscard]] std::string valueToText(double /*dValue*/) const override { return {}; }
    void appendValue(std::string& sText, double /*dValue*/) const override {
        sText.append("12");
        throw Failure::of(FailureNumber::Overflow);
    }
};

TEST_F(RecordTest, WritesNothingOfANumberWhoseFormatFailsOnTheWay) {
    state.pNumericFormat = std::make_shared<HalfFormat>();
    state.lNumericFormatDecimals = 3;
    state.nNumericFormatGeneration = state.nGeneration;
    EXPECT_EQ(FormatNumber(state, 12.5, 3).sText, "");
    EXPECT_EQ(state.lModErrNum, 6);
}

TEST_F(RecordTest, AsksForFifteenDecimalsWhenNoneAreGiven) {
    (void)FormatNumber(state, 1.5, 0);
    EXPECT_EQ(world.pHost->numericFormats().back(), (std::array<std::int32_t, 7>{1, 0, 15, 15, 0, 0, 0}));
    EXPECT_EQ(FormatNumber(state, 1.0 / 3.0, 0).sText, "0.333333333333333");
}

TEST_F(RecordTest, FormatsSinglePrecisionFields) {
    auto pTable = host::memory::MemoryTable::make("T", {host::memory::field("F", host::FieldType::Single)});
    pTable->addRow({2.375F});
    const auto pRow = rowOf(*pTable, 0);
    FoundField found;
    EXPECT_EQ(RecordFieldText(state, *pRow, "", "F", 1, found).sText, "2.4");
}

TEST_F(RecordTest, RecordsAFailingNumberFormatAndGoesOnWithAnEmptyValue) {
    world.pHost->faults().failAt("newNumericFormat");
    EXPECT_EQ(road("<r><a Name='A' IdentityValue='WIDTH'/><b Name='B' IdentityValue='NAME'/></r>"),
              "<Out><A/><B>High Street</B></Out>");
    EXPECT_NE(state.lModErrNum, 0);
}

TEST_F(RecordTest, GivesNoAliasUnderANodeWithoutFields) {
    oTags = dom::Document::create();
    ASSERT_TRUE(oTags->loadXML("<l>text</l>"));
    EXPECT_EQ(LookupFieldAlias(state, oTags->documentElement().firstChild(), "t"), "");
}

TEST_F(RecordTest, FormatsWhateverNumberAFloatingPointFieldHolds) {
    const auto pHeights =
        host::memory::MemoryTable::make("HEIGHTS", {host::memory::field("S", host::FieldType::Single),
                                                    host::memory::field("D", host::FieldType::Double)});
    pHeights->addRow({2.5F, 7.25});
    pHeights->addRow({std::int32_t{3}, std::string("4.5")});
    std::string sTexts;
    for (const int lPosition : {0, 1}) {
        Node oOut = state.oOutputManager->CreateNode("Out", nullptr, 1);
        ExportTableRecord(
            state, parseRecord("<r><a Name='S' IdentityValue='S'/><b Name='D' IdentityValue='D'/></r>"), oOut,
            rowOf(*pHeights, lPosition), 1);
        sTexts += oOut.xml();
    }
    EXPECT_EQ(sTexts, "<Out><S>2.5</S><D>7.3</D></Out><Out><S>3</S><D>4.5</D></Out>");
}

TEST_F(RecordTest, EndsAtAChildWhoseNameXmlDoesNotAllow) {
    EXPECT_EQ(road("<r><a Name='N' IdentityValue='LANES'/><b Name='1' IdentityValue='NAME'/>"
                   "<c Name='C' IdentityValue='NAME'/></r>"),
              "<Out><N>2</N></Out>");
    EXPECT_EQ(state.lModErrNum, static_cast<std::int32_t>(FailureNumber::ObjectVariableNotSet));
}

} // namespace
} // namespace halvane::test
