// Values of rows in texts, conditions, keys and formats: those that stand for others, and those without a
// name.

#include "exporters/second/SecondEditionTest.h"

#include <gmock/gmock.h>

namespace halvane::test {

namespace {

using namespace host;
using namespace host::memory;
using ::testing::HasSubstr;

/// Stands for a number of more digits than any other value holds.
class LongNumber final : public Object, public TextHolder {
public:
    explicit LongNumber(std::string sDigits) : sDigits_(std::move(sDigits)) {}
    [[nodiscard]] std::string_view typeName() const override { return "LongNumber"; }
    [[nodiscard]] std::string text() const override { return sDigits_; }

private:
    std::string sDigits_;
};

class RowValues : public SecondEditionTest {
protected:
    static Value longNumber(const std::string& sDigits) {
        return ObjectPtr(std::make_shared<LongNumber>(sDigits));
    }
    void addTable(const MemoryTablePtr& pTable) { world.pTownMap->addTable(pTable); }
    /// Those nodes in each row of a table.
    std::string inRows(const std::string& sTable, const std::string& sNodes,
                       const std::string& sAttributes = "") {
        return in("<r Name='R' DataSource='Table' Identity='TableName' IdentityValue='" + sTable +
                  "' Entries='Multiple' h:Rows='Each' " + sAttributes + ">" + sNodes + "</r>");
    }

    std::int64_t lRows = 0;
};

TEST_F(RowValues, AreTheirTextsWhereTheyStandForOthers) {
    const std::string sDigits = "123456789012345678901234567890.5";
    const auto pSums =
        MemoryTable::make("SUMS", {field("OID", FieldType::Oid), field("SUM", FieldType::String)});
    pSums->addRow({std::int64_t{1}, longNumber(sDigits)});
    pSums->addRow({std::int64_t{2}, longNumber("7")});
    addTable(pSums);
    EXPECT_EQ(inRows("SUMS", "<s Name='S' h:Text='{SUM}'/><l Name='L' h:Text='{SUM} {length(SUM)}'/>"),
              "<R><S>" + sDigits + "</S><L>" + sDigits + " 32</L></R><R><S>7</S><L>7 1</L></R>");
    EXPECT_EQ(inRows("SUMS", "<f Name='F' h:ForEach='Field' h:When='$Item = 2' h:Text='{$Value}'/>"),
              "<R><F>" + sDigits + "</F></R><R><F>7</F></R>");
    EXPECT_EQ(inRows("SUMS", "<o Name='O' DataSource='Table' Identity='TableName' IdentityValue='SUMS' "
                             "h:Rows='Each' h:Where='SUM = {SUM}' h:Text='{OID}'/>"),
              "<R><O>1</O></R><R><O>2</O></R>");
    EXPECT_EQ(inRows("SUMS",
                     "<o Name='O' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SUMS' "
                     "h:Rows='Each' h:Link='SUM=SUM' h:Text='{OID}'/>"),
              "<R/><R/>")
        << "the data tells another text";
    EXPECT_EQ(failures(), "");
}

TEST_F(RowValues, AreKeysByTheTextsThatTheyStandFor) {
    const auto pCodes =
        MemoryTable::make("CODES", {field("OID", FieldType::Oid), field("CODE", FieldType::Blob)});
    pCodes->addRow({std::int64_t{1}, longNumber("11")});
    pCodes->addRow({std::int64_t{2}, longNumber("12")});
    addTable(pCodes);
    EXPECT_EQ(inRows("CODES", "<o Name='O' DataSource='RelatedTable' Identity='LayerName' "
                              "IdentityValue='CODES' h:Rows='Each' h:Link='CODE=CODE' h:Text='{OID}'/>"),
              "<R><O>1</O></R><R><O>2</O></R>");
    EXPECT_EQ(failures(), "");
}

TEST_F(RowValues, AreNoKeysAsShapes) {
    EXPECT_EQ(inRoads("<o Name='O' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' "
                      "h:Rows='Each' h:Link='SHAPE=KIND' h:Text='{KIND}'/>"),
              "<R/><R/><R/>");
    EXPECT_THAT(failures(), HasSubstr("O: "));
}

class NamedCodes : public RowValues {
protected:
    NamedCodes() {
        pSubtypes->setDomain(0, "KIND", domain("of none"));
        world.pRoads->setSubtypes(pSubtypes);
    }
    static MemoryDomainPtr domain(const std::string& sName) {
        return MemoryDomain::coded("D", FieldType::String, {{std::string("R17"), sName}});
    }
    void addSubtype(std::int32_t lCode, const std::string& sName) {
        pSubtypes->addSubtype(lCode, "S");
        pSubtypes->setDomain(lCode, "ROUTE_ID", domain(sName));
    }
    std::string routes() { return inRoads("<n Name='N' h:Format='domain' h:Text='{ROUTE_ID}'/>"); }

