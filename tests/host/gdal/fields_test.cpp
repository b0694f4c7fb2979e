#include "SampleData.h"

#include "host/Workspace.h"
#include "host/gdal/facts/Fields.h"

#include "base/Failure.h"

#include <gmock/gmock.h>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;

std::vector<std::int32_t> typeCodes(const host::GisFields& fields) {
    std::vector<std::int32_t> all;
    for (std::int32_t lIndex = 0; lIndex < fields.count(); ++lIndex)
        all.push_back(fields.field(lIndex).typeCode());
    return all;
}

class Fields : public ::testing::Test {
protected:
    TemporaryFolder folder;
    std::string sCity = makeCity(folder);
    host::GisWorkspacePtr pWorkspace = openWorkspace(sCity);
    host::GisFieldsPtr pRoads = pWorkspace->openFeatureClass("roads")->fields();
};

TEST_F(Fields, OfAFeatureClassBeginWithTheObjectIdentifierAndTheGeometry) {
    EXPECT_EQ(pRoads->field(0).name(), "fid");
    EXPECT_EQ(pRoads->field(0).typeCode(), 6);
    EXPECT_EQ(pRoads->field(1).name(), "geom");
    EXPECT_EQ(pRoads->field(1).typeCode(), 7);
    EXPECT_EQ(pRoads->field(2).name(), "NAME");
    EXPECT_EQ(pRoads->count(), 12);
}

TEST_F(Fields, OfATableHaveNoGeometry) {
    const host::GisFieldsPtr pNotes = pWorkspace->openTable("notes")->fields();
    EXPECT_EQ(pNotes->count(), 3);
    EXPECT_EQ(pNotes->field(0).typeCode(), 6);
    EXPECT_EQ(pNotes->field(1).name(), "ROAD");
}

TEST_F(Fields, HaveTheTypeCodeOfTheirValues) {
    EXPECT_THAT(typeCodes(*pRoads), ElementsAre(6, 7, 4, 1, 1, 3, 2, 0, 0, 5, 5, 8));
}

TEST_F(Fields, TellTheirLengthWhereTheFormatKnowsIt) {
    EXPECT_EQ(pRoads->field(2).length(), 30);
    EXPECT_EQ(pRoads->field(3).length(), 0);
}

TEST(FieldNames, ThatDifferInCaseOnlyAreAllTheFirstOfThem) {
    std::vector<host::gdal::FieldFacts> facts(3);
    facts[0].sName = "Name";
    facts[1].sName = "NAME";
    facts[1].sAlias = "other";
    facts[2].sName = "Third";
    facts[2].sAlias = "Other";
    const host::gdal::GdalFields fields(facts);
    for (const char* pName : {"Name", "NAME", "name"}) {
        EXPECT_EQ(fields.findField(pName), 0) << pName;
    }
    for (const char* pAlias : {"other", "Other", "OTHER", "oTHER"}) {
        EXPECT_EQ(fields.findFieldByAliasName(pAlias), 1) << pAlias;
    }
    EXPECT_EQ(fields.findField("third"), 2);
    EXPECT_EQ(fields.findField("fourth"), -1);
}

TEST_F(Fields, TakeTheirAliasFromAGeoPackagesColumnTable) {
    runSql(sCity, {"CREATE TABLE IF NOT EXISTS gpkg_data_columns (table_name TEXT NOT NULL, column_name TEXT "
                   "NOT NULL, name TEXT, title TEXT, description TEXT, mime_type TEXT, constraint_name TEXT)",
                   "INSERT INTO gpkg_data_columns (table_name, column_name, name, title) VALUES "
                   "('roads', 'NAME', 'x', 'Road name'), ('roads', 'N', 'Number', NULL), "
                   "('signs', 'LEN', 'wrong', 'wrong')"});
    const host::GisFieldsPtr pFields = openWorkspace(sCity)->openFeatureClass("roads")->fields();
    EXPECT_EQ(pFields->field(2).aliasName(), "Road name");
    EXPECT_EQ(pFields->field(3).aliasName(), "Number");
    EXPECT_EQ(pFields->field(5).aliasName(), "LEN");
    EXPECT_EQ(pFields->findFieldByAliasName("ROAD NAME"), 2);
    EXPECT_EQ(pFields->findFieldByAliasName("NAME"), -1);
}

