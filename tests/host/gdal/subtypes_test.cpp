#include "SampleData.h"

#include "host/Domains.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Subtypes.h"
#include "host/Workspace.h"
#include "host/gdal/facts/TableDefinition.h"

#include <gmock/gmock.h>
#include <ogrsf_frmts.h>

#include <array>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class Subtypes : public ::testing::Test {
protected:
    host::GisFeatureClassPtr openClass(const std::string& sInside) {
        pDocument = pHost->openMapDocument(folder.write(
            "map.xml",
            "<MapDocument><Map name='M'><FeatureLayer source='city.gpkg' dataset='roads'>" + sInside +
                "</FeatureLayer></Map><Workspace source='city.gpkg'><RangeDomain name='Lanes' min='1' "
                "max='8'/><TextDomain name='Free'/></Workspace></MapDocument>"));
        return std::dynamic_pointer_cast<host::GisFeatureLayer>(pDocument->focusMap()->layer(0))
            ->featureClass();
    }
    // Code and name of each.
    static std::vector<std::string> listOf(const host::GisSubtypes& subtypes) {
        std::vector<std::string> all;
        for (std::int32_t lIndex = 0; lIndex < subtypes.subtypeCount(); ++lIndex) {
            const std::int32_t lCode = subtypes.subtypeCode(lIndex);
            all.push_back(std::to_string(lCode) + " " + subtypes.subtypeName(lCode));
        }
        return all;
    }
    static std::string domainOf(const host::GisSubtypes& subtypes, std::int32_t lCode, const char* pField) {
        const auto pDomain = subtypes.domain(lCode, pField);
        return pDomain == nullptr ? "" : pDomain->name();
    }

    TemporaryFolder folder;
    std::string sCity = makeCity(folder);
    std::shared_ptr<host::gdal::GdalHost> pHost = host::gdal::GdalHost::create();
    host::GisMapDocumentPtr pDocument;
};

TEST_F(Subtypes, OfTheMapDocumentHaveTheirOrderDomainsAndDefaults) {
    const auto pSubtypes =
        openClass("<Field name='LEN' domain='Free' default='7'/>"
                  "<Subtypes field='N' default='20'><Subtype code='10' name='Small'>"
                  "<SubtypeField name='len' domain='Lanes' default='2.5'/></Subtype>"
                  "<Subtype code='20' name='Big'><SubtypeField name='LEN' domain=''/></Subtype>"
                  "<Subtype code='5' name='Odd'/></Subtypes>")
            ->subtypes();
    EXPECT_TRUE(pSubtypes->hasSubtypes());
    EXPECT_EQ(pSubtypes->subtypeFieldName(), "N");
    EXPECT_EQ(pSubtypes->defaultSubtypeCode(), 20);
    EXPECT_THAT(listOf(*pSubtypes), ElementsAre("10 Small", "20 Big", "5 Odd"));
    EXPECT_EQ(domainOf(*pSubtypes, 10, "Len"), "Lanes");
    EXPECT_EQ(domainOf(*pSubtypes, 20, "LEN"), "");
    EXPECT_EQ(domainOf(*pSubtypes, 5, "LEN"), "Free");
    EXPECT_EQ(domainOf(*pSubtypes, 5, "NAME"), "");
    EXPECT_EQ(std::get<double>(pSubtypes->defaultValue(10, "LEN")), 2.5);
    EXPECT_EQ(std::get<double>(pSubtypes->defaultValue(5, "LEN")), 7);
    EXPECT_TRUE(std::holds_alternative<Null>(pSubtypes->defaultValue(5, "NAME")));
    EXPECT_EQ(pSubtypes->subtypeName(99), "");
    EXPECT_NE(failureOf([&] { static_cast<void>(pSubtypes->subtypeCode(3)); }), "");
    EXPECT_THAT(pHost->problems(pDocument), ElementsAre());
}