    MemorySubtypesPtr pSubtypes = MemorySubtypes::make("LANES", 2);
};

TEST_F(NamedCodes, AreThoseOfTheSubtypeOfTheRow) {
    addSubtype(2, "two lanes");
    addSubtype(4, "four lanes");
    EXPECT_EQ(routes(), "<R><N>two lanes</N></R><R><N>R18</N></R><R><N>four lanes</N></R>");
    world.pRoads->addRow({std::int64_t{4}, Null(), std::string("New"), std::string("R17"), Null()});
    EXPECT_EQ(inRoads("<n Name='N' h:When='OID = 4' h:Format='domain' h:Text='{ROUTE_ID}'/>"),
              "<R/><R/><R/><R><N>two lanes</N></R>")
        << "a row without a subtype is of the default one";
    world.pRoads->addRow(
        {std::int64_t{5}, Null(), std::string("New"), std::string("R17"), std::string("many")});
    EXPECT_EQ(inRoads("<n Name='N' h:When='OID = 5' h:Format='domain' h:Text='{ROUTE_ID}'/>"),
              "<R/><R/><R/><R/><R><N>R17</N></R>")
        << "one of no subtype names no code";
    EXPECT_EQ(failures(), "");
}

TEST_F(NamedCodes, AreThoseOfTheTableWithoutSubtypes) {
    pSubtypes->setDomain(0, "ROUTE_ID", domain("any lanes"));
    EXPECT_EQ(routes(), "<R><N>any lanes</N></R><R><N>R18</N></R><R><N>any lanes</N></R>");
    EXPECT_EQ(inRoads("<n Name='N' h:Format='domain' h:Text='{WIDTH}|{NAME}'/>"),
              "<R><N>7.25|High Street</N></R><R><N>|Mill Lane</N></R><R><N>12.125|Quay</N></R>");
}

TEST_F(NamedCodes, AreNoneWhereTheHostKnowsNoDomains) {
    world.pRoads->setSubtypes(nullptr);
    EXPECT_EQ(routes(), "<R><N>R17</N></R><R><N>R18</N></R><R><N>R17</N></R>");
    EXPECT_EQ(inRows("SIGNS", "<n Name='N' h:Format='domain' h:Text='{ROUTE_ID}'/>"),
              "<R><N>R17</N></R><R><N>R17</N></R>");
    EXPECT_EQ(failures(), "");
}

TEST_F(NamedCodes, AreAskedForAnewAfterOthersHaveActed) {
    pSubtypes->setDomain(0, "ROUTE_ID", domain("any lanes"));
    world.registerSpy("Test.Processor", "done");
    const auto askedFor = [&](const std::string& sBefore) {
        world.pHost->faults().reset();
        EXPECT_THAT(inRoads(sBefore + "<n Name='N' h:Format='domain' h:Text='{ROUTE_ID}'/>"),
                    HasSubstr("<N>any lanes</N>"));
        return world.pHost->faults().callCount("GisSubtypes.domain");
    };
    EXPECT_EQ(askedFor(""), 1);
    EXPECT_EQ(askedFor("<x Name='X' DataSource='External' IdentityValue='Test.Processor'/>"), 3);
}

TEST_F(RowValues, AreWrittenInAFormatThatSaysSomethingOfThem) {
    const auto pAll = MemoryTable::make(
        "ALL", {field("OID", FieldType::Oid), field("B", FieldType::SmallInteger).role(ValueRole::Boolean),
                field("I", FieldType::Integer), field("S", FieldType::Single), field("D", FieldType::Double),
                field("T", FieldType::Date), field("N", FieldType::String)});
    pAll->addRow({std::int64_t{1}, std::int32_t{1}, std::int32_t{7}, 0.5F, 2.25, Date{2001, 2, 3},
                  std::string("text")});
    pAll->addRow({std::int64_t{2}, true, std::int64_t{8}, 0.5F, 2.25, Date{2001, 2, 3}, false});
    addTable(pAll);
    const auto written = [&](const std::string& sFormat) {
        return inRows("ALL",
                      "<n Name='N' h:Format='" + sFormat + "' h:Text='{OID} {B} {I} {S} {D} {T} {N}'/>");
    };
    EXPECT_EQ(written("xs"), "<R><N>1 true 7 0.5 2.25 2001-02-03 text</N></R>"
                             "<R><N>2 true 8 0.5 2.25 2001-02-03 false</N></R>");
    EXPECT_EQ(written("000.0"), "<R><N>1 001.0 007.0 000.5 002.3 02/03/2001 text</N></R>"
                                "<R><N>2 True 008.0 000.5 002.3 02/03/2001 False</N></R>");
    EXPECT_EQ(written("d.M.yy"), "<R><N>1 1 7 0.5 2.25 3.2.01 text</N></R>"
                                 "<R><N>2 True 8 0.5 2.25 3.2.01 False</N></R>");
    EXPECT_EQ(written("none"), "<R><N>1 1 7 0.5 2.25 02/03/2001 text</N></R>"
                               "<R><N>2 True 8 0.5 2.25 02/03/2001 False</N></R>");
}

TEST_F(RowValues, AreTextsThatAreXmlInTheirNamespaces) {
    const auto pTexts =
        MemoryTable::make("TEXTS", {field("OID", FieldType::Oid), field("X", FieldType::String)});
    const auto written = [&](const std::string& sText) {
        pTexts->addRow({std::int64_t{++lRows}, sText});
        return inRows("TEXTS", "<x h:Omit='Self' h:As='xml' h:Text='{X}'/>",
                      "h:Where='OID = " + std::to_string(lRows) + "'");
    };
    addTable(pTexts);
    EXPECT_EQ(written("a<b c='1' xml:lang='de'>d<![CDATA[<e>]]><!-- f --><?g h?></b>i"),
              "<R>a<b c=\"1\" xml:lang=\"de\">d<![CDATA[<e>]]></b>i</R>");
    EXPECT_EQ(written("<b><p:c xmlns:p='urn:p' p:d='1'/></b>"),
              "<R><b><p:c xmlns:p=\"urn:p\" p:d=\"1\"/></b></R>");
    EXPECT_EQ(failures(), "");
    for (const std::string sText : {"<b><p:c/></b>", "<b p:c='1'/>", "<b><p:c xmlns:p='urn:p'/><p:d/></b>"}) {
        EXPECT_EQ(written(sText), "<R/>") << sText;
        EXPECT_THAT(failures(), HasSubstr("XML")) << sText;
        EXPECT_EQ(observer.aFailures.at(0).sContext, "row " + std::to_string(lRows));
    }
    EXPECT_EQ(written("<b>"), "<R/>");
    EXPECT_THAT(failures(), HasSubstr("the text is not well-formed XML"));
    EXPECT_EQ(in("<x Name='X' h:As='xml' h:Text='a &amp; b'/>"), "<X/>");
    EXPECT_THAT(failures(), HasSubstr("the text is not well-formed XML"));
    EXPECT_EQ(observer.aFailures.at(0).sContext, "") << "no row is at hand";
}

TEST_F(RowValues, AreOfNoGroupOfAnotherTable) {
    const std::string sGroup =
        "<l DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' h:Omit='Self'>"
        "<g Name='G' DataSource='Feature' Entries='Multiple' h:Group='ROUTE_ID' h:Limit='1'>";
    EXPECT_EQ(in(sGroup + "<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS' "
                          "h:Rows='Each' h:Text='{KIND}'/></g></l>"),
              "<G><T>Stop</T><T>Yield</T></G>")
        << "all rows of a table that is not grouped";
    EXPECT_EQ(failures(), "");
    EXPECT_EQ(in(sGroup + "<t Name='T' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' "
                          "h:Rows='Each' h:Text='{KIND}'/></g></l>"),
              "<G/>");
    EXPECT_EQ(failures(), "T: no group of rows of this table is at hand\n");
}

TEST_F(RowValues, AreOfNoTableThatIsNotThere) {
    EXPECT_EQ(inRows("NONE", ""), "");
    EXPECT_TRUE(observer.noticed("R", Notice::NoCurrentTable));
    EXPECT_EQ(inRoads("<t Name='T' DataSource='RelatedTable' Identity='LayerName' IdentityValue='NONE' "
                      "h:Rows='Each' h:Link='NAME=NAME' h:Text='{KIND}'/>"),
              "<R/><R/><R/>");
    EXPECT_FALSE(observer.aNotices.empty());
    EXPECT_EQ(in("<f Name='F' DataSource='Feature' h:Rows='Each' h:Text='{NAME}'/>"), "");
    EXPECT_TRUE(observer.noticed("F", Notice::NoCurrentLayer));
    EXPECT_EQ(failures(), "");
}

TEST_F(RowValues, EndWhereTheLimitOfItemsIsPassed) {
    state.options.lItemLimit = 1;
    const std::string sWritten = inRows("SIGNS", "<k Name='K' h:Text='{KIND}'/>");
    EXPECT_THAT(sWritten, HasSubstr("<K>Stop</K>"));
    EXPECT_EQ(failures(), "R: Overflow: more items than the limit allows\n");
}

} // namespace

} // namespace halvane::test