TEST_F(Fields, AreNamedByUsWhereTheFormatNamesNeitherIdentifierNorGeometry) {
    folder.write("points.geojson",
                 R"({"type":"FeatureCollection","features":[{"type":"Feature",)"
                 R"("properties":{"a":1},"geometry":{"type":"Point","coordinates":[1,2]}}]})");
    const host::GisFieldsPtr pFields =
        openWorkspace(folder.file("points.geojson"))->openFeatureClass("points")->fields();
    EXPECT_EQ(pFields->field(0).name(), "OID");
    EXPECT_EQ(pFields->field(1).name(), "SHAPE");
}

TEST_F(Fields, OfOursNeverHideAnAttributeOfTheSameName) {
    const std::string sPath = folder.write("t.csv", "oid,v\n77,x\n");
    const host::GisTablePtr pTable = openWorkspace(sPath)->openTable("t");
    EXPECT_EQ(pTable->fields()->field(0).name(), "OID_1");
    EXPECT_THAT(texts(*pTable, "OID"), ElementsAre("77"));
}

TEST_F(Fields, AreAllThereHoweverManyThereAre) {
    constexpr int lMany = 2100; // a driver's own limit is 2,000
    std::string sNames = "C0";
    std::string sValues = "0";
    for (int n = 1; n < lMany; ++n) {
        sNames += ",C" + std::to_string(n);
        sValues += "," + std::to_string(n);
    }
    const host::GisTablePtr pTable =
        openWorkspace(folder.write("wide.csv", sNames + "\n" + sValues + "\n"))->openTable("wide");
    EXPECT_EQ(pTable->fields()->count(), lMany + 1);
    EXPECT_THAT(texts(*pTable, "C2099"), ElementsAre("2099"));
}

std::string pointWith(const std::string& sProperties) {
    return R"({"type":"Feature","properties":)" + sProperties +
           R"(,"geometry":{"type":"Point","coordinates":[1,2]}})";
}

TEST_F(Fields, NeverShareAName) {
    const std::string sPath =
        folder.write("t.geojson", R"({"type":"FeatureCollection","features":[)" +
                                      pointWith(R"({"A":1,"a":2,"B":3,"A_1":4,"OID":5,"Oid_1":6})") + "]}");
    const auto pClass = openWorkspace(sPath)->openFeatureClass("t");
    const host::GisFieldsPtr pFields = pClass->fields();
    std::vector<std::string> names;
    std::string sValues;
    for (std::int32_t lIndex = 0; lIndex < pFields->count(); ++lIndex) {
        const std::string sName(pFields->field(lIndex).name());
        names.push_back(sName);
        EXPECT_EQ(pFields->findField(sName), lIndex) << sName;
        sValues += lIndex < 2 ? "" : texts(*pClass, sName).at(0);
    }
    EXPECT_THAT(names, ElementsAre("OID_2", "SHAPE", "A", "a_2", "B", "A_1", "OID", "Oid_1"));
    EXPECT_EQ(sValues, "123456");
    EXPECT_EQ(pFields->field(3).aliasName(), "a");
    EXPECT_EQ(pFields->field(2).aliasName(), "A");
}

TEST_F(Fields, AreNamedByUsWhereTheFormatNamesTheIdentifierAsAnAttribute) {
    // The library takes the identifiers from an attribute "id" of whole numbers.
    const std::string sPath = folder.write("ids.geojson", R"({"type":"FeatureCollection","features":[)" +
                                                              pointWith(R"({"id":12,"n":1})") + "," +
                                                              pointWith(R"({"id":7,"n":2})") + "]}");
    const auto pClass = openWorkspace(sPath)->openFeatureClass("ids");
    const host::GisFieldsPtr pFields = pClass->fields();
    EXPECT_EQ(pFields->field(0).name(), "OID");
    EXPECT_EQ(pFields->findField("id"), 2);
    EXPECT_EQ(pFields->field(2).typeCode(), 1);
    EXPECT_THAT(texts(*pClass, "id"), ::testing::UnorderedElementsAre("12", "7"));
    EXPECT_THAT(texts(*pClass, "n", "id = 7"), ElementsAre("2"));
}

} // namespace
} // namespace halvane::tests