TEST_F(Subtypes, OfAClassWithoutAnyAnswerForItsFieldsAlone) {
    const auto pSubtypes = openClass("<Field name='LEN' domain='Lanes'/>")->subtypes();
    EXPECT_FALSE(pSubtypes->hasSubtypes());
    EXPECT_EQ(pSubtypes->subtypeCount(), 0);
    EXPECT_EQ(pSubtypes->subtypeFieldName(), "");
    EXPECT_EQ(domainOf(*pSubtypes, 0, "LEN"), "Lanes");
}

TEST_F(Subtypes, OfTheMapDocumentThatDoNotFitTheDataAreProblems) {
    openClass("<Subtypes field='NONE'><Subtype code='1' name='x'/></Subtypes>");
    EXPECT_THAT(pHost->problems(pDocument), ElementsAre(HasSubstr("line 1: there is no field \"NONE\"")));
    openClass(
        "<Subtypes field='N'><Subtype code='1' name='x'><SubtypeField name='LEN' domain='Nil'/></Subtype>"
        "</Subtypes>");
    EXPECT_THAT(pHost->problems(pDocument), ElementsAre(HasSubstr("there is no domain \"Nil\"")));
    openClass("<Field name='LEN' domain='Nil'/>");
    EXPECT_THAT(pHost->problems(pDocument), ElementsAre(HasSubstr("there is no domain \"Nil\"")));
}

class SubtypesOfGeoPackage : public Subtypes {
protected:
    void addSubtypes() {
        runSql(
            sCity,
            {"CREATE TABLE halvane_subtypes (id INTEGER PRIMARY KEY, table_name TEXT NOT NULL, field_name "
             "TEXT "
             "NOT NULL, code INTEGER NOT NULL, name TEXT NOT NULL, is_default INTEGER NOT NULL DEFAULT 0)",
             "CREATE TABLE halvane_subtype_fields (id INTEGER PRIMARY KEY, table_name TEXT NOT NULL, code "
             "INTEGER NOT NULL, field_name TEXT NOT NULL, domain_name TEXT, default_value TEXT)",
             "INSERT INTO halvane_subtypes (table_name, field_name, code, name, is_default) VALUES "
             "('ROADS', 'N', 20, 'Big', 0), ('roads', 'N', 10, 'Small', 1), ('signs', 'KIND', 3, 'no', 0)",
             "INSERT INTO halvane_subtype_fields (table_name, code, field_name, domain_name, default_value) "
             "VALUES ('roads', 10, 'LEN', 'Lanes', '1.5'), ('roads', 20, 'NAME', NULL, 'none')"});
    }
};

TEST_F(SubtypesOfGeoPackage, AreThoseOfItsTwoTables) {
    addSubtypes();
    const auto pSubtypes = openClass("")->subtypes();
    EXPECT_EQ(pSubtypes->subtypeFieldName(), "N");
    EXPECT_EQ(pSubtypes->defaultSubtypeCode(), 10);
    EXPECT_THAT(listOf(*pSubtypes), ElementsAre("20 Big", "10 Small"));
    EXPECT_EQ(domainOf(*pSubtypes, 10, "LEN"), "Lanes");
    EXPECT_EQ(std::get<double>(pSubtypes->defaultValue(10, "LEN")), 1.5);
    EXPECT_EQ(std::get<std::string>(pSubtypes->defaultValue(20, "NAME")), "none");
    EXPECT_EQ(domainOf(*pSubtypes, 20, "NAME"), "");
}

TEST_F(SubtypesOfGeoPackage, MayBeWithoutTheTableOfTheirFields) {
    addSubtypes();
    runSql(sCity, {"DROP TABLE halvane_subtype_fields"});
    const auto pSubtypes = openClass("")->subtypes();
    EXPECT_THAT(listOf(*pSubtypes), ElementsAre("20 Big", "10 Small"));
    EXPECT_EQ(domainOf(*pSubtypes, 10, "LEN"), "");
}

