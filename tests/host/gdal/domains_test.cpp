#include "SampleData.h"

#include "base/Failure.h"
#include "host/Domains.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Subtypes.h"
#include "host/Workspace.h"
#include "host/gdal/facts/Values.h"

#include <cpl_conv.h>
#include <gmock/gmock.h>
#include <ogrsf_frmts.h>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::string boundText(const Value& value) {
    return toText(value) + (std::holds_alternative<double>(value) ? " double" : "");
}

// One line for each domain.
std::vector<std::string> domainsOf(host::GisWorkspace& workspace) {
    std::vector<std::string> all;
    const auto pRole = workspace.domainsRole();
    if (pRole == nullptr)
        return all;
    const auto pDomains = pRole->domains();
    while (const auto pDomain = pDomains->next()) {
        std::string sLine = pDomain->name() + "/" + std::to_string(pDomain->domainType()) + "/" +
                            std::to_string(pDomain->fieldType());
        if (pDomain->domainType() == 1)
            sLine += " " + boundText(pDomain->minValue()) + ".." + boundText(pDomain->maxValue());
        for (std::int32_t lIndex = 0; lIndex < pDomain->codeCount(); ++lIndex)
            sLine += " " + toText(pDomain->code(lIndex).vCode) + "=" + pDomain->code(lIndex).sName;
        all.push_back(sLine);
    }
    return all;
}

