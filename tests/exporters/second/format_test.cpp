// h:Format.

#include "base/Text.h"
#include "exporters/second/SecondEditionTest.h"

#include <gmock/gmock.h>

namespace halvane::test {

namespace {

using namespace host;
using namespace host::memory;

class SecondEditionFormats : public SecondEditionTest {
protected:
    /// What a leaf writes of each value of a field: "|" between them.
    std::string written(FieldDefinition field, std::vector<Value> values, const std::string& sAttributes) {
        std::vector<FieldDefinition> fields{memory::field("OID", FieldType::Oid), std::move(field)};
        fields[1].sName = "V";
        const std::string sTable = "VALUES" + std::to_string(++lTables);
        const auto pValues = MemoryTable::make(sTable, std::move(fields));
        for (std::size_t n = 0; n < values.size(); ++n)
            pValues->addRow({static_cast<std::int64_t>(n + 1), values[n]});
        world.pTownMap->addTable(pValues);
        const std::string sAll =
            in("<r DataSource='Table' Identity='TableName' IdentityValue='" + sTable +
               "' Entries='Multiple' h:Omit='Self'>"
               "<v Name='V' DataSource='Record' Identity='FieldName' IdentityValue='V' " +
               sAttributes + "/></r>");
        return failures().empty() ? replaceAll(replaceAll(sAll, "<V>", ""), "</V>", "|") : failures();
    }
    std::string number(double dValue, const std::string& sFormat) {
        return written(field("V", FieldType::Double), {dValue}, "h:Format='" + sFormat + "'");
    }
    std::string date(const Date& date, ValueRole role, const std::string& sFormat) {
        return written(field("V", FieldType::Date).role(role), {date}, "h:Format='" + sFormat + "'");
    }