TEST_F(SubtypesOfGeoPackage, WithACodeThatIsNoneAreAFailureThatNamesTheRow) {
    addSubtypes();
    for (const auto& [pCode, pTold] :
         {std::pair{"5000000000", "\"5000000000\""}, {"'abc'", "\"abc\""}, {"1.5", "\"1.5\""}}) {
        runSql(sCity, {std::string("UPDATE halvane_subtypes SET code = ") + pCode + " WHERE id = 2"});
        EXPECT_THAT(failureOf([&] { static_cast<void>(openClass("")->subtypes()); }),
                    HasSubstr(std::string("halvane_subtypes, row 2: the code ") + pTold));
    }
    runSql(sCity, {"UPDATE halvane_subtypes SET code = 10 WHERE id = 2",
                   "UPDATE halvane_subtype_fields SET code = 'x' WHERE id = 2"});
    EXPECT_THAT(failureOf([&] { static_cast<void>(openClass("")->subtypes()); }),
                HasSubstr("halvane_subtype_fields, row 2: the code \"x\""));
}

TEST_F(SubtypesOfGeoPackage, OfTwoFieldsAreAFailureThatNamesTheRow) {
    addSubtypes();
    runSql(sCity, {"UPDATE halvane_subtypes SET field_name = 'SMALL' WHERE id = 2"});
    EXPECT_THAT(failureOf([&] { static_cast<void>(openClass("")->subtypes()); }),
                HasSubstr("halvane_subtypes, row 2: its field \"SMALL\" is not that of the table's first "
                          "subtype, \"N\""));
}

TEST_F(SubtypesOfGeoPackage, GiveWayToTheMapDocuments) {
    addSubtypes();
    EXPECT_THAT(listOf(*openClass("<Subtypes field='N'><Subtype code='1' name='x'/></Subtypes>")->subtypes()),
                ElementsAre("1 x"));
}

TEST_F(SubtypesOfGeoPackage, DoNotMakeTheirTablesDatasets) {
    addSubtypes();
    const auto pMap = pHost->openMapDocument(sCity)->focusMap();
    EXPECT_EQ(pMap->layerCount(), 2);
    EXPECT_EQ(pMap->standaloneTableCount(), 1);
}

TEST(SubtypesOfADefinition, AreReadFromItsMarkup) {
    const auto facts = host::gdal::subtypesOfDefinition(
        "<t:Definition xmlns:t='urn:x'><Name>roads</Name><SubtypeFieldName>KIND</SubtypeFieldName>"
        "<DefaultSubtypeCode>2</DefaultSubtypeCode><Subtypes><Subtype><SubtypeName>Main</SubtypeName>"
        "<SubtypeCode>1</SubtypeCode><FieldInfos><SubtypeFieldInfo><FieldName>W</FieldName>"
        "<DomainName>Width</DomainName><DefaultValue>3</DefaultValue></SubtypeFieldInfo></FieldInfos></"
        "Subtype>"
        "<Subtype><SubtypeName>Side</SubtypeName><SubtypeCode>2</SubtypeCode></Subtype></Subtypes></"
        "t:Definition>");
    ASSERT_TRUE(facts.has_value());
    EXPECT_EQ(facts->sField, "KIND");
    EXPECT_EQ(facts->lDefault, 2);
    ASSERT_EQ(facts->subtypes.size(), 2U);
    EXPECT_EQ(facts->subtypes[0].sName, "Main");
    EXPECT_EQ(facts->subtypes[0].fields.at(0).sDomain, "Width");
    EXPECT_EQ(facts->subtypes[0].fields.at(0).sDefault, "3");
    EXPECT_EQ(facts->subtypes[1].lCode, 2);
    EXPECT_FALSE(host::gdal::subtypesOfDefinition("<Definition><Name>roads</Name></Definition>").has_value());
}