void addDomains(const std::string& sFile) {
    const GDALDatasetUniquePtr pDataset(GDALDataset::Open(sFile.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
    std::string sReason;
    std::vector<OGRCodedValue> codes;
    for (const auto& [pCode, pName] : {std::pair{"10", "ten"}, {"2", "two"}, {"1", "one"}})
        codes.push_back({CPLStrdup(pCode), CPLStrdup(pName)});
    ASSERT_TRUE(pDataset->AddFieldDomain(
        std::make_unique<OGRCodedFieldDomain>("Kind", "", OFTInteger, OFSTNone, std::move(codes)), sReason));
    OGRField lower{};
    OGRField upper{};
    lower.Integer = 1;
    upper.Integer = 8;
    ASSERT_TRUE(
        pDataset->AddFieldDomain(std::make_unique<OGRRangeFieldDomain>("Lanes", "how many", OFTInteger,
                                                                       OFSTNone, lower, true, upper, true),
                                 sReason));
}

TEST(DomainsOfGeoPackage, KeepTheOrderOfTheirDefinitionAndTheTypeOfTheirField) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    addDomains(sCity);
    runSql(sCity, {"INSERT INTO gpkg_data_column_constraints (constraint_name, constraint_type, value, min, "
                   "min_is_inclusive, max, max_is_inclusive, description) VALUES "
                   "('Share', 'range', NULL, 0.5, 1, 2.5, 1, 'a part'), "
                   "('Plate', 'glob', '[A-Z]*', NULL, NULL, NULL, NULL, 'letters'), "
                   "('Letter', 'enum', 'b', NULL, NULL, NULL, NULL, 'B'), "
                   "('Letter', 'enum', 'a', NULL, NULL, NULL, NULL, 'A')",
                   "INSERT INTO gpkg_data_columns (table_name, column_name, name, constraint_name) VALUES "
                   "('roads', 'LEN', 'LEN', 'Lanes')"});
    EXPECT_THAT(domainsOf(*openWorkspace(sCity)),
                ElementsAre("Kind/2/1 10=ten 2=two 1=one", "Lanes/1/3 1 double..8 double",
                            "Share/1/3 0.5 double..2.5 double", "Plate/3/4", "Letter/2/4 b=B a=A"));
}

// Rows of the table of constraints, and the fields of "roads" that use them.
std::string cityWith(const TemporaryFolder& folder, const std::string& sConstraints,
                     const std::string& sUsers) {
    const std::string sCity = makeCity(folder);
    addDomains(sCity);
    runSql(sCity, {"DELETE FROM gpkg_data_column_constraints", "DELETE FROM gpkg_data_columns",
                   "INSERT INTO gpkg_data_column_constraints (constraint_name, constraint_type, value, min, "
                   "min_is_inclusive, max, max_is_inclusive) VALUES " +
                       sConstraints});
    if (!sUsers.empty()) {
        runSql(sCity,
               {"INSERT INTO gpkg_data_columns (table_name, column_name, name, constraint_name) VALUES " +
                sUsers});
    }
    return sCity;
}

TEST(DomainsOfGeoPackage, KeepBoundsThatADoubleCannotHold) {
    const TemporaryFolder folder;
    const std::string sCity =
        cityWith(folder,
                 "('Day', 'range', NULL, '2020-01-02', 1, '2020-12-31', 1), "
                 "('Moment', 'range', NULL, '2020-01-02T03:04:05Z', 1, NULL, 1), "
                 "('Large', 'range', NULL, -9223372036854775807, 1, 9223372036854775807, 1), "
                 "('Part', 'range', NULL, 0.1, 1, 0.30000000000000004, 1), "
                 "('Free', 'range', NULL, 0.5, 1, NULL, 1)",
                 "('roads', 'BUILT', 'a', 'Day'), ('roads', 'SEEN', 'b', 'Moment'), ('roads', 'BIG', 'c', "
                 "'Large')");
    EXPECT_THAT(domainsOf(*openWorkspace(sCity)),
                ElementsAre("Day/1/5 01/02/2020..12/31/2020", "Moment/1/5 01/02/2020..",
                            "Large/1/1 -9223372036854775807..9223372036854775807",
                            "Part/1/3 0.1 double..0.3 double", "Free/1/3 0.5 double.."));
    const auto pDomains = openWorkspace(sCity)->domainsRole()->domains();
    static_cast<void>(pDomains->next());
    EXPECT_EQ(std::get<Date>(pDomains->next()->minValue()), (Date{2020, 1, 2, 3, 4, 5}));
    static_cast<void>(pDomains->next());
    const auto pPart = pDomains->next();
    EXPECT_EQ(std::get<double>(pPart->minValue()), 0.1);
    EXPECT_EQ(std::get<double>(pPart->maxValue()), 0.1 + 0.2);
    EXPECT_TRUE(std::holds_alternative<Null>(pDomains->next()->maxValue()));
}

TEST(DomainsOfGeoPackage, ThatNoFieldUsesKeepTheirCodesAsTheyAreWritten) {
    const TemporaryFolder folder;
    const std::string sCity = cityWith(folder,
                                       "('Padded', 'enum', '007', NULL, NULL, NULL, NULL), "
                                       "('Padded', 'enum', '8', NULL, NULL, NULL, NULL), "
                                       "('Point', 'enum', '1.0', NULL, NULL, NULL, NULL), "
                                       "('Whole', 'enum', '-12', NULL, NULL, NULL, NULL), "
                                       "('Text', 'enum', 'x', NULL, NULL, NULL, NULL)",
                                       "");
    EXPECT_THAT(domainsOf(*openWorkspace(sCity)),
                ElementsAre("Padded/2/4 007= 8=", "Point/2/4 1.0=", "Whole/2/1 -12=", "Text/2/4 x="));
}

TEST(DomainsOfGeoPackage, HaveCodesOfTheTypeOfTheFieldThatUsesThem) {
    const TemporaryFolder folder;
    const std::string sCity = cityWith(folder,
                                       "('Day', 'enum', '2020-01-02', NULL, NULL, NULL, NULL), "
                                       "('Length', 'enum', '1.50', NULL, NULL, NULL, NULL), "
                                       "('Plate', 'enum', '007', NULL, NULL, NULL, NULL)",
                                       "('roads', 'BUILT', 'a', 'Day'), ('roads', 'LEN', 'b', 'Length'), "
                                       "('roads', 'NAME', 'c', 'Plate')");
    EXPECT_THAT(domainsOf(*openWorkspace(sCity)),
                ElementsAre("Day/2/5 01/02/2020=", "Length/2/3 1.5=", "Plate/2/4 007="));
}

TEST(DomainsOfGeoPackage, BelongToTheirFieldsWhateverTheLetterCaseOfTheTablesName) {
    const TemporaryFolder folder;
    const std::string sCity =
        cityWith(folder, "('Lanes', 'range', NULL, 1, 1, 8, 1)", "('ROADS', 'n', 'Number', 'lanes')");
    const auto pClass = openWorkspace(sCity)->openFeatureClass("roads");
    const auto pDomain = pClass->subtypes()->domain(0, "N");
    ASSERT_NE(pDomain, nullptr);
    EXPECT_EQ(pDomain->name(), "Lanes");
    EXPECT_EQ(pClass->subtypes()->domain(0, "LEN"), nullptr);
    EXPECT_EQ(pClass->fields()->field(pClass->fields()->findField("N")).aliasName(), "Number");
}

TEST(DomainsOfGeoPackage, TellTheirDescriptionAndPolicies) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    addDomains(sCity);
    const auto pDomains = openWorkspace(sCity)->domainsRole()->domains();
    const auto pKind = pDomains->next();
    const auto pLanes = pDomains->next();
    EXPECT_EQ(pLanes->description(), "how many");
    EXPECT_EQ(pLanes->mergePolicy(), 0);
    EXPECT_EQ(pLanes->splitPolicy(), 0);
    EXPECT_EQ(pLanes->codeCount(), 0);
    EXPECT_EQ(std::get<std::int32_t>(pLanes->maxValue()), 8);
    EXPECT_EQ(pDomains->next(), nullptr);
    EXPECT_EQ(pDomains->next(), nullptr);
    EXPECT_NE(failureOf([&] { static_cast<void>(pKind->minValue()); }), "");
    EXPECT_NE(failureOf([&] { static_cast<void>(pKind->code(3)); }), "");
}