    int lTables = 0;
};

TEST_F(SecondEditionFormats, WriteNumbersWithoutExponent) {
    EXPECT_EQ(number(1e20, "xs"), "100000000000000000000|");
    EXPECT_EQ(number(1.5e-7, "xs"), "0.00000015|");
    EXPECT_EQ(number(0.1, "xs"), "0.1|");
    EXPECT_EQ(number(-0.0, "xs"), "0|");
    EXPECT_EQ(number(2.0 / 3, "xs' DecimalPlace='2"), "0.67|");
    EXPECT_EQ(written(field("V", FieldType::Single), {0.1F}, "h:Format='xs'"), "0.1|");
    EXPECT_EQ(written(field("V", FieldType::Integer), {std::int32_t{-7}}, "h:Format='xs'"), "-7|");
}

TEST_F(SecondEditionFormats, WriteNumbersByAPattern) {
    EXPECT_EQ(number(1234.5, "0.00"), "1234.50|");
    EXPECT_EQ(number(0.126, "0.##"), "0.13|");
    EXPECT_EQ(number(0.1, "0.0##"), "0.1|");
    EXPECT_EQ(number(7, "000"), "007|");
    EXPECT_EQ(number(0.5, "#.0"), "0.5|");
    EXPECT_EQ(number(-0.001, "0.0"), "0.0|");
    EXPECT_EQ(number(-4.005, "0.00"), "-4.01|") << "rounded as everywhere";
    EXPECT_EQ(number(2.675, "xs' DecimalPlace='2"), "2.68|");
    EXPECT_EQ(number(2.5, "0"), "3|");
    EXPECT_EQ(number(-12.25, "000.0"), "-012.3|");
    EXPECT_EQ(number(2.0 / 3, "0.000' DecimalPlace='1"), "0.667|") << "a pattern goes over DecimalPlace";
    EXPECT_EQ(written(field("V", FieldType::Integer), {std::int32_t{7}}, "h:Format='000.0'"), "007.0|");
}

TEST_F(SecondEditionFormats, WriteDatesAsXmlSchemaDoes) {
    const Date midnight{2024, 5, 1};
    const Date moment{2024, 5, 1, 12, 30, 5, 250, 330};
    EXPECT_EQ(date(midnight, ValueRole::Date, "xs"), "2024-05-01|");
    EXPECT_EQ(date(midnight, ValueRole::DateTime, "xs"), "2024-05-01T00:00:00|");
    EXPECT_EQ(date(midnight, ValueRole::AsTyped, "xs"), "2024-05-01|")
        << "no time that the data does not have";
    EXPECT_EQ(date(moment, ValueRole::DateTime, "xs"), "2024-05-01T12:30:05.25+05:30|");
    EXPECT_EQ(date({2024, 5, 1, 1, 2, 3, 0, 0}, ValueRole::AsTyped, "xs"), "2024-05-01T01:02:03Z|");
    EXPECT_EQ(date({2024, 5, 1, 1, 2, 3, 0, -210}, ValueRole::AsTyped, "xs"), "2024-05-01T01:02:03-03:30|");
    EXPECT_EQ(date({0, 0, 0, 23, 0, 1}, ValueRole::Time, "xs"), "23:00:01|");
    EXPECT_EQ(date({-44, 3, 15}, ValueRole::Date, "xs"), "-0044-03-15|");
}

TEST_F(SecondEditionFormats, WriteDatesByAPattern) {
    const Date moment{2024, 5, 1, 12, 3, 5, 7, 60};
    EXPECT_EQ(date(moment, ValueRole::DateTime, "dd.MM.yyyy HH:mm"), "01.05.2024 12:03|");
    EXPECT_EQ(date(moment, ValueRole::DateTime, "d/M/yy H:m:s.SSSX"), "1/5/24 12:3:5.007+01:00|");
    EXPECT_EQ(written(field("V", FieldType::Date), {moment}, "h:Format=\"yyyy 'at' HH ''\""),
              "2024 at 12 '|");
    EXPECT_EQ(date({0, 0, 0, 23, 0, 1}, ValueRole::Time, "HH.mm"), "23.00|");
    EXPECT_EQ(date({0, 0, 0, 23, 0, 1}, ValueRole::Time, "yyyy"),
              "V: the value is a time without the date that h:Format asks for\n");
}

TEST_F(SecondEditionFormats, WriteBooleansAsWords) {
    EXPECT_EQ(written(field("V", FieldType::SmallInteger).role(ValueRole::Boolean),
                      {std::int32_t{1}, std::int32_t{0}, Null()}, "h:Format='xs'"),
              "true|false|<V/>");
    EXPECT_EQ(written(field("V", FieldType::SmallInteger).role(ValueRole::Boolean), {std::int32_t{1}},
                      "h:Format='0.0'"),
              "1.0|");
}

TEST_F(SecondEditionFormats, AreInheritedAndTheNearestOfAKindWins) {
    EXPECT_EQ(
        inRoads("<g Name='G' h:Format='xs; domain'><n Name='N' h:Text='{OPENED} {WIDTH}' h:Format='0.000'/>"
                "<o Name='O' DataSource='Feature' Identity='FieldName' IdentityValue='WIDTH'/></g>"
                "<n Name='N' h:Text='{OPENED}'/>"),
        "<R><G><N>2001-02-03 7.250</N><O>7.25</O></G><N>02/03/2001</N></R>"
        "<R><G><N> </N><O/></G><N/></R>"
        "<R><G><N>1999-12-31 12.125</N><O>12.125</O></G><N>12/31/1999</N></R>");
}

TEST_F(SecondEditionFormats, WriteWhatExpressionsYieldAndToday) {
    EXPECT_EQ(in("<t Name='T' DataSource='Time' h:Format='yyyyMMdd'/>"), "<T>20261121</T>");
    EXPECT_EQ(in("<n Name='N' h:Text='{1 + 1} {1 / 4.0} {$Item}' h:Format='0.00'/>"), "<N>2.00 0.25 </N>");
}

TEST_F(SecondEditionFormats, NameCodedValues) {
    auto pSubtypes = MemorySubtypes::make("LANES", 2);
    pSubtypes->addSubtype(2, "Street");
    pSubtypes->addSubtype(4, "Avenue");
    const auto pStreet = MemoryDomain::coded("S", FieldType::String, {{std::string("R17"), "Ring"}});
    pSubtypes->setDomain(2, "ROUTE_ID", pStreet);
    world.pRoads->setSubtypes(pSubtypes);
    EXPECT_EQ(inRoads("<n Name='N' h:Text='{ROUTE_ID}' h:Format='domain'/>"
                      "<o Name='O' DataSource='Feature' Identity='FieldName' IdentityValue='ROUTE_ID'/>"),
              "<R><N>Ring</N><O>R17</O></R><R><N>R18</N><O>R18</O></R><R><N>R17</N><O>R17</O></R>");
}

TEST_F(SecondEditionFormats, WriteTheCodeOfARowWhoseSubtypeIsNone) {
    const auto pTable = MemoryFeatureClass::make(
        "KINDS", ShapeType::Point, {field("KIND", FieldType::Integer), field("CODE", FieldType::String)});
    pTable->addRow({std::int64_t{9007199254740993}, std::string("a")});
    pTable->addRow({std::int32_t{1}, std::string("a")});
    auto pSubtypes = MemorySubtypes::make("KIND", 1);
    pSubtypes->addSubtype(1, "First");
    pSubtypes->setDomain(1, "CODE",
                         MemoryDomain::coded("C", FieldType::String, {{std::string("a"), "Name"}}));
    pTable->setSubtypes(pSubtypes);
    world.pTownMap->addLayer(MemoryFeatureLayer::make("Kinds", pTable));
    EXPECT_EQ(
        in("<r Name='R' DataSource='MapLayer' Identity='LayerName' IdentityValue='Kinds' h:Omit='Self'>"
           "<n Name='N' DataSource='Feature' Entries='Multiple' h:Format='domain' h:Text='{CODE}'/></r>"),
        "<N>a</N><N>Name</N>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionFormats, NameMonthsAndDays) {
    EXPECT_EQ(inRoads("<o Name='O' h:Format='EEEE, d MMMM yyyy' h:Text='{OPENED}' h:Omit='Empty'/>"
                      "<s Name='S' h:Format='EEE d MMM' h:Text='{OPENED}' h:Omit='Empty'/>"),
              "<R><O>Saturday, 3 February 2001</O><S>Sat 3 Feb</S></R><R/>"
              "<R><O>Friday, 31 December 1999</O><S>Fri 31 Dec</S></R>");
}

TEST_F(SecondEditionFormats, AreForgottenByNone) {
    const std::string sOpened = "<o Name='O' DataSource='Feature' h:Rows='Each' h:Limit='1' h:Format='xs'>";
    const std::string sValues = "h:Text='{OPENED} {WIDTH + 0.125}'/>";
    const auto written = [&](const std::string& sNode) {
        return in(
            "<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' h:Omit='Self'>" +
            sOpened + sNode + "</o></l>");
    };
    const std::string sFirst = written("<v Name='V' " + sValues);
    EXPECT_EQ(sFirst, "<O><V>2001-02-03 7.375</V></O>");
    EXPECT_EQ(written("<v Name='V' h:Format='none' " + sValues), "<O><V>02/03/2001 7.375</V></O>");
    EXPECT_EQ(written("<g Name='G' h:Format='none; 0.0'><v Name='V' " + sValues + "</g>"),
              "<O><G><V>02/03/2001 7.4</V></G></O>");
}

TEST_F(SecondEditionFormats, AreRefusedWhereTheyAreNone) {
    for (const auto* sFormat :
         {"none;none", "0.0;none", "EEEEE", "EE", "", ";", "xs;0.00", "0.00;0.0", "domain;domain", "iso",
          "YYYY", "yyy", "0,00", "0.", "'open", "...", "xs;yyyy"})
        EXPECT_THAT(in("<a Name='A' h:Text='x' h:Format=\"" + std::string(sFormat) + "\"/>"),
                    ::testing::StartsWith("not saved: h:Format="))
            << sFormat;
    EXPECT_EQ(
        in("<a Name='A' h:Text='x' h:Format='MMMMM yyyy'/>"),
        "not saved: h:Format=\"MMMMM yyyy\": \"MMMMM\" is no part of a format: it is \"xs\", \"domain\", "
        "\"none\", a pattern of numbers as \"0.00\" or of dates as \"yyyy-MM-dd\"; texts stand between "
        "apostrophes");
}

} // namespace

} // namespace halvane::test