TEST(SubtypesOfADefinition, WithACodeThatIsNoneAreAFailure) {
    for (const char* pCode : {"5000000000", "abc", ""}) {
        EXPECT_THAT(failureOf([&] {
                        static_cast<void>(host::gdal::subtypesOfDefinition(
                            "<D><SubtypeFieldName>N</SubtypeFieldName><Subtypes><Subtype><SubtypeName>x"
                            "</SubtypeName><SubtypeCode>" +
                            std::string(pCode) + "</SubtypeCode></Subtype></Subtypes></D>"));
                    }),
                    HasSubstr("SubtypeCode \"" + std::string(pCode) + "\" is not a whole number"));
    }
}

TEST(SubtypesOfFileDatabaseFolders, AreThoseOfTheTablesDefinition) {
    const TemporaryFolder folder;
    const std::string sPath = convertLayer(makeCity(folder), "roads", folder.file("c.gdb"), "OpenFileGDB");
    {
        const std::array<const char*, 2> aOptions{"LIST_ALL_TABLES=YES", nullptr};
        const GDALDatasetUniquePtr pDataset(
            GDALDataset::Open(sPath.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE, nullptr, aOptions.data()));
        OGRLayer& items = *pDataset->GetLayerByName("GDB_Items");
        ASSERT_EQ(items.SetAttributeFilter("Name = 'roads'"), OGRERR_NONE);
        const OGRFeatureUniquePtr pItem(items.GetNextFeature());
        std::string sDefinition = pItem->GetFieldAsString("Definition");
        const std::size_t nPlace = sDefinition.find("<SpatialReference ");
        ASSERT_NE(nPlace, std::string::npos) << sDefinition;
        sDefinition.insert(nPlace, "<SubtypeFieldName>N</SubtypeFieldName><DefaultSubtypeCode>2"
                                   "</DefaultSubtypeCode><Subtypes><Subtype><SubtypeName>One</SubtypeName>"
                                   "<SubtypeCode>1</SubtypeCode><FieldInfos><SubtypeFieldInfo><FieldName>NAME"
                                   "</FieldName><DefaultValue>first</DefaultValue></SubtypeFieldInfo>"
                                   "</FieldInfos></Subtype><Subtype><SubtypeName>Two</SubtypeName>"
                                   "<SubtypeCode>2</SubtypeCode></Subtype></Subtypes>");
        pItem->SetField("Definition", sDefinition.c_str());
        ASSERT_EQ(items.SetFeature(pItem.get()), OGRERR_NONE);
    }
    const auto pSubtypes = openWorkspace(sPath)->openFeatureClass("roads")->subtypes();
    ASSERT_TRUE(pSubtypes->hasSubtypes());
    EXPECT_EQ(pSubtypes->subtypeFieldName(), "N");
    EXPECT_EQ(pSubtypes->defaultSubtypeCode(), 2);
    EXPECT_EQ(pSubtypes->subtypeCount(), 2);
    EXPECT_EQ(pSubtypes->subtypeName(1), "One");
    EXPECT_EQ(pSubtypes->subtypeName(2), "Two");
    EXPECT_EQ(toText(pSubtypes->defaultValue(1, "NAME")), "first");
}

TEST(SubtypesOfADefinition, AreNoneWhereTheTableHasNone) {
    const TemporaryFolder folder;
    const std::string sPath = convertLayer(makeCity(folder), "roads", folder.file("c.gdb"), "OpenFileGDB");
    EXPECT_FALSE(openWorkspace(sPath)->openFeatureClass("roads")->subtypes()->hasSubtypes());
}

TEST(SubtypesOfPlainData, TakeDefaultsFromTheTable) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    runSql(sCity, {"ALTER TABLE roads ADD COLUMN STATE TEXT DEFAULT 'open'",
                   "ALTER TABLE roads ADD COLUMN Q INTEGER "
                   "DEFAULT 5"});
    const auto pSubtypes = openWorkspace(sCity)->openFeatureClass("roads")->subtypes();
    EXPECT_EQ(toText(pSubtypes->defaultValue(0, "STATE")), "open");
    EXPECT_EQ(toText(pSubtypes->defaultValue(0, "Q")), "5");
}

} // namespace
} // namespace halvane::tests