TEST(DomainsOfGeoPackage, HaveTheDescriptionThatTheLibraryKeepsInARowOfItsOwn) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    {
        const GDALDatasetUniquePtr pDataset(
            GDALDataset::Open(sCity.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
        std::string sReason;
        ASSERT_TRUE(
            pDataset->AddFieldDomain(std::make_unique<OGRCodedFieldDomain>(
                                         "Surface", "what lies on top", OFTInteger, OFSTNone,
                                         std::vector{OGRCodedValue{CPLStrdup("1"), CPLStrdup("sand")}}),
                                     sReason));
    }
    const auto pWorkspace = openWorkspace(sCity);
    EXPECT_THAT(domainsOf(*pWorkspace), ElementsAre("Surface/2/1 1=sand"));
    EXPECT_EQ(pWorkspace->domainsRole()->domains()->next()->description(), "what lies on top");
}

TEST(DomainsOfGeoPackage, NamedLikeADescriptionAreDomainsWhereTheyAreMoreThanThat) {
    const TemporaryFolder folder;
    const std::string sCity = cityWith(folder,
                                       "('_A_domain_description', 'enum', '1', NULL, NULL, NULL, NULL), "
                                       "('_B_domain_description', 'glob', '[a-z]*', NULL, NULL, NULL, NULL), "
                                       "('_C_domain_description', 'enum', '', NULL, NULL, NULL, NULL), "
                                       "('_C_domain_description', 'enum', 'c', NULL, NULL, NULL, NULL), "
                                       "('__domain_description', 'glob', '', NULL, NULL, NULL, NULL)",
                                       "");
    EXPECT_THAT(domainsOf(*openWorkspace(sCity)),
                ElementsAre("_A_domain_description/2/1 1=", "_B_domain_description/3/4",
                            "_C_domain_description/2/4 = c=", "__domain_description/3/4"));
}

TEST(DomainsOfFileDatabaseFolders, AreTheDriversOwn) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    const std::string sPath = convertLayer(sCity, "roads", folder.file("city.gdb"), "OpenFileGDB");
    addDomains(sPath);
    const auto pWorkspace = openWorkspace(sPath);
    EXPECT_EQ(pWorkspace->typeCode(), 1);
    EXPECT_THAT(domainsOf(*pWorkspace), ElementsAre("Kind/2/1 10=ten 2=two 1=one", "Lanes/1/1 1..8"));
}

TEST(DomainsOfFileDatabaseFolders, HaveTheDriversPolicies) {
    const TemporaryFolder folder;
    const std::string sPath = convertLayer(makeCity(folder), "roads", folder.file("city.gdb"), "OpenFileGDB");
    {
        const GDALDatasetUniquePtr pDataset(
            GDALDataset::Open(sPath.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
        OGRField lower{};
        OGRField upper{};
        lower.Real = 1.5;
        upper.Real = 8.25;
        auto pDomain =
            std::make_unique<OGRRangeFieldDomain>("Width", "", OFTReal, OFSTNone, lower, true, upper, true);
        pDomain->SetMergePolicy(OFDMP_GEOMETRY_WEIGHTED);
        pDomain->SetSplitPolicy(OFDSP_DUPLICATE);
        std::string sReason;
        ASSERT_TRUE(pDataset->AddFieldDomain(std::move(pDomain), sReason)) << sReason;
    }
    const auto pWorkspace = openWorkspace(sPath);
    EXPECT_THAT(domainsOf(*pWorkspace), ElementsAre("Width/1/3 1.5 double..8.25 double"));
    const auto pDomain = pWorkspace->domainsRole()->domains()->next();
    EXPECT_EQ(pDomain->mergePolicy(), 2);
    EXPECT_EQ(pDomain->splitPolicy(), 1);
}

TEST(DomainsOfFolders, AreThoseOfTheirFilesIfThereAreAny) {
    const TemporaryFolder folder;
    const TemporaryFolder empty;
    addDomains(makeCity(folder));
    EXPECT_EQ(domainsOf(*openWorkspace(folder.path())).size(), 2U);
    empty.write("t.csv", "A,B\n1,2\n");
    EXPECT_EQ(openWorkspace(empty.path())->domainsRole(), nullptr);
    EXPECT_THAT(domainsOf(*openWorkspace(makeCity(empty))), IsEmpty());
}

TEST(DomainsOfTheMapDocument, AreAddedToTheDatasAndTakeThePlaceOfTheirNamesakes) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    addDomains(sCity);
    const auto pHost = host::gdal::GdalHost::create();
    const auto pDocument = pHost->openMapDocument(folder.write(
        "map.xml",
        "<MapDocument><Map name='M'><FeatureLayer source='city.gpkg' dataset='roads'/></Map>"
        "<Workspace source='city.gpkg'>"
        "<CodedValueDomain name='KIND' description='d' fieldType='string' mergePolicy='geometryWeighted' "
        "splitPolicy='duplicate'><Code value='x' name='X'/></CodedValueDomain>"
        "<RangeDomain name='When' fieldType='date' min='2024-01-31' max='2024-12-31'/>"
        "<TextDomain name='T'/></Workspace></MapDocument>"));
    const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pDocument->focusMap()->layer(0));
    const auto pWorkspace = pLayer->featureClass()->workspace();
    EXPECT_THAT(domainsOf(*pWorkspace),
                ElementsAre("Lanes/1/1 1..8", "KIND/2/4 x=X", "When/1/5 01/31/2024..12/31/2024", "T/3/4"));
    const auto pDomains = pWorkspace->domainsRole()->domains();
    static_cast<void>(pDomains->next());
    const auto pKind = pDomains->next();
    EXPECT_EQ(pKind->description(), "d");
    EXPECT_EQ(pKind->mergePolicy(), 2);
    EXPECT_EQ(pKind->splitPolicy(), 1);
    // Also when the workspace is reached by its location.
    const auto pFactory = pHost->newWorkspaceFactory(host::WorkspaceFactoryKind::Default);
    EXPECT_EQ(domainsOf(*pFactory->openFromFile("city.gpkg", 0)).size(), 4U);
}

TEST(DomainsOfTheMapDocument, WithValuesOfAnotherTypeAreAFailureAtTheirLine) {
    const TemporaryFolder folder;
    const std::string sPath =
        folder.write("map.xml", "<MapDocument><Map name='M'/><Workspace source='city.gpkg'>"
                                "<CodedValueDomain name='K'>\n<Code value='x' name='X'/></CodedValueDomain>"
                                "</Workspace></MapDocument>");
    EXPECT_THAT(failureOf([&] { static_cast<void>(host::gdal::GdalHost::create()->openMapDocument(sPath)); }),
                HasSubstr("map.xml, line 2: value=\"x\""));
}

TEST(Values, AreParsedByTheTypeOfTheirField) {
    using host::FieldType;
    using host::gdal::parseValue;
    EXPECT_EQ(std::get<std::int32_t>(*parseValue(" 12 ", FieldType::Integer)), 12);
    EXPECT_EQ(std::get<std::int64_t>(*parseValue("9007199254740993", FieldType::Integer)), 9007199254740993);
    EXPECT_EQ(std::get<std::int32_t>(*parseValue("8.0", FieldType::SmallInteger)), 8);
    EXPECT_EQ(std::get<double>(*parseValue("-1.5", FieldType::Double)), -1.5);
    EXPECT_EQ(std::get<std::string>(*parseValue(" x ", FieldType::String)), " x ");
    EXPECT_EQ(std::get<Date>(*parseValue("2024-02-29", FieldType::Date)), (Date{2024, 2, 29, 0, 0, 0}));
    EXPECT_EQ(std::get<Date>(*parseValue("2024/02/29T12:34:56.7Z", FieldType::Date)),
              (Date{2024, 2, 29, 12, 34, 56}));
    for (const char* pText : {"", "x", "1x", "8.5"}) {
        EXPECT_FALSE(parseValue(pText, FieldType::Integer).has_value()) << pText;
    }
    for (const char* pText : {"", "2024", "2024-13-01", "2024-01-32", "31.1.2024"}) {
        EXPECT_FALSE(parseValue(pText, FieldType::Date).has_value()) << pText;
    }
}

} // namespace
} // namespace halvane::tests
